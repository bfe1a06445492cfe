#include "sample/glyph_canvas.h"
#include "sample/glyph_colours.h"

#include <array>
#include <tuple>

namespace tessellar::sample {

namespace {

using C = GlyphCanvas;
using namespace colours;

constexpr std::array glyphs{
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

std::span<const Glyph> toolsGlyphs() { return glyphs; }

} // namespace tessellar::sample
