#include "cleanup/related_file_names.h"

#include <algorithm>
#include <string_view>

namespace tessellar {
namespace {

/// Never enough by themselves to tie a folder to one application.
constexpr auto vendorWords = std::to_array<std::string_view>(
    {"google", "microsoft", "adobe", "apple", "mozilla", "logitech", "logi", "amazon", "jetbrains",
     "steam", "epic games", "blizzard", "valve", "native instruments", "company", "vendor"});
/// Names of parts that every application has.
constexpr auto genericWords =
    std::to_array<std::string_view>({"app", "application", "main", "core", "data", "cache", "caches",
                                     "preferences", "settings", "update", "updater", "helper", "agent",
                                     "install", "installer", "service", "tools", "utility", "support"});
constexpr auto siblingWords = std::to_array<std::string_view>(
    {"alpha", "beta", "canary", "ce", "community", "dev", "developer", "ea", "eap", "edu", "free",
     "insiders", "lite", "next", "nightly", "preview", "pro", "rc", "trial"});

constexpr std::array<std::string_view, 3> suffixes{".savedState", ".plist", ".binarycookies"};
/// Letters that a word needs before it is looked for inside of names.
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

/// How many of a text's characters are of a kind.
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

/// The identifier in lower case, or nothing when it cannot be one.
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

class TokenCollector {
public:
    explicit TokenCollector(QList<NameToken>& tokens) : _tokens(tokens) {}

    void addName(QString name) {
        name = name.normalized(QString::NormalizationForm_C).toLower().trimmed();
        if (name.endsWith(u".app"))
            name.chop(4);
        add(name);
        QString joined = name;
        joined.removeIf([](QChar c) { return c.isSpace(); });
        add(joined);
        QString word;
        for (const QChar c : std::as_const(name)) {
            if (c.isSpace() || c == u'-' || c == u'_' || c == u'.') {
                addWord(std::exchange(word, {}));
            } else {
                word += c;
            }
        }
        addWord(word);
    }

private:
    void addWord(const QString& word) {
        if (countOf(word, QChar::isLetter) >= fewestLetters)
            add(word);
    }
    void add(const QString& text) {
        const QByteArray bytes = text.toUtf8();
        if (countOf(text, QChar::isLetterOrNumber) == 0 || isOneOf(bytes, genericWords) ||
            isOneOf(bytes, vendorWords))
            return;
        const NameToken token{bytes, countOf(text, QChar::isLetter) >= fewestLetters};
        if (!_tokens.contains(token))
            _tokens.append(token);
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
    // Without a way out in the middle, so that it is done many bytes at a time.
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
    , _isApple(_identifier == "com.apple" || _identifier.startsWith("com.apple."))
    , _tokens(tokensOf(application.names)) {
    _ownsExtensions = _identifier.count('.') >= 2 && !_isApple;
    for (const NameToken& token : std::as_const(_tokens))
        if (token.countsInside)
            _inside.emplace_back(token.text);
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
    }
    for (const NameToken& token : _tokens)
        if (name == token.text)
            return Grade{RelatedFileMatch::medium, token.text};
    for (const SoughtText& sought : _inside)
        if (matching.contains(sought) && !isOneOf(name, vendorWords))
            return Grade{RelatedFileMatch::risky, sought.text};
    return std::nullopt;
}

InstalledClaims::InstalledClaims(const QList<CleanupApplication>& others) {
    for (const CleanupApplication& other : others) {
        if (const QByteArray identifier = usableIdentifier(other.bundleIdentifier);
            !identifier.isEmpty())
            _identifiers.insert(identifier.toStdString());
        for (const NameToken& token : tokensOf(other.names))
            if (_tokens.insert(token.text.toStdString()).second && token.countsInside)
                _inside.emplace_back(token.text);
    }
}

/// Visits what stands before and after each dot.
template <typename Visit>
bool InstalledClaims::anyPart(QByteArrayView name, Visit visit) {
    for (qsizetype dot = name.indexOf('.'); dot >= 0; dot = name.indexOf('.', dot + 1))
        if (visit(name.first(dot)) || visit(name.sliced(dot + 1)))
            return true;
    return false;
}

bool InstalledClaims::holdsIdentifier(QByteArrayView part) const {
    // None is without a dot: not worth a hash.
    return part.contains('.') && _identifiers.contains(textOf(part));
}

std::optional<RelatedFileMatch> InstalledClaims::strongestByWhole(const MatchingName& matching) const {
    const QByteArrayView name = matching.view();
    if (holdsIdentifier(name))
        return RelatedFileMatch::strong;
    if (anyPart(name, [this](QByteArrayView part) { return holdsIdentifier(part); }))
        return RelatedFileMatch::strongish;
    if (_tokens.contains(textOf(name)))
        return RelatedFileMatch::medium;
    return std::nullopt;
}

std::optional<RelatedFileMatch> InstalledClaims::strongest(const MatchingName& name) const {
    if (const auto whole = strongestByWhole(name))
        return whole;
    const bool isInside =
        std::ranges::any_of(_inside, [&](const SoughtText& sought) { return name.contains(sought); });
    return isInside ? std::optional(RelatedFileMatch::risky) : std::nullopt;
}

bool InstalledClaims::extendsLongerIdentifier(const MatchingName& matching, qsizetype length) const {
    const QByteArrayView name = matching.view();
    const auto isLonger = [&](QByteArrayView part) {
        return part.size() > length && holdsIdentifier(part);
    };
    // Also in the middle, as in "TEAM.com.acme.notes.cache".
    return isLonger(name) || anyPart(name, [&](QByteArrayView part) {
               return isLonger(part) || anyPart(part, isLonger);
           });
}

bool namesApple(const MatchingName& matching) {
    const QByteArrayView name = matching.view();
    const qsizetype at = name.indexOf("com.apple");
    const qsizetype end = at + qsizetype(sizeof "com.apple") - 1;
    return at >= 0 && (at == 0 || name[at - 1] == '.') && (end == name.size() || name[end] == '.');
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
