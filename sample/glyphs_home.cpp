#include "sample/glyph_canvas.h"
#include "sample/glyph_colours.h"

#include <array>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;
using namespace colours;

constexpr std::array glyphs{
    Glyph{"calculator",
          [](C& c) {
              c.box(27, 16, 46, 68, 9, dark);
              c.box(33, 22, 34, 14, 4, QColor(0xc8, 0xe6, 0xd2));
              for (int row = 0; row < 3; ++row)
                  for (int column = 0; column < 3; ++column)
                      c.disc(37.5 + 12.5 * column, 46.5 + 12.5 * row, 4.6,
                             column == 2 ? c.accent : QColor(0xf2, 0xf4, 0xf8));
          }},
    Glyph{"calendar",
          [](C& c) {
              c.box(20, 20, 60, 62, 11, Qt::white);
              QPainterPath head;
              head.addRoundedRect(QRectF(20, 20, 60, 62), 11, 11);
              c.clipped(head, [&] { c.box(20, 20, 60, 17, 0, c.accent); });
              for (const double x : {35.0, 65.0})
                  c.line({{x, 15}, {x, 25}}, 4.5, grey);
              for (int row = 0; row < 3; ++row)
                  for (int column = 0; column < 4; ++column)
                      c.box(27.5 + 12 * column, 43 + 12 * row, 8.5, 8, 2.4,
                            row == 1 && column == 2 ? c.accent : pale);
          }},
    Glyph{"clock",
          [](C& c) {
              c.disc(50, 50, 34, c.ink);
              for (int i = 0; i < 12; ++i)
                  c.turned(30 * i, 50, 50, [&] {
                      c.line({{50, 21}, {50, i % 3 ? 22.5 : 25}}, 2.4, grey);
                  });
              c.lift();
              c.line({{50, 50}, {50, 29}}, 4.2, dark);
              c.line({{50, 50}, {65, 58}}, 4.2, dark);
              c.line({{44, 60}, {60, 32}}, 1.8, c.accent);
              c.disc(50, 50, 3.6, c.accent);
          }},
    Glyph{"envelope",
          [](C& c) {
              c.box(17, 27, 66, 47, 8, c.ink);
              QPainterPath flap(QPointF(21, 31));
              flap.cubicTo(38, 47, 44, 54, 50, 54);
              flap.cubicTo(56, 54, 62, 47, 79, 31);
              c.stroke(flap, 3, c.accent);
          }},
    Glyph{
        "person",
        [](C& c) {
            c.box(22, 16, 58, 68, 9, QColor(0xf6, 0xee, 0xe2));
            for (int i = 0; i < 4; ++i)
                c.box(77, 23 + 15.0 * i, 7, 10, 3, std::array{red, gold, green, blue}[std::size_t(i)]);
            c.disc(51, 42, 11, c.accent);
            QPainterPath body(QPointF(31, 71));
            body.cubicTo(31, 52, 71, 52, 71, 71);
            body.closeSubpath();
            c.path(body, c.accent);
        }},
    Glyph{"book",
          [](C& c) {
              QPainterPath page(QPointF(50, 30));
              page.cubicTo(42, 22, 28, 21, 17, 24);
              page.lineTo(17, 71);
              page.cubicTo(28, 68, 42, 69, 50, 77);
              page.closeSubpath();
              c.mirrored([&] { c.path(page, c.ink); });
              c.line({{50, 32}, {50, 74}}, 2, QColor(0, 0, 0, 50));
              c.mirrored([&] {
                  for (int i = 0; i < 3; ++i)
                      c.line({{24, 35.0 + 9 * i}, {41, 37.5 + 9 * i}}, 2.4, c.accent);
              });
          }},
    Glyph{"house",
          [](C& c) {
              c.shape({{24, 48}, {76, 48}, {76, 78}, {24, 78}}, c.ink, 5);
              c.shape({{50, 20}, {83, 49}, {17, 49}}, c.accent, 6);
              c.box(42, 57, 16, 23.5, 3, QColor(0x7a, 0x4e, 0x36));
              c.disc(50, 37, 5, c.ink);
          }},
    Glyph{"gear",
          [](C& c) {
              for (int i = 0; i < 12; ++i)
                  c.turned(30 * i, 50, 50, [&] { c.box(45.4, 15, 9.2, 16, 3, c.ink); });
              c.disc(50, 50, 28, c.ink);
              c.cut([&] { c.disc(50, 50, 20, c.ink); });
              c.lift();
              for (int i = 0; i < 3; ++i)
                  c.turned(120 * i, 50, 50, [&] { c.line({{50, 50}, {50, 31}}, 5, c.ink); });
              c.disc(50, 50, 8, c.ink);
              c.disc(50, 50, 3.6, c.accent);
          }},
    Glyph{"page",
          [](C& c) {
              c.box(26, 16, 48, 68, 6, Qt::white);
              for (int i = 0; i < 5; ++i)
                  c.line({{34, 29.0 + 8.5 * i}, {i == 4 ? 52.0 : 66.0, 29.0 + 8.5 * i}}, 3, pale);
              c.lift();
              c.turned(38, 66, 62, [&] {
                  c.box(61, 34, 10, 40, 2, c.accent);
                  c.shape({{61, 74}, {71, 74}, {66, 85}}, QColor(0xf4, 0xd9, 0xb0));
                  c.shape({{64.2, 81}, {67.8, 81}, {66, 85}}, dark);
              });
          }},
    Glyph{"lamp",
          [](C& c) {
              QPainterPath glow(QPointF(36, 48));
              glow.lineTo(64, 48);
              glow.lineTo(80, 79);
              glow.lineTo(20, 79);
              glow.closeSubpath();
              c.path(glow, QColor(255, 240, 190, 90));
              c.line({{50, 12}, {50, 26}}, 3, c.ink);
              QPainterPath shade(QPointF(25, 51));
              shade.cubicTo(28, 18, 72, 18, 75, 51);
              shade.closeSubpath();
              c.path(shade, c.accent);
              c.disc(50, 53, 8, QColor(0xff, 0xf2, 0xb8));
          }},
    Glyph{"microphone",
          [](C& c) {
              c.box(38, 16, 24, 42, 12, c.ink);
              for (int i = 0; i < 3; ++i)
                  c.line({{44, 28.0 + 7 * i}, {56, 28.0 + 7 * i}}, 2.4, c.accent);
              c.arc(50, 48, 21, 4.5, 180, 180, c.ink);
              c.line({{50, 69}, {50, 80}}, 4.5, c.ink);
              c.line({{38, 81}, {62, 81}}, 4.5, c.ink);
          }},
    Glyph{"camera",
          [](C& c) {
              c.box(36, 24, 28, 16, 6, c.ink);
              c.box(16, 32, 68, 44, 10, c.ink);
              c.lift();
              c.disc(50, 54, 17, dark);
              c.disc(50, 54, 12.5, c.accent);
              c.disc(50, 54, 6, dark);
              c.disc(46, 49, 2.6, QColor(255, 255, 255, 190));
              c.disc(74, 41, 2.6, red);
          }},
    Glyph{"video",
          [](C& c) {
              c.box(15, 31, 47, 38, 10, c.ink);
              c.shape({{67, 45}, {82, 36}, {82, 64}, {67, 55}}, c.ink, 5);
              c.disc(29, 43, 4, c.accent);
          }},
    Glyph{"film",
          [](C& c) {
              c.box(18, 40, 64, 40, 6, dark);
              for (int i = 0; i < 4; ++i)
                  c.shape({{22.0 + 16 * i, 42},
                           {30.0 + 16 * i, 42},
                           {26.0 + 16 * i, 51},
                           {18.0 + 16 * i, 51}},
                          Qt::white);
              c.lift();
              c.turned(-14, 20, 38, [&] {
                  c.box(18, 28, 64, 11, 3, dark);
                  for (int i = 0; i < 4; ++i)
                      c.shape({{23.0 + 16 * i, 28},
                               {31.0 + 16 * i, 28},
                               {35.0 + 16 * i, 39},
                               {27.0 + 16 * i, 39}},
                              Qt::white);
              });
              c.shape({{45, 58}, {45, 74}, {59, 66}}, c.accent, 3);
          }},
    Glyph{"monitor",
          [](C& c) {
              c.box(15, 22, 70, 46, 6, dark);
              QPainterPath screen;
              screen.addRoundedRect(QRectF(19, 26, 62, 38), 3, 3);
              c.path(screen, c.accent);
              c.clipped(screen, [&] { c.wedge(88, 70, 62, 120, 70, QColor(255, 255, 255, 60)); });
              c.shape({{44, 68}, {56, 68}, {59, 79}, {41, 79}}, grey);
              c.box(34, 77, 32, 4.5, 2, c.ink);
          }},
    Glyph{"windows",
          [](C& c) {
              c.box(16, 20, 44, 36, 5, c.accent);
              c.lift();
              c.box(32, 36, 52, 43, 5, c.ink);
              for (int i = 0; i < 3; ++i)
                  c.disc(39 + 6.5 * i, 43, 2.1, std::array{red, gold, green}[std::size_t(i)]);
              c.box(38, 50, 18, 23, 2.5, pale);
              c.box(60, 50, 18, 10, 2.5, pale);
              c.box(60, 63, 18, 10, 2.5, pale);
          }},
    Glyph{"discs",
          [](C& c) {
              for (int i = 2; i >= 0; --i) {
                  const double y = 27 + 17.0 * i;
                  QPainterPath side;
                  side.addRect(QRectF(23, y, 54, 12));
                  side.addEllipse(QPointF(50, y + 12), 27, 8.5);
                  side.setFillRule(Qt::WindingFill);
                  c.path(side, i == 1 ? c.accent : pale);
                  c.oval(50, y, 27, 8.5, i == 1 ? c.accent.lighter(125) : QColor(Qt::white));
              }
          }},
    Glyph{"drive",
          [](C& c) {
              c.shape({{30, 26}, {70, 26}, {80, 56}, {20, 56}}, pale, 5);
              c.box(17.5, 54, 65, 22, 6, c.ink);
              c.line({{26, 65}, {48, 65}}, 3.4, grey);
              c.disc(73, 65, 3.4, c.accent);
          }},
    Glyph{"lock",
          [](C& c) {
              c.arc(50, 44, 16, 7, 0, 180, pale);
              c.line({{34, 44}, {34, 52}}, 7, pale);
              c.line({{66, 44}, {66, 52}}, 7, pale);
              c.box(25, 46, 50, 36, 9, c.ink);
              c.disc(50, 61, 5.5, c.accent);
              c.line({{50, 62}, {50, 71}}, 4.4, c.accent);
          }},
    Glyph{"key",
          [](C& c) {
              c.turned(-45, 50, 50, [&] {
                  c.ring(50, 28, 13, 7, c.ink);
                  c.line({{50, 41}, {50, 84}}, 6.4, c.ink);
                  c.line({{50, 70}, {60, 70}}, 5.6, c.ink);
                  c.line({{50, 82}, {63, 82}}, 5.6, c.ink);
              });
          }},
    Glyph{"folder",
          [](C& c) {
              c.box(17, 24, 32, 20, 6, c.accent);
              c.box(17, 31, 66, 44, 7, c.accent);
              c.lift();
              c.box(17, 41, 66, 36, 7, c.ink);
          }},
    Glyph{"crate",
          [](C& c) {
              c.box(19, 40, 62, 40, 6, c.ink);
              c.box(15, 25, 70, 19, 5, c.accent);
              c.box(40, 52, 20, 7, 3.5, QColor(0, 0, 0, 70));
          }},
    Glyph{"gift",
          [](C& c) {
              c.box(22, 47, 56, 34, 5, c.ink);
              c.box(17, 36, 66, 15, 4, c.ink);
              c.box(44.5, 36, 11, 45, 0, c.accent);
              c.mirrored([&] {
                  QPainterPath bow(QPointF(50, 36));
                  bow.cubicTo(40, 36, 27, 32, 31, 23);
                  bow.cubicTo(36, 14, 49, 24, 50, 36);
                  c.stroke(bow, 5, c.accent);
              });
          }},
    Glyph{"bell",
          [](C& c) {
              c.disc(50, 76, 7, c.accent);
              QPainterPath bell(QPointF(22, 70));
              bell.cubicTo(34, 60, 28, 24, 50, 24);
              bell.cubicTo(72, 24, 66, 60, 78, 70);
              bell.closeSubpath();
              c.path(bell, c.ink);
              c.stroke(bell, 4, c.ink);
              c.line({{50, 18}, {50, 24}}, 6, c.ink);
          }},
    Glyph{"clipboard",
          [](C& c) {
              c.box(24, 22, 52, 62, 8, wood);
              c.box(29, 29, 42, 50, 3, Qt::white);
              for (int i = 0; i < 4; ++i)
                  c.line({{37, 43.0 + 9 * i}, {63, 43.0 + 9 * i}}, 3, i == 1 ? c.accent : pale);
              c.box(38, 16, 24, 13, 5, QColor(0xb8, 0xc0, 0xce));
          }},
    Glyph{"scissors",
          [](C& c) {
              c.line({{38, 66}, {66, 18}}, 6, pale);
              c.line({{62, 66}, {34, 18}}, 6, c.ink);
              c.disc(50, 44.5, 2.6, grey);
              c.ring(32, 73, 10, 6, c.accent);
              c.ring(68, 73, 10, 6, c.accent);
          }},
};

} // namespace

std::span<const Glyph> homeGlyphs() { return glyphs; }

} // namespace tessellar::sample
