#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

/// Calls back with each source, where it lies and what is in it.
template <typename Visit>
void forEachSource(const QStringList& patterns, Visit visit) {
    QDirIterator files(QStringLiteral(TESSELLAR_SOURCES), patterns, QDir::Files,
                       QDirIterator::Subdirectories);
    int count = 0;
    for (; files.hasNext(); ++count) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        visit(file.fileName().sliced(sizeof TESSELLAR_SOURCES), QString::fromUtf8(file.readAll()));
    }
    EXPECT_GT(count, 30);
}

const QString string = uR"("(?:[^"\\\n]|\\.)*")"_s;

/// The strings of C++ that read as a sentence, outside of what translates. The log, manual pages, and
/// what decoders say of a place in a file, for who mends it by hand, are in English.
QStringList untranslatedSentences(QString text) {
    static const QRegularExpression comment(uR"(^([^"\n]*(?:%1[^"\n]*)*?)//.*$)"_s.arg(string),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression literal(uR"(([\w:]*\(|u)?\s*(%1(?:\s*%1)*))"_s.arg(string));
    static const QRegularExpression sentence(uR"(^"[“A-Z].*[a-z]+ .*[.?!…](\\n)?"$)"_s);
    static const QRegularExpression between(uR"("\s*")"_s);
    static const QRegularExpression translates(u"(tr|noop|NOOP)\\($"_s);
    static const QRegularExpression notForUsers(u"[lL]og\\b|warning\\(|remarks =|return fail\\("_s);
    text.replace(comment, u"\\1"_s);
    QStringList found;
    for (auto matches = literal.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString words = match.captured(2).remove(between);
        if (!sentence.match(words).hasMatch() || translates.match(match.captured(1)).hasMatch())
            continue;
        const qsizetype begin = match.capturedStart();
        qsizetype statement = 0;
        for (const QChar end : u";{}"_s)
            statement = std::max(statement, text.lastIndexOf(end, begin) + 1);
        if (!notForUsers.match(text.sliced(statement, begin - statement)).hasMatch())
            found.append(words);
    }
    return found;
}

TEST(Texts, SentencesOfTheProgramAreTranslated) {
    // What is sought is found.
    EXPECT_EQ(
        untranslatedSentences(u"fail(QStringLiteral(\"It is \"\n\"gone.\")); tr(\"It is there.\");"_s),
        QStringList{u"\"It is gone.\""_s});
    forEachSource({u"*.cpp"_s, u"*.h"_s, u"*.mm"_s}, [](const QString& file, const QString& text) {
        const bool decodes = file.startsWith(u"model/json"_s) && !file.contains(u"file"_s);
        for (const QString& sentence : decodes ? QStringList() : untranslatedSentences(text))
            ADD_FAILURE() << file.toStdString() << ": " << sentence.toStdString();
    });
}

TEST(Texts, OfTheWindowAreTranslated) {
    static const QRegularExpression property(
        uR"(\b(text|title|label|placeholder\w*|hint|Accessible\.(name|description)): *"[^"]*[A-Za-z]{2})"_s);
    static const QRegularExpression words(uR"x((?<!qsTr\()"[A-Z“][^"]*[a-z…] [^"]*")x"_s);
    forEachSource({u"*.qml"_s}, [](const QString& file, const QString& text) {
        for (const QRegularExpression* sought : {&property, &words})
            EXPECT_FALSE(sought->match(text).hasMatch())
                << file.toStdString() << ": " << sought->match(text).captured().toStdString();
    });
}

/// One place has the colours, sizes, radii and times; the rest of QML has them from there.
TEST(Theme, IsTheOnlyPlaceWithLiterals) {
    static const QRegularExpression literal(
        uR"re("#[0-9a-fA-F]{3,8}"|"(white|black|transparent)"|pixelSize: *\d|radius: *[1-9]|(duration|[iI]nterval): *([^\n]*[?:] *)?\d|easing\.type: *Easing)re"_s);
    forEachSource({u"*.qml"_s}, [](const QString& file, const QString& text) {
        SCOPED_TRACE(file.toStdString());
        if (!file.endsWith(u"/Theme.qml")) {
            EXPECT_FALSE(literal.match(text).hasMatch())
                << literal.match(text).captured().toStdString();
        }
        EXPECT_EQ(text.count(u"T.TextField {"_s), text.count(u"font.family: Theme.family"_s));
    });
}

/// A compiled binding reads a list of numbers as one number; interpreted ones, as in a development
/// build, do not.
TEST(Headers, CallsForQmlGiveNoTypedLists) {
    static const QRegularExpression list(uR"(Q_INVOKABLE\s+QList<[^;]*;)"_s);
    ASSERT_TRUE(list.match(u"Q_INVOKABLE QList<int> places(int page) const;"_s).hasMatch());
    forEachSource({u"*.h"_s}, [](const QString& file, const QString& text) {
        EXPECT_FALSE(list.match(text).hasMatch())
            << file.toStdString() << ": " << list.match(text).captured().toStdString();
    });
}

} // namespace
} // namespace tessellar
