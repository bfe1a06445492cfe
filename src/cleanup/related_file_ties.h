#pragma once

#include "cleanup/app_related_files_scanner.h"
#include "cleanup/cleanup_locations.h"
#include "cleanup/related_file_names.h"
#include "platform/directory_walker.h"

#include <mutex>

namespace tessellar {

/// How an item was tied, and what speaks against choosing it beforehand.
struct RelatedFileTie {
    RelatedFileMatch match = RelatedFileMatch::risky;
    QString reason;
    bool isContested = false;
    bool isShared = false; ///< with another application, by a word: what lies in it may be tied nearer
};

/// What ties the items of the Libraries to one application, and what other applications say to it.
/// Asked by all threads of a walk.
class RelatedFileTies {
public:
    RelatedFileTies(const FileSystem& files, const CleanupApplication& application,
                    const QList<CleanupApplication>& others,
                    const AppRelatedFilesScanner::TeamOf& teamOf, std::stop_token stop);

    bool areApples() const { return _names.isApple(); }
    /// Nothing where the item is none of the application's, or more another's.
    std::optional<RelatedFileTie> of(const CleanupLocation& location, const WalkEntry& entry,
                                     const MatchingName& name) const;
    /// Whether a folder is another application's by identifier or whole name.
    bool areAnothers(const MatchingName& name) const { return _claims.areCalled(name); }
    /// Whether in a folder lies, at any depth that vendors use, what another application's identifier
    /// ties: they keep their products together under the shortest of their identifiers.
    bool holdAnothers(const QString& folder) const;
    static QString reasonOf(const ApplicationNames::Grade& grade);

private:
    std::optional<RelatedFileTie> byName(const CleanupLocation& location,
                                         const ApplicationNames::Grade& grade,
                                         const MatchingName& name) const;
    std::optional<RelatedFileTie> byContents(const CleanupLocation& location,
                                             const WalkEntry& entry) const;
    std::optional<RelatedFileTie> byDeveloper(const MatchingName& name) const;
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
