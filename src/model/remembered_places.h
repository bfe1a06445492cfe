#pragma once

#include "model/items.h"

#include <QSet>

#include <functional>

namespace tessellar {

/// An application that was dropped, and when.
struct RememberedPlace {
    QUuid id; ///< of its tile
    Instant goneAt;
    /// Removed by the user: gets its place back when put back, not when reinstalled.
    bool isRemoved = false;

    bool operator==(const RememberedPlace&) const = default;
};

/// The original location of a tile's application, if the tile now stands for a copy elsewhere. Once the
/// application is back there, the tile stands for it again.
struct RememberedHome {
    QUuid id; ///< of the tile
    QString path;
    std::optional<QString> bundleIdentifier;
    Instant leftAt;

    bool operator==(const RememberedHome&) const = default;
};

/// The applications dropped from one mode's arrangement, as the arrangement would be with them. A
/// returning application finds its place: its folder (even if that closed meanwhile), its page, and its
/// neighbours, whether they are back or not.
struct RememberedPlaces {
    static constexpr int supportedVersion = 1;
    static constexpr std::chrono::days duration{90};
    /// Beyond this, the oldest are forgotten.
    static constexpr qsizetype maximumPlaces = 2'000;

    int version = supportedVersion;
    /// Applications are the dropped ones. All other tiles are stored as mere references by identifier;
    /// of folders, also the contents.
    Pages pages;
    QList<RememberedPlace> places;
    /// Folders in `pages` that closed because applications were dropped. Other missing folders were
    /// dissolved by the user and are not restored.
    QList<QUuid> closedFolders;
    QList<RememberedHome> homes;

    bool operator==(const RememberedPlaces&) const = default;
    bool isEmpty() const { return places.isEmpty() && homes.isEmpty(); }

    /// Forgets the places for which `isForgotten` is true.
    void forget(const std::function<bool(const AppEntry&)>& isForgotten);
    /// Marks the applications at `path` as removed by the user, or not.
    void setRemoved(const QString& path, bool isRemoved);
};

/// A remembered place as shown in a list.
struct PlaceSummary {
    AppEntry tile;
    Instant goneAt;
    bool isRemoved = false;
    int page = 0;            ///< of the arrangement, from 0; counts remembered pages only
    QStringList folderNames; ///< outermost first

    bool operator==(const PlaceSummary&) const = default;
};
/// In the order of the arrangement.
QList<PlaceSummary> summaries(const RememberedPlaces& places);

/// An arrangement with the dropped applications woven in.
struct WovenPages {
    Pages pages;
    QHash<QUuid, RememberedPlace> absent; ///< tiles that the arrangement lacks
};

/// Puts remembered applications where they would be in the current arrangement: next to the same
/// neighbour on its page, on a page of their own if they had one, and in their folder, wherever it has
/// been moved. Ignores those dropped before `oldest`.
WovenPages weave(const Pages& pages, const RememberedPlaces& places, Instant oldest);

namespace json {

template <>
struct Fields<RememberedPlace> {
    static constexpr auto list = fields(required("id", &RememberedPlace::id),
                                        required<Iso8601>("goneAt", &RememberedPlace::goneAt),
                                        defaulted("isRemoved", &RememberedPlace::isRemoved));
};
template <>
struct Fields<RememberedHome> {
    static constexpr auto list =
        fields(required("id", &RememberedHome::id), required<BundleUrl>("path", &RememberedHome::path),
               optional("bundleIdentifier", &RememberedHome::bundleIdentifier),
               required<Iso8601>("leftAt", &RememberedHome::leftAt));
};
template <>
struct Fields<RememberedPlaces> {
    using P = RememberedPlaces;
    static constexpr auto list = fields(
        required("version", &P::version), required("pages", &P::pages), required("places", &P::places),
        required("closedFolders", &P::closedFolders), required("homes", &P::homes));
};

} // namespace json
} // namespace tessellar
