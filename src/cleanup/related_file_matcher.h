#pragma once

#include "cleanup/app_related_files_scanner.h"
#include "cleanup/cleanup_locations.h"
#include "cleanup/related_file_names.h"
#include "platform/directory_walker.h"

#include <mutex>

namespace tessellar {

/// How an item was matched, and why it might not be preselected.
struct RelatedFileFinding {
    RelatedFileMatch match = RelatedFileMatch::risky;
    QString reason;
    bool isContested = false;
    bool isShared = false; ///< with another application, by a word: its contents may match more closely
};

/// Matches items of the Libraries to one application against the claims of others. Thread-safe.
class RelatedFileMatcher {
public:
    RelatedFileMatcher(const FileSystem& files, const CleanupApplication& application,
                       const QList<CleanupApplication>& others,
                       const AppRelatedFilesScanner::TeamOf& teamOf, std::stop_token stop);

    bool isApple() const { return _names.isApple(); }
    /// nullopt if the item does not belong to the application, or belongs more to another.
    std::optional<RelatedFileFinding> of(const CleanupLocation& location, const WalkEntry& entry,
                                         const MatchingName& name) const;
    /// Whether a folder belongs to another application by identifier or whole name.
    bool matchesAnother(const MatchingName& name) const { return _claims.matchesName(name); }
    /// Whether a folder contains, at any depth that vendors use, files that match another application's
    /// identifier: vendors group products under the shortest of their identifiers.
    bool holdsFilesOfAnother(const QString& folder) const;
    static QString reasonOf(const ApplicationNames::Grade& grade);

private:
    std::optional<RelatedFileFinding> byName(const CleanupLocation& location,
                                             const ApplicationNames::Grade& grade,
                                             const MatchingName& name) const;
    std::optional<RelatedFileFinding> byContents(const CleanupLocation& location,
                                                 const WalkEntry& entry) const;
    std::optional<RelatedFileFinding> byDeveloper(const MatchingName& name) const;
    bool mayShareGroup() const;
    std::optional<QString> teamOf(const CleanupApplication& application) const;

    const FileSystem& _files;
    const CleanupApplication& _application;
    const AppRelatedFilesScanner::TeamOf& _teamOf;
    const ApplicationNames _names;
    const QList<CleanupApplication> _others;
    const InstalledClaims _claims;
    const std::stop_token _stop;
    mutable std::once_flag _groupAsked;
    mutable bool _mayShareGroup = true;
};

} // namespace tessellar
