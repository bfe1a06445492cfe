#include "launcher/layout_proposals.h"

#include "editing/edit_names.h"
#include "editing/starting_layouts.h"
#include "launcher/launcher_import.h"
#include "launcher/layout_archive.h"
#include "launcher/layout_merger.h"
#include "platform/texts.h"

namespace tessellar {

using Kind = LayoutProposal::Kind;

QString title(Kind kind) {
    switch (kind) {
    case Kind::oldLaunchpad:
        return Texts::tr("Old Launchpad");
    case Kind::byCategory:
        return Texts::tr("By Category");
    case Kind::byName:
        break;
    }
    return Texts::tr("By Name");
}

/// The first of many names, in a line.
static QString someOf(const QStringList& names) {
    constexpr qsizetype most = 12;
    const QString line = names.mid(0, most).join(QStringLiteral(", "));
    return names.size() <= most ? line : line + QStringLiteral(", …");
}

QString explanation(const LayoutProposal& proposal) {
    switch (proposal.kind) {
    case Kind::oldLaunchpad: {
        if (!proposal.imported)
            return LaunchpadImportTexts::explanation();
        QStringList lines = LaunchpadImportTexts::report(proposal.imported->metadata).split(u'\n');
        if (const QStringList& skipped = proposal.imported->skippedApps; !skipped.isEmpty())
            lines.append(Texts::tr("Skipped: %1").arg(someOf(skipped)));
        if (const qsizetype count = proposal.newAppCount; count > 0)
            lines.append(count == 1 ? Texts::tr("1 other application comes on a new page at the end.")
                                    : Texts::tr("%n other applications come on new pages at the end.",
                                                nullptr, static_cast<int>(count)));
        lines.prepend(LaunchpadImportTexts::explanation());
        return lines.join(u'\n');
    }
    case Kind::byCategory:
        return Texts::tr("A folder for each category of applications, and those without "
                         "one by name after the folders.");
    case Kind::byName:
        break;
    }
    return Texts::tr("All applications in alphabetical order, without folders.");
}

LayoutProposals::LayoutProposals(Machine& machine, LiveLayouts& layouts,
                                 InstalledApplications& applications, LauncherImport& launchpadImport,
                                 LayoutArchive& archive)
    : _machine(machine)
    , _layouts(layouts)
    , _applications(applications)
    , _launchpadImport(launchpadImport)
    , _archive(archive) {}

void LayoutProposals::propose(Mode mode, std::function<void(const All&)> done) {
    _launchpadImport.preview(mode, {}, [this, mode, done = std::move(done)](const auto& found) mutable {
        All all;
        if (found)
            all.proposals.append(
                {.kind = Kind::oldLaunchpad,
                 .pages = found->pages,
                 .imported = *found,
                 .newAppCount = _applications.all().size() - found->metadata.appCount});
        else if (found.error().code != u"databaseNotFound" &&
                 found.error().code != u"cannotResolveDarwinUserDirectory")
            all.importFailure = found.error();
        propose(mode, std::move(all), std::move(done));
    });
}

void LayoutProposals::propose(Mode mode, All all, std::function<void(const All&)> done) {
    const LiveLayout& layout = _layouts[mode];
    Page smartFolders;
    forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
        if (item.smartFolder())
            smartFolders.append(item);
        return true;
    });
    _task = _machine.workers.run(
        Lane::computing,
        [all = std::move(all), smartFolders, apps = installedAsArranged(layout, _applications, true),
         capacities = layout.capacities(), locale = _machine.locale,
         &uuids = _machine.uuids](std::stop_token) mutable {
            all.proposals.append(
                {.kind = Kind::byCategory,
                 .pages = layoutByCategory(apps, smartFolders, capacities, locale, uuids)});
            Page tiles = smartFolders;
            for (const Page& page : defaultLayout(apps, capacities.page, locale))
                tiles += page;
            all.proposals.append({.kind = Kind::byName, .pages = filledPages(tiles, capacities.page)});
            return all;
        },
        [done = std::move(done)](const All& found) { done(found); });
}

std::expected<void, LauncherError> LayoutProposals::take(Mode mode, const LayoutProposal& proposal) {
    if (!proposal.imported)
        return _archive.arrange(mode, proposal.pages, editName(EditKind::arrange));
    const auto imported = _launchpadImport.apply(mode, *proposal.imported);
    _launchpadImport.tell(imported);
    return {};
}

} // namespace tessellar
