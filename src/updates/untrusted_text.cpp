#include "updates/untrusted_text.h"

#include "platform/text.h"

#include <algorithm>

namespace tessellar {

constexpr qsizetype longestVersion = 100;
constexpr qsizetype longestToken = 128;

/// True for control and format characters, private-use and unassigned code points.
static bool isInvisible(QChar c) {
    switch (c.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_NotAssigned:
    case QChar::Other_PrivateUse:
        return true;
    default:
        return false;
    }
}

static bool isSpace(QChar c) {
    return c.isSpace() || c.category() == QChar::Separator_Line ||
           c.category() == QChar::Separator_Paragraph;
}

QString toSingleLine(QStringView text, qsizetype longest) {
    QString line;
    bool isSpaceDue = false;
    for (qsizetype i = 0; i < text.size() && line.size() < longest; ++i) {
        const QChar c = text[i];
        if (isSpace(c)) {
            isSpaceDue = !line.isEmpty();
            continue;
        }
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isInvisible(c) || (c.isSurrogate() && !isPair))
            continue;
        if (std::exchange(isSpaceDue, false))
            line += u' ';
        line += c;
        if (isPair)
            line += text[++i];
    }
    return line;
}

std::optional<QString> plausibleVersion(QStringView text) {
    const QString version = trimmed(text.left(4 * longestVersion));
    if (version.isEmpty() || text.size() > 4 * longestVersion || version.size() > longestVersion ||
        toSingleLine(version, longestVersion) != version)
        return std::nullopt;
    return version;
}

bool isCaskToken(QStringView text) {
    const auto isPlain = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
    };
    return !text.isEmpty() && text.size() <= longestToken && isPlain(text[0]) &&
           std::ranges::all_of(
               text, [&](QChar c) { return isPlain(c) || QStringView(u"-_.+@").contains(c); });
}

} // namespace tessellar
