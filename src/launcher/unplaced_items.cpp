#include "launcher/unplaced_items.h"

#include "launcher/date_text.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

namespace {

using Kind = UnplacedItem::Kind;
using Items = QList<UnplacedItem>;

Items byName(Items items, const Locale& locale) {
    std::ranges::sort(items, [&](const UnplacedItem& a, const UnplacedItem& b) {
        return locale.compareNames(a.name, b.name) < 0;
    });
    return items;
}

Items hidden(const LauncherViewModel& launcher, const LiveLayout& layout) {
    Items items;
    for (const QString& key : layout.hiddenKeys()) {
        const AppEntry* tile = layout.tileOf(key);
        const AppEntry* installed = launcher.applications().withKey(key);
        const AppEntry* app = tile ? tile : installed;
        items.append({Kind::hidden, key, app ? app->name : key,
                      installed ? installed->path : Texts::tr("Not installed")});
    }
    return items;
}

Items withoutTile(const LauncherViewModel& launcher, const LiveLayout& layout) {
    Items items;
    for (const SmartFolderDefinition& definition : launcher.smartFolders().definitions())
        if (!layout.item(definition.id))
            items.append({Kind::smartFolder, toText(definition.id), definition.name, {}});
    return items;
}

/// Where it was, and since when it has been gone.
QString text(const PlaceSummary& place, const Locale& locale) {
    QString where = Texts::tr("Page %1").arg(place.page + 1);
    for (const QString& folder : place.folderNames)
        where += QStringLiteral(", “%1”").arg(folder);
    return (place.isRemoved ? Texts::tr("%1 · removed %2") : Texts::tr("%1 · not seen since %2"))
        .arg(where, dateText(place.goneAt, locale));
}

Items places(const LauncherViewModel& launcher, const LiveLayout& layout, const Locale& locale) {
    Items items;
    for (const PlaceSummary& place : summaries(launcher.places()[layout.mode()]))
        if (!layout.item(place.tile.id)) // otherwise it is back
            items.append({Kind::place, appKey(place.tile), place.tile.name, text(place, locale)});
    return items;
}

} // namespace

QList<UnplacedItem> unplacedItems(const LauncherViewModel& launcher, LauncherWindowMode mode,
                                  const Locale& locale) {
    const LiveLayout& layout = launcher.layout(mode);
    return byName(hidden(launcher, layout), locale) + byName(withoutTile(launcher, layout), locale) +
           places(launcher, layout, locale);
}

std::expected<void, LauncherError> placeOrForget(LauncherViewModel& launcher, LauncherWindowMode mode,
                                                 const UnplacedItem& item) {
    switch (item.kind) {
    case Kind::hidden:
        return launcher.editor().unhideApp(mode, item.id);
    case Kind::smartFolder:
        return launcher.editor().addSmartFolderTile(mode, QUuid::fromString(item.id));
    case Kind::place:
        launcher.places().forget(
            mode, item.id, [&messages = launcher.messages()](const auto& forgotten) {
                if (!forgotten)
                    messages.alert({forgotten.error().code, forgotten.error().message,
                                    Texts::tr("Could not forget the place")});
            });
        break;
    }
    return {};
}

} // namespace tessellar
