#include "app/unplaced_panel.h"

#include "app/icon_wishes.h"
#include "app/image_item.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

namespace tessellar {

using Kind = UnplacedThing::Kind;

static QString titleOf(Kind kind) {
    switch (kind) {
    case Kind::hidden:
        return UnplacedPanel::tr("Hidden applications");
    case Kind::smartFolder:
        return UnplacedPanel::tr("Smart Folders without a tile");
    case Kind::place:
        break;
    }
    return UnplacedPanel::tr("Places kept for applications that went");
}

static QString actionOf(Kind kind) {
    switch (kind) {
    case Kind::hidden:
        return UnplacedPanel::tr("Unhide");
    case Kind::smartFolder:
        return UnplacedPanel::tr("Add Tile");
    case Kind::place:
        break;
    }
    return UnplacedPanel::tr("Forget");
}

QString UnplacedPanel::summary() const {
    return _rows.isEmpty() ? tr("Nothing is hidden, and everything has its tile.") : QString();
}

void UnplacedPanel::act(int row) {
    if (row < 0 || row >= _things.size() || !_things[row])
        return;
    auto act =
        _lifetime.guard([this, thing = *_things[row], mode = _viewModel.shown().mode()](bool isWanted) {
            if (!isWanted)
                return;
            _viewModel.messages().report(placeOrForget(_viewModel, mode, thing));
            refresh();
        });
    if (_things[row]->kind != Kind::place)
        return act(true);
    _viewModel.messages().ask(
        {.title = tr("Forget the place of “%1”?").arg(_things[row]->name),
         .text = tr("Should it be installed again, its tile comes at the end. This cannot be undone."),
         .accept = tr("Forget"),
         .isDestructive = true},
        act);
}

QList<IconWish> UnplacedPanel::icons() const {
    QList<IconWish> icons;
    for (const auto& thing : _things)
        if (const AppEntry* app = thing ? _viewModel.applications().withKey(thing->id) : nullptr)
            icons.append(iconWish(*app));
    return icons;
}

void UnplacedPanel::refresh() {
    _things.clear();
    _rows.clear();
    std::optional<Kind> kind;
    for (const UnplacedThing& thing :
         unplacedThings(_viewModel, _viewModel.shown().mode(), _machine.locale)) {
        if (std::exchange(kind, thing.kind) != thing.kind) {
            _things.append(std::nullopt);
            _rows.append(QVariantMap{{QStringLiteral("title"), titleOf(thing.kind)},
                                     {QStringLiteral("action"), QString()}});
        }
        const bool isFolder = thing.kind == Kind::smartFolder;
        QString symbol;
        if (const SmartFolderDefinition* definition =
                isFolder ? _viewModel.smartFolders().definition(QUuid::fromString(thing.id)) : nullptr)
            symbol = definition->customSymbolName.value_or(QString());
        _things.append(thing);
        _rows.append(
            QVariantMap{{QStringLiteral("title"), thing.name},
                        {QStringLiteral("text"), thing.text},
                        {QStringLiteral("kind"), int(isFolder ? IconItem::SmartFolder : IconItem::App)},
                        {QStringLiteral("appKeys"), isFolder ? QStringList() : QStringList(thing.id)},
                        {QStringLiteral("symbolName"), symbol},
                        {QStringLiteral("action"), actionOf(thing.kind)}});
    }
    Q_EMIT changed();
}

} // namespace tessellar
