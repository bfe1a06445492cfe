#pragma once

#include "privileged/file_identity.h"

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
    std::optional<std::uint64_t> size; ///< bytes on the disk of all in it; absent until counted
    bool isSizePartial = false;        ///< a part of it could not be counted: it is at least `size`

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
