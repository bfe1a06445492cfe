#pragma once

#include "launcher/launcher_error.h"
#include "model/json.h"

namespace tessellar {

class LauncherViewModel;
class Locale;

/// Something that could be on a mode's pages, but is not.
struct UnplacedItem {
    enum class Kind {
        hidden,      ///< an application hidden by the user
        smartFolder, ///< a smart folder without a tile
        place,       ///< the remembered place of a dropped application
    };
    Kind kind = Kind::hidden;
    QString id; ///< the app key, or the smart folder's identifier
    QString name;
    QString text; ///< details for the user; may be empty

    bool operator==(const UnplacedItem&) const = default;
};

/// Grouped by kind; hidden applications and smart folders by name, places in arrangement order.
QList<UnplacedItem> unplacedItems(const LauncherViewModel& launcher, LauncherWindowMode mode,
                                  const Locale& locale);

/// Unhides an application or adds a smart folder's tile, as a step of history; or forgets a place,
/// which cannot be undone.
std::expected<void, LauncherError> placeOrForget(LauncherViewModel& launcher, LauncherWindowMode mode,
                                                 const UnplacedItem& item);

namespace json {

template <>
struct RawValues<UnplacedItem::Kind> : EnumeratorNames<UnplacedItem::Kind::place> {};
template <>
struct Fields<UnplacedItem> {
    using U = UnplacedItem;
    static constexpr auto list = fields(required("kind", &U::kind), required("id", &U::id),
                                        required("name", &U::name), defaulted("text", &U::text));
};

} // namespace json
} // namespace tessellar
