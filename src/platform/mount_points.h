#pragma once

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tessellar {

/// The current mount points, as host paths with links resolved.
QList<QByteArray> mountPoints();

/// Whether a volume is mounted at or below a folder: renaming the folder would move the volume along.
/// `hostPath` may contain links.
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
