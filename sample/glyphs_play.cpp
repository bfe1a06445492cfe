#include "sample/glyph_canvas.h"
#include "sample/glyph_colours.h"

#include <array>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;
using namespace colours;

constexpr std::array glyphs{
    Glyph{"balloon",
          [](C& c) {
              QPainterPath envelope(QPointF(43, 66));
              envelope.cubicTo(36, 56, 24, 50, 24, 36);
              envelope.cubicTo(24, 6, 76, 6, 76, 36);
              envelope.cubicTo(76, 50, 64, 56, 57, 66);
              envelope.closeSubpath();
              c.path(envelope, c.ink);
              c.clipped(envelope, [&] {
                  c.oval(50, 38, 14, 34, c.accent);
                  c.oval(50, 38, 5, 34, c.ink);
              });
              c.line({{44, 67}, {46, 76}}, 1.8, brown);
              c.line({{56, 67}, {54, 76}}, 1.8, brown);
              c.box(42.5, 75, 15, 11, 3, brown);
          }},
    Glyph{"kite",
          [](C& c) {
              QPainterPath tail(QPointF(44, 62));
              tail.cubicTo(36, 74, 28, 66, 26, 76);
              tail.cubicTo(24, 84, 18, 82, 15, 88);
              c.stroke(tail, 2.4, c.ink);
              c.turned(25, 55, 42, [&] {
                  c.shape({{55, 12}, {76, 36}, {55, 36}}, c.accent);
                  c.shape({{55, 12}, {34, 36}, {55, 36}}, c.ink);
                  c.shape({{34, 36}, {55, 36}, {55, 70}}, c.accent);
                  c.shape({{76, 36}, {55, 36}, {55, 70}}, c.ink);
              });
          }},
    Glyph{"rocket",
          [](C& c) {
              c.turned(40, 50, 50, [&] {
                  c.mirrored([&] { c.shape({{37, 54}, {24, 70}, {37, 70}}, c.accent, 4); });
                  QPainterPath fire(QPointF(42, 72));
                  fire.cubicTo(40, 84, 48, 86, 50, 96);
                  fire.cubicTo(52, 86, 60, 84, 58, 72);
                  c.path(fire, gold);
                  QPainterPath hull(QPointF(50, 6));
                  hull.cubicTo(68, 22, 66, 52, 61, 74);
                  hull.lineTo(39, 74);
                  hull.cubicTo(34, 52, 32, 22, 50, 6);
                  c.path(hull, c.ink);
                  c.disc(50, 38, 8.5, c.accent);
                  c.disc(50, 38, 5.4, QColor(0xbf, 0xe6, 0xff));
              });
          }},
    Glyph{"lighthouse",
          [](C& c) {
              c.shape({{58, 30}, {92, 18}, {92, 44}}, QColor(255, 240, 170, 150));
              c.shape({{42, 30}, {8, 18}, {8, 44}}, QColor(255, 240, 170, 150));
              QPainterPath tower(QPointF(42, 36));
              tower.lineTo(58, 36);
              tower.lineTo(64, 82);
              tower.lineTo(36, 82);
              tower.closeSubpath();
              c.path(tower, c.ink);
              c.clipped(tower, [&] {
                  c.box(30, 44, 40, 11, 0, c.accent);
                  c.box(30, 66, 40, 11, 0, c.accent);
              });
              c.box(38, 33, 24, 5, 2, dark);
              c.box(44, 23, 12, 11, 2, gold);
              c.wedge(50, 24, 9, 0, 180, c.accent);
          }},
    Glyph{"bridge",
          [](C& c) {
              c.box(12, 38, 76, 12, 3, c.ink);
              for (int i = 0; i < 3; ++i) {
                  const double x = 16 + 24.0 * i;
                  QPainterPath pier(QPointF(x - 3, 48));
                  pier.lineTo(x - 3, 78);
                  pier.lineTo(x + 3, 78);
                  pier.arcTo(QRectF(x + 3, 54, 14, 34), 180, -180);
                  pier.lineTo(x + 23, 78);
                  pier.lineTo(x + 23, 48);
                  pier.closeSubpath();
                  c.path(pier, c.ink);
              }
              c.line({{14, 33}, {86, 33}}, 3.4, c.accent);
          }},
    Glyph{"tram",
          [](C& c) {
              c.line({{38, 12}, {62, 12}}, 3.6, pale);
              c.line({{50, 12}, {50, 22}}, 3.6, pale);
              c.box(26, 21, 48, 56, 12, c.ink);
              c.box(32, 32, 36, 19, 5, QColor(0x2c, 0x3f, 0x5c));
              c.box(40, 24.5, 20, 4.4, 2.2, c.accent);
              c.disc(36, 64, 4.4, gold);
              c.disc(64, 64, 4.4, gold);
              c.box(26, 54, 48, 4, 0, c.accent);
              c.line({{34, 81}, {28, 88}}, 3.6, pale);
              c.line({{66, 81}, {72, 88}}, 3.6, pale);
          }},
    Glyph{"bicycle",
          [](C& c) {
              c.ring(28, 62, 15, 4, c.ink);
              c.ring(72, 62, 15, 4, c.ink);
              c.line({{28, 62}, {40, 40}, {62, 40}, {50, 62}, {28, 62}}, 4, c.accent);
              c.line({{40, 40}, {50, 62}}, 4, c.accent);
              c.line({{72, 62}, {60, 32}, {68, 30}}, 4, c.accent);
              c.line({{34, 34}, {44, 34}}, 5, c.ink);
          }},
    Glyph{"sailboat",
          [](C& c) {
              c.line({{50, 14}, {50, 68}}, 3.4, brown);
              c.shape({{54, 18}, {80, 60}, {54, 60}}, c.ink, 2);
              c.shape({{46, 26}, {46, 60}, {25, 60}}, c.accent, 2);
              QPainterPath hull(QPointF(18, 67));
              hull.lineTo(84, 67);
              hull.cubicTo(78, 80, 72, 84, 62, 84);
              hull.lineTo(36, 84);
              hull.cubicTo(28, 84, 22, 78, 18, 67);
              c.path(hull, c.ink);
          }},
    Glyph{"anchor",
          [](C& c) {
              c.ring(50, 24, 7, 5, c.ink);
              c.line({{50, 31}, {50, 80}}, 6, c.ink);
              c.line({{34, 42}, {66, 42}}, 6, c.accent);
              c.arc(50, 54, 27, 6, 200, 140, c.ink);
              c.shape({{18, 56}, {34, 58}, {22, 70}}, c.ink, 2);
              c.shape({{82, 56}, {66, 58}, {78, 70}}, c.ink, 2);
          }},
    Glyph{"dice",
          [](C& c) {
              c.turned(14, 60, 58, [&] {
                  c.box(40, 40, 42, 42, 9, c.accent);
                  for (const auto& [x, y] : {std::pair{51, 51}, {71, 51}, {61, 61}, {51, 71}, {71, 71}})
                      c.disc(x, y, 3.8, Qt::white);
              });
              c.lift();
              c.turned(-12, 38, 38, [&] {
                  c.box(17, 17, 40, 40, 9, c.ink);
                  for (const auto& [x, y] : {std::pair{28, 28}, {37, 37}, {46, 46}})
                      c.disc(x, y, 3.8, dark);
              });
          }},
    Glyph{"cards",
          [](C& c) {
              c.turned(-16, 50, 80, [&] { c.box(24, 22, 38, 54, 6, pale); });
              c.lift();
              c.turned(9, 50, 80, [&] {
                  c.box(36, 20, 40, 58, 6, Qt::white);
                  c.path(C::heart(56, 49, 20), c.accent);
                  c.path(C::heart(43, 28.5, 6), c.accent);
                  c.turned(180, 69, 69.5, [&] { c.path(C::heart(69, 69.5, 6), c.accent); });
              });
          }},
    Glyph{"rook",
          [](C& c) {
              c.shape({{38, 38}, {62, 38}, {66, 70}, {34, 70}}, c.ink, 3);
              c.box(26, 70, 48, 12, 4, c.ink);
              c.box(28, 28, 44, 13, 3, c.ink);
              for (const double x : {28.0, 44.5, 61.0})
                  c.box(x, 17, 11, 15, 2, c.ink);
              c.line({{33, 63}, {67, 63}}, 3, c.accent);
          }},
    Glyph{"knight",
          [](C& c) {
              c.box(24, 72, 52, 11, 4, c.ink);
              QPainterPath horse(QPointF(32, 72));
              horse.cubicTo(32, 58, 46, 54, 46, 44);
              horse.cubicTo(40, 50, 34, 50, 30, 52);
              horse.cubicTo(24, 54, 20, 48, 24, 43);
              horse.lineTo(36, 26);
              horse.lineTo(38, 16);
              horse.lineTo(47, 22);
              horse.cubicTo(66, 24, 74, 44, 70, 72);
              horse.closeSubpath();
              c.path(horse, c.ink);
              c.disc(42, 33, 2.8, c.accent);
              c.arc(46, 50, 18, 3, -20, 75, c.accent);
          }},
    Glyph{"pinball",
          [](C& c) {
              c.disc(50, 50, 32, c.ink);
              QPainterPath ball;
              ball.addEllipse(QPointF(50, 50), 32, 32);
              c.clipped(ball, [&] { c.box(10, 42, 80, 16, 0, c.accent); });
              c.disc(50, 50, 11, Qt::white);
              c.star(50, 50, 8, 3.6, 5, c.accent, 1);
              c.oval(40, 29, 9, 5, QColor(255, 255, 255, 150));
          }},
    Glyph{"ghost",
          [](C& c) {
              for (int y = 0; y < 8; ++y) {
                  static constexpr std::array<unsigned, 8> rows{0x3c, 0x7e, 0xff, 0x99,
                                                                0x99, 0xff, 0xff, 0xdb};
                  for (int x = 0; x < 8; ++x)
                      if (rows[std::size_t(y)] >> (7 - x) & 1)
                          c.box(18 + 8.0 * x, 18 + 8.0 * y, 8.2, 8.2, 0, y < 4 ? c.ink : c.accent);
              }
          }},
    Glyph{"maze",
          [](C& c) {
              c.arc(50, 50, 32, 6, 110, 310, c.ink);
              c.arc(50, 50, 20, 6, -60, 300, c.ink);
              c.arc(50, 50, 32, 6, 60, 20, c.ink);
              c.line({{50, 30}, {50, 18}}, 6, c.ink);
              c.lift();
              c.disc(50, 50, 8, c.accent);
          }},
    Glyph{"trophy",
          [](C& c) {
              c.mirrored([&] { c.arc(30, 36, 12, 5, 90, 190, c.accent); });
              QPainterPath cup(QPointF(30, 20));
              cup.lineTo(70, 20);
              cup.cubicTo(70, 48, 64, 58, 50, 60);
              cup.cubicTo(36, 58, 30, 48, 30, 20);
              c.path(cup, c.accent);
              c.box(46, 58, 8, 14, 1, c.accent);
              c.box(33, 71, 34, 10, 4, c.accent);
              c.star(50, 38, 10, 4.5, 5, c.ink, 1.5);
          }},
    Glyph{"burger",
          [](C& c) {
              QPainterPath bun(QPointF(18, 46));
              bun.cubicTo(18, 14, 82, 14, 82, 46);
              bun.closeSubpath();
              c.path(bun, QColor(0xf0, 0xa8, 0x4c));
              c.box(15, 47, 70, 8, 4, QColor(0x6f, 0xcf, 0x57));
              c.box(17, 54, 66, 11, 5, QColor(0x8b, 0x4a, 0x2b));
              c.shape({{24, 54}, {66, 54}, {45, 66}}, gold, 2);
              c.box(18, 66, 64, 14, 7, QColor(0xf0, 0xa8, 0x4c));
              for (const auto& [x, y] : {std::pair{38, 32}, {52, 27}, {64, 35}})
                  c.oval(x, y, 2.6, 1.7, QColor(0xff, 0xee, 0xc4));
          }},
    Glyph{"carrot",
          [](C& c) {
              c.turned(38, 50, 50, [&] {
                  for (const double x : {38.0, 50.0, 62.0})
                      c.path(C::leaf({50, 32}, {x, 4}, 0.34), green);
                  QPainterPath root(QPointF(36, 36));
                  root.cubicTo(34, 24, 66, 24, 64, 36);
                  root.cubicTo(62, 60, 54, 82, 50, 92);
                  root.cubicTo(46, 82, 38, 60, 36, 36);
                  c.path(root, c.accent);
                  c.line({{40, 46}, {48, 46}}, 2.4, QColor(0, 0, 0, 50));
                  c.line({{54, 58}, {60, 58}}, 2.4, QColor(0, 0, 0, 50));
              });
          }},
    Glyph{"spade",
          [](C& c) {
              c.turned(180, 50, 44, [&] { c.path(C::heart(50, 44, 52), c.ink); });
              c.shape({{50, 54}, {60, 82}, {40, 82}}, c.ink, 3);
          }},
};

} // namespace

std::span<const Glyph> playGlyphs() { return glyphs; }

} // namespace tessellar::sample
