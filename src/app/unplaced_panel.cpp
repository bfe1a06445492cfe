#include "app/unplaced_panel.h"

#include "app/icon_requests.h"
#include "app/image_item.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

namespace tessellar {

using Kind = UnplacedItem::Kind;

static QString titleOf(Kind kind) {
    switch (kind) {
    case Kind::hidden:
        return UnplacedPanel::tr("Hidden applications");
    case Kind::smartFolder:
        return UnplacedPanel::tr("Smart Folders without a tile");
    case Kind::place:
        break;
    }
    return UnplacedPanel::tr("Places kept for applications that are gone");
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
    if (row < 0 || row >= _items.size() || !_items[row])
        return;
    auto act =
        _lifetime.guard([this, item = *_items[row], mode = _viewModel.shown().mode()](bool isWanted) {
            if (!isWanted)
                return;
            _viewModel.messages().report(placeOrForget(_viewModel, mode, item));
            refresh();
        });
    if (_items[row]->kind != Kind::place)
        return act(true);
    _viewModel.messages().ask(
        {.title = tr("Forget the place of “%1”?").arg(_items[row]->name),
         .text = tr("Should it be installed again, its tile comes at the end. This cannot be undone."),
         .accept = tr("Forget"),
         .isDestructive = true},
        act);
}

QList<IconRequest> UnplacedPanel::icons() const {
    QList<IconRequest> icons;
    for (const auto& item : _items)
        if (const AppEntry* app = item ? _viewModel.applications().withKey(item->id) : nullptr)
            icons.append(iconRequest(*app));
    return icons;
}

void UnplacedPanel::refresh() {
    _items.clear();
    _rows.clear();
    std::optional<Kind> kind;
    for (const UnplacedItem& item :
         unplacedItems(_viewModel, _viewModel.shown().mode(), _machine.locale)) {
        if (std::exchange(kind, item.kind) != item.kind) {
            _items.append(std::nullopt);
            _rows.append(QVariantMap{{QStringLiteral("title"), titleOf(item.kind)},
                                     {QStringLiteral("action"), QString()}});
        }
        const bool isFolder = item.kind == Kind::smartFolder;
        QString symbol;
        if (const SmartFolderDefinition* definition =
                isFolder ? _viewModel.smartFolders().definition(QUuid::fromString(item.id)) : nullptr)
            symbol = definition->customSymbolName.value_or(QString());
        _items.append(item);
        _rows.append(
            QVariantMap{{QStringLiteral("title"), item.name},
                        {QStringLiteral("text"), item.text},
                        {QStringLiteral("kind"), int(isFolder ? IconItem::SmartFolder : IconItem::App)},
                        {QStringLiteral("appKeys"), isFolder ? QStringList() : QStringList(item.id)},
                        {QStringLiteral("symbolName"), symbol},
                        {QStringLiteral("action"), actionOf(item.kind)}});
    }
    Q_EMIT changed();
}

} // namespace tessellar
