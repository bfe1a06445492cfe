#include "launcher/layout_proposals.h"

#include "editing/edit_names.h"
#include "editing/starting_layouts.h"
#include "launcher/launcher_import.h"
#include "launcher/layout_archive.h"
#include "launcher/layout_merger.h"
#include "platform/texts.h"

#include <algorithm>

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

/// The first names of many, in one line.
static QString someOf(const QStringList& names) {
    constexpr qsizetype most = 12;
    const QString line = names.mid(0, most).join(QStringLiteral(", "));
    return names.size() <= most ? line : line + QStringLiteral(", …");
}

QString explanation(const LayoutProposal& proposal) {
    QString losses;
    if (proposal.losesAliases)
        losses += u'\n' + Texts::tr("Aliases are not kept.");
    if (proposal.losesSmartFolders)
        losses += u'\n' + Texts::tr("Smart Folders lose their tiles, which can be added again.");
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
        return lines.join(u'\n') + losses;
    }
    case Kind::byCategory:
        return Texts::tr("A folder for each category of applications, and those without "
                         "one by name after the folders.") +
               losses;
    case Kind::byName:
        break;
    }
    return Texts::tr("All applications in alphabetical order, without folders.") + losses;
}

LayoutProposals::LayoutProposals(Machine& machine, LiveLayouts& layouts,
                                 InstalledApplications& applications, LauncherImport& launchpadImport,
                                 LayoutArchive& archive)
    : _machine(machine)
    , _layouts(layouts)
    , _applications(applications)
    , _launchpadImport(launchpadImport)
    , _archive(archive) {}

bool LayoutProposals::isUnarranged() const {
    return std::ranges::all_of(LiveLayouts::modes, [this](Mode mode) {
        return tessellar::isUnarranged(_layouts[mode].document(), _machine.locale);
    });
}

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
                 found.error().code != u"importInProgress" &&
                 found.error().code != u"cannotResolveDarwinUserDirectory")
            all.importFailure = found.error();
        propose(mode, std::move(all), std::move(done));
    });
}

/// The input of proposals that are made from the applications alone.
struct LayoutProposals::Input {
    QList<AppEntry> apps;
    Page smartFolders;
    bool hasAliases = false;
    GridCapacities capacities;
    Locale locale;
    UuidSource* uuids = nullptr;

    LayoutProposal made(Kind kind) const {
        return {.kind = kind,
                .pages = kind == Kind::byCategory
                             ? layoutByCategory(apps, smartFolders, capacities, locale, *uuids)
                             : layoutByName(apps, smartFolders, capacities, locale),
                .losesAliases = hasAliases};
    }
};

LayoutProposals::Input LayoutProposals::input(Mode mode) const {
    const LiveLayout& layout = _layouts[mode];
    Input input{.apps = installedAsArranged(layout, _applications, true),
                .smartFolders = {},
                .capacities = layout.capacities(),
                .locale = _machine.locale,
                .uuids = &_machine.uuids};
    forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
        if (item.smartFolder())
            input.smartFolders.append(item);
        input.hasAliases = input.hasAliases || (item.app() && item.app()->alias);
        return true;
    });
    return input;
}

void LayoutProposals::propose(Mode mode, All all, std::function<void(const All&)> done) {
    Input from = input(mode);
    for (LayoutProposal& imported : all.proposals) {
        imported.losesAliases = from.hasAliases;
        imported.losesSmartFolders = !from.smartFolders.isEmpty();
    }
    const auto task = _tasks.insert(_tasks.end(), Task());
    *task = _machine.workers.run(
        Lane::computing,
        [proposed = std::move(all), from = std::move(from)](std::stop_token) mutable {
            for (const Kind kind : {Kind::byCategory, Kind::byName})
                proposed.proposals.append(from.made(kind));
            return proposed;
        },
        [this, task, done = std::move(done)](const All& found) {
            const Task ended = std::move(*task); // kept until the end of this call
            _tasks.erase(task);
            done(found);
        });
}

void LayoutProposals::take(const QList<Mode>& modes, const LayoutProposal& proposal,
                           std::function<void(const Outcome&)> done) {
    if (modes.isEmpty())
        return done({});
    const Mode mode = modes.first();
    const auto goOn = [this, others = modes.sliced(1), proposal, done] {
        take(others, proposal, done);
    };
    if (!proposal.imported)
        return _archive.arrange(
            mode,
            [this, mode, kind = proposal.kind] {
                return [from = input(mode), kind] { return from.made(kind).pages; };
            },
            editName(EditKind::arrange),
            [goOn, done](const Outcome& arranged) { arranged ? goOn() : done(arranged); });
    _launchpadImport.apply(
        mode, *proposal.imported,
        [this, goOn, done, isLast = modes.size() == 1](const LauncherImport::Imported& imported) {
            if (!imported || isLast)
                _launchpadImport.tell(imported);
            imported ? goOn() : done({}); // the failure has been reported
        });
}

} // namespace tessellar
