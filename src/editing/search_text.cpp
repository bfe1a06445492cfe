#include "editing/search_text.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace tessellar {
namespace {

using Character = SearchTexts::Character;

constexpr Character firstClusterNumber = 0x110000;

bool isSeparator(Character c) { return c == U' ' || c == U'-' || c == U'.'; }

/// Letters and digits have a bit each; all other characters share the rest.
std::uint64_t letterBit(Character c) {
    if (c >= U'a' && c <= U'z')
        return std::uint64_t(1) << (c - U'a');
    if (c >= U'0' && c <= U'9')
        return std::uint64_t(1) << (26 + c - U'0');
    return std::uint64_t(1) << (36 + c % 28);
}

/// Calls `visit` for each user-perceived character until it returns false.
template <typename Visit>
void forEachCharacter(const QString& text, Visit visit) {
    // No code unit below U+0300 combines with another, except a line feed after a carriage return.
    if (std::ranges::none_of(text, [](QChar c) { return c.unicode() >= 0x300 || c == u'\r'; })) {
        for (qsizetype i = 0; i < text.size(); ++i)
            if (!visit(QStringView(text).sliced(i, 1)))
                return;
        return;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end > start; end = finder.toNextBoundary()) {
        if (!visit(QStringView(text).sliced(start, end - start)))
            return;
        start = end;
    }
}

/// The character if it is a single code point.
std::optional<Character> singleCodePoint(QStringView character) {
    if (character.size() == 1)
        return character[0].unicode();
    if (character.size() == 2 && character[0].isHighSurrogate() && character[1].isLowSurrogate())
        return QChar::surrogateToUcs4(character[0], character[1]);
    return std::nullopt;
}

} // namespace

std::uint32_t SearchTexts::add(const QString& name) {
    if (const auto known = _numbers.constFind(name); known != _numbers.constEnd())
        return *known;
    Text text;
    text.begin = static_cast<std::uint32_t>(_characters.size());
    text.wordsBegin = static_cast<std::uint32_t>(_words.size());
    bool isInWord = false;
    forEachCharacter(trimmed(_locale.folded(name)), [&](QStringView part) {
        auto character = singleCodePoint(part);
        if (!character)
            character = numberOf(part.toString(), _clusters, firstClusterNumber);
        if (isSeparator(*character))
            isInWord = false;
        else if (!std::exchange(isInWord, true))
            _words.push_back(static_cast<std::uint32_t>(_characters.size()) - text.begin);
        text.letters |= letterBit(*character);
        _characters.push_back(*character);
        return true;
    });
    text.length = static_cast<std::uint32_t>(_characters.size()) - text.begin;
    text.wordCount = static_cast<std::uint32_t>(_words.size()) - text.wordsBegin;
    const auto number = static_cast<std::uint32_t>(_texts.size());
    _texts.push_back(text);
    _numbers.insert(name, number);
    return number;
}

std::optional<SearchTexts::Query> SearchTexts::query(const QString& text) const {
    Query query;
    bool isKnown = true;
    forEachCharacter(trimmed(_locale.folded(text)), [&](QStringView part) {
        auto character = singleCodePoint(part);
        if (!character) {
            const auto cluster = _clusters.constFind(part.toString());
            if (cluster == _clusters.constEnd())
                return isKnown = false;
            character = *cluster;
        }
        query.characters.push_back(*character);
        query.letters |= letterBit(*character);
        query.hasSeparator = query.hasSeparator || isSeparator(*character);
        return true;
    });
    if (!isKnown || query.characters.empty())
        return std::nullopt;
    return query;
}

double SearchTexts::matched(const Text& text, const Query& query) const {
    const std::span candidate(_characters.data() + text.begin, text.length);
    const std::span<const Character> wanted(query.characters);
    const auto begins = [&](std::size_t position) {
        return candidate.size() - position >= wanted.size() &&
               std::equal(wanted.begin(), wanted.end(),
                          candidate.begin() + static_cast<std::ptrdiff_t>(position));
    };
    const auto length = static_cast<double>(candidate.size());
    if (begins(0)) {
        const std::size_t further = candidate.size() - wanted.size();
        return further == 0 ? 1000 : 900 - 0.5 * static_cast<double>(further);
    }
    // No word contains a separator.
    for (std::uint32_t i = 0; !query.hasSeparator && i < text.wordCount; ++i)
        if (begins(_words[text.wordsBegin + i]))
            return 800 - 10.0 * i;
    if (std::ranges::search(candidate, wanted).begin() != candidate.end())
        return 600 - 0.2 * length;

    double score = 300;
    int run = 0;
    auto position = candidate.begin();
    for (const Character character : wanted) {
        const auto found = std::find(position, candidate.end(), character);
        if (found == candidate.end())
            return noMatch;
        if (const auto gap = found - position; gap > 0) {
            score -= 2 * static_cast<double>(gap);
            run = 0;
        } else {
            score += 12 * ++run;
        }
        position = found + 1;
    }
    return std::max(score, 1.0);
}

} // namespace tessellar
