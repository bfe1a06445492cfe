#pragma once

#include "model/items.h"
#include "model/launcher_window_mode.h"
#include "platform/pasteboard.h"

namespace tessellar {

/// What travels when tiles are cut or copied.
struct TileClipboardPayload {
    enum class Operation { copy, cut };

    static constexpr int currentVersion = 1;

    int version = currentVersion;
    Page items; ///< in the order of the selection; folders with their contents
    Operation operation = Operation::copy;
    std::optional<LauncherWindowMode> sourceMode; ///< of the layout that they came from

    bool operator==(const TileClipboardPayload&) const = default;
};

/// Tiles on the pasteboard: as a payload of our own, and for other programs as the tiles' names and the
/// applications' file URLs. All failures are silent.
class TileClipboard {
public:
    static inline const QString type = QStringLiteral("com.tessellar.app.tile-selection");
    /// Tiles at any depth; a folder counts as one besides its contents.
    static constexpr qsizetype maximumTiles = 1'024;
    static constexpr qsizetype maximumBytes = 4'194'304; ///< of encoded JSON

    explicit TileClipboard(Pasteboard& pasteboard) : _pasteboard(pasteboard) {}

    /// False when there is nothing to write or more than the limits allow, and the pasteboard is as it
    /// was; or when the pasteboard does not take it.
    bool write(const Page& items, TileClipboardPayload::Operation operation,
               std::optional<LauncherWindowMode> sourceMode);
    /// Nothing unless the pasteboard holds a whole payload of this version within the limits.
    std::optional<TileClipboardPayload> read() const;

private:
    Pasteboard& _pasteboard;
};

namespace json {

template <>
struct RawValues<TileClipboardPayload::Operation> {
    static constexpr std::array values{std::pair{TileClipboardPayload::Operation::copy, "copy"},
                                       std::pair{TileClipboardPayload::Operation::cut, "cut"}};
};
template <>
struct Fields<TileClipboardPayload> {
    using P = TileClipboardPayload;
    static constexpr auto list =
        fields(required("version", &P::version), required("items", &P::items),
               required("operation", &P::operation), optional("sourceMode", &P::sourceMode));
};

} // namespace json
} // namespace tessellar
