#include "launcher/action_table.h"

#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "platform/texts.h"

namespace tessellar {

/// Nobody reads a longer menu; tiles can still be dragged to the other places.
static constexpr qsizetype maximumPlaces = 60;

ActionContext contextOf(LauncherViewModel& launcher, const ActionTarget& target, ActionTold told) {
    if (!told)
        told = [&messages = launcher.messages()](const auto& outcome) { messages.report(outcome); };
    LiveLayout& layout = launcher.layout(target.mode);
    ActionContext context{.launcher = launcher,
                          .layout = layout,
                          .target = target,
                          .told = std::move(told),
                          .isEditable = launcher.history().guard(target.mode).has_value()};
    if (const auto open = context.openFolder())
        context.isComputed = !layout.folder(*open);
    if (!target.item)
        return context;
    const QUuid id = target.item->id();
    context.hasTile = layout.item(id) != nullptr;
    const QSet<QUuid>& selected = layout.navigation().selectedItemIDs();
    if (!target.isSearchResult && selected.size() > 1 && selected.contains(id))
        context.tiles = layout.inOrder(selected);
    else if (context.hasTile)
        context.tiles = {id};
    return context;
}

// ---- places

static QString placeText(const LayoutPlace& place) {
    return (place.folder ? toText(*place.folder) + u'/' : QString()) + QString::number(place.page);
}

QList<MenuEntry> placeEntries(const ActionContext& context, const QString& id, bool withOwn) {
    QList<MenuEntry> entries;
    const auto open = context.openFolder();
    const Pages& pages = context.layout.pages();
    const ShownPages& shown = context.layout.shownPages();
    for (qsizetype page = 0; page < shown.count() && entries.size() < maximumPlaces; ++page) {
        const auto stored = shown.tileAt({page, 0});
        const bool isOwn = !open && page == context.layout.navigation().currentPage();
        // A stored page that is shown as several is listed once.
        const bool isAnother = page == 0 || shown.tileAt({page - 1, 0})->page != stored->page;
        if ((isOwn && !withOwn) || !isAnother)
            continue;
        entries.append({.id = id + u':' + placeText({.folder = {}, .page = stored->page}),
                        .title = isOwn ? Texts::tr("This Page") : Texts::tr("Page %1").arg(page + 1)});
    }
    entries.append({.id = id + u':' + placeText({.folder = {}, .page = pages.size()}),
                    .title = Texts::tr("New Page")});
    bool isFirst = true;
    forEachItem(pages, [&](const LaunchpadItem& item) {
        const FolderEntry* folder = item.folder();
        if (!folder || context.tiles.contains(folder->id) || (folder->id == open && !withOwn))
            return true;
        if (std::exchange(isFirst, false))
            entries.append(MenuEntry());
        const qsizetype last = std::max<qsizetype>(folder->pages.size() - 1, 0);
        entries.append(
            {.id = id + u':' + placeText({.folder = folder->id, .page = last}), .title = folder->name});
        return entries.size() < maximumPlaces;
    });
    return entries;
}

} // namespace tessellar
