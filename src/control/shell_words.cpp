#include "control/shell_words.h"

#include "platform/texts.h"

namespace tessellar {

std::expected<QStringList, QString> splitWords(const QString& line) {
    QStringList words;
    QString word;
    bool inWord = false;
    QChar quote;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        const bool hasNext = i + 1 < line.size();
        if (c == u'\\' && quote != u'\'') {
            if (!hasNext)
                return std::unexpected(Texts::tr("The line ends in a backslash."));
            const QChar next = line[++i];
            // Within double quotes a backslash is literal unless it escapes a special character.
            if (!quote.isNull() && next != u'"' && next != u'\\')
                word += c;
            word += next;
            inWord = true;
        } else if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            else
                word += c;
        } else if (c == u'\'' || c == u'"') {
            quote = c;
            inWord = true;
        } else if (c.isSpace()) {
            if (std::exchange(inWord, false))
                words.append(std::exchange(word, {}));
        } else if (c == u'#' && !inWord) {
            break;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (!quote.isNull())
        return std::unexpected(Texts::tr("A quote is not closed."));
    if (inWord)
        words.append(word);
    return words;
}

} // namespace tessellar
