#pragma once

#include "model/json.h"
#include "platform/file_system.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tessellar {

/// How an item was tied to an application, strongest first.
enum class RelatedFileMatch { appBundle, strong, strongish, medium, risky };

/// Whose Library a location lies in. Removal from the system's may need an administrator.
enum class CleanupDomain { user, system };

/// What the clean-up knows of an installed application.
struct CleanupApplication {
    QStringList names; ///< what it calls itself, and its name on the disk; ".app" may be left on
    std::optional<QString> bundleIdentifier;
    QString path; ///< of the bundle
    /// Of the developer, from the signature. Empty: it has none. Absent: nobody has looked.
    std::optional<QString> team;

    bool operator==(const CleanupApplication&) const = default;
};

/// Tells whether an item is still the one that was reviewed.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    FileType type = FileType::other;

    bool operator==(const FileIdentity&) const = default;
};
/// The same for what was written down, perhaps before the machine was started anew: volumes are
/// numbered as they are found.
inline bool isSameOnItsVolume(const FileIdentity& a, const FileIdentity& b) {
    return a.inode == b.inode && a.type == b.type;
}
inline FileIdentity identityOf(const FileStatus& status) {
    return {status.device, status.inode, status.type};
}

/// One item that may go together with an application.
struct RelatedFile {
    QString path;
    QString location; ///< the label of where it was found
    CleanupDomain domain = CleanupDomain::user;
    RelatedFileMatch match = RelatedFileMatch::risky;
    QString reason; ///< why it was matched, for people
    /// Another installed application could own it, or the match is too weak a hint of its owner: such
    /// an item is offered, never chosen beforehand.
    bool isContested = false;
    bool needsAdministrator = false;
    FileIdentity identity;
    std::optional<std::uint64_t> size; ///< bytes of all in it; absent until it was counted

    bool operator==(const RelatedFile&) const = default;
};

/// What kind of place a path is, links resolved.
enum class ProtectionClass {
    systemProtected, ///< "/System" and "/Library/Apple": nothing there is ever removed
    applications,    ///< "/Applications": only bundles are removed
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
