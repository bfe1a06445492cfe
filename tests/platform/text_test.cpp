#include "platform/text.h"

#include "tests/support/printers.h"

#include <QList>

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <random>

namespace tessellar {
namespace {

QString text(const char16_t* units) { return QString::fromUtf16(units); }

// ---- folding

icu::UnicodeString normalized(const icu::UnicodeString& string,
                              const icu::Normalizer2* (*form)(UErrorCode&)) {
    UErrorCode status = U_ZERO_ERROR;
    return form(status)->normalize(string, status);
}

icu::UnicodeString usualWidth(UChar32 c) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString usual;
    if (c < 0xFF00 || c > 0xFFEF ||
        !icu::Normalizer2::getNFKCInstance(status)->getRawDecomposition(c, usual))
        usual = icu::UnicodeString(c);
    return usual;
}

/// Folding said plainly, one cluster after the other, with nothing prepared.
QString plainlyFolded(const QString& given, bool turkic) {
    const icu::UnicodeString original(given.utf16(), static_cast<int32_t>(given.size()));
    icu::UnicodeString usual;
    for (int32_t i = 0; i < original.length(); i = original.moveIndex32(i, 1))
        usual += usualWidth(original.char32At(i));
    const icu::UnicodeString apart = normalized(usual, icu::Normalizer2::getNFDInstance);

    icu::UnicodeString result;
    bool dropsMarks = false;
    for (int32_t i = 0; i < apart.length(); i = apart.moveIndex32(i, 1)) {
        const UChar32 c = apart.char32At(i);
        const bool mark = (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0;
        if (mark && dropsMarks)
            continue;
        icu::UnicodeString folded(c);
        folded.foldCase(turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
        result += folded;
        if (!mark)
            dropsMarks = folded.char32At(folded.length() - 1) < 0x510;
    }
    result = normalized(result, icu::Normalizer2::getNFCInstance);
    return QString(reinterpret_cast<const QChar*>(result.getBuffer()),
                   result.length()); // NOLINT: no BOM
}

TEST(Folding, IsWhatPeopleExpect) {
    const Locale english(text(u"en_US"));
    const auto folds = [&](const char16_t* from, const char16_t* to) {
        EXPECT_EQ(english.folded(text(from)), text(to)) << QString(text(from)).toStdString();
    };
    folds(u"Café", u"cafe");
    folds(u"CAFE\u0301", u"cafe");
    folds(u"ＡＢＣ １２", u"abc 12");
    folds(u"Straße", u"strasse");
    folds(u"ﬁnder", u"finder");
    folds(u"Tiếng Việt", u"tieng viet");
    folds(u"Ёлка Άλφα", u"елка αλφα");
    folds(u"Smørrebrød Łódź Æon", u"smørrebrød łodz æon");
    folds(u"İI", u"ii");
    folds(u"がｶﾞ한שָׁ", u"がガ한שָׁ");
    folds(u"  spaces stay ", u"  spaces stay ");

    const Locale turkish(text(u"tr-TR"));
    EXPECT_EQ(turkish.folded(u"İIıi"), text(u"ıııi"));
    EXPECT_EQ(Locale(text(u"az")).folded(u"I"), text(u"ı"));
    EXPECT_EQ(turkish.lowercased(u"I"), text(u"ı"));
    EXPECT_EQ(english.lowercased(u"ICNS.É"), text(u"icns.é"));
}

TEST(Folding, IsThePlainReadingForEveryCharacter) {
    for (const bool turkic : {false, true}) {
        const Locale locale(text(turkic ? u"tr" : u"en"));
        for (char32_t c = 0; c < 0x20000; ++c) {
            QString alone = QString::fromUcs4(&c, 1);
            if (c >= 0xD800 && c < 0xE000)
                alone = QString(QChar(static_cast<char16_t>(c)));
            // Between two letters with marks, so that composing and dropping have something to do.
            for (const QString& string :
                 {alone, u'E' + alone + QChar(0x301), u'か' + alone + QChar(0x3099)}) {
                const QString folded = locale.folded(string);
                ASSERT_EQ(folded, plainlyFolded(string, turkic))
                    << std::hex << static_cast<unsigned>(c);
                ASSERT_EQ(locale.folded(folded), folded) << std::hex << static_cast<unsigned>(c);
            }
        }
    }
}

/// Characters of all the kinds that folding treats in their own way.
QString generated(std::mt19937& random) {
    static constexpr std::array<std::pair<char32_t, char32_t>, 16> ranges{{{0x20, 0x7E},
                                                                           {0x41, 0x5A},
                                                                           {0xA0, 0x17F},
                                                                           {0x180, 0x24F},
                                                                           {0x300, 0x36F},
                                                                           {0x370, 0x4FF},
                                                                           {0x500, 0x556},
                                                                           {0x591, 0x5EA},
                                                                           {0x900, 0x9FF},
                                                                           {0x1100, 0x11FF},
                                                                           {0x1E00, 0x1FFF},
                                                                           {0x3041, 0x30FF},
                                                                           {0xAC00, 0xD7A3},
                                                                           {0xFB00, 0xFB4F},
                                                                           {0xFF00, 0xFFEF},
                                                                           {0x10400, 0x1F6FF}}};
    QString result;
    for (auto length = random() % 12; length > 0; --length) {
        if (random() % 50 == 0) {
            result += QChar(static_cast<char16_t>(0xD800 + random() % 0x800));
            continue;
        }
        const auto [first, last] = ranges[random() % ranges.size()];
        result += QChar::fromUcs4(first + random() % (last - first + 1));
        if (random() % 4 == 0)
            result += QChar::fromUcs4(0x300 + random() % 0x70);
    }
    return result;
}

TEST(Folding, IsThePlainReadingForGeneratedStrings) {
    std::mt19937 random(20261114); // NOLINT: the same strings each time
    const Locale english(text(u"en"));
    const Locale turkish(text(u"tr"));
    for (int i = 0; i < 20'000; ++i) {
        const QString string = generated(random);
        ASSERT_EQ(english.folded(string), plainlyFolded(string, false)) << string.toStdString();
        ASSERT_EQ(turkish.folded(string), plainlyFolded(string, true)) << string.toStdString();
    }
}

// ---- comparing

TEST(Collation, NamesIgnoreCaseButNotAccents) {
    const Locale english(text(u"en_US"));
    EXPECT_EQ(english.compareNames(u"finder", u"FINDER"), std::strong_ordering::equal);
    EXPECT_EQ(english.compareNames(u"cote", u"coté"), std::strong_ordering::less);
    EXPECT_EQ(english.compareNames(u"e\u0301", u"É"), std::strong_ordering::equal);
    EXPECT_EQ(english.compareNames(u"ab", u"B"), std::strong_ordering::less);
    EXPECT_EQ(english.compareNames(u"a b", u"ab"), std::strong_ordering::less);
    EXPECT_EQ(english.compareNames(u"App 10", u"App 9"), std::strong_ordering::less);
    EXPECT_EQ(english.compareNames(u"", u"a"), std::strong_ordering::less);

    EXPECT_EQ(english.compareNames(u"öl", u"zoo"), std::strong_ordering::less);
    EXPECT_EQ(Locale(text(u"sv_SE")).compareNames(u"öl", u"zoo"), std::strong_ordering::greater);
}

TEST(Collation, LooselyIgnoresAccentsAndWidthAndCountsDigits) {
    const Locale english(text(u"en_US"));
    EXPECT_EQ(english.compareLoosely(u"cote", u"CÔTÉ"), std::strong_ordering::equal);
    EXPECT_EQ(english.compareLoosely(u"ＡＢＣ", u"abc"), std::strong_ordering::equal);
    EXPECT_EQ(english.compareLoosely(u"App 10", u"App 9"), std::strong_ordering::greater);
    EXPECT_EQ(english.compareLoosely(u"App 007", u"App 7"), std::strong_ordering::equal);
}

TEST(Collation, SortKeysHaveTheOrderOfTheComparison) {
    std::mt19937 random(7); // NOLINT: the same strings each time
    const Locale english(text(u"en_US"));
    QList<QString> names{text(u""),  text(u"a"),         text(u"A"),
                         text(u"á"), QString(400, u'x'), QString(401, u'X')};
    for (int i = 0; i < 150; ++i)
        names.append(generated(random));
    for (const QString& a : std::as_const(names))
        for (const QString& b : std::as_const(names)) {
            const auto keys = [&](auto key) {
                const int order = (english.*key)(a).compare((english.*key)(b));
                return order <=> 0;
            };
            ASSERT_EQ(keys(&Locale::nameSortKey), english.compareNames(a, b));
            ASSERT_EQ(keys(&Locale::looseSortKey), english.compareLoosely(a, b));
        }
}

TEST(Locale, UnderstandsTheWaysToNameOne) {
    const auto is = [](const char16_t* given, const char16_t* identifier, const char16_t* language,
                       const char16_t* region) {
        const Locale locale(text(given));
        EXPECT_EQ(locale.identifier(), text(identifier));
        EXPECT_EQ(locale.languageCode(), text(language));
        EXPECT_EQ(locale.region(), text(region));
    };
    is(u"en_US", u"en_US", u"en", u"US");
    is(u"tr-TR", u"tr_TR", u"tr", u"TR");
    is(u"de_DE.UTF-8", u"de_DE", u"de", u"DE");
    is(u"zh-Hans-CN", u"zh_Hans_CN", u"zh", u"CN");
    is(u"ja", u"ja", u"ja", u"");
    EXPECT_EQ(Locale(text(u"zh_Hant_HK@collation=stroke")).languages(),
              QStringList(text(u"zh-Hant-HK")));
    EXPECT_FALSE(Locale::system().languages().contains(text(u"C")));
    for (const char16_t* none :
         {u"", u"C", u"C.UTF-8", u"POSIX", u"en-", u"Ünsinn", u"12", u"not a locale"})
        is(none, u"", u"", u"");
    is(QString(5'000, u'a').toStdU16String().c_str(), u"", u"", u"");
}

TEST(CompareNumeric, ComparesDigitRunsByValueAndTheRestByCharacter) {
    const auto ordered = [](QStringView smaller, QStringView larger) {
        EXPECT_EQ(compareNumeric(smaller, larger), std::strong_ordering::less)
            << smaller.toUtf8().toStdString() << ' ' << larger.toUtf8().toStdString();
        EXPECT_EQ(compareNumeric(larger, smaller), std::strong_ordering::greater);
    };
    ordered(u"1.9", u"1.10");
    ordered(u"9.5", u"10.0");
    ordered(u"1.0", u"1.0.1");
    ordered(u"", u"0");
    ordered(u"1.2b3", u"1.2b12");
    ordered(u"1.2", u"1.2b");
    ordered(u"1.B", u"1.a");
    ordered(u"0012", u"13");
    ordered(u"1", u"a");
    ordered(u"1.18446744073709551615", u"1.18446744073709551617");
    ordered(u"99999999999999999999999", u"100000000000000000000000");
    EXPECT_EQ(compareNumeric(u"1.01", u"1.1"), std::strong_ordering::equal);
    EXPECT_EQ(compareNumeric(u"1.000", u"1.0"), std::strong_ordering::equal);
    ordered(u"1.01", u"1.1.0");
    EXPECT_EQ(compareNumeric(u"", u""), std::strong_ordering::equal);
}

// ---- counting and trimming

TEST(Text, CountsUserPerceivedCharacters) {
    EXPECT_EQ(characterCount(u""), 0);
    EXPECT_EQ(characterCount(u"Café"), 4);
    EXPECT_EQ(characterCount(u"Cafe\u0301"), 4);
    EXPECT_EQ(characterCount(u"a\r\nb"), 3);
    EXPECT_EQ(characterCount(u"日本"), 2);
    EXPECT_EQ(characterCount(u"한"), 1);
    EXPECT_EQ(characterCount(u"👩‍👩‍👧‍👦!"), 2);
    EXPECT_EQ(characterCount(u"🇩🇪🇫🇷"), 2);
    EXPECT_EQ(characterCount(u"👍🏽"), 1);
}

TEST(Text, TrimsWhiteSpaceAndLineBreaks) {
    EXPECT_EQ(trimmed(u" \t\r\n\u00A0\u3000\u2028a b\u0085 "), text(u"a b"));
    EXPECT_EQ(trimmed(u" \n"), QString());
}

} // namespace
} // namespace tessellar
