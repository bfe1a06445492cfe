#pragma once

#include "model/items.h"

#include <QSet>

#include <functional>

namespace tessellar {

/// When an application went whose place is remembered.
struct RememberedPlace {
    QUuid id; ///< of its tile
    Instant goneAt;
    /// The user removed it: it gets its place back when it is put back, not when it is installed anew.
    bool isRemoved = false;

    bool operator==(const RememberedPlace&) const = default;
};

/// Where the application of a tile lay before the tile came to stand for a copy elsewhere. When it
/// is back there, the tile stands for it again.
struct RememberedHome {
    QUuid id; ///< of the tile
    QString path;
    std::optional<QString> bundleIdentifier;
    Instant leftAt;

    bool operator==(const RememberedHome&) const = default;
};

/// What is remembered of the applications that went from one mode's arrangement: that arrangement as it
/// would be with them. An application that comes back finds its place there: its folder, which may
/// have closed when it went, its page, and what lay before and after it, whether that is back or not.
struct RememberedPlaces {
    static constexpr int supportedVersion = 1;
    static constexpr std::chrono::days duration{90};
    /// Those that went first are forgotten when there are more.
    static constexpr qsizetype maximumPlaces = 2'000;

    int version = supportedVersion;
    /// Applications are those that went. Of every other tile this holds its identifier alone, as a
    /// reference; of folders, all but that.
    Pages pages;
    QList<RememberedPlace> places;
    /// Folders in `pages` that closed because of what went. Others that the arrangement does not have
    /// were dissolved by the user and are not made again.
    QList<QUuid> closedFolders;
    QList<RememberedHome> homes;

    bool operator==(const RememberedPlaces&) const = default;
    bool isEmpty() const { return places.isEmpty() && homes.isEmpty(); }

    /// Forgets those for which `isForgotten` is true.
    void forget(const std::function<bool(const AppEntry&)>& isForgotten);
    /// Says of the applications at `path` whether the user removed them.
    void setRemoved(const QString& path, bool isRemoved);
};

/// A remembered place as a list shows it.
struct PlaceSummary {
    AppEntry tile;
    Instant goneAt;
    bool isRemoved = false;
    int page = 0;            ///< of the arrangement, from 0, as far as its pages were remembered
    QStringList folderNames; ///< from the outermost

    bool operator==(const PlaceSummary&) const = default;
};
/// In the order of the arrangement.
QList<PlaceSummary> summaries(const RememberedPlaces& places);

/// An arrangement together with the applications that went from it, each in its place.
struct WovenPages {
    Pages pages;
    QHash<QUuid, RememberedPlace> absent; ///< the tiles that the arrangement does not have
};

/// Puts what is remembered where it would be in the arrangement as it is now: beside the tile before it
/// or after it on its page, on a page of its own where it had one, and in its folder, wherever the user
/// moved that. What went before `oldest` is left out.
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
