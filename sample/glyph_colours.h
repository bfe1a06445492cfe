#pragma once

#include <QColor>

/// The colours that many pictures share, beside the two that each icon chooses.
namespace tessellar::sample::colours {

inline const QColor dark(0x22, 0x28, 0x3a);
inline const QColor grey(0x8c, 0x94, 0xa6);
inline const QColor pale(0xdd, 0xe3, 0xee);
inline const QColor wood(0xc9, 0x8a, 0x52);
inline const QColor brown(0x8a, 0x5a, 0x3a);
inline const QColor gold(0xff, 0xcb, 0x45);
inline const QColor red(0xff, 0x5a, 0x50);
inline const QColor green(0x45, 0xc9, 0x6c);
inline const QColor blue(0x3d, 0x8b, 0xff);
inline const QColor violet(0xa6, 0x6b, 0xff);

} // namespace tessellar::sample::colours
