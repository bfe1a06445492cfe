#include "launcher/unplaced.h"

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

using Kind = UnplacedThing::Kind;
using Things = QList<UnplacedThing>;

Things byName(Things things, const Locale& locale) {
    std::ranges::sort(things, [&](const UnplacedThing& a, const UnplacedThing& b) {
        return locale.compareNames(a.name, b.name) < 0;
    });
    return things;
}

Things hidden(const LauncherViewModel& launcher, const LiveLayout& layout) {
    Things things;
    for (const QString& key : layout.hiddenKeys()) {
        const AppEntry* tile = layout.tileOf(key);
        const AppEntry* installed = launcher.applications().withKey(key);
        const AppEntry* app = tile ? tile : installed;
        things.append({Kind::hidden, key, app ? app->name : key,
                       installed ? installed->path : Texts::tr("Not installed")});
    }
    return things;
}

Things withoutTile(const LauncherViewModel& launcher, const LiveLayout& layout) {
    Things things;
    for (const SmartFolderDefinition& definition : launcher.smartFolders().definitions())
        if (!layout.item(definition.id))
            things.append({Kind::smartFolder, toText(definition.id), definition.name, {}});
    return things;
}

/// Where it was, and since when it is gone.
QString text(const PlaceSummary& place, const Locale& locale) {
    QString where = Texts::tr("Page %1").arg(place.page + 1);
    for (const QString& folder : place.folderNames)
        where += QStringLiteral(", “%1”").arg(folder);
    return (place.isRemoved ? Texts::tr("%1 · removed %2") : Texts::tr("%1 · not seen since %2"))
        .arg(where, dateText(place.goneAt, locale));
}

Things places(const LauncherViewModel& launcher, const LiveLayout& layout, const Locale& locale) {
    Things things;
    for (const PlaceSummary& place : summaries(launcher.places()[layout.mode()]))
        if (!layout.item(place.tile.id)) // else it is back
            things.append({Kind::place, appKey(place.tile), place.tile.name, text(place, locale)});
    return things;
}

} // namespace

QList<UnplacedThing> unplacedThings(const LauncherViewModel& launcher, LauncherWindowMode mode,
                                    const Locale& locale) {
    const LiveLayout& layout = launcher.layout(mode);
    return byName(hidden(launcher, layout), locale) + byName(withoutTile(launcher, layout), locale) +
           places(launcher, layout, locale);
}

std::expected<void, LauncherError> placeOrForget(LauncherViewModel& launcher, LauncherWindowMode mode,
                                                 const UnplacedThing& thing) {
    switch (thing.kind) {
    case Kind::hidden:
        return launcher.editor().unhideApp(mode, thing.id);
    case Kind::smartFolder:
        return launcher.editor().addSmartFolderTile(mode, QUuid::fromString(thing.id));
    case Kind::place:
        launcher.places().forget(
            mode, thing.id, [&messages = launcher.messages()](const auto& forgotten) {
                if (!forgotten)
                    messages.alert({forgotten.error().code, forgotten.error().message,
                                    Texts::tr("Could not forget the place")});
            });
        break;
    }
    return {};
}

} // namespace tessellar
