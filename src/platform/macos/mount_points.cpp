#include "platform/mount_points.h"

#include <sys/mount.h>
#include <sys/param.h>

#include <algorithm>

namespace tessellar {

QList<QByteArray> mountPoints() {
    QList<QByteArray> points;
    const int count = ::getfsstat(nullptr, 0, MNT_NOWAIT);
    if (count <= 0)
        return points;
    QList<struct statfs> volumes(count);
    const int given =
        ::getfsstat(volumes.data(), int(volumes.size() * qsizetype(sizeof(struct statfs))), MNT_NOWAIT);
    for (int i = 0; i < std::min(given, count); ++i)
        points.append(volumes[i].f_mntonname);
    return points;
}

} // namespace tessellar
