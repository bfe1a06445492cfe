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

/// A word that may identify an application in a file name.
struct NameToken {
    QByteArray text;
    /// Also matches as a substring; not for short words and numbers, which would match everywhere.
    bool countsInside = false;
    bool isWholeName = false; ///< not just one word of a name

    bool operator==(const NameToken&) const = default;
};

/// A text to search for in many names.
struct SoughtText {
    QByteArray text;
    CharacterBits characters;

    explicit SoughtText(QByteArray sought) : text(std::move(sought)), characters(text) {}
};

/// An item's name, normalized for matching: one known suffix removed, composed, lower-cased, in UTF-8.
/// Does not allocate for ASCII names, as a walk creates one per file.
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
    std::array<char, 256> _ascii; // NOLINT: only the part in use is initialized
    QByteArray _other;
    QByteArrayView _view;
    CharacterBits _characters;
};

/// The patterns that an application's files are matched against.
class ApplicationNames {
public:
    struct Grade {
        RelatedFileMatch match = RelatedFileMatch::risky;
        QByteArray because; ///< the matched identifier or token
        bool isWholeName = false;

        bool isByIdentifier() const { return match <= RelatedFileMatch::strongish; }
    };

    explicit ApplicationNames(const CleanupApplication& application);

    /// Lower-case. Empty if it does not identify an owner: missing, a single component, or with
    /// characters that identifiers cannot have (slashes, "..", spaces).
    const QByteArray& identifier() const { return _identifier; }
    /// Whether identifiers that extend this one belong to this application. Two components may be a
    /// whole vendor's ("com.acme"), and anyone can claim "com.apple".
    bool ownsExtensions() const { return _ownsExtensions; }
    bool isApple() const { return _isApple; }
    /// The prefix of the developer's identifiers, without the final dot; empty if several developers
    /// may share it.
    const QByteArray& developer() const { return _developer; }

    std::optional<Grade> grade(const MatchingName& name) const;

private:
    QByteArray _identifier;
    QByteArray _exactName; ///< an identifier that only matches as a whole
    QByteArray _developer;
    bool _ownsExtensions = false;
    bool _isApple = false;
    QList<NameToken> _tokens;
    std::vector<std::pair<SoughtText, bool>> _inside; ///< with whether it is a whole name
};

/// The claims of all other known applications; a few look-ups per name.
///
/// Identifiers compete with identifiers, the longer wins; words compete with words, where whole names
/// and longer words win. Words never beat an identifier.
class InstalledClaims {
public:
    InstalledClaims() = default;
    explicit InstalledClaims(const QList<CleanupApplication>& others);

    struct Verdict {
        bool isAnothers = false;
        QStringList sharedWith; ///< names of applications with an equal claim
    };
    Verdict judge(const MatchingName& name, const ApplicationNames::Grade& own) const;

    /// True if another application's identifier longer than `length` matches.
    bool matchesIdentifier(const MatchingName& name, qsizetype length = 0) const;
    /// True if another application has this whole name or identifier.
    bool matchesName(const MatchingName& name) const;

private:
    struct Owners {
        bool isWholeName = false;
        QList<qsizetype> applications;
    };
    /// Allows look-ups by views; QHash's hashing dominated the time of a walk.
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

/// True for files that the system keeps in the Libraries under plain names: device backups, the Dock's,
/// the address book's.
bool belongsToSystem(const MatchingName& name);
/// True for names of Apple's files, including group containers ("TEAM.com.apple.notes").
bool namesApple(const MatchingName& name);
/// True for an identifier that stands for a whole vendor, like "com.microsoft".
bool namesVendor(QByteArrayView identifier);

/// True if `name` extends `identifier` by a word that vendors use for a separate product: "beta",
/// "canary", "dev".
bool namesSiblingProduct(const MatchingName& name, const QByteArray& identifier);

} // namespace tessellar
