#include "smartfolders/rights_notice.h"

#include <QRegularExpression>

namespace tessellar {

namespace {

constexpr qsizetype maximumCharacters = 2'000;

QRegularExpression pattern(const QString& text) {
    return QRegularExpression(text, QRegularExpression::CaseInsensitiveOption |
                                        QRegularExpression::UseUnicodePropertiesOption);
}

const QString noticeWord = QStringLiteral(R"((?:\bcopyrights?\b|©|\(c\)|℗))");
const QString years =
    QStringLiteral(R"(\b(?:19|20)\d\d(?:\s*[-–—]\s*(?:(?:19|20)?\d\d|present|now))?\b)");
const QString punctuation = QStringLiteral(R"([\s.,;:\-–—·•|/&。，]+)");

QString stripped(QString text) {
    static const auto rights = pattern(
        QStringLiteral("(?:all rights reserved|alle rechte vorbehalten|保留一切权利)[\\s.。]*"));
    const QString atEnds = QStringLiteral("(?:%1|%2|%3)").arg(noticeWord, years, punctuation);
    static const auto leading = pattern(u'^' + atEnds);
    static const auto trailing = pattern(atEnds + u'$');
    text.replace(rights, QStringLiteral(" "));
    for (qsizetype before = -1; before != text.size();) {
        before = text.size();
        text.remove(leading).remove(trailing);
    }
    return text.simplified();
}

} // namespace

std::optional<QString> publisherInNotice(const QString& notice) {
    static const auto firstWord = pattern(noticeWord);
    const QString text = notice.left(maximumCharacters).simplified();
    const qsizetype start = text.indexOf(firstWord);
    QString publisher = stripped(text.sliced(qMax(start, 0)));
    if (publisher.isEmpty() && start > 0)
        publisher = stripped(text.first(start));
    return publisher.isEmpty() ? std::nullopt : std::optional(publisher);
}

} // namespace tessellar
