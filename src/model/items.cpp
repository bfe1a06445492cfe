#include "model/items.h"

#include "model/json_losses.h"
#include "model/json_unions.h"
#include "platform/file_system.h"
#include "platform/texts.h"
#include "platform/uuid_source.h"

#include <QHash>
#include <QUrl>

#include <algorithm>

namespace tessellar {

QUuid LaunchpadItem::id() const {
    if (const AppEntry* entry = app())
        return entry->id;
    if (const FolderEntry* entry = folder())
        return entry->id;
    return smartFolder()->definitionID;
}

std::size_t qHash(const AppEntry& entry, std::size_t seed) {
    return qHashMulti(seed, entry.id, entry.bundleIdentifier.value_or(QString()), entry.name,
                      entry.originalName, entry.path, static_cast<int>(entry.source),
                      entry.category.value_or(QString()), entry.isDuplicateBundleIdentifier,
                      entry.alias ? entry.alias->appKey : QString());
}

std::size_t qHash(const FolderEntry& folder, std::size_t seed) {
    seed = qHashMulti(seed, folder.id, folder.name, folder.customSymbolName.value_or(QString()));
    for (const Page& page : folder.pages)
        seed = qHashRange(page.begin(), page.end(), seed + 1);
    return seed;
}

std::size_t qHash(const LaunchpadItem& item, std::size_t seed) {
    if (const AppEntry* entry = item.app())
        return qHash(*entry, seed);
    if (const FolderEntry* entry = item.folder())
        return qHash(*entry, seed);
    return qHash(item.smartFolder()->definitionID, seed);
}

QString appKey(const AppEntry& entry) {
    if (entry.alias)
        return entry.alias->appKey;
    if (entry.isDuplicateBundleIdentifier)
        return entry.path;
    return entry.bundleIdentifier.value_or(entry.path);
}

bool isNestedInAnotherApplication(const QString& path) {
    const QString parent = FileSystem::parent(FileSystem::standardized(path));
    for (const auto component : QStringView(parent).split(u'/'))
        if (component.endsWith(u".app", Qt::CaseInsensitive))
            return true;
    return false;
}

bool forEachItem(const Pages& pages, const std::function<bool(const LaunchpadItem&)>& visit) {
    for (const Page& page : pages) {
        for (const LaunchpadItem& item : page) {
            if (!visit(item))
                return false;
            if (const FolderEntry* folder = item.folder(); folder && !forEachItem(folder->pages, visit))
                return false;
        }
    }
    return true;
}

QList<AppEntry> allApplications(const FolderEntry& folder) {
    QList<AppEntry> result;
    forEachItem(folder.pages, [&](const LaunchpadItem& item) {
        if (const AppEntry* entry = item.app())
            result.append(*entry);
        return true;
    });
    return result;
}

Page previewItems(const FolderEntry& folder, qsizetype limit) {
    Page result;
    for (const Page& page : folder.pages) {
        for (const LaunchpadItem& item : page) {
            if (result.size() >= limit)
                return result;
            result.append(item);
        }
    }
    return result;
}

std::optional<QString> categoryDisplayName(const QString& category) {
    static constexpr QLatin1StringView prefix("public.app-category.");
    static const QHash<QStringView, const char*> names{
        {u"business", Texts::noop("Business")},
        {u"developer-tools", Texts::noop("Developer")},
        {u"education", Texts::noop("Education")},
        {u"entertainment", Texts::noop("Entertainment")},
        {u"finance", Texts::noop("Finance")},
        {u"games", Texts::noop("Games")},
        {u"graphics-design", Texts::noop("Design")},
        {u"health-fitness", Texts::noop("Health & Fitness")},
        {u"lifestyle", Texts::noop("Lifestyle")},
        {u"medical", Texts::noop("Medical")},
        {u"music", Texts::noop("Music")},
        {u"news", Texts::noop("News")},
        {u"photography", Texts::noop("Photography")},
        {u"productivity", Texts::noop("Productivity")},
        {u"reference", Texts::noop("Reference")},
        {u"social-networking", Texts::noop("Social")},
        {u"sports", Texts::noop("Sports")},
        {u"travel", Texts::noop("Travel")},
        {u"utilities", Texts::noop("Utilities")},
        {u"video", Texts::noop("Video")},
        {u"weather", Texts::noop("Weather")},
    };
    if (!category.startsWith(prefix))
        return std::nullopt;
    if (category.endsWith(QLatin1StringView("-games")))
        return Texts::tr(names.value(u"games"));
    const auto found = names.find(QStringView(category).sliced(prefix.size()));
    return found == names.end() ? std::nullopt : std::optional(Texts::tr(*found));
}

namespace json {

static constexpr auto appFields =
    fields(required("id", &AppEntry::id), optional("bundleIdentifier", &AppEntry::bundleIdentifier),
           required("name", &AppEntry::name), defaulted("originalName", &AppEntry::originalName),
           required<BundleUrl>("path", &AppEntry::path), required("source", &AppEntry::source),
           optional("category", &AppEntry::category),
           defaulted("isDuplicateBundleIdentifier", &AppEntry::isDuplicateBundleIdentifier),
           optional("alias", &AppEntry::alias));

static constexpr auto folderFields =
    fields(required("id", &FolderEntry::id), required("name", &FolderEntry::name),
           optional("customSymbolName", &FolderEntry::customSymbolName));

// In most paths, a space is all that a URL has to escape. QUrl costs more than all the rest of a tile,
// so it is only used for the others.
static bool isPlain(QStringView path) {
    return std::ranges::all_of(path, [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'-' && c <= u'9') ||
               c == u'_' || c == u' ';
    });
}

static constexpr QLatin1StringView scheme("file://");
static constexpr QLatin1StringView escapedSpace("%20");

/// nullopt if the URL is none of the plain ones.
static std::optional<QString> plainPath(const QString& url) {
    if (!url.startsWith(scheme) || url.contains(u' '))
        return std::nullopt;
    QString path = url.sliced(scheme.size());
    path.replace(escapedSpace, QLatin1StringView(" "));
    if (!path.startsWith(u'/') || !isPlain(path))
        return std::nullopt;
    return path;
}

Decoded<QString> BundleUrl::decode(const QJsonValue& value) {
    const QString text = value.toString();
    if (const auto path = plainPath(text))
        return FileSystem::standardized(*path);
    const QUrl url(text, QUrl::StrictMode);
    const QString path = url.path(QUrl::FullyDecoded);
    if (!value.isString() || !url.isValid() || url.scheme() != u"file" || !path.startsWith(u'/') ||
        path.contains(QChar(0)))
        return expected("a file URL");
    return FileSystem::standardized(path);
}

QJsonValue BundleUrl::encode(const QString& path) {
    QString text = isPlain(path) ? QString(path).replace(u' ', escapedSpace)
                                 : QString::fromLatin1(QUrl::toPercentEncoding(path, "/!$&'()*+,=:@"));
    text.prepend(scheme);
    if (!text.endsWith(u'/'))
        text += u'/';
    return text;
}

Decoded<AppEntry> Codec<AppEntry>::decode(const QJsonValue& value) {
    auto entry = decodeRecord<AppEntry>(value, appFields);
    // Null, not empty: an application's name may be empty.
    if (entry && entry->originalName.isNull())
        entry->originalName = entry->name;
    return entry;
}

QJsonValue Codec<AppEntry>::encode(const AppEntry& entry) { return encodeRecord(entry, appFields); }

static Pages folderContents(const QJsonObject& object) {
    if (auto pages = json::decode<Pages>(object.value(u"pages"))) {
        if (pages->isEmpty())
            pages->append(Page());
        return *std::move(pages);
    }
    const QJsonValue items = object.value(u"items");
    if (auto page = json::decode<Page>(items))
        return {*std::move(page)};
    Page page;
    if (const auto entries = json::decode<QList<AppEntry>>(items))
        for (const AppEntry& entry : *entries)
            page.append(entry);
    else if (!items.isUndefined() || !object.value(u"pages").isUndefined())
        Losses::note();
    return {page};
}

Decoded<FolderEntry> Codec<FolderEntry>::decode(const QJsonValue& value) {
    auto folder = decodeRecord<FolderEntry>(value, folderFields);
    if (folder)
        folder->pages = folderContents(value.toObject());
    return folder;
}

QJsonValue Codec<FolderEntry>::encode(const FolderEntry& folder) {
    QJsonObject object = encodeRecord(folder, folderFields).toObject();
    object.insert(u"pages", json::encode(folder.pages));
    return object;
}

// The cases of a tile, in the variant's order; each payload is wrapped in {"_0": …}.
static constexpr std::array itemCases{"app", "folder", "smartFolder"};

template <typename Payload>
static Decoded<LaunchpadItem> decodePayload(const QJsonValue& wrapper) {
    auto decoded = json::decode<Payload>(wrapper.toObject().value(u"_0"));
    if (!decoded)
        return std::unexpected(std::move(decoded.error()).within(QStringLiteral("_0")));
    return LaunchpadItem(*std::move(decoded));
}

Decoded<LaunchpadItem> Codec<LaunchpadItem>::decode(const QJsonValue& value) {
    if (!value.isObject())
        return expected("an object");
    const QJsonObject object = value.toObject();
    const auto found = decodeCase(object, itemCases);
    if (!found)
        return std::unexpected(found.error());
    static constexpr std::array decoders{&decodePayload<AppEntry>, &decodePayload<FolderEntry>,
                                         &decodePayload<SmartFolderReference>};
    const QLatin1StringView key(itemCases[*found]);
    auto item = decoders[*found](object.value(key));
    if (!item)
        return std::unexpected(std::move(item.error()).within(key));
    return item;
}

QJsonValue Codec<LaunchpadItem>::encode(const LaunchpadItem& item) {
    const QJsonValue payload = std::visit([](const auto& value) { return json::encode(value); }, item);
    return QJsonObject{
        {QLatin1StringView(itemCases[item.index()]), QJsonObject{{QStringLiteral("_0"), payload}}}};
}

} // namespace json
} // namespace tessellar
