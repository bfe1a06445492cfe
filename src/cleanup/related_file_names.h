#pragma once

#include "cleanup/related_file.h"
#include "platform/character_bits.h"

#include <QByteArrayView>
#include <QList>

#include <array>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tessellar {

/// A word that may stand for an application in the name of a file.
struct NameToken {
    QByteArray text;
    /// A name that merely contains it counts too; not for the short and for numbers, which would be
    /// found everywhere.
    bool countsInside = false;

    bool operator==(const NameToken&) const = default;
};

/// A text to look for in very many names.
struct SoughtText {
    QByteArray text;
    CharacterBits characters;

    explicit SoughtText(QByteArray sought) : text(std::move(sought)), characters(text) {}
};

/// The name of an item as it is compared: one known suffix taken off, composed, in lower case, as
/// UTF-8. Made without allocation where the name is ASCII, for a walk makes one for each file.
class MatchingName {
public:
    explicit MatchingName(QByteArrayView nameOnDisk);
    MatchingName(const MatchingName&) = delete;
    MatchingName& operator=(const MatchingName&) = delete;

    QByteArrayView view() const { return _view; }
    bool contains(const SoughtText& sought) const {
        return _characters.containsAll(sought.characters) && _view.contains(sought.text);
    }

private:
    std::array<char, 256> _ascii; // NOLINT: as much of it as is used is written
    QByteArray _other;
    QByteArrayView _view;
    CharacterBits _characters;
};

/// What the names of an application's files are compared with.
class ApplicationNames {
public:
    struct Grade {
        RelatedFileMatch match = RelatedFileMatch::risky;
        QByteArray because; ///< the identifier or token
    };

    explicit ApplicationNames(const CleanupApplication& application);

    /// In lower case. Empty for one that says nothing of its owner: an identifier that is missing, has
    /// a single component, or holds what no identifier may (slashes, "..", spaces).
    const QByteArray& identifier() const { return _identifier; }
    /// Whether what extends the identifier can only be this application's. Two components may be a
    /// vendor's ("com.acme"), and who says "com.apple" may be anybody.
    bool ownsExtensions() const { return _ownsExtensions; }
    bool isApple() const { return _isApple; }

    std::optional<Grade> grade(const MatchingName& name) const;

private:
    QByteArray _identifier;
    bool _ownsExtensions = false;
    bool _isApple = false;
    QList<NameToken> _tokens;
    std::vector<SoughtText> _inside;
};

/// What all other installed applications claim, answered by a few look-ups.
class InstalledClaims {
public:
    InstalledClaims() = default;
    explicit InstalledClaims(const QList<CleanupApplication>& others);

    /// The strongest grade that any of them would give.
    std::optional<RelatedFileMatch> strongest(const MatchingName& name) const;
    /// The same up to `medium`, in a time that does not grow with their number.
    std::optional<RelatedFileMatch> strongestByWhole(const MatchingName& name) const;
    /// True for a name that is or extends one of their identifiers longer than `length`.
    bool extendsLongerIdentifier(const MatchingName& name, qsizetype length) const;

private:
    template <typename Visit>
    static bool anyPart(QByteArrayView name, Visit visit);
    bool holdsIdentifier(QByteArrayView part) const;

    /// Asked by views of a name's parts; QSet's hashing took longer than all else in a walk.
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    using Texts = std::unordered_set<std::string, TextHash, std::equal_to<>>;

    Texts _identifiers;
    Texts _tokens;
    std::vector<SoughtText> _inside;
};

/// True for what is Apple's by its name, also as group containers are named ("TEAM.com.apple.notes").
bool namesApple(const MatchingName& name);
/// True for an identifier that is a whole vendor's, as "com.microsoft".
bool namesVendor(QByteArrayView identifier);

/// True for the words that vendors put on everything: "beta", "canary", "dev" after an identifier name
/// a product of its own.
bool namesSiblingProduct(const MatchingName& name, const QByteArray& identifier);

} // namespace tessellar
