#pragma once

#include "cleanup/related_file.h"
#include "platform/character_bits.h"

#include <QByteArrayView>
#include <QList>

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessellar {

/// A word that may stand for an application in the name of a file.
struct NameToken {
    QByteArray text;
    /// A name that merely contains it counts too; not for the short and for numbers, which would be
    /// found everywhere.
    bool countsInside = false;
    bool isWholeName = false; ///< not a word of one

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
        bool isWholeName = false;

        bool isByIdentifier() const { return match <= RelatedFileMatch::strongish; }
    };

    explicit ApplicationNames(const CleanupApplication& application);

    /// In lower case. Empty for one that says nothing of its owner: an identifier that is missing, has
    /// a single component, or holds what no identifier may (slashes, "..", spaces).
    const QByteArray& identifier() const { return _identifier; }
    /// Whether what extends the identifier can only be this application's. Two components may be a
    /// vendor's ("com.acme"), and who says "com.apple" may be anybody.
    bool ownsExtensions() const { return _ownsExtensions; }
    bool isApple() const { return _isApple; }
    /// What the identifiers of a developer's products begin with, without the last dot; empty where
    /// that may be several developers.
    const QByteArray& developer() const { return _developer; }

    std::optional<Grade> grade(const MatchingName& name) const;

private:
    QByteArray _identifier;
    QByteArray _exactName; ///< an identifier that only counts as a whole
    QByteArray _developer;
    bool _ownsExtensions = false;
    bool _isApple = false;
    QList<NameToken> _tokens;
    std::vector<std::pair<SoughtText, bool>> _inside; ///< and whether it is a whole name
};

/// What all other known applications claim, answered by a few look-ups.
///
/// Identifiers are measured against identifiers, the longer one is nearer; words are measured against
/// words, where a whole name and the longer of two are nearer. Words never stand against an identifier.
class InstalledClaims {
public:
    InstalledClaims() = default;
    explicit InstalledClaims(const QList<CleanupApplication>& others);

    struct Verdict {
        bool isAnothers = false;
        QStringList sharedWith; ///< names of those that stand as near
    };
    Verdict judge(const MatchingName& name, const ApplicationNames::Grade& own) const;

    /// True for what another application's identifier ties, longer than one of `length`.
    bool tiesByIdentifier(const MatchingName& name, qsizetype length = 0) const;
    /// True where one of them has the whole name, or its identifier.
    bool areCalled(const MatchingName& name) const;

private:
    struct Owners {
        bool isWholeName = false;
        QList<qsizetype> applications;
    };
    /// Asked by views of a name's parts; QHash's hashing took longer than all else in a walk.
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    using Texts = std::unordered_map<std::string, Owners, TextHash, std::equal_to<>>;

    const Owners* ownersOf(QByteArrayView identifier) const;
    template <typename Visit>
    void eachIdentifierIn(QByteArrayView name, Visit visit) const;

    QStringList _names;
    Texts _identifiers;
    Texts _tokens;
    std::vector<SoughtText> _inside;
};

/// True for the folders and files that the system itself keeps in the Libraries under plain names:
/// device backups, the Dock's, the address book's.
bool isTheSystems(const MatchingName& name);
/// True for what is Apple's by its name, also as group containers are named ("TEAM.com.apple.notes").
bool namesApple(const MatchingName& name);
/// True for an identifier that is a whole vendor's, as "com.microsoft".
bool namesVendor(QByteArrayView identifier);

/// True for the words that vendors put on everything: "beta", "canary", "dev" after an identifier name
/// a product of its own.
bool namesSiblingProduct(const MatchingName& name, const QByteArray& identifier);

} // namespace tessellar
