#include "editing/tile_clipboard.h"

#include "platform/texts.h"

namespace tessellar {
namespace {

bool isWithinTileLimit(const Page& items) {
    qsizetype count = 0;
    return forEachItem({items},
                       [&](const LaunchpadItem&) { return ++count <= TileClipboard::maximumTiles; });
}

QString lineFor(const LaunchpadItem& item) {
    QString name;
    if (const AppEntry* app = item.app())
        name = app->name;
    else if (const FolderEntry* folder = item.folder())
        name = folder->name;
    else
        name = Texts::tr("Smart Folder");
    return name.replace(u'\n', u' ');
}

} // namespace

bool TileClipboard::write(const Page& items, TileClipboardPayload::Operation operation,
                          std::optional<LauncherWindowMode> sourceMode) {
    if (items.isEmpty() || !isWithinTileLimit(items))
        return false;
    const TileClipboardPayload payload{
        .items = items, .operation = operation, .sourceMode = sourceMode};
    const QByteArray bytes = json::writeCompact(json::encode(payload));
    if (bytes.size() > maximumBytes)
        return false;

    QStringList lines;
    QList<PasteboardItem> written{{}};
    for (const LaunchpadItem& item : items) {
        lines += lineFor(item);
        const AppEntry* app = item.app();
        if (!app)
            continue;
        if (written.last().data.contains(pasteboard::fileUrl))
            written.append(PasteboardItem());
        written.last().data.insert(pasteboard::fileUrl,
                                   json::BundleUrl::encode(app->path).toString().toUtf8());
    }
    written.first().data.insert(type, bytes);
    written.first().data.insert(pasteboard::text, lines.join(u'\n').toUtf8());
    return _pasteboard.write(written);
}

std::optional<TileClipboardPayload> TileClipboard::read() const {
    for (const PasteboardItem& item : _pasteboard.items()) {
        const auto bytes = item.data.constFind(type);
        if (bytes == item.data.constEnd())
            continue;
        if (bytes->size() > maximumBytes)
            return std::nullopt;
        auto payload = json::decodeDocument<TileClipboardPayload>(*bytes);
        if (!payload || payload->version != TileClipboardPayload::currentVersion ||
            payload->items.isEmpty() || !isWithinTileLimit(payload->items))
            return std::nullopt;
        return *std::move(payload);
    }
    return std::nullopt;
}

} // namespace tessellar
