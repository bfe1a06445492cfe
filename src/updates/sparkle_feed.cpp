#include "updates/sparkle_feed.h"

#include "platform/http.h"
#include "platform/text.h"
#include "updates/sparkle_version.h"
#include "updates/untrusted_text.h"

#include <QDateTime>
#include <pugixml.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace tessellar {
namespace {

constexpr std::string_view sparkleNamespace = "http://www.andymatuschak.org/xml-namespaces/sparkle";
constexpr qsizetype longestNotes = 1'000;
constexpr qsizetype longestDescription = 20'000; ///< the release notes are taken from its beginning
constexpr qint64 longestPhase = 366 * 86'400;

QString text(const char* utf8) { return trimmed(QString::fromUtf8(utf8)); }

/// The prefixes of Sparkle's namespace in one element, including inherited ones. An empty prefix means
/// the default namespace.
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

    /// The local name if it is in the namespace, otherwise empty.
    std::string_view local(std::string_view name, bool isAttribute) const {
        const auto colon = name.find(':');
        if (colon == std::string_view::npos && isAttribute)
            return {}; // the default namespace does not apply to attributes
        const std::string_view prefix = colon == std::string_view::npos ? "" : name.substr(0, colon);
        if (std::ranges::find(_known, prefix) == _known.end())
            return {};
        return colon == std::string_view::npos ? name : name.substr(colon + 1);
    }

private:
    std::vector<std::string_view> _known;
};

/// Treats "14" and "14.0" as equal.
int compareSystems(QString a, QString b) {
    for (QString* version : {&a, &b})
        while (version->endsWith(u".0"))
            version->chop(2);
    const auto order = compareNumeric(a, b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

/// The version after the last underscore of an archive's name, if it is one: 1.2 in "Fern_1.2.dmg",
/// none in "my_app.zip".
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
    const qsizetype first = name.startsWith(u'v', Qt::CaseInsensitive) ? 1 : 0;
    return name.size() > first && name[first].isDigit() ? name : QString();
}

/// The text of an HTML description.
QString plainText(QString html) {
    html.truncate(longestDescription);
    QString words;
    bool isTag = false;
    for (const QChar c : std::as_const(html)) {
        if (c == u'<')
            isTag = true;
        else if (c == u'>' && std::exchange(isTag, false))
            words += u' ';
        else if (!isTag)
            words += c;
    }
    for (const auto& [entity, character] : {std::pair{u"&lt;", u'<'},
                                            {u"&gt;", u'>'},
                                            {u"&quot;", u'"'},
                                            {u"&#39;", u'\''},
                                            {u"&nbsp;", u' '},
                                            {u"&amp;", u'&'}})
        words.replace(QStringView(entity).toString(), QString(QChar(character)));
    return toSingleLine(words, longestNotes);
}

QString pageAddress(const QString& url) {
    return url.size() <= longestNotes && isAllowedAddress(QUrl(url)) ? url : QString();
}

/// The relevant parts of an item.
struct Item {
    QString version;
    QString shownVersion;
    QString url;
    QString channel;
    QString os;
    QString minimumSystem;
    QString maximumSystem;
    QString published;
    QString phase; ///< seconds between the groups of a phased rollout
    bool isCritical = false;
    QString notesUrl;
    QString description;
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
        if (std::string_view(child.name()) == "pubDate")
            item.published = text(child.child_value());
        else if (std::string_view(child.name()) == "description")
            item.description = text(child.child_value());
        const std::string_view name = inner.local(child.name(), false);
        item.isCritical = item.isCritical || name == "criticalUpdate";
        for (const auto& [wanted, value] : {std::pair{"version", &ownVersion},
                                            {"shortVersionString", &ownShownVersion},
                                            {"channel", &item.channel},
                                            {"os", &item.os},
                                            {"minimumSystemVersion", &item.minimumSystem},
                                            {"maximumSystemVersion", &item.maximumSystem},
                                            {"phasedRolloutInterval", &item.phase},
                                            {"releaseNotesLink", &item.notesUrl}})
            if (name == wanted)
                *value = text(child.child_value());
    }
    if (item.version.isEmpty())
        item.version = ownVersion;
    if (item.version.isEmpty())
        item.version = versionInUrl(item.url);
    if (item.shownVersion.isEmpty())
        item.shownVersion = ownShownVersion;
    item.shownVersion = plausibleVersion(item.shownVersion).value_or(item.version);
    return item;
}

/// True if a release is available here: a phased rollout reaches one group after another, but critical
/// and undated releases reach all at once.
bool hasArrived(const Item& item, const SparkleCircumstances& here) {
    const qint64 phase = std::clamp<qint64>(item.phase.toLongLong(), 0, longestPhase);
    const QDateTime published = QDateTime::fromString(item.published, Qt::RFC2822Date);
    return item.isCritical || phase == 0 || !published.isValid() ||
           static_cast<double>(published.toSecsSinceEpoch() + phase * here.rolloutGroup) <=
               here.now.unixSeconds();
}

bool isOffered(const Item& item, const SparkleCircumstances& here) {
    const std::optional<QString>& system = here.systemVersion;
    return plausibleVersion(item.version) && item.channel.isEmpty() &&
           (item.os.isEmpty() || item.os.compare(u"macos", Qt::CaseInsensitive) == 0) &&
           (!system || item.minimumSystem.isEmpty() ||
            compareSystems(item.minimumSystem, *system) <= 0) &&
           (!system || item.maximumSystem.isEmpty() ||
            compareSystems(item.maximumSystem, *system) >= 0) &&
           hasArrived(item, here);
}

} // namespace

std::expected<std::optional<SparkleItem>, SparkleFeedError>
bestSparkleItem(const QByteArray& feed, const SparkleCircumstances& circumstances) {
    pugi::xml_document document;
    const auto parsed = document.load_buffer(feed.constData(), static_cast<std::size_t>(feed.size()),
                                             pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                                 pugi::parse_wconv_attribute);
    const pugi::xml_node rss = document.child("rss");
    const pugi::xml_node channel = rss.child("channel");
    if (!parsed || !channel)
        return std::unexpected(SparkleFeedError::damaged);
    const Prefixes prefixes(Prefixes(Prefixes(), rss), channel);
    std::optional<Item> best;
    bool hasItems = false;
    for (const pugi::xml_node& node : channel.children("item")) {
        hasItems = true;
        Item item = readItem(node, prefixes);
        if (isOffered(item, circumstances) &&
            (!best || compareSparkle(item.version, best->version) > 0))
            best = std::move(item);
    }
    if (!hasItems)
        return std::unexpected(SparkleFeedError::noItems);
    if (!best)
        return std::nullopt;
    return SparkleItem{
        best->version, best->shownVersion, {plainText(best->description), pageAddress(best->notesUrl)}};
}

} // namespace tessellar
