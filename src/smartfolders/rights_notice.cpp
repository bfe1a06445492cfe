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

/// "All rights reserved" in various languages.
const QStringList rightsSentences{
    QStringLiteral("all rights reserved"),
    QStringLiteral("alle rechte vorbehalten"),
    QStringLiteral("tous (?:les )?droits r[ée]serv[ée]s"),
    QStringLiteral("(?:todos los derechos reservados|reservados todos los derechos)"),
    QStringLiteral("tots els drets reservats"),
    QStringLiteral("tutti i diritti (?:sono )?riservati"),
    QStringLiteral("todos os direitos reservados"),
    QStringLiteral("toate drepturile rezervate"),
    QStringLiteral("alle rechten voorbehouden"),
    QStringLiteral("alle rettigheder forbeholdes"),
    QStringLiteral("alle rettigheter (?:forbeholdt|forbeholdes|reservert)"),
    QStringLiteral("alla rättigheter (?:förbehålls|förbehållna|reserverade)"),
    QStringLiteral("kaikki oikeudet pidätetään"),
    QStringLiteral("(?:wszelkie|wszystkie) prawa zastrzeżone"),
    QStringLiteral("všechna práva vyhrazena"),
    QStringLiteral("všetky práva vyhradené"),
    QStringLiteral("sva prava pridržana"),
    QStringLiteral("minden jog fenntartva"),
    QStringLiteral("tüm hakları saklıdır"),
    QStringLiteral("все права защищены"),
    QStringLiteral("(?:усі|всі) права (?:захищено|захищені)"),
    QStringLiteral("με επιφύλαξη παντός δικαιώματος"),
    QStringLiteral("bảo lưu mọi quyền"),
    QStringLiteral("جميع الحقوق محفوظة"),
    QStringLiteral("כל הזכויות שמורות"),
    QStringLiteral("สงวนลิขสิทธิ์"),
    QStringLiteral("(?:保留一切[权權]利|保留所有[权權]利|[版著](?:作)?[权權]所有)"),
    QStringLiteral("(?:無断(?:複写・|複製・)?転載を禁じます|全著作権所有)"),
    QStringLiteral("모든 권리 보유"),
};

QString stripped(QString text) {
    static const auto rights =
        pattern(QStringLiteral("(?:%1)[\\s.。]*").arg(rightsSentences.join(u'|')));
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
