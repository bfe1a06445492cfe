#pragma once

#include "platform/text.h"

#include <QHash>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace tessellar {

/// Numbers keys from `first`, in the order of first use.
template <typename Number>
Number numberOf(const QString& key, QHash<QString, Number>& numbers, Number first = 0) {
    if (const auto known = numbers.constFind(key); known != numbers.constEnd())
        return *known;
    return *numbers.insert(key, first + static_cast<Number>(numbers.size()));
}

/// Names preprocessed for matching: folded, trimmed and split into user-perceived characters, each one
/// number; clusters of several code points get numbers beyond Unicode's.
///
/// Numbers in flat arrays rather than QString, which would need a search for character boundaries for
/// each name on each keystroke.
class SearchTexts {
public:
    using Character = char32_t;
    static constexpr double noMatch = -std::numeric_limits<double>::infinity();

    explicit SearchTexts(const Locale& locale) : _locale(locale) {}

    /// A query that can match some name.
    struct Query {
        std::vector<Character> characters;
        std::uint64_t letters = 0;
        bool hasSeparator = false;

        /// The maximum score: an equal name, or all but one of the characters in one run.
        double bestScore() const {
            const auto length = static_cast<double>(characters.size());
            return std::max(1000.0, 300 + 6 * length * (length - 1));
        }
    };

    /// Returns the name's index; equal names share one.
    std::uint32_t add(const QString& name);
    /// nullopt if the query is empty or has a character that no name has.
    std::optional<Query> query(const QString& text) const;

    /// How well a name matches. Equal: 1000; prefix: 900 − 0.5 per remaining character; prefix of a
    /// word: 800 − 10 per preceding word; substring: 600 − 0.2 per character of the name; subsequence:
    /// 300 − 2 per skipped character + 12, 24, … along each run, at least 1.
    double score(std::uint32_t name, const Query& query) const {
        const Text& text = _texts[name];
        // Any match contains all the query's characters; this rejects most names.
        if ((query.letters & ~text.letters) != 0 || query.characters.size() > text.length)
            return noMatch;
        return matched(text, query);
    }

private:
    struct Text {
        std::uint64_t letters = 0; ///< one bit per character, with collisions
        std::uint32_t begin = 0;
        std::uint32_t length = 0;
        std::uint32_t wordsBegin = 0;
        std::uint32_t wordCount = 0;
    };

    double matched(const Text& text, const Query& query) const;

    Locale _locale;
    std::vector<Text> _texts;
    std::vector<Character> _characters;
    std::vector<std::uint32_t> _words; ///< starts of words, relative to the text
    QHash<QString, std::uint32_t> _numbers;
    QHash<QString, Character> _clusters; ///< characters of several code points
};

} // namespace tessellar
