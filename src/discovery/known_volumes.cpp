#include "discovery/known_volumes.h"

namespace tessellar {

std::optional<QString> volumeMountPoint(const QString& path) {
    static const QString volumes = QStringLiteral("/Volumes/");
    if (!path.startsWith(volumes) || path.size() == volumes.size())
        return std::nullopt;
    const qsizetype end = path.indexOf(u'/', volumes.size());
    return end < 0 ? path : path.first(end);
}

QString VolumeFinder::rootOf(const QString& folder) {
    if (folder == u"/" || volumeMountPoint(folder) == folder)
        return folder;
    if (const auto known = _roots.constFind(folder); known != _roots.constEnd())
        return *known;
    const QString parent = FileSystem::parent(folder);
    const auto device = deviceOf(folder);
    const QString root = device && device != deviceOf(parent) ? folder : rootOf(parent);
    _roots.insert(folder, root);
    return root;
}

std::optional<QString> VolumeFinder::identityOf(const QString& root) const {
    const auto status = _files.status(root);
    if (!status || status->type != FileType::directory)
        return std::nullopt;
    // A volume contains at least the system's own files. An empty folder is a bare mount point, which
    // may happen to have another's inode and date.
    if (volumeMountPoint(root) == root)
        if (const auto entries = _files.entries(root); !entries || entries->isEmpty())
            return std::nullopt;
    const auto parent = _files.status(FileSystem::parent(root));
    // Not the device number, which changes with every mount.
    return QStringLiteral("%1 %2%3")
        .arg(status->inode)
        .arg(status->created ? status->created->toIso8601() : QString(),
             parent && parent->device != status->device ? QStringLiteral(" mounted") : QString());
}

std::optional<std::uint64_t> VolumeFinder::deviceOf(const QString& folder) {
    if (const auto known = _devices.constFind(folder); known != _devices.constEnd())
        return *known;
    const auto status = _files.status(folder);
    if (!status)
        return std::nullopt;
    _devices.insert(folder, status->device);
    return status->device;
}

} // namespace tessellar
