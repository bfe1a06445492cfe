#pragma once

#include "model/items.h"
#include "platform/file_system.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace tessellar {

/// A volume by the folder that it is mounted on and by what tells it from another one there, or from
/// the bare mount point.
struct MountedVolume {
    QString root;
    QString identity;

    bool operator==(const MountedVolume&) const = default;
};

/// A volume on which applications were seen, and which: what was on it counts as gone only when the
/// same volume is looked at again.
struct KnownVolume {
    QString root;
    QString identity;
    QStringList applications; ///< paths, sorted

    bool operator==(const KnownVolume&) const = default;
};

/// Kept between scans, and from one run of the launcher to the next.
struct KnownVolumes {
    static constexpr int supportedVersion = 1;
    static inline const QString fileName = QStringLiteral("known-volumes.json");
    /// What is over these, a Mac never has.
    static constexpr qsizetype maximumVolumes = 256;
    static constexpr qsizetype maximumApplications = 20'000;

    int version = supportedVersion;
    QList<KnownVolume> volumes;
    /// The user's settings said where to look for applications, or how deep.
    bool hasSearchSettings = false;

    bool operator==(const KnownVolumes&) const = default;
};

/// "/Volumes/Work" for "/Volumes/Work/Apps/X.app": where disks other than the Mac's own are mounted.
std::optional<QString> volumeMountPoint(const QString& path);

/// Tells on which volume paths lie. Remembers what it looked at.
class VolumeFinder {
public:
    explicit VolumeFinder(const FileSystem& files) : _files(files) {}

    /// What is known of a folder without another look.
    void knowDevice(const QString& folder, std::uint64_t device) { _devices.insert(folder, device); }
    /// The folder that the volume of an existing resolved `folder` is mounted on: under "/Volumes" by
    /// name, elsewhere where the device changes.
    QString rootOf(const QString& folder);
    /// Nothing where no volume can be: no folder, or an empty one where disks are mounted. Another
    /// folder in its place differs in number and date.
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
