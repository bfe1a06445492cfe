#include "sample/glyph_canvas.h"

#include <array>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;

const QColor dark(0x22, 0x28, 0x3a);
const QColor grey(0x8c, 0x94, 0xa6);
const QColor pale(0xdd, 0xe3, 0xee);
const QColor wood(0xc9, 0x8a, 0x52);
const QColor gold(0xff, 0xcb, 0x45);
const QColor red(0xff, 0x5a, 0x50);
const QColor green(0x45, 0xc9, 0x6c);
const QColor blue(0x3d, 0x8b, 0xff);

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
    Glyph{"pencil",
          [](C& c) {
              c.turned(45, 50, 50, [&] {
                  c.box(41, 10, 18, 12, 5, QColor(0xff, 0x8f, 0xa3));
                  c.box(41, 18, 18, 8, 0, QColor(0xc4, 0xcb, 0xd8));
                  c.box(41, 25, 6, 44, 0, c.accent.darker(112));
                  c.box(47, 25, 6, 44, 0, c.accent.lighter(112));
                  c.box(53, 25, 6, 44, 0, c.accent);
                  c.shape({{41, 69}, {59, 69}, {50, 89}}, QColor(0xf6, 0xdd, 0xb8));
                  c.shape({{46.4, 81}, {53.6, 81}, {50, 89}}, dark);
              });
          }},
    Glyph{"nib",
          [](C& c) {
              c.turned(40, 50, 50, [&] {
                  QPainterPath nib(QPointF(50, 90));
                  nib.cubicTo(44, 74, 30, 62, 34, 44);
                  nib.lineTo(40, 30);
                  nib.lineTo(60, 30);
                  nib.lineTo(66, 44);
                  nib.cubicTo(70, 62, 56, 74, 50, 90);
                  c.path(nib, c.ink);
                  c.cut([&] { c.disc(50, 56, 4.6, c.ink), c.line({{50, 56}, {50, 92}}, 2.2, c.ink); });
                  c.box(38, 14, 24, 15, 4, c.accent);
              });
          }},
    Glyph{"brush",
          [](C& c) {
              c.turned(40, 50, 50, [&] {
                  c.box(45, 6, 10, 44, 5, wood);
                  c.box(42, 44, 16, 14, 2, QColor(0xc4, 0xcb, 0xd8));
                  QPainterPath hair(QPointF(42, 58));
                  hair.lineTo(58, 58);
                  hair.cubicTo(66, 70, 58, 80, 50, 93);
                  hair.cubicTo(50, 84, 34, 74, 42, 58);
                  c.path(hair, c.accent);
              });
          }},
    Glyph{"palette",
          [](C& c) {
              QPainterPath board(QPointF(50, 18));
              board.cubicTo(88, 18, 92, 58, 70, 60);
              board.cubicTo(56, 61, 62, 70, 60, 77);
              board.cubicTo(58, 84, 44, 83, 36, 79);
              board.cubicTo(6, 66, 12, 18, 50, 18);
              c.path(board, c.ink);
              c.lift();
              c.disc(33, 40, 6, red);
              c.disc(49, 31, 6, gold);
              c.disc(67, 37, 6, green);
              c.disc(28, 57, 6, blue);
              c.disc(42, 68, 6, QColor(0xa6, 0x6b, 0xff));
          }},
    Glyph{"umbrella",
          [](C& c) {
              c.line({{50, 17}, {50, 70}}, 4, c.ink);
              c.arc(42.5, 71, 7.5, 4, 180, 180, c.ink);
              QPainterPath canopy(QPointF(15, 53));
              canopy.arcTo(QRectF(15, 20, 70, 66), 180, -180);
              canopy.cubicTo(80, 47, 66, 47, 61.7, 53);
              canopy.cubicTo(57, 47, 43, 47, 38.3, 53);
              canopy.cubicTo(34, 47, 20, 47, 15, 53);
              c.path(canopy, c.accent);
          }},
    Glyph{"hourglass",
          [](C& c) {
              c.box(27, 15, 46, 8, 4, wood);
              c.box(27, 77, 46, 8, 4, wood);
              QPainterPath glass(QPointF(32, 23));
              glass.cubicTo(32, 44, 47, 45, 47, 50);
              glass.cubicTo(47, 55, 32, 56, 32, 77);
              glass.lineTo(68, 77);
              glass.cubicTo(68, 56, 53, 55, 53, 50);
              glass.cubicTo(53, 45, 68, 44, 68, 23);
              glass.closeSubpath();
              c.path(glass, QColor(255, 255, 255, 215));
              c.clipped(glass, [&] {
                  c.box(20, 33, 60, 17, 0, c.accent);
                  c.oval(50, 79, 20, 14, c.accent);
                  c.line({{50, 48}, {50, 70}}, 2, c.accent);
              });
          }},
    Glyph{"cup",
          [](C& c) {
              c.ring(70, 51, 10, 6, c.ink);
              QPainterPath cup(QPointF(24, 38));
              cup.lineTo(70, 38);
              cup.cubicTo(70, 62, 66, 74, 47, 74);
              cup.cubicTo(28, 74, 24, 62, 24, 38);
              c.path(cup, c.ink);
              c.oval(47, 39, 20, 4.4, QColor(0x6b, 0x3f, 0x2a));
              c.box(18, 77, 58, 5, 2.5, pale);
              for (const double x : {38.0, 47.0, 56.0}) {
                  QPainterPath steam(QPointF(x, 31));
                  steam.cubicTo(x - 5, 26, x + 5, 22, x, 16);
                  c.stroke(steam, 2.6, QColor(255, 255, 255, 170));
              }
          }},
    Glyph{"flask",
          [](C& c) {
              QPainterPath flask(QPointF(42, 18));
              flask.lineTo(58, 18);
              flask.lineTo(58, 42);
              flask.lineTo(77, 72);
              flask.cubicTo(81, 79, 77, 83, 71, 83);
              flask.lineTo(29, 83);
              flask.cubicTo(23, 83, 19, 79, 23, 72);
              flask.lineTo(42, 42);
              flask.closeSubpath();
              c.path(flask, QColor(255, 255, 255, 225));
              c.clipped(flask, [&] { c.box(10, 57, 80, 40, 0, c.accent); });
              c.disc(43, 66, 4, QColor(255, 255, 255, 170));
              c.disc(56, 73, 5.2, QColor(255, 255, 255, 150));
              c.disc(52, 60, 2.6, QColor(255, 255, 255, 190));
              c.box(37, 13, 26, 8, 4, c.ink);
          }},
    Glyph{"bulb",
          [](C& c) {
              c.disc(50, 42, 24, c.accent);
              c.shape({{39, 58}, {61, 58}, {58, 70}, {42, 70}}, c.accent, 4);
              c.line({{43, 46}, {47, 56}, {50, 46}, {53, 56}, {57, 46}}, 2.4, QColor(0xd8, 0x86, 0x1a));
              c.box(41, 70, 18, 5, 2.5, pale);
              c.box(43, 77, 14, 5, 2.5, pale);
          }},
    Glyph{"magnet",
          [](C& c) {
              c.turned(35, 50, 50, [&] {
                  c.arc(50, 46, 21, 16, 180, 180, c.accent);
                  c.line({{29, 46}, {29, 36}}, 16, c.accent);
                  c.line({{71, 46}, {71, 36}}, 16, c.accent);
                  c.box(21, 18, 16, 15, 1, c.ink);
                  c.box(63, 18, 16, 15, 1, c.ink);
              });
          }},
    Glyph{"printer3d",
          [](C& c) {
              c.line({{22, 80}, {22, 20}, {78, 20}, {78, 80}}, 6, c.ink);
              c.box(15, 77, 70, 7, 3.5, c.ink);
              c.box(41, 18, 18, 15, 3, c.accent);
              c.shape({{45, 33}, {55, 33}, {50, 41}}, grey);
              for (int i = 0; i < 4; ++i)
                  c.box(34 + 3.0 * i, 70 - 7.4 * i, 32 - 6.0 * i, 6.4, 3, i % 2 ? c.accent : c.ink);
          }},
    Glyph{"anvil",
          [](C& c) {
              QPainterPath anvil(QPointF(14, 36));
              anvil.lineTo(80, 36);
              anvil.lineTo(86, 44);
              anvil.cubicTo(74, 50, 62, 50, 60, 60);
              anvil.lineTo(72, 72);
              anvil.lineTo(72, 80);
              anvil.lineTo(28, 80);
              anvil.lineTo(28, 72);
              anvil.lineTo(40, 60);
              anvil.cubicTo(38, 50, 20, 48, 14, 36);
              c.path(anvil, c.ink);
              c.star(70, 22, 9, 3, 4, c.accent, 1.5);
              c.star(52, 16, 5, 1.8, 4, c.accent, 1);
          }},
    Glyph{"compasses",
          [](C& c) {
              c.line({{50, 26}, {32, 80}}, 5.6, c.ink);
              c.line({{50, 26}, {68, 80}}, 5.6, pale);
              c.arc(50, 30, 36, 3.6, 238, 64, c.accent);
              c.disc(50, 25, 9, c.ink);
              c.disc(50, 25, 3.6, c.accent);
          }},
    Glyph{"ruler",
          [](C& c) {
              c.turned(-38, 50, 50, [&] {
                  c.box(10, 36, 80, 28, 5, c.accent);
                  for (int i = 0; i < 9; ++i)
                      c.line({{18.0 + 8 * i, 37}, {18.0 + 8 * i, i % 2 ? 43.0 : 49.0}}, 2.4, dark);
              });
          }},
    Glyph{"coins",
          [](C& c) {
              for (int i = 0; i < 4; ++i) {
                  c.oval(39, 75 - 9.0 * i, 22, 8, gold.darker(125));
                  c.oval(39, 72 - 9.0 * i, 22, 8, gold);
              }
              c.lift();
              c.disc(64, 42, 20, gold.darker(115));
              c.disc(64, 42, 16, gold);
              c.star(64, 42, 9, 4.2, 5, c.ink, 1);
          }},
    Glyph{"suitcase",
          [](C& c) {
              c.arc(50, 32, 12, 5, 0, 180, pale);
              c.box(15, 32, 70, 46, 9, c.ink);
              c.box(26, 32, 7, 46, 0, c.accent);
              c.box(67, 32, 7, 46, 0, c.accent);
          }},
    Glyph{"ticket",
          [](C& c) {
              c.turned(-18, 50, 50, [&] {
                  c.box(14, 33, 72, 36, 6, c.ink);
                  c.cut([&] { c.disc(62, 33, 5, c.ink), c.disc(62, 69, 5, c.ink); });
                  for (int i = 0; i < 3; ++i)
                      c.line({{62, 43.0 + 7 * i}, {62, 45.5 + 7 * i}}, 2.2, grey);
                  c.star(38, 51, 12, 5.4, 5, c.accent, 2);
              });
          }},
    Glyph{"button",
          [](C& c) {
              c.disc(50, 50, 33, c.accent);
              c.disc(50, 50, 26, c.accent.lighter(118));
              c.cut([&] {
                  for (const double x : {42.0, 58.0})
                      for (const double y : {42.0, 58.0})
                          c.disc(x, y, 4.6, c.ink);
              });
              c.lift();
              c.line({{42, 42}, {58, 58}}, 3, c.ink);
              c.line({{58, 42}, {42, 58}}, 3, c.ink);
          }},
    Glyph{"robot",
          [](C& c) {
              c.line({{50, 20}, {50, 32}}, 4, pale);
              c.disc(50, 17, 5, c.accent);
              c.box(14, 46, 12, 18, 5, c.accent);
              c.box(74, 46, 12, 18, 5, c.accent);
              c.box(22, 30, 56, 50, 14, c.ink);
              c.box(29, 40, 42, 18, 9, dark);
              c.disc(40, 49, 5, c.accent.lighter(130));
              c.disc(60, 49, 5, c.accent.lighter(130));
              c.line({{40, 68}, {60, 68}}, 4, grey);
          }},
    Glyph{"chalkboard",
          [](C& c) {
              c.box(14, 22, 72, 52, 6, wood);
              c.box(19, 27, 62, 42, 3, QColor(0x2f, 0x5d, 0x50));
              c.line({{29, 40}, {37, 56}, {45, 40}}, 3.4, Qt::white);
              c.line({{54, 44}, {70, 44}}, 3.4, c.accent);
              c.line({{54, 53}, {70, 53}}, 3.4, c.accent);
              c.box(58, 72, 18, 5, 2, Qt::white);
          }},
    Glyph{"newspaper",
          [](C& c) {
              c.box(70, 34, 14, 44, 4, pale.darker(112));
              c.box(18, 22, 58, 56, 5, c.ink);
              c.line({{26, 32}, {68, 32}}, 6, c.accent);
              c.box(25, 41, 20, 18, 2, grey);
              for (int i = 0; i < 4; ++i)
                  c.line({{i < 3 ? 51.0 : 26.0, 43.0 + 7.5 * i}, {67, 43.0 + 7.5 * i}}, 2.8,
                         pale.darker(110));
              c.line({{26, 72}, {54, 72}}, 2.8, pale.darker(110));
          }},
    Glyph{"steamEngine",
          [](C& c) {
              for (const auto& [x, y, r] : {std::tuple{33, 17, 5.0}, {43, 12, 6.5}, {56, 11, 8.0}})
                  c.disc(x, y, r, QColor(255, 255, 255, 150));
              c.box(25, 24, 11, 20, 2, dark);
              c.box(22, 22, 17, 6, 3, c.accent);
              c.box(18, 40, 46, 24, 8, dark);
              c.box(56, 24, 27, 42, 4, c.ink);
              c.box(53, 20, 33, 7, 3, c.accent);
              c.box(62, 32, 15, 13, 3, QColor(0x8f, 0xd0, 0xff));
              c.box(16, 62, 68, 6, 2, c.accent);
              c.shape({{16, 66}, {26, 66}, {10, 80}}, grey, 2);
              for (const double x : {34.0, 52.0})
                  c.disc(x, 73, 8, c.ink), c.disc(x, 73, 3.4, dark);
              c.disc(73, 70, 11, c.ink);
              c.disc(73, 70, 4.4, dark);
          }},
    Glyph{"fan",
          [](C& c) {
              c.ring(50, 50, 34, 4, c.ink);
              for (int i = 0; i < 5; ++i)
                  c.turned(72 * i, 50, 50, [&] {
                      QPainterPath blade(QPointF(50, 50));
                      blade.cubicTo(42, 38, 46, 22, 58, 22);
                      blade.cubicTo(68, 24, 62, 40, 50, 50);
                      c.path(blade, i % 2 ? c.accent : c.accent.lighter(115));
                  });
              c.disc(50, 50, 7, c.ink);
          }},
};

} // namespace

std::span<const Glyph> objectGlyphs() { return glyphs; }

} // namespace tessellar::sample
