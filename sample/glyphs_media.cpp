#include "sample/glyph_canvas.h"
#include "sample/glyph_colours.h"

#include <array>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;
using namespace colours;

constexpr std::array glyphs{
    Glyph{"lines",
          [](C& c) {
              for (int i = 0; i < 4; ++i)
                  c.line({{24, 42.0 + 12 * i}, {i == 3 ? 54.0 : 76.0, 42.0 + 12 * i}}, 3.4, c.ink);
          }},
    Glyph{"checklist",
          [](C& c) {
              for (int i = 0; i < 3; ++i) {
                  const double y = 30 + 20.0 * i;
                  const QColor colour = std::array{blue, red, gold}[std::size_t(i)];
                  c.ring(28, y, 6.2, 3, colour);
                  if (i < 2)
                      c.disc(28, y, 3.6, colour);
                  c.line({{44, y}, {78, y}}, 4.6, c.ink);
              }
          }},
    Glyph{"check",
          [](C& c) {
              c.disc(50, 50, 33, c.ink);
              c.lift();
              c.line({{35, 51}, {46, 62}, {67, 39}}, 8, c.accent);
          }},
    Glyph{"bubble",
          [](C& c) {
              c.oval(50, 46, 35, 28, c.ink);
              c.shape({{28, 62}, {44, 68}, {24, 82}}, c.ink, 3);
              for (int i = 0; i < 3; ++i)
                  c.disc(35 + 15.0 * i, 46, 4.6, c.accent);
          }},
    Glyph{"bubbles",
          [](C& c) {
              c.box(14, 20, 50, 36, 12, c.accent);
              c.shape({{22, 50}, {38, 54}, {20, 67}}, c.accent, 2);
              c.lift();
              c.box(36, 42, 50, 34, 12, c.ink);
              c.shape({{78, 68}, {62, 74}, {80, 86}}, c.ink, 2);
          }},
    Glyph{"translate",
          [](C& c) {
              c.box(15, 18, 44, 44, 10, c.accent);
              c.line({{26, 52}, {37, 28}, {48, 52}}, 4.6, Qt::white);
              c.line({{30.5, 44}, {43.5, 44}}, 4, Qt::white);
              c.lift();
              c.box(42, 40, 43, 43, 10, c.ink);
              c.line({{51, 52}, {76, 52}}, 4, dark);
              c.line({{63.5, 47}, {63.5, 52}}, 4, dark);
              QPainterPath cross(QPointF(71, 53));
              cross.cubicTo(69, 64, 60, 71, 53, 74);
              c.stroke(cross, 4, dark);
              QPainterPath other(QPointF(56, 57));
              other.cubicTo(60, 66, 66, 71, 74, 74);
              c.stroke(other, 4, dark);
          }},
    Glyph{"map",
          [](C& c) {
              c.shape({{18, 26}, {40, 19}, {40, 74}, {18, 81}}, QColor(0xbf, 0xe8, 0xa8), 3);
              c.shape({{40, 19}, {62, 26}, {62, 81}, {40, 74}}, QColor(0xe9, 0xf4, 0xd2), 3);
              c.shape({{62, 26}, {83, 19}, {83, 74}, {62, 81}}, QColor(0xbf, 0xe8, 0xa8), 3);
              QPainterPath road(QPointF(20, 66));
              road.cubicTo(34, 50, 44, 74, 58, 58);
              c.stroke(road, 4, Qt::white);
              c.lift();
              c.turned(180, 62, 42, [&] { c.path(C::drop(62, 46, 13), c.accent); });
              c.disc(62, 38, 5, Qt::white);
          }},
    Glyph{"pin",
          [](C& c) {
              c.oval(50, 82, 16, 4, QColor(0, 0, 0, 60));
              c.turned(180, 50, 46, [&] { c.path(C::drop(50, 54, 22), c.ink); });
              c.disc(50, 38, 9, c.accent);
          }},
    Glyph{"compass",
          [](C& c) {
              c.disc(50, 50, 35, c.ink);
              c.ring(50, 50, 29, 1.6, pale);
              for (int i = 0; i < 36; ++i)
                  c.turned(10 * i, 50, 50, [&] {
                      c.line({{50, 20}, {50, i % 3 ? 22.0 : 25.0}}, 1, grey);
                  });
              c.lift();
              c.turned(42, 50, 50, [&] {
                  c.shape({{50, 20}, {57, 50}, {43, 50}}, red);
                  c.shape({{50, 80}, {57, 50}, {43, 50}}, c.accent);
              });
              c.disc(50, 50, 3, Qt::white);
          }},
    Glyph{"globe",
          [](C& c) {
              c.disc(50, 50, 33, c.ink);
              QPainterPath world;
              world.addEllipse(QPointF(50, 50), 33, 33);
              c.clipped(world, [&] {
                  QPainterPath meridian;
                  meridian.addEllipse(QPointF(50, 50), 14, 33);
                  c.stroke(meridian, 3, c.accent);
                  c.line({{17, 50}, {83, 50}}, 3, c.accent);
                  c.line({{50, 17}, {50, 83}}, 3, c.accent);
                  QPainterPath north(QPointF(20, 32));
                  north.quadTo(50, 42, 80, 32);
                  c.stroke(north, 3, c.accent);
                  QPainterPath south(QPointF(20, 68));
                  south.quadTo(50, 58, 80, 68);
                  c.stroke(south, 3, c.accent);
              });
          }},
    Glyph{"note",
          [](C& c) {
              c.shape({{40, 28}, {74, 20}, {74, 31}, {40, 39}}, c.ink, 2);
              c.line({{41, 32}, {41, 70}}, 5, c.ink);
              c.line({{73, 25}, {73, 62}}, 5, c.ink);
              c.turned(-18, 33, 71, [&] { c.oval(33, 71, 11, 8.4, c.ink); });
              c.turned(-18, 65, 63, [&] { c.oval(65, 63, 11, 8.4, c.ink); });
          }},
    Glyph{"waveform",
          [](C& c) {
              static constexpr std::array heights{12.0, 26.0, 44.0, 60.0, 34.0, 50.0, 28.0, 14.0};
              for (std::size_t i = 0; i < heights.size(); ++i)
                  c.line({{19.0 + 9 * double(i), 50 - heights[i] / 2},
                          {19.0 + 9 * double(i), 50 + heights[i] / 2}},
                         5, i % 3 == 1 ? c.accent : c.ink);
          }},
    Glyph{"sliders",
          [](C& c) {
              for (int i = 0; i < 3; ++i) {
                  const double x = 29 + 21.0 * i;
                  const double y = std::array{62.0, 36.0, 52.0}[std::size_t(i)];
                  c.line({{x, 20}, {x, 80}}, 4.4, QColor(255, 255, 255, 120));
                  c.line({{x, y}, {x, 80}}, 4.4, c.accent);
                  c.box(x - 9, y - 6.5, 18, 13, 5, c.ink);
              }
          }},
    Glyph{"piano",
          [](C& c) {
              c.box(16, 28, 68, 50, 6, dark);
              for (int i = 0; i < 5; ++i)
                  c.box(19.5 + 12.4 * i, 34, 11.4, 41, 2.4, Qt::white);
              for (const int i : {0, 1, 3})
                  c.box(27.5 + 12.4 * i, 34, 7.4, 24, 1.6, dark);
              c.box(16, 28, 68, 6, 2, c.accent);
          }},
    Glyph{"headphones",
          [](C& c) {
              c.arc(50, 54, 29, 6, 0, 180, c.ink);
              c.box(14, 50, 17, 28, 8, c.accent);
              c.box(69, 50, 17, 28, 8, c.accent);
          }},
    Glyph{"radio",
          [](C& c) {
              c.line({{34, 36}, {70, 16}}, 3.4, pale);
              c.box(15, 36, 70, 44, 8, c.ink);
              c.disc(34, 58, 14, dark);
              c.disc(34, 58, 8, c.accent);
              for (int i = 0; i < 3; ++i)
                  c.line({{56, 48.0 + 9 * i}, {77, 48.0 + 9 * i}}, 3.4, grey);
          }},
    Glyph{"bars",
          [](C& c) {
              static constexpr std::array heights{22.0, 36.0, 30.0, 52.0};
              for (std::size_t i = 0; i < heights.size(); ++i)
                  c.box(21 + 15.5 * double(i), 78 - heights[i], 11, heights[i], 3.4,
                        i == 3 ? c.accent : c.ink);
              c.line({{24, 46}, {42, 32}, {56, 37}, {74, 18}}, 3.4, c.accent);
          }},
    Glyph{"stocks",
          [](C& c) {
              c.line({{16, 66}, {30, 54}, {40, 62}, {54, 36}, {64, 48}, {84, 24}}, 5, c.ink);
              c.line({{16, 80}, {84, 80}}, 2, QColor(255, 255, 255, 80));
              c.disc(84, 24, 5.4, c.accent);
          }},
    Glyph{"pie",
          [](C& c) {
              c.wedge(48, 52, 32, 0, 120, c.ink);
              c.wedge(48, 52, 32, 120, 160, c.accent);
              c.wedge(48, 52, 32, 280, 50, gold);
              c.wedge(48, 52, 32, 330, 30, red);
              c.cut([&] { c.disc(48, 52, 13, c.ink); });
          }},
    Glyph{"slides",
          [](C& c) {
              c.box(15, 22, 70, 46, 6, c.ink);
              c.wedge(38, 46, 14, 90, 270, c.accent);
              c.wedge(40, 44, 14, 0, 90, gold);
              for (int i = 0; i < 3; ++i)
                  c.line({{60, 37.0 + 9 * i}, {76, 37.0 + 9 * i}}, 3.4, pale);
              c.line({{50, 68}, {50, 76}}, 4, c.ink);
              c.line({{38, 82}, {50, 74}, {62, 82}}, 4, c.ink);
          }},
    Glyph{"grid",
          [](C& c) {
              c.box(18, 20, 64, 60, 7, Qt::white);
              QPainterPath sheet;
              sheet.addRoundedRect(QRectF(18, 20, 64, 60), 7, 7);
              c.clipped(sheet, [&] {
                  c.box(18, 20, 64, 13, 0, c.accent);
                  c.box(18, 33, 15, 47, 0, c.accent.lighter(165));
                  for (int i = 1; i < 4; ++i)
                      c.line({{17 + 16.0 * i, 33}, {17 + 16.0 * i, 80}}, 1.4, pale);
                  for (int i = 1; i < 4; ++i)
                      c.line({{18, 33 + 12.0 * i}, {82, 33 + 12.0 * i}}, 1.4, pale);
              });
              c.box(50.5, 46.5, 14, 9.5, 1.5, c.accent);
          }},
    Glyph{"prompt",
          [](C& c) {
              c.line({{24, 32}, {42, 48}, {24, 64}}, 6.6, c.ink);
              c.line({{48, 68}, {74, 68}}, 6.6, c.accent);
          }},
    Glyph{"braces",
          [](C& c) {
              c.mirrored([&] {
                  QPainterPath brace(QPointF(40, 22));
                  brace.cubicTo(24, 22, 36, 48, 20, 50);
                  brace.cubicTo(36, 52, 24, 78, 40, 78);
                  c.stroke(brace, 6, c.ink);
              });
              for (int i = 0; i < 3; ++i)
                  c.disc(40 + 10.0 * i, 58, 3.2, c.accent);
          }},
    Glyph{"branch",
          [](C& c) {
              c.line({{34, 28}, {34, 72}}, 5.4, c.ink);
              QPainterPath twig(QPointF(34, 62));
              twig.cubicTo(34, 48, 66, 54, 66, 36);
              c.stroke(twig, 5.4, c.ink);
              c.lift();
              c.disc(34, 25, 9, c.accent);
              c.disc(34, 75, 9, c.accent);
              c.disc(66, 33, 9, c.accent);
          }},
    Glyph{"hexagon",
          [](C& c) {
              c.star(50, 50, 37, 32, 3, c.ink, 5, 30);
              c.star(50, 50, 37, 32, 3, c.ink, 5, 90);
              c.star(50, 50, 20, 17.3, 3, c.accent, 3, 30);
              c.star(50, 50, 20, 17.3, 3, c.accent, 3, 90);
          }},
    Glyph{"cube",
          [](C& c) {
              c.shape({{50, 17}, {80, 33}, {50, 49}, {20, 33}}, c.ink);
              c.shape({{20, 36}, {48.5, 51.5}, {48.5, 85}, {20, 69}}, c.accent);
              c.shape({{80, 36}, {51.5, 51.5}, {51.5, 85}, {80, 69}}, c.accent.darker(125));
          }},
    Glyph{"blocks",
          [](C& c) {
              c.box(20, 50, 29, 31, 6, red);
              c.box(52, 50, 29, 31, 6, blue);
              c.box(36, 17, 29, 31, 6, gold);
              c.line({{45, 40}, {50.5, 25}, {56, 40}}, 3.8, Qt::white);
              c.line({{47.4, 35.5}, {53.6, 35.5}}, 3, Qt::white);
              c.ring(34.5, 65.5, 7, 3.8, Qt::white);
              c.star(66.5, 66, 9.5, 4.4, 5, Qt::white, 1.5);
          }},
    Glyph{"mosaic",
          [](C& c) {
              const std::array colours{c.accent, c.ink, gold,  c.ink,   red,
                                       c.accent, blue,  c.ink, c.accent};
              for (int i = 0; i < 9; ++i) {
                  const int row = i / 3;
                  c.box(19 + 21.4 * (i % 3), 19 + 21.4 * row, 19, 19, 4, colours[std::size_t(i)]);
              }
          }},
    Glyph{"puzzle",
          [](C& c) {
              c.box(22, 34, 46, 46, 6, c.ink);
              c.disc(45, 31, 10, c.ink);
              c.disc(71, 57, 10, c.ink);
              c.cut([&] { c.disc(45, 79, 9, c.ink), c.disc(23, 57, 9, c.ink); });
          }},
    Glyph{"nodes",
          [](C& c) {
              for (const auto& [x, y] : {std::pair{24, 28}, {78, 34}, {28, 76}, {74, 74}})
                  c.line({{50, 52}, {double(x), double(y)}}, 4, c.ink);
              c.lift();
              c.disc(24, 28, 9, gold);
              c.disc(78, 34, 10, green);
              c.disc(28, 76, 10, red);
              c.disc(74, 74, 8, blue);
              c.disc(50, 52, 14, c.ink);
          }},
    Glyph{"family",
          [](C& c) {
              c.line({{50, 32}, {50, 48}, {28, 48}, {28, 66}}, 4, c.ink);
              c.line({{50, 48}, {72, 48}, {72, 66}}, 4, c.ink);
              c.box(38, 18, 24, 20, 6, c.accent);
              c.box(16, 62, 24, 20, 6, c.ink);
              c.box(60, 62, 24, 20, 6, c.ink);
          }},
    Glyph{"kanban",
          [](C& c) {
              for (int i = 0; i < 3; ++i) {
                  const double x = 17 + 23.0 * i;
                  c.box(x, 20, 20, 60, 5, QColor(255, 255, 255, 90));
                  const int cards = std::array{3, 1, 2}[std::size_t(i)];
                  for (int k = 0; k < cards; ++k)
                      c.box(x + 2.5, 23 + 17.0 * k, 15, 14, 3, (i + k) % 3 == 1 ? c.accent : c.ink);
              }
          }},
};

} // namespace

std::span<const Glyph> mediaGlyphs() { return glyphs; }

} // namespace tessellar::sample
