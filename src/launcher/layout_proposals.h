#pragma once

#include "discovery/launchpad_import.h"
#include "launcher/launcher_error.h"
#include "platform/task.h"

#include <functional>

namespace tessellar {

class InstalledApplications;
class LauncherImport;
class LayoutArchive;
class LiveLayouts;
struct Machine;

/// A way to arrange all that is installed, as it would be, before it is taken.
struct LayoutProposal {
    enum class Kind { oldLaunchpad, byCategory, byName };

    Kind kind = Kind::byName;
    Pages pages;
    /// Of the old Launchpad's: what it is made from, with what would be skipped.
    std::optional<NativeLaunchpadImportResult> imported = {};
    bool losesAliases = false;
    bool losesSmartFolders = false; ///< their tiles; the folders can be shown again
    qsizetype newAppCount = 0;      ///< installed applications that it has no place for yet
};

/// "By Category"
QString title(LayoutProposal::Kind kind);
/// What it is, and what becomes of what: a sentence a line.
QString explanation(const LayoutProposal& proposal);

/// The ways to begin, or to begin anew: what the old Launchpad had, a folder for each category, or all
/// by name. Tiles of smart folders come first, but for the old Launchpad's; hidden applications and
/// names of the user's own stay. To take one is a step of history, with a backup. Main thread only.
class LayoutProposals {
public:
    using Mode = LauncherWindowMode;
    struct All {
        QList<LayoutProposal> proposals;
        /// Why the old Launchpad's is not among them, though there is one.
        std::optional<LauncherError> importFailure;
    };

    LayoutProposals(Machine& machine, LiveLayouts& layouts, InstalledApplications& applications,
                    LauncherImport& launchpadImport, LayoutArchive& archive);

    /// Worked out on workers, from the layout as it is now.
    void propose(Mode mode, std::function<void(const All&)> done);
    /// In the given modes, with what is installed and named now.
    std::expected<void, LauncherError> take(const QList<Mode>& modes, const LayoutProposal& proposal);

private:
    struct Input;

    Input input(Mode mode) const;
    void propose(Mode mode, All all, std::function<void(const All&)> done);

    Machine& _machine;
    LiveLayouts& _layouts;
    InstalledApplications& _applications;
    LauncherImport& _launchpadImport;
    LayoutArchive& _archive;
    Task _task;
};

} // namespace tessellar
