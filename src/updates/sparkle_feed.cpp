#include "updates/sparkle_feed.h"

#include "platform/text.h"

#include <pugixml.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace tessellar {
namespace {

constexpr std::string_view sparkleNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";
constexpr qsizetype longestVersion = 100;

QString text(const char* utf8) { return trimmed(QString::fromUtf8(utf8)); }

/// The prefixes that stand for Sparkle's namespace in one element, and those it inherits. An empty
/// prefix is the namespace of elements without one.
class Prefixes {
public:
    Prefixes() = default;
    Prefixes(const Prefixes& outer, const pugi::xml_node& element) : _known(outer._known) {
        for (const pugi::xml_attribute& attribute : element.attributes()) {
            std::string_view name = attribute.name();
            if (name != "xmlns" && !name.starts_with("xmlns:"))
                continue;
            name.remove_prefix(std::min(name.size(), std::string_view("xmlns:").size()));
            std::erase(_known, name);
            if (attribute.value() == sparkleNamespace && _known.size() < 8)
                _known.push_back(name);
        }
    }

    /// The name without its prefix where that stands for the namespace, else nothing.
    std::string_view local(std::string_view name, bool isAttribute) const {
        const auto colon = name.find(':');
        if (colon == std::string_view::npos && isAttribute)
            return {}; // the default namespace is none of attributes
        const std::string_view prefix = colon == std::string_view::npos ? "" : name.substr(0, colon);
        if (std::ranges::find(_known, prefix) == _known.end())
            return {};
        return colon == std::string_view::npos ? name : name.substr(colon + 1);
    }

private:
    std::vector<std::string_view> _known;
};

/// Systems are named "14" and "14.0" alike.
int compareSystems(QString a, QString b) {
    for (QString* version : {&a, &b})
        while (version->endsWith(u".0"))
            version->chop(2);
    const auto order = compareNumeric(a, b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

/// What follows the last underscore of an archive's name: "Fern_1.2.dmg" is 1.2.
QString versionInUrl(const QString& url) {
    QString name = url.section(u'/', -1).section(u'?', 0, 0).section(u'#', 0, 0);
    const qsizetype underscore = name.lastIndexOf(u'_');
    if (underscore < 0)
        return {};
    name = name.sliced(underscore + 1);
    for (const auto* ending : {u".zip", u".dmg", u".pkg", u".xz", u".gz", u".bz2", u".tgz", u".tbz",
                               u".txz", u".aar", u".tar"})
        if (name.endsWith(QStringView(ending), Qt::CaseInsensitive))
            name.chop(QStringView(ending).size());
    return name;
}

/// What an item says, as far as it matters here.
struct Item {
    QString version;
    QString shownVersion;
    QString url;
    QString channel;
    QString os;
    QString minimumSystem;
    QString maximumSystem;
};

Item readItem(const pugi::xml_node& node, const Prefixes& outer) {
    const Prefixes prefixes(outer, node);
    Item item;
    QString ownVersion;
    QString ownShownVersion;
    for (const pugi::xml_node& child : node.children()) {
        const Prefixes inner(prefixes, child);
        if (std::string_view(child.name()) == "enclosure") {
            for (const pugi::xml_attribute& attribute : child.attributes()) {
                const std::string_view name = inner.local(attribute.name(), true);
                if (name == "version")
                    item.version = text(attribute.value());
                else if (name == "shortVersionString")
                    item.shownVersion = text(attribute.value());
                else if (name == "os")
                    item.os = text(attribute.value());
                else if (std::string_view(attribute.name()) == "url")
                    item.url = text(attribute.value());
            }
            continue;
        }
        const std::string_view name = inner.local(child.name(), false);
        for (const auto& [wanted, value] : {std::pair{"version", &ownVersion},
                                            {"shortVersionString", &ownShownVersion},
                                            {"channel", &item.channel},
                                            {"os", &item.os},
                                            {"minimumSystemVersion", &item.minimumSystem},
                                            {"maximumSystemVersion", &item.maximumSystem}})
            if (name == wanted)
                *value = text(child.child_value());
    }
    if (item.version.isEmpty())
        item.version = ownVersion;
    if (item.version.isEmpty())
        item.version = versionInUrl(item.url);
    if (item.shownVersion.isEmpty())
        item.shownVersion = ownShownVersion;
    if (item.shownVersion.isEmpty() || item.shownVersion.size() > longestVersion)
        item.shownVersion = item.version;
    return item;
}

bool isOffered(const Item& item, const std::optional<QString>& system) {
    return !item.version.isEmpty() && item.version.size() <= longestVersion && item.channel.isEmpty() &&
           (item.os.isEmpty() || item.os.compare(u"macos", Qt::CaseInsensitive) == 0) &&
           (!system || item.minimumSystem.isEmpty() ||
            compareSystems(item.minimumSystem, *system) <= 0) &&
           (!system || item.maximumSystem.isEmpty() ||
            compareSystems(item.maximumSystem, *system) >= 0);
}

} // namespace

std::expected<std::optional<SparkleItem>, SparkleFeedError>
bestSparkleItem(const QByteArray& feed, const std::optional<QString>& systemVersion) {
    pugi::xml_document document;
    const auto parsed = document.load_buffer(feed.constData(), static_cast<std::size_t>(feed.size()),
                                             pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                                 pugi::parse_wconv_attribute);
    const pugi::xml_node rss = document.child("rss");
    const pugi::xml_node channel = rss.child("channel");
    if (!parsed || !channel)
        return std::unexpected(SparkleFeedError::damaged);
    const Prefixes prefixes(Prefixes(Prefixes(), rss), channel);
    std::optional<SparkleItem> best;
    bool hasItems = false;
    for (const pugi::xml_node& node : channel.children("item")) {
        hasItems = true;
        const Item item = readItem(node, prefixes);
        if (isOffered(item, systemVersion) &&
            (!best || compareNumeric(item.version, best->version) > 0))
            best = SparkleItem{item.version, item.shownVersion};
    }
    if (!hasItems)
        return std::unexpected(SparkleFeedError::noItems);
    return best;
}

} // namespace tessellar
