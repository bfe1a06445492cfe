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

/// A page is an ordered list of tiles; pages make up the arrangement, and every folder's contents.
/// Implicitly shared: copying costs a pointer. Iterate over std::as_const: a loop over a non-const
/// shared copy detaches it.
using Page = QList<LaunchpadItem>;
using Pages = QList<Page>;

/// Where an entry was found; the first three are kinds of scanned folders.
enum class AppSource { system, local, user, legacyImport };

/// How an application was installed; derived from the bundle on demand, see app_state.h.
enum class AppInstallKind { manual, appStore };

/// Marks an alias tile: an additional tile for an application.
struct AppAliasReference {
    QString appKey; ///< of the aliased application

    bool operator==(const AppAliasReference&) const = default;
};

/// One application as placed in the arrangement.
struct AppEntry {
    QUuid id; ///< identity of the tile
    std::optional<QString> bundleIdentifier;
    QString name;         ///< shown under the tile; editable by the user
    QString originalName; ///< the application's own name
    QString path;         ///< of the bundle, without trailing slash; a file URL in JSON
    AppSource source = AppSource::local;
    std::optional<QString> category; ///< for example "public.app-category.games"
    bool isDuplicateBundleIdentifier = false;
    std::optional<AppAliasReference> alias;

    bool operator==(const AppEntry&) const = default;
};

/// The tile of a smart folder; its definition is stored separately.
struct SmartFolderReference {
    QUuid definitionID;

    bool operator==(const SmartFolderReference&) const = default;
};

/// A folder made by the user. Has at least one page after decoding.
struct FolderEntry {
    QUuid id;
    QString name;
    std::optional<QString> customSymbolName; ///< replaces the preview of the contents
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

/// Hashes all fields, consistent with equality.
std::size_t qHash(const AppEntry& entry, std::size_t seed = 0);
std::size_t qHash(const FolderEntry& folder, std::size_t seed = 0);
std::size_t qHash(const LaunchpadItem& item, std::size_t seed = 0);

/// The key for everything stored per application: an alias's own key; else the path if several
/// installed bundles share the identifier; else the bundle identifier; else the path.
QString appKey(const AppEntry& entry);

/// True if a component of the standardized path other than the last ends in ".app", ignoring case.
bool isNestedInAnotherApplication(const QString& path);

/// The applications of a folder in page order, nested folders depth first.
QList<AppEntry> allApplications(const FolderEntry& folder);

/// The first `limit` tiles of a folder, page by page, without entering folders.
Page previewItems(const FolderEntry& folder, qsizetype limit);

/// Calls `visit` for each tile at any depth, folders before their contents, until it returns false.
bool forEachItem(const Pages& pages, const std::function<bool(const LaunchpadItem&)>& visit);

/// A category's English name; nullopt for an unknown identifier. All games subcategories are "Games".
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

/// Field codec: a path as the file URL of a folder.
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
/// Also reads the two older forms of a folder ("items": tiles or bare applications). Contents in no
/// known form give an empty folder rather than an error.
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
