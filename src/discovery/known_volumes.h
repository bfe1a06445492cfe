#pragma once

#include "model/items.h"
#include "platform/file_system.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace tessellar {

/// A mounted volume: its mount point, and an identity that tells it from other volumes there and from
/// the bare mount point.
struct MountedVolume {
    QString root;
    QString identity;

    bool operator==(const MountedVolume&) const = default;
};

/// A volume and the applications seen on it: they count as gone only after the same volume has been
/// scanned again.
struct KnownVolume {
    QString root;
    QString identity;
    QStringList applications; ///< paths, sorted

    bool operator==(const KnownVolume&) const = default;
};

/// Kept between scans, and between runs of the launcher.
struct KnownVolumes {
    static constexpr int supportedVersion = 1;
    static inline const QString fileName = QStringLiteral("known-volumes.json");
    /// Limits that no real Mac reaches.
    static constexpr qsizetype maximumVolumes = 256;
    static constexpr qsizetype maximumApplications = 20'000;

    int version = supportedVersion;
    QList<KnownVolume> volumes;
    /// The user's settings specified search paths or a depth.
    bool hasSearchSettings = false;

    bool operator==(const KnownVolumes&) const = default;
};

/// "/Volumes/Work" for "/Volumes/Work/Apps/X.app"; nullopt outside "/Volumes".
std::optional<QString> volumeMountPoint(const QString& path);

/// Finds the volumes of paths. Caches its look-ups.
class VolumeFinder {
public:
    explicit VolumeFinder(const FileSystem& files) : _files(files) {}

    /// Adds a folder's device to the cache.
    void knowDevice(const QString& folder, std::uint64_t device) { _devices.insert(folder, device); }
    /// The mount point of the volume of `folder`, which must exist and be resolved: by name under
    /// "/Volumes", elsewhere where the device changes.
    QString rootOf(const QString& folder);
    /// nullopt if no volume can be mounted there: no folder, or an empty one where disks are mounted.
    /// Another folder in its place has a different identity (inode and date).
    std::optional<QString> identityOf(const QString& root) const;

private:
    std::optional<std::uint64_t> deviceOf(const QString& folder);

    const FileSystem& _files;
    QHash<QString, std::uint64_t> _devices;
    QHash<QString, QString> _roots;
};

namespace json {

template <>
struct Fields<KnownVolume> {
    static constexpr auto list =
        fields(required("root", &KnownVolume::root), required("identity", &KnownVolume::identity),
               required("applications", &KnownVolume::applications));
};
template <>
struct Fields<KnownVolumes> {
    static constexpr auto list =
        fields(required("version", &KnownVolumes::version), required("volumes", &KnownVolumes::volumes),
               defaulted("hasSearchSettings", &KnownVolumes::hasSearchSettings));
};

} // namespace json
} // namespace tessellar
