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

/// The number of a key, counted from `first` in the order in which keys are first seen.
template <typename Number>
Number numberOf(const QString& key, QHash<QString, Number>& numbers, Number first = 0) {
    if (const auto known = numbers.constFind(key); known != numbers.constEnd())
        return *known;
    return *numbers.insert(key, first + static_cast<Number>(numbers.size()));
}

/// Names made ready for matching: folded, trimmed and cut into user-perceived characters, each of which
/// is one number. A character that takes several code points gets a number of its own past Unicode's.
///
/// Own numbers and flat arrays rather than QString: comparing by character costs a boundary search for
/// each name and keystroke otherwise.
class SearchTexts {
public:
    using Character = char32_t;
    static constexpr double noMatch = -std::numeric_limits<double>::infinity();

    explicit SearchTexts(const Locale& locale) : _locale(locale) {}

    /// A query, as far as it can match anything here at all.
    struct Query {
        std::vector<Character> characters;
        std::uint64_t letters = 0;
        bool hasSeparator = false;

        /// No name scores more: an equal one, or all but one of the characters in one run.
        double bestScore() const {
            const auto length = static_cast<double>(characters.size());
            return std::max(1000.0, 300 + 6 * length * (length - 1));
        }
    };

    /// The number of a name; the same for the same name.
    std::uint32_t add(const QString& name);
    /// Nothing for a query that is empty, or has a character that no name has.
    std::optional<Query> query(const QString& text) const;

    /// How well a name matches. Equal 1000; prefix 900 − 0.5 for each further character; prefix of a
    /// word 800 − 10 for each word before it; anywhere 600 − 0.2 for each character of the name; in
    /// order with gaps 300 − 2 for each character skipped + 12, 24, … along each run, 1 at least.
    double score(std::uint32_t name, const Query& query) const {
        const Text& text = _texts[name];
        // Every kind of match has the query's characters in the name; most names fall here.
        if ((query.letters & ~text.letters) != 0 || query.characters.size() > text.length)
            return noMatch;
        return matched(text, query);
    }

private:
    struct Text {
        std::uint64_t letters = 0; ///< a bit for each character that occurs; some share a bit
        std::uint32_t begin = 0;
        std::uint32_t length = 0;
        std::uint32_t wordsBegin = 0;
        std::uint32_t wordCount = 0;
    };

    double matched(const Text& text, const Query& query) const;

    Locale _locale;
    std::vector<Text> _texts;
    std::vector<Character> _characters;
    std::vector<std::uint32_t> _words; ///< where words begin, counted from the text's begin
    QHash<QString, std::uint32_t> _numbers;
    QHash<QString, Character> _clusters; ///< characters of several code points
};

} // namespace tessellar
