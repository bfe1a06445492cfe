#pragma once

#include "launcher/launcher_error.h"
#include "model/json.h"

namespace tessellar {

class LauncherViewModel;
class Locale;

/// Something that is not on the pages of a display mode, though it could be.
struct UnplacedThing {
    enum class Kind {
        hidden,      ///< an application that the user hid
        smartFolder, ///< one without a tile
        place,       ///< kept for an application that went, should it come back
    };
    Kind kind = Kind::hidden;
    QString id; ///< the app key, or the smart folder's identifier
    QString name;
    QString text; ///< more about it, for people; may be empty

    bool operator==(const UnplacedThing&) const = default;
};

/// Kind by kind; hidden applications and smart folders by name, places in the order of the arrangement.
QList<UnplacedThing> unplacedThings(const LauncherViewModel& launcher, LauncherWindowMode mode,
                                    const Locale& locale);

/// Unhides an application, gives a smart folder its tile: steps of the layout's history. Of a place,
/// forgets it, which cannot be taken back.
std::expected<void, LauncherError> placeOrForget(LauncherViewModel& launcher, LauncherWindowMode mode,
                                                 const UnplacedThing& thing);

namespace json {

template <>
struct RawValues<UnplacedThing::Kind> : EnumeratorNames<UnplacedThing::Kind::place> {};
template <>
struct Fields<UnplacedThing> {
    using U = UnplacedThing;
    static constexpr auto list = fields(required("kind", &U::kind), required("id", &U::id),
                                        required("name", &U::name), defaulted("text", &U::text));
};

} // namespace json
} // namespace tessellar
