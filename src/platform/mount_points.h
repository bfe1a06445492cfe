#pragma once

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tessellar {

/// Where volumes are mounted on this machine now, as host paths without links.
QList<QByteArray> mountPoints();

/// Whether a volume is mounted at a folder or anywhere below it: renaming such a folder takes the
/// volume along. `hostPath` may lead through links.
inline bool holdsMountPoint(const QByteArray& hostPath) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(hostPath.constData(), nullptr),
                                                           &std::free);
    const QByteArray folder = real ? QByteArray(real.get()) : hostPath;
    const QList<QByteArray> points = mountPoints();
    return std::ranges::any_of(points, [&](const QByteArray& point) {
        return point == folder || point.startsWith(folder + '/');
    });
}

} // namespace tessellar
