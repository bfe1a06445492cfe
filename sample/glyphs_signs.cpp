#include "sample/glyph_canvas.h"
#include "sample/glyph_colours.h"

#include <array>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;
using namespace colours;

constexpr std::array glyphs{
    Glyph{"shield",
          [](C& c) {
              QPainterPath shield(QPointF(50, 15));
              shield.cubicTo(60, 22, 70, 25, 80, 25);
              shield.cubicTo(81, 56, 72, 75, 50, 86);
              shield.cubicTo(28, 75, 19, 56, 20, 25);
              shield.cubicTo(30, 25, 40, 22, 50, 15);
              c.path(shield, c.ink);
              c.clipped(shield, [&] { c.box(50, 10, 40, 80, 0, c.accent); });
          }},
    Glyph{"gate",
          [](C& c) {
              QPainterPath arch(QPointF(18, 82));
              arch.lineTo(18, 44);
              arch.cubicTo(18, 8, 82, 8, 82, 44);
              arch.lineTo(82, 82);
              arch.closeSubpath();
              c.path(arch, c.ink);
              QPainterPath inner(QPointF(29, 84));
              inner.lineTo(29, 46);
              inner.cubicTo(29, 22, 71, 22, 71, 46);
              inner.lineTo(71, 84);
              inner.closeSubpath();
              c.path(inner, dark);
              c.clipped(inner, [&] {
                  for (int i = 0; i < 4; ++i)
                      c.line({{34.5 + 10.4 * i, 20}, {34.5 + 10.4 * i, 72}}, 3.6, c.accent);
                  c.line({{20, 44}, {80, 44}}, 3.6, c.accent);
                  c.line({{20, 60}, {80, 60}}, 3.6, c.accent);
              });
          }},
    Glyph{"cloudArrows",
          [](C& c) {
              c.path(C::cloud(50, 72, 70), c.ink);
              c.lift();
              c.line({{43, 66}, {43, 48}}, 4.6, c.accent);
              c.line({{36.5, 54}, {43, 47}, {49.5, 54}}, 4.6, c.accent);
              c.line({{60, 48}, {60, 66}}, 4.6, c.accent);
              c.line({{53.5, 60}, {60, 67}, {66.5, 60}}, 4.6, c.accent);
          }},
    Glyph{"paperPlane",
          [](C& c) {
              c.shape({{14, 48}, {86, 18}, {66, 80}, {46, 62}}, c.ink, 3);
              c.shape({{46, 62}, {86, 18}, {40, 55}}, c.accent);
              c.shape({{40, 56}, {46, 62}, {42, 82}}, c.accent.darker(118), 2);
          }},
    Glyph{"play",
          [](C& c) {
              c.disc(50, 50, 34, QColor(255, 255, 255, 70));
              c.lift();
              c.shape({{41, 33}, {41, 67}, {69, 50}}, c.ink, 7);
          }},
    Glyph{"heartbeat",
          [](C& c) {
              c.path(C::heart(50, 52, 56), c.ink);
              c.line({{24, 52}, {39, 52}, {45, 38}, {54, 64}, {60, 52}, {76, 52}}, 4.2, c.accent);
          }},
    Glyph{"bookmark",
          [](C& c) {
              c.shape({{32, 18}, {68, 18}, {68, 80}, {50, 65}, {32, 80}}, c.ink, 5);
              c.star(50, 41, 10, 4.6, 5, c.accent, 2);
          }},
    Glyph{"sundial",
          [](C& c) {
              c.arc(50, 66, 34, 5, 0, 180, c.ink);
              for (int i = 1; i < 6; ++i)
                  c.turned(-90 + 30 * i, 50, 66, [&] { c.line({{50, 42}, {50, 46}}, 3, c.ink); });
              c.shape({{34, 66}, {64, 38}, {60, 66}}, c.accent, 3);
              c.line({{14, 72}, {86, 72}}, 5, c.ink);
          }},
    Glyph{"gauge",
          [](C& c) {
              c.arc(50, 56, 31, 9, 160, 50, green.lighter(110));
              c.arc(50, 56, 31, 9, 90, 56, gold);
              c.arc(50, 56, 31, 9, -30, 106, c.ink);
              c.arc(50, 56, 31, 9, 178, 32, green);
              c.lift();
              c.turned(32, 50, 56, [&] { c.shape({{46.6, 56}, {53.4, 56}, {50, 28}}, c.accent, 2); });
              c.disc(50, 56, 7, c.accent);
          }},
    Glyph{"pulse",
          [](C& c) {
              c.line({{12, 54}, {32, 54}, {41, 26}, {55, 78}, {64, 54}, {88, 54}}, 5.4, c.accent);
          }},
    Glyph{"radar",
          [](C& c) {
              for (const double r : {12.0, 23.0, 34.0})
                  c.ring(50, 50, r, 2.4, c.ink);
              c.wedge(50, 50, 34, 20, 60,
                      QColor(c.accent.red(), c.accent.green(), c.accent.blue(), 130));
              c.line({{50, 50}, {61.6, 18}}, 3, c.accent);
              c.disc(66, 62, 4, c.accent);
              c.disc(38, 36, 3, c.accent);
          }},
    Glyph{"magnifier",
          [](C& c) {
              c.line({{62, 62}, {80, 80}}, 10, c.accent);
              c.disc(43, 43, 25, c.ink);
              c.disc(43, 43, 18, QColor(0xbf, 0xe3, 0xff));
              c.arc(43, 43, 12, 3.4, 100, 70, Qt::white);
          }},
    Glyph{"eye",
          [](C& c) {
              c.path(C::leaf({12, 50}, {88, 50}, 0.62), c.ink);
              c.disc(50, 50, 15, c.accent);
              c.disc(50, 50, 7, dark);
              c.disc(55, 45, 3.4, Qt::white);
          }},
    Glyph{"dropper",
          [](C& c) {
              c.turned(40, 50, 50, [&] {
                  c.box(42, 8, 16, 26, 8, dark);
                  c.box(36, 31, 28, 8, 4, dark);
                  QPainterPath tube(QPointF(43, 39));
                  tube.lineTo(57, 39);
                  tube.lineTo(57, 72);
                  tube.lineTo(50, 86);
                  tube.lineTo(43, 72);
                  tube.closeSubpath();
                  c.path(tube, Qt::white);
                  c.clipped(tube, [&] { c.box(40, 56, 20, 40, 0, c.accent); });
              });
          }},
    Glyph{"frame",
          [](C& c) {
              for (int i = 0; i < 4; ++i)
                  c.turned(90 * i, 50, 50, [&] { c.line({{22, 38}, {22, 22}, {38, 22}}, 5.4, c.ink); });
              c.disc(50, 50, 13, c.accent);
          }},
    Glyph{"antenna",
          [](C& c) {
              for (int i = 0; i < 3; ++i)
                  c.arc(50, 62, 14 + 11.0 * i, 5.4, 45, 90, i == 2 ? c.accent : c.ink);
              c.disc(50, 64, 6, c.ink);
          }},
    Glyph{"console",
          [](C& c) {
              c.box(16, 20, 68, 60, 8, QColor(0xfa, 0xfb, 0xfd));
              const std::array widths{44.0, 30.0, 50.0, 24.0, 38.0};
              for (int i = 0; i < 5; ++i) {
                  c.disc(25, 30.5 + 10 * i, 2.6, i == 1 ? red : i == 3 ? gold : pale);
                  c.line({{32, 30.5 + 10.0 * i}, {32 + widths[std::size_t(i)] * 0.8, 30.5 + 10.0 * i}},
                         3, pale.darker(112));
              }
          }},
    Glyph{"letterA",
          [](C& c) {
              c.shape({{43, 18}, {57, 18}, {82, 80}, {69, 80}, {63, 64}, {37, 64}, {31, 80}, {18, 80}},
                      c.ink, 2);
              c.cut([&] { c.shape({{50, 31}, {59, 54}, {41, 54}}, c.ink, 1); });
          }},
    Glyph{"letterP",
          [](C& c) {
              c.box(32, 18, 13, 64, 3, c.ink);
              c.arc(49, 36.5, 12.5, 12, -90, 180, c.ink);
              c.line({{40, 24}, {49, 24}}, 12, c.ink);
              c.line({{40, 49}, {49, 49}}, 12, c.ink);
          }},
    Glyph{"letterS",
          [](C& c) {
              QPainterPath s(QPointF(67, 31));
              s.cubicTo(60, 17, 33, 20, 34, 36);
              s.cubicTo(35, 52, 68, 46, 68, 64);
              s.cubicTo(68, 82, 38, 84, 31, 68);
              c.stroke(s, 11, c.ink);
          }},
    Glyph{"sigma",
          [](C& c) {
              c.line({{70, 26}, {32, 26}, {52, 50}, {32, 74}, {70, 74}}, 9, c.ink);
          }},
    Glyph{"atom",
          [](C& c) {
              for (int i = 0; i < 3; ++i)
                  c.turned(60 * i, 50, 50, [&] {
                      QPainterPath orbit;
                      orbit.addEllipse(QPointF(50, 50), 36, 13);
                      c.stroke(orbit, 3, c.ink);
                  });
              c.lift();
              c.disc(50, 50, 8, c.accent);
          }},
    Glyph{"battery",
          [](C& c) {
              c.box(14, 33, 64, 34, 9, c.ink);
              c.box(80, 43, 6, 14, 3, c.ink);
              c.box(19, 38, 40, 24, 5, c.accent);
              c.shape({{50, 24}, {36, 53}, {47, 53}, {43, 76}, {60, 45}, {49, 45}}, gold, 2);
          }},
    Glyph{"thermometer",
          [](C& c) {
              c.box(41, 14, 18, 56, 9, c.ink);
              c.disc(50, 70, 16, c.ink);
              c.disc(50, 70, 10.5, c.accent);
              c.line({{50, 36}, {50, 68}}, 7, c.accent);
              for (int i = 0; i < 4; ++i)
                  c.line({{64, 24.0 + 8 * i}, {70, 24.0 + 8 * i}}, 2.6, c.ink);
          }},
    Glyph{"aperture",
          [](C& c) {
              c.disc(50, 50, 34, c.ink);
              const std::array colours{red, gold, green, QColor(0x3c, 0xc6, 0xd8), blue, violet};
              for (int i = 0; i < 6; ++i)
                  c.turned(60 * i, 50, 50, [&] {
                      QPainterPath blade(QPointF(50, 36));
                      blade.lineTo(62.1, 43);
                      blade.lineTo(77, 36);
                      blade.cubicTo(72, 26, 62, 20, 51, 20);
                      blade.closeSubpath();
                      c.path(blade, colours[std::size_t(i)]);
                  });
          }},
    Glyph{"xylophone",
          [](C& c) {
              const std::array colours{red, QColor(0xff, 0x92, 0x3d), gold, green, blue, violet};
              for (int i = 0; i < 6; ++i)
                  c.box(17 + 11.2 * i, 20 + 3.4 * i, 9.6, 60 - 6.8 * i, 3.6, colours[std::size_t(i)]);
              c.lift();
              c.line({{36, 66}, {66, 40}}, 3.4, c.ink);
              c.disc(67, 39, 5.4, c.ink);
          }},
    Glyph{"bolt",
          [](C& c) {
              c.shape({{58, 14}, {26, 55}, {48, 55}, {41, 86}, {74, 42}, {52, 42}}, c.ink, 4);
          }},
    Glyph{"star", [](C& c) { c.star(50, 53, 34, 15.5, 5, c.ink, 6); }},
    Glyph{"infinity",
          [](C& c) {
              QPainterPath loop(QPointF(50, 50));
              loop.cubicTo(60, 36, 84, 32, 84, 50);
              loop.cubicTo(84, 68, 60, 64, 50, 50);
              loop.cubicTo(40, 36, 16, 32, 16, 50);
              loop.cubicTo(16, 68, 40, 64, 50, 50);
              c.stroke(loop, 8, c.ink);
          }},
    Glyph{"arrows",
          [](C& c) {
              c.arc(50, 50, 27, 6.4, 20, 130, c.ink);
              c.arc(50, 50, 27, 6.4, 200, 130, c.accent);
              c.shape({{83, 30}, {82, 50}, {66, 40}}, c.ink, 3);
              c.shape({{17, 70}, {18, 50}, {34, 60}}, c.accent, 3);
          }},
    Glyph{"tip",
          [](C& c) {
              c.disc(50, 30, 7.5, c.ink);
              c.line({{43, 47}, {51, 47}, {51, 76}}, 8, c.ink);
              c.line({{40, 76}, {62, 76}}, 8, c.ink);
          }},
};

} // namespace

std::span<const Glyph> signsGlyphs() { return glyphs; }

} // namespace tessellar::sample
