#pragma once

#include "model/json.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <variant>

namespace tessellar {

class LaunchpadItem;

/// An ordered list of tiles, and an ordered list of such pages: the arrangement, and every folder's
/// contents. Implicitly shared: a copy is a pointer. Iterate over std::as_const, for a loop over a
/// non-const shared copy detaches it.
using Page = QList<LaunchpadItem>;
using Pages = QList<Page>;

/// Where an entry came from. The first three are the kinds of place in which a scan finds bundles.
enum class AppSource { system, local, user, legacyImport };

/// How an application came onto the disk; derived from the bundle when needed, see app_state.h.
enum class AppInstallKind { manual, appStore };

/// Marks an alias tile: a second tile for an application that has its own.
struct AppAliasReference {
    QString appKey; ///< of the application that the tile stands for

    bool operator==(const AppAliasReference&) const = default;
};

/// One application as placed in the arrangement.
struct AppEntry {
    QUuid id; ///< identity of the tile
    std::optional<QString> bundleIdentifier;
    QString name;         ///< shown under the tile; the user may change it
    QString originalName; ///< what the application calls itself
    QString path;         ///< of the bundle, without a trailing slash; a file URL in JSON
    AppSource source = AppSource::local;
    std::optional<QString> category; ///< such as "public.app-category.games"
    bool isDuplicateBundleIdentifier = false;
    std::optional<AppAliasReference> alias;

    bool operator==(const AppEntry&) const = default;
};

/// The tile of a smart folder, whose definition is kept elsewhere.
struct SmartFolderReference {
    QUuid definitionID;

    bool operator==(const SmartFolderReference&) const = default;
};

/// A folder made by the user. A decoded one has at least one page.
struct FolderEntry {
    QUuid id;
    QString name;
    std::optional<QString> customSymbolName; ///< shown instead of the preview of the contents
    Pages pages;

    bool operator==(const FolderEntry&) const;
};

/// One tile.
class LaunchpadItem : public std::variant<AppEntry, FolderEntry, SmartFolderReference> {
public:
    using variant::variant;

    QUuid id() const;

    const AppEntry* app() const { return std::get_if<AppEntry>(this); }
    const FolderEntry* folder() const { return std::get_if<FolderEntry>(this); }
    const SmartFolderReference* smartFolder() const { return std::get_if<SmartFolderReference>(this); }
    AppEntry* app() { return std::get_if<AppEntry>(this); }
    FolderEntry* folder() { return std::get_if<FolderEntry>(this); }
};

inline bool FolderEntry::operator==(const FolderEntry&) const = default;

/// Over all fields, as equality is.
std::size_t qHash(const AppEntry& entry, std::size_t seed = 0);
std::size_t qHash(const FolderEntry& folder, std::size_t seed = 0);
std::size_t qHash(const LaunchpadItem& item, std::size_t seed = 0);

/// The string by which everything per application is keyed: an alias's own; else the path where several
/// installed bundles share the identifier; else the bundle identifier; else the path.
QString appKey(const AppEntry& entry);

/// True when a component of the standardized path other than the last ends in ".app", in any case.
bool isNestedInAnotherApplication(const QString& path);

/// The applications of a folder, page by page in order, nested folders depth first.
QList<AppEntry> allApplications(const FolderEntry& folder);

/// The first `limit` tiles of a folder, page by page, without entering folders.
Page previewItems(const FolderEntry& folder, qsizetype limit);

/// Calls `visit` for each tile at any depth, a folder before its contents. Stops when it returns false.
bool forEachItem(const Pages& pages, const std::function<bool(const LaunchpadItem&)>& visit);

/// What a category is called, in English; nothing for an identifier that has no name. Every games
/// subcategory is "Games".
std::optional<QString> categoryDisplayName(const QString& category);

namespace json {

template <>
struct RawValues<AppSource> {
    static constexpr std::array values{
        std::pair{AppSource::system, "system"}, std::pair{AppSource::local, "local"},
        std::pair{AppSource::user, "user"}, std::pair{AppSource::legacyImport, "legacyImport"}};
};
template <>
struct RawValues<AppInstallKind> {
    static constexpr std::array values{std::pair{AppInstallKind::manual, "manual"},
                                       std::pair{AppInstallKind::appStore, "appStore"}};
};

/// Named as a field's codec: a path as the file URL of a folder.
struct BundleUrl {
    static Decoded<QString> decode(const QJsonValue& value);
    static QJsonValue encode(const QString& path);
};

template <>
struct Fields<AppAliasReference> {
    static constexpr auto list = fields(required("appKey", &AppAliasReference::appKey));
};
template <>
struct Fields<SmartFolderReference> {
    static constexpr auto list = fields(required("definitionID", &SmartFolderReference::definitionID));
};

template <>
struct Codec<AppEntry> {
    static Decoded<AppEntry> decode(const QJsonValue& value);
    static QJsonValue encode(const AppEntry& entry);
};
/// Besides "pages", reads the two older forms of a folder ("items", of tiles or of bare applications);
/// contents that none of them fit leave an empty folder and never fail the document.
template <>
struct Codec<FolderEntry> {
    static Decoded<FolderEntry> decode(const QJsonValue& value);
    static QJsonValue encode(const FolderEntry& folder);
};
template <>
struct Codec<LaunchpadItem> {
    static Decoded<LaunchpadItem> decode(const QJsonValue& value);
    static QJsonValue encode(const LaunchpadItem& item);
};

} // namespace json
} // namespace tessellar
