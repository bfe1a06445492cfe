#pragma once

#include "privileged/file_identity.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tessellar {

/// How an item was matched to an application, strongest first.
enum class RelatedFileMatch { appBundle, strong, strongish, medium, risky };

/// Which Library a location is in. Removing from the system's may need an administrator.
enum class CleanupDomain { user, system };

/// What the clean-up needs to know about an installed application.
struct CleanupApplication {
    QStringList names; ///< its own name, and that on the disk, possibly with ".app"
    std::optional<QString> bundleIdentifier;
    QString path; ///< of the bundle
    /// The signing team. Empty: unsigned; nullopt: not inspected.
    std::optional<QString> team;

    bool operator==(const CleanupApplication&) const = default;
};

/// An item that may be removed with an application.
struct RelatedFile {
    QString path;
    QString location; ///< the label of its location
    CleanupDomain domain = CleanupDomain::user;
    RelatedFileMatch match = RelatedFileMatch::risky;
    QString reason; ///< why it matched, for the user
    /// Possibly another application's, or the match is too weak: offered, but never preselected.
    bool isContested = false;
    bool needsAdministrator = false;
    FileIdentity identity;
    std::optional<std::uint64_t> size; ///< bytes on disk, including contents; nullopt until measured
    bool isSizePartial = false;        ///< part of it could not be measured: `size` is a minimum

    bool operator==(const RelatedFile&) const = default;
};

/// How a path is protected, links resolved.
enum class ProtectionClass {
    systemProtected, ///< "/System" and "/Library/Apple": never removed
    applications,    ///< "/Applications": only bundles may be removed
    ordinary,
};
ProtectionClass protectionClass(const FileSystem& files, const QString& path);

namespace json {
template <>
struct RawValues<RelatedFileMatch> : EnumeratorNames<RelatedFileMatch::risky> {};
template <>
struct RawValues<CleanupDomain> : EnumeratorNames<CleanupDomain::system> {};
} // namespace json
} // namespace tessellar
