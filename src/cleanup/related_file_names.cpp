#include "cleanup/related_file_names.h"

#include <algorithm>
#include <string_view>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

/// Never enough to attribute a folder to one application.
constexpr auto vendorWords = std::to_array<std::string_view>(
    {"google", "microsoft", "adobe", "apple", "mozilla", "logitech", "logi", "amazon", "jetbrains",
     "steam", "epic games", "blizzard", "valve", "native instruments", "company", "vendor"});
/// Names of components that every application has.
constexpr auto genericWords =
    std::to_array<std::string_view>({"app", "application", "main", "core", "data", "cache", "caches",
                                     "preferences", "settings", "update", "updater", "helper", "agent",
                                     "install", "installer", "service", "tools", "utility", "support"});
constexpr auto siblingWords = std::to_array<std::string_view>(
    {"alpha", "beta",     "canary", "ce",   "community", "dev",  "developer", "ea",  "eap", "edu",
     "free",  "insiders", "lite",   "next", "nightly",   "plus", "preview",   "pro", "rc",  "trial"});
/// Identifiers with these first two components belong to many developers.
constexpr auto sharedDevelopers = std::to_array<std::string_view>(
    {"com.github", "com.gitlab", "com.googlecode", "com.electron", "com.mac", "com.me",
     "com.yourcompany", "com.example", "io.github", "io.gitlab", "me.mac", "net.sourceforge",
     "org.sourceforge", "org.eclipse", "co.uk", "com.au"});
/// The system's own folders with plain names.
constexpr auto systemNames = std::to_array<std::string_view>({"addressbook",
                                                              "animoji",
                                                              "app store",
                                                              "assistant",
                                                              "audio",
                                                              "automator",
                                                              "backups",
                                                              "bluetooth",
                                                              "byhost",
                                                              "callhistorydb",
                                                              "callhistorytransactions",
                                                              "cloudkit",
                                                              "clouddocs",
                                                              "colorsync",
                                                              "com.apple.tcc",
                                                              "configuration profiles",
                                                              "coredataubiquitysupport",
                                                              "coreparsec",
                                                              "crashreporter",
                                                              "default",
                                                              "diagnosticreports",
                                                              "diskimages",
                                                              "dock",
                                                              "facetime",
                                                              "familycircle",
                                                              "fileprovider",
                                                              "gamekit",
                                                              "geoservices",
                                                              "homeenergyd",
                                                              "icloud",
                                                              "icdd",
                                                              "identityservicesd",
                                                              "ilifemediabrowser",
                                                              "itunes",
                                                              "keychains",
                                                              "knowledge",
                                                              "locationaccessstored",
                                                              "loginwindow",
                                                              "metadata",
                                                              "mobiledevice",
                                                              "mobilesync",
                                                              "mobilemeaccounts",
                                                              "networkserviceproxy",
                                                              "passkit",
                                                              "pbs",
                                                              "privacypreservingmeasurement",
                                                              "proapps",
                                                              "quick look",
                                                              "screensaver",
                                                              "script editor",
                                                              "sesstorage",
                                                              "siri",
                                                              "stickers",
                                                              "syncdefaultsd",
                                                              "syncservices",
                                                              "temporaryitems",
                                                              "tipsd",
                                                              "transparencyd",
                                                              "trustedpeershelper",
                                                              "ubiquity",
                                                              "videosubscriptionsd",
                                                              "voiceassist",
                                                              "coresimulator",
                                                              "directoryservice",
                                                              "logging",
                                                              "opendirectory",
                                                              "systemconfiguration"});

constexpr std::array<std::string_view, 3> suffixes{".savedState", ".plist", ".binarycookies"};
/// The letters that a word needs to be searched for within names.
constexpr int fewestLetters = 4;
constexpr qsizetype longestIdentifier = 255;

std::string_view textOf(QByteArrayView bytes) {
    return {bytes.data(), static_cast<std::size_t>(bytes.size())};
}

template <typename Words>
bool isOneOf(QByteArrayView word, const Words& words) {
    return std::ranges::find(words, textOf(word)) != words.end();
}

QByteArray comparable(const QString& text) {
    return text.normalized(QString::NormalizationForm_C).toLower().toUtf8();
}

/// Counts a text's characters of a kind.
int countOf(QStringView text, bool (*isOfKind)(char32_t)) {
    int count = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
        count += !QChar::isLowSurrogate(c) && isOfKind(c);
    }
    return count;
}

/// The identifier in lower case; empty if it cannot be one.
QByteArray usableIdentifier(const std::optional<QString>& identifier) {
    if (!identifier || identifier->size() > longestIdentifier)
        return {};
    const auto isAllowed = [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'.' || c == u'-' || c == u'_');
    };
    const QStringList parts = identifier->split(u'.');
    if (!std::ranges::all_of(*identifier, isAllowed) || parts.size() < 2 || parts.contains(QString()))
        return {};
    return identifier->toLower().toLatin1();
}

/// An identifier that only matches exactly: of one component, or with spaces.
QByteArray exactName(const std::optional<QString>& identifier) {
    if (!identifier || identifier->size() > longestIdentifier || identifier->contains(u'/') ||
        identifier->startsWith(u'.') || countOf(*identifier, QChar::isLetter) < fewestLetters)
        return {};
    const QByteArray text = comparable(*identifier);
    return isOneOf(text, genericWords) || isOneOf(text, vendorWords) || isOneOf(text, systemNames)
               ? QByteArray()
               : text;
}

/// "com.acme" of "com.acme.notes"; empty if that prefix is shared by many developers.
QByteArray developerOf(QByteArrayView identifier) {
    const qsizetype second = identifier.indexOf('.', identifier.indexOf('.') + 1);
    if (second < 0)
        return {};
    const QByteArrayView developer = identifier.first(second);
    return isOneOf(developer, sharedDevelopers) || namesVendor(developer) ? QByteArray()
                                                                          : developer.toByteArray();
}

/// True for the separators of words.
bool isJoint(char c) { return c == ' ' || c == '-' || c == '_' || c == '.'; }

class TokenCollector {
public:
    explicit TokenCollector(QList<NameToken>& tokens) : _tokens(tokens) {}

    void addName(QString name) {
        name = name.normalized(QString::NormalizationForm_C).toLower().trimmed();
        if (name.endsWith(u".app"))
            name.chop(4);
        add(name, true);
        // On disk "Photo Bench" may also be "Photo-Bench".
        const QStringList words = wordsOf(name);
        if (!isOneOf(words.join(u' ').toUtf8(), vendorWords))
            for (const QLatin1StringView joint : {""_L1, " "_L1, "-"_L1, "_"_L1, "."_L1})
                add(words.join(joint), true);
        // The words of a vendor's name are no more specific than the whole.
        for (const std::string_view vendor : vendorWords) {
            const auto named = QLatin1StringView(vendor.data(), qsizetype(vendor.size()));
            if (named.contains(u' ') && name.startsWith(named))
                name.remove(0, named.size());
        }
        for (const QString& word : wordsOf(name))
            if (countOf(word, QChar::isLetter) >= fewestLetters)
                add(word, false);
    }

private:
    static QStringList wordsOf(const QString& name) {
        QString spaced = name;
        for (QChar& c : spaced)
            if (c.unicode() < 128 && isJoint(c.toLatin1()))
                c = u' ';
        return spaced.simplified().split(u' ', Qt::SkipEmptyParts);
    }
    void add(const QString& text, bool isWholeName) {
        const QByteArray bytes = text.toUtf8();
        if (countOf(text, QChar::isLetterOrNumber) == 0 || isOneOf(bytes, genericWords) ||
            isOneOf(bytes, vendorWords))
            return;
        if (std::ranges::find(_tokens, bytes, &NameToken::text) == _tokens.end())
            _tokens.append({bytes, countOf(text, QChar::isLetter) >= fewestLetters, isWholeName});
    }

    QList<NameToken>& _tokens;
};

QList<NameToken> tokensOf(const QStringList& names) {
    QList<NameToken> tokens;
    TokenCollector collector(tokens);
    for (const QString& name : names)
        collector.addName(name);
    return tokens;
}

/// True if a word after the token makes the name another product's: "LogiOptionsPlus" is not Options.
bool isSiblingAfter(QByteArrayView name, QByteArrayView token) {
    QByteArrayView rest = name.sliced(name.indexOf(token) + token.size());
    while (!rest.isEmpty() && isJoint(rest[0]))
        rest = rest.sliced(1);
    const auto end = std::ranges::find_if(rest, [](char c) { return c < 'a' || c > 'z'; });
    return isOneOf(rest.first(end - rest.begin()), siblingWords);
}

bool extends(QByteArrayView name, QByteArrayView identifier) {
    return name.size() > identifier.size() && name[identifier.size()] == '.' &&
           name.startsWith(identifier);
}
bool isExtendedBy(QByteArrayView name, QByteArrayView identifier) {
    return name.size() > identifier.size() && name[name.size() - identifier.size() - 1] == '.' &&
           name.endsWith(identifier);
}

} // namespace

MatchingName::MatchingName(QByteArrayView name) {
    const std::string_view onDisk = textOf(name);
    for (const std::string_view suffix : suffixes) {
        if (!onDisk.empty() && onDisk.back() == suffix.back() && onDisk.ends_with(suffix)) {
            name = name.chopped(static_cast<qsizetype>(suffix.size()));
            break;
        }
    }
    // No early exit, so that the loop vectorizes.
    const std::size_t size = std::min(static_cast<std::size_t>(name.size()), _ascii.size());
    unsigned char anyBit = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const char c = name.data()[i];
        anyBit |= static_cast<unsigned char>(c);
        _ascii[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
    if (anyBit < 128 && size == static_cast<std::size_t>(name.size())) {
        _view = QByteArrayView(_ascii.data(), name.size());
    } else {
        _other = comparable(FileSystem::fromHostBytes(name));
        _view = _other;
    }
    _characters = CharacterBits(_view);
}

ApplicationNames::ApplicationNames(const CleanupApplication& application)
    : _identifier(usableIdentifier(application.bundleIdentifier))
    , _exactName(_identifier.isEmpty() ? exactName(application.bundleIdentifier) : QByteArray())
    , _developer(developerOf(_identifier))
    , _isApple(_identifier == "com.apple" || _identifier.startsWith("com.apple."))
    , _tokens(tokensOf(application.names)) {
    _ownsExtensions = _identifier.count('.') >= 2 && !_isApple;
    for (const NameToken& token : std::as_const(_tokens))
        if (token.countsInside)
            _inside.emplace_back(SoughtText(token.text), token.isWholeName);
    // The longest match first.
    std::ranges::stable_sort(_inside, std::ranges::greater{},
                             [](const auto& sought) { return sought.first.text.size(); });
}

std::optional<ApplicationNames::Grade> ApplicationNames::grade(const MatchingName& matching) const {
    const QByteArrayView name = matching.view();
    if (name.isEmpty())
        return std::nullopt;
    if (!_identifier.isEmpty()) {
        if (name == _identifier)
            return Grade{RelatedFileMatch::strong, _identifier};
        if (extends(name, _identifier) || isExtendedBy(name, _identifier))
            return Grade{RelatedFileMatch::strongish, _identifier};
    } else if (!_exactName.isEmpty() && name == _exactName) {
        return Grade{RelatedFileMatch::strong, _exactName};
    }
    for (const NameToken& token : _tokens)
        if (name == token.text)
            return Grade{RelatedFileMatch::medium, token.text, token.isWholeName};
    for (const auto& [sought, isWholeName] : _inside)
        if (matching.contains(sought) && !isOneOf(name, vendorWords) &&
            !isSiblingAfter(name, sought.text))
            return Grade{RelatedFileMatch::risky, sought.text, isWholeName};
    return std::nullopt;
}

InstalledClaims::InstalledClaims(const QList<CleanupApplication>& others) {
    for (const CleanupApplication& other : others) {
        const qsizetype number = _names.size();
        _names.append(other.names.value(0, FileSystem::fileName(other.path)));
        if (const QByteArray identifier = usableIdentifier(other.bundleIdentifier);
            !identifier.isEmpty())
            _identifiers[identifier.toStdString()].applications.append(number);
        for (const NameToken& token : tokensOf(other.names)) {
            const auto [known, isNew] = _tokens.try_emplace(token.text.toStdString());
            if (isNew && token.countsInside)
                _inside.emplace_back(token.text);
            // Applications with the token as their name take precedence over those with the token as a
            // word.
            if (token.isWholeName && !known->second.isWholeName)
                known->second = {.isWholeName = true};
            if (token.isWholeName == known->second.isWholeName)
                known->second.applications.append(number);
        }
    }
}

const InstalledClaims::Owners* InstalledClaims::ownersOf(QByteArrayView identifier) const {
    // Every key of the table has a dot, so other names need not be hashed.
    if (!identifier.contains('.'))
        return nullptr;
    const auto found = _identifiers.find(textOf(identifier));
    return found == _identifiers.end() ? nullptr : &found->second;
}

/// Visits the known identifiers among the dot-separated parts of a name, as in
/// "TEAM.com.acme.notes.cache". Names with too many dots are skipped.
template <typename Visit>
void InstalledClaims::eachIdentifierIn(QByteArrayView name, Visit visit) const {
    constexpr qsizetype mostDots = 16;
    if (_identifiers.empty() || !name.contains('.') || name.count('.') > mostDots)
        return;
    for (qsizetype from = 0; from >= 0 && from < name.size();) {
        for (qsizetype to = name.size(); to > from; to = name.lastIndexOf('.', to - 1)) {
            if (const Owners* owners = ownersOf(name.sliced(from, to - from)))
                visit(to - from, *owners);
        }
        const qsizetype dot = name.indexOf('.', from);
        from = dot < 0 ? -1 : dot + 1;
    }
}

InstalledClaims::Verdict InstalledClaims::judge(const MatchingName& matching,
                                                const ApplicationNames::Grade& own) const {
    const QByteArrayView name = matching.view();
    const qsizetype length = own.isByIdentifier() ? own.because.size() : 0;
    Verdict verdict;
    const auto share = [&](const Owners& owners) {
        for (const qsizetype owner : owners.applications)
            if (!verdict.sharedWith.contains(_names[owner]))
                verdict.sharedWith.append(_names[owner]);
    };
    eachIdentifierIn(name, [&](qsizetype size, const Owners& owners) {
        verdict.isAnothers = verdict.isAnothers || size > length;
        if (size == length)
            share(owners);
    });
    if (verdict.isAnothers || own.isByIdentifier())
        return verdict;
    const auto weigh = [&](qsizetype size, const Owners& owners) {
        const bool isNearer = size >= own.because.size() && owners.isWholeName >= own.isWholeName;
        const bool isFarther = size <= own.because.size() && owners.isWholeName <= own.isWholeName;
        verdict.isAnothers = verdict.isAnothers || (isNearer && !isFarther);
        if (isNearer == isFarther)
            share(owners);
    };
    if (const auto whole = _tokens.find(textOf(name)); whole != _tokens.end())
        weigh(name.size(), whole->second);
    for (const SoughtText& sought : _inside)
        if (sought.text.size() < name.size() && matching.contains(sought) &&
            !isSiblingAfter(name, sought.text))
            weigh(sought.text.size(), _tokens.find(textOf(sought.text))->second);
    return verdict;
}

bool InstalledClaims::matchesIdentifier(const MatchingName& matching, qsizetype length) const {
    bool isTied = false;
    eachIdentifierIn(matching.view(),
                     [&](qsizetype size, const Owners&) { isTied = isTied || size > length; });
    return isTied;
}

bool InstalledClaims::matchesName(const MatchingName& matching) const {
    const auto token = _tokens.find(textOf(matching.view()));
    return (token != _tokens.end() && token->second.isWholeName) || matchesIdentifier(matching);
}

bool belongsToSystem(const MatchingName& matching) { return isOneOf(matching.view(), systemNames); }

bool namesApple(const MatchingName& matching) {
    // Asked of every file; QByteArrayView prepares each search anew.
    constexpr std::string_view apple("com.apple");
    const std::string_view name = textOf(matching.view());
    const std::size_t at = name.find(apple);
    const std::size_t end = at + apple.size();
    return at != name.npos && (at == 0 || name[at - 1] == '.') &&
           (end == name.size() || name[end] == '.');
}

bool namesVendor(QByteArrayView identifier) {
    return identifier.count('.') == 1 &&
           isOneOf(identifier.sliced(identifier.indexOf('.') + 1), vendorWords);
}

bool namesSiblingProduct(const MatchingName& matching, const QByteArray& identifier) {
    const QByteArrayView name = matching.view();
    if (!extends(name, identifier))
        return false;
    const QByteArrayView rest = name.sliced(identifier.size() + 1);
    const qsizetype dot = rest.indexOf('.');
    return isOneOf(dot < 0 ? rest : rest.first(dot), siblingWords);
}

} // namespace tessellar
