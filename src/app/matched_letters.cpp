#include "app/matched_letters.h"

#include <algorithm>

namespace tessellar {

namespace {

/// A folded name, with the position in the name that each of its characters comes from.
struct Folded {
    Folded(const QString& name, const Locale& locale) {
        for (qsizetype at = 0; at < name.size();) {
            qsizetype size = name.at(at).isHighSurrogate() && at + 1 < name.size() ? 2 : 1;
            while (at + size < name.size() && name.at(at + size).isMark())
                ++size;
            const QString folded = locale.folded(QStringView(name).mid(at, size));
            text += folded;
            from.insert(from.size(), folded.size(), at);
            at += size;
        }
        from.append(name.size());
    }

    bool isWordStart(qsizetype at) const {
        return at == 0 || text.at(at - 1).isSpace() || text.at(at - 1) == u'-' ||
               text.at(at - 1) == u'.';
    }

    QString text;
    QList<qsizetype> from; ///< one longer than `text`
};

} // namespace

/// The positions in the folded name that match, in order; empty if there is no match.
static QList<qsizetype> matched(const Folded& name, const QString& query) {
    qsizetype whole = name.text.indexOf(query);
    for (qsizetype at = whole; at >= 0; at = name.text.indexOf(query, at + 1))
        if (name.isWordStart(at)) {
            whole = at;
            break;
        }
    QList<qsizetype> found;
    if (whole >= 0) {
        for (qsizetype i = 0; i < query.size(); ++i)
            found.append(whole + i);
        return found;
    }
    qsizetype at = 0;
    for (const QChar letter : query) {
        at = name.text.indexOf(letter, at);
        if (at < 0)
            return {};
        found.append(at++);
    }
    return found;
}

QString markedLabel(const QString& name, const QString& query, const Locale& locale) {
    const QString wanted = locale.folded(query).trimmed();
    if (wanted.isEmpty())
        return {};
    const Folded folded(name, locale);
    QList<bool> isMarked(name.size(), false);
    const QList<qsizetype> letters = matched(folded, wanted);
    if (letters.isEmpty())
        return {};
    for (const qsizetype letter : letters) {
        const qsizetype begin = folded.from[letter];
        const auto end = std::ranges::upper_bound(folded.from, begin);
        std::fill(isMarked.begin() + begin, isMarked.begin() + *end, true);
    }
    QString result;
    for (qsizetype begin = 0; begin < name.size();) {
        qsizetype end = begin;
        while (end < name.size() && isMarked[end] == isMarked[begin])
            ++end;
        const QString part = name.mid(begin, end - begin).toHtmlEscaped();
        result += isMarked[begin] ? QStringLiteral("<b>") + part + QStringLiteral("</b>") : part;
        begin = end;
    }
    return result;
}

} // namespace tessellar
