#include "sample/glyph_canvas.h"
#include "sample/glyph_colours.h"

#include <array>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;
using namespace colours;

void eye(C& c, double x, double y, double r) {
    c.disc(x, y, r, Qt::white);
    c.disc(x, y, r * 0.55, dark);
}

constexpr std::array glyphs{
    Glyph{"sunCloud",
          [](C& c) {
              c.disc(40, 38, 18, gold);
              c.lift();
              c.path(C::cloud(54, 76, 58), c.ink);
          }},
    Glyph{"sun",
          [](C& c) {
              for (int i = 0; i < 8; ++i)
                  c.turned(45 * i, 50, 50, [&] { c.line({{50, 16}, {50, 24}}, 6, c.accent); });
              c.disc(50, 50, 20, c.accent);
          }},
    Glyph{"moon",
          [](C& c) {
              c.disc(50, 50, 30, c.ink);
              c.cut([&] { c.disc(62, 42, 25, c.ink); });
              c.star(66, 34, 6, 2.2, 4, c.accent, 1);
              c.star(76, 52, 4, 1.5, 4, c.accent, 1);
          }},
    Glyph{"eclipse",
          [](C& c) {
              c.disc(50, 50, 33, QColor(255, 255, 255, 60));
              c.disc(50, 50, 27, c.accent);
              c.lift();
              c.disc(54, 47, 24, dark);
          }},
    Glyph{"planet",
          [](C& c) {
              c.turned(-24, 50, 50, [&] {
                  c.oval(50, 50, 40, 12, QColor(255, 255, 255, 0));
                  QPainterPath back;
                  back.arcMoveTo(QRectF(10, 38, 80, 24), 0);
                  back.arcTo(QRectF(10, 38, 80, 24), 0, 180);
                  c.stroke(back, 4.4, c.ink);
                  c.disc(50, 50, 24, c.accent);
                  c.arc(50, 50, 15, 3, 200, 60, QColor(255, 255, 255, 90));
                  QPainterPath front;
                  front.arcMoveTo(QRectF(10, 38, 80, 24), 180);
                  front.arcTo(QRectF(10, 38, 80, 24), 180, 180);
                  c.stroke(front, 4.4, c.ink);
              });
          }},
    Glyph{"waves",
          [](C& c) {
              for (int i = 0; i < 3; ++i) {
                  const double y = 35 + 15.0 * i;
                  QPainterPath wave(QPointF(18, y));
                  for (int k = 0; k < 4; ++k) {
                      const double x = 18 + 16.0 * k;
                      const double swing = k % 2 ? 7 : -7;
                      wave.cubicTo(x + 5.5, y + swing, x + 10.5, y + swing, x + 16, y);
                  }
                  c.stroke(wave, 6.4, i == 1 ? c.accent : c.ink);
              }
          }},
    Glyph{"drop",
          [](C& c) {
              c.path(C::drop(50, 58, 24), c.ink);
              c.arc(50, 58, 16, 4.5, 190, 70, c.accent);
          }},
    Glyph{"flame",
          [](C& c) {
              QPainterPath outer(QPointF(52, 13));
              outer.cubicTo(58, 30, 78, 40, 77, 60);
              outer.cubicTo(76, 76, 64, 86, 50, 86);
              outer.cubicTo(35, 86, 23, 75, 23, 60);
              outer.cubicTo(23, 48, 31, 44, 33, 34);
              outer.cubicTo(40, 38, 42, 42, 42, 47);
              outer.cubicTo(50, 38, 52, 26, 52, 13);
              c.path(outer, c.ink);
              QPainterPath inner(QPointF(52, 48));
              inner.cubicTo(54, 58, 64, 60, 64, 70);
              inner.cubicTo(64, 80, 57, 84, 50, 84);
              inner.cubicTo(42, 84, 36, 79, 36, 71);
              inner.cubicTo(36, 60, 50, 60, 52, 48);
              c.path(inner, c.accent);
          }},
    Glyph{"mountains",
          [](C& c) {
              c.disc(70, 31, 8, gold);
              c.shape({{58, 40}, {88, 78}, {34, 78}}, c.accent, 4);
              c.lift();
              c.shape({{38, 28}, {70, 78}, {10, 78}}, c.ink, 4);
              c.shape({{38, 27}, {47, 42}, {41, 47}, {36, 42}, {30, 46}, {28, 42.5}},
                      QColor(0xbb, 0xd3, 0xef), 2);
          }},
    Glyph{"leaf",
          [](C& c) {
              c.path(C::leaf({24, 76}, {78, 22}, 0.62), c.ink);
              c.line({{19, 81}, {64, 36}}, 3.4, c.accent);
              c.line({{42, 58}, {42, 44}}, 2.6, c.accent);
              c.line({{42, 58}, {57, 58}}, 2.6, c.accent);
          }},
    Glyph{"sprout",
          [](C& c) {
              QPainterPath stem(QPointF(50, 80));
              stem.cubicTo(50, 64, 50, 58, 50, 46);
              c.stroke(stem, 4.6, green);
              c.path(C::leaf({50, 48}, {20, 30}, 0.5), green);
              c.path(C::leaf({50, 46}, {80, 22}, 0.5), QColor(0x7d, 0xd8, 0x6b));
              c.shape({{32, 66}, {68, 66}, {63, 84}, {37, 84}}, c.accent, 5);
              c.box(28, 61, 44, 9, 4, c.accent);
          }},
    Glyph{"tree",
          [](C& c) {
              c.box(45, 56, 10, 28, 3, brown);
              c.disc(35, 50, 16, green);
              c.disc(65, 50, 16, green);
              c.disc(50, 36, 20, QColor(0x62, 0xcf, 0x6b));
              for (const auto& [x, y] : {std::pair{40, 38}, {58, 32}, {64, 52}, {36, 54}, {50, 48}})
                  c.disc(x, y, 4, red);
          }},
    Glyph{"flower",
          [](C& c) {
              for (int i = 0; i < 8; ++i)
                  c.turned(45 * i, 50, 50,
                           [&] { c.oval(50, 30, 8.6, 15, i % 2 ? c.ink : QColor(0xf3, 0xe6, 0xff)); });
              c.lift();
              c.disc(50, 50, 12, c.accent);
          }},
    Glyph{"tulip",
          [](C& c) {
              c.line({{50, 50}, {50, 86}}, 4.4, green);
              c.path(C::leaf({50, 84}, {26, 54}, 0.34), green);
              c.path(C::leaf({50, 84}, {74, 54}, 0.34), green);
              QPainterPath head(QPointF(30, 18));
              head.lineTo(42, 28);
              head.lineTo(50, 15);
              head.lineTo(58, 28);
              head.lineTo(70, 18);
              head.cubicTo(74, 44, 66, 56, 50, 56);
              head.cubicTo(34, 56, 26, 44, 30, 18);
              c.path(head, c.accent);
          }},
    Glyph{"mushroom",
          [](C& c) {
              c.box(38, 46, 24, 36, 11, QColor(0xff, 0xf1, 0xdb));
              QPainterPath cap(QPointF(15, 54));
              cap.cubicTo(15, 12, 85, 12, 85, 54);
              cap.cubicTo(70, 61, 30, 61, 15, 54);
              c.path(cap, c.accent);
              c.disc(40, 35, 6.5, Qt::white);
              c.disc(62, 33, 5, Qt::white);
              c.disc(28, 48, 4, Qt::white);
              c.disc(70, 48, 5, Qt::white);
              c.disc(52, 48, 3.6, Qt::white);
          }},
    Glyph{"pear",
          [](C& c) {
              QPainterPath pear(QPointF(50, 26));
              pear.cubicTo(66, 26, 62, 44, 70, 54);
              pear.cubicTo(82, 70, 68, 86, 50, 86);
              pear.cubicTo(32, 86, 18, 70, 30, 54);
              pear.cubicTo(38, 44, 34, 26, 50, 26);
              c.path(pear, c.ink);
              c.line({{50, 28}, {53, 15}}, 4, brown);
              c.path(C::leaf({53, 22}, {74, 14}, 0.45), c.accent);
              c.arc(50, 64, 17, 4, 170, 60, QColor(255, 255, 255, 130));
          }},
    Glyph{"cherries",
          [](C& c) {
              QPainterPath stems(QPointF(34, 62));
              stems.cubicTo(36, 44, 46, 30, 62, 18);
              stems.cubicTo(60, 36, 64, 46, 67, 56);
              c.stroke(stems, 3.4, QColor(0x4c, 0x7d, 0x3a));
              c.path(C::leaf({62, 19}, {86, 30}, 0.4), QColor(0x62, 0xb8, 0x4f));
              c.disc(34, 66, 16, c.ink);
              c.disc(68, 63, 15, c.ink);
              c.disc(29, 60, 4, QColor(255, 255, 255, 170));
              c.disc(63, 57, 4, QColor(255, 255, 255, 170));
          }},
    Glyph{"bird",
          [](C& c) {
              QPainterPath body(QPointF(14, 58));
              body.cubicTo(28, 58, 32, 30, 54, 30);
              body.cubicTo(70, 30, 76, 42, 74, 54);
              body.cubicTo(72, 72, 56, 78, 44, 76);
              body.cubicTo(32, 74, 26, 66, 14, 58);
              c.path(body, c.ink);
              c.shape({{73, 42}, {86, 47}, {73, 52}}, gold, 2);
              c.path(C::leaf({56, 52}, {28, 62}, 0.46), c.accent);
              eye(c, 63, 43, 4.6);
              c.line({{48, 76}, {46, 85}}, 3, gold);
              c.line({{56, 75}, {56, 85}}, 3, gold);
          }},
    Glyph{"owl",
          [](C& c) {
              QPainterPath body(QPointF(24, 20));
              body.cubicTo(36, 28, 64, 28, 76, 20);
              body.cubicTo(84, 50, 82, 84, 50, 84);
              body.cubicTo(18, 84, 16, 50, 24, 20);
              c.path(body, c.accent);
              c.oval(50, 68, 16, 14, QColor(255, 255, 255, 120));
              c.lift();
              c.disc(37, 43, 13, Qt::white);
              c.disc(63, 43, 13, Qt::white);
              c.disc(38, 43, 6.4, dark);
              c.disc(62, 43, 6.4, dark);
              c.shape({{46, 51}, {54, 51}, {50, 60}}, gold, 2);
          }},
    Glyph{"moth",
          [](C& c) {
              c.mirrored([&] {
                  QPainterPath upper(QPointF(49, 46));
                  upper.cubicTo(42, 22, 20, 16, 14, 26);
                  upper.cubicTo(10, 40, 24, 54, 49, 52);
                  c.path(upper, c.ink);
                  QPainterPath lower(QPointF(49, 52));
                  lower.cubicTo(30, 52, 20, 62, 26, 74);
                  lower.cubicTo(34, 84, 46, 72, 49, 58);
                  c.path(lower, c.accent);
                  c.disc(28, 35, 5.4, c.accent);
                  QPainterPath feeler(QPointF(49, 38));
                  feeler.cubicTo(46, 28, 42, 22, 37, 19);
                  c.stroke(feeler, 2.2, dark);
              });
              c.box(47, 36, 6, 36, 3, dark);
          }},
    Glyph{"cat",
          [](C& c) {
              c.mirrored([&] {
                  c.shape({{22, 20}, {46, 34}, {24, 54}}, c.ink, 5);
                  c.shape({{27, 28}, {38, 36}, {28, 44}}, QColor(0xff, 0xb3, 0xb8), 2);
              });
              c.oval(50, 56, 32, 27, c.ink);
              c.disc(38, 52, 4.6, dark);
              c.disc(62, 52, 4.6, dark);
              c.shape({{46.5, 61}, {53.5, 61}, {50, 65}}, QColor(0xff, 0x8b, 0x94), 2);
              c.arc(45.5, 66, 4.5, 2.4, 190, 160, dark);
              c.arc(54.5, 66, 4.5, 2.4, 190, 160, dark);
              c.mirrored([&] {
                  c.line({{29, 62}, {13, 59}}, 1.8, c.accent);
                  c.line({{29, 67}, {14, 69}}, 1.8, c.accent);
              });
          }},
    Glyph{"fish",
          [](C& c) {
              c.shape({{24, 50}, {10, 34}, {12, 50}, {10, 66}}, c.accent, 4);
              c.path(C::leaf({18, 50}, {86, 50}, 0.6), c.ink);
              QPainterPath body = C::leaf({18, 50}, {86, 50}, 0.6);
              c.clipped(body, [&] {
                  c.box(38, 20, 8, 60, 0, c.accent);
                  c.box(54, 20, 8, 60, 0, c.accent);
              });
              eye(c, 72, 45, 4.8);
          }},
    Glyph{"paw",
          [](C& c) {
              c.oval(31, 42, 8, 11, c.ink);
              c.oval(44, 30, 8, 11.5, c.ink);
              c.oval(59, 30, 8, 11.5, c.ink);
              c.oval(71, 43, 8, 11, c.ink);
              QPainterPath pad(QPointF(51, 46));
              pad.cubicTo(66, 46, 76, 66, 70, 76);
              pad.cubicTo(64, 82, 58, 76, 51, 76);
              pad.cubicTo(44, 76, 38, 82, 32, 76);
              pad.cubicTo(26, 66, 36, 46, 51, 46);
              c.path(pad, c.ink);
          }},
};

} // namespace

std::span<const Glyph> natureGlyphs() { return glyphs; }

} // namespace tessellar::sample
