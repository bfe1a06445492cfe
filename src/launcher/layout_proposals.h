#pragma once

#include "discovery/launchpad_import.h"
#include "launcher/launcher_error.h"
#include "platform/task.h"

#include <functional>
#include <list>

namespace tessellar {

class InstalledApplications;
class LauncherImport;
class LayoutArchive;
class LiveLayouts;
struct Machine;

/// A proposed arrangement of all installed applications.
struct LayoutProposal {
    enum class Kind { oldLaunchpad, byCategory, byName };

    Kind kind = Kind::byName;
    Pages pages;
    /// For the old Launchpad's: the preview it is based on, including what would be skipped.
    std::optional<NativeLaunchpadImportResult> imported = {};
    bool losesAliases = false;
    bool losesSmartFolders = false; ///< only the tiles; the folders can be placed again
    qsizetype newAppCount = 0;      ///< installed applications without a place in it
};

/// For example "By Category".
QString title(LayoutProposal::Kind kind);
/// Describes the proposal and what it would change, one sentence per line.
QString explanation(const LayoutProposal& proposal);

/// Proposes arrangements for new users or a fresh start: the old Launchpad's, folders by category, or
/// all by name. Except for the old Launchpad's, tiles of smart folders come first; hidden applications
/// and the user's names are kept. Taking one is a step of history, with a backup. Main thread only.
class LayoutProposals {
public:
    using Mode = LauncherWindowMode;
    struct All {
        QList<LayoutProposal> proposals;
        /// Why the old Launchpad's arrangement exists but is not among the proposals.
        std::optional<LauncherError> importFailure;
    };

    LayoutProposals(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                    LauncherImport& launchpadImport, LayoutArchive& archive);

    /// True if nothing was ever arranged in either mode, so a new user may be asked how to begin.
    bool isUnarranged() const;
    /// Computed on workers, from the current layout.
    void propose(Mode mode, std::function<void(const All&)> done);
    /// Applies a proposal to the given modes, updated to the applications and names of now, which
    /// workers compute. After a failure the remaining modes are left as they are.
    using Outcome = std::expected<void, LauncherError>;
    void take(const QList<Mode>& modes, const LayoutProposal& proposal,
              std::function<void(const Outcome&)> done);

private:
    struct Input;

    Input input(Mode mode) const;
    void propose(Mode mode, All all, std::function<void(const All&)> done);

    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    LauncherImport& _launchpadImport;
    LayoutArchive& _archive;
    std::list<Task> _tasks;
};

} // namespace tessellar
