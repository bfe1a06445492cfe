#pragma once

#include "model/items.h"
#include "model/launcher_window_mode.h"
#include "platform/pasteboard.h"

namespace tessellar {

/// The data of cut or copied tiles.
struct TileClipboardPayload {
    enum class Operation { copy, cut };

    static constexpr int currentVersion = 1;

    int version = currentVersion;
    Page items; ///< in selection order; folders include their contents
    Operation operation = Operation::copy;
    std::optional<LauncherWindowMode> sourceMode; ///< of the source layout

    bool operator==(const TileClipboardPayload&) const = default;
};

/// Tiles on the pasteboard: as our own payload and, for other programs, as the tiles' names and the
/// applications' file URLs. Failures are silent.
class TileClipboard {
public:
    static inline const QString type = QStringLiteral("com.tessellar.app.tile-selection");
    /// Counts tiles at any depth, and folders besides their contents.
    static constexpr qsizetype maximumTiles = 1'024;
    static constexpr qsizetype maximumBytes = 4'194'304; ///< of encoded JSON

    explicit TileClipboard(Pasteboard& pasteboard) : _pasteboard(pasteboard) {}

    /// False if there is nothing to write, if a limit is exceeded (the pasteboard is unchanged), or if
    /// the pasteboard refuses.
    bool write(const Page& items, TileClipboardPayload::Operation operation,
               std::optional<LauncherWindowMode> sourceMode);
    /// nullopt unless the pasteboard holds a complete payload of this version within the limits.
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
