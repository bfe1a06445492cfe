#include "launcher/language.h"

#include "launcher/setting_table.h"
#include "platform/file_system.h"
#include "platform/texts.h"
#include "smartfolders/smart_folder_fields.h"
#include "smartfolders/smart_folder_words.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

QString told() { return message(FileError{FileError::Code::notFound, u"/x"_s}); }

TEST(Language, IsTheOneThatIsSetOrTheFirstThatTheUserReads) {
    Language language;
    const auto follow = [&](const std::optional<QString>& setting, const QString& locale) {
        language.follow(setting, Locale(locale));
        return language.code();
    };
    EXPECT_EQ(follow({}, u"de_AT"_s), u"de");
    EXPECT_EQ(told(), u"„/x“ existiert nicht.");
    EXPECT_EQ(follow(u"en"_s, u"de_DE"_s), u"en");
    EXPECT_EQ(told(), u"“/x” does not exist.");
    EXPECT_EQ(follow(u"de"_s, u"fr_FR"_s), u"de");
    EXPECT_EQ(Texts::tr("Update %n apps?", nullptr, 3), u"3 Apps aktualisieren?");
    EXPECT_EQ(follow(Language::asSystem, u"en_GB"_s), u"en");
    for (const auto& unknown : {u"fr_FR"_s, u"zh_Hant_TW"_s, u"C"_s}) {
        EXPECT_EQ(follow({}, u"de"_s), u"de");
        EXPECT_EQ(follow({}, unknown), u"en");
        EXPECT_EQ(told(), u"“/x” does not exist.");
    }
}

TEST(Language, IsReadAsTheUserReads) {
    Language language;
    language.follow(std::nullopt, Locale(u"ar_EG"_s));
    EXPECT_EQ(language.direction(), Qt::RightToLeft) << "though there are no texts in Arabic";
    language.follow(u"de"_s, Locale(u"ar_EG"_s));
    EXPECT_EQ(language.direction(), Qt::LeftToRight);
    language.follow(std::nullopt, Locale(u"he"_s));
    EXPECT_EQ(language.direction(), Qt::RightToLeft);
}

/// Words of the vocabulary are looked up by what files call them: none of them shows that.
TEST(Language, HasATextForEveryWordOfRules) {
    Language language;
    language.follow(u"de"_s, Locale(u"en"_s));
    const auto expectText = [](const auto& name) {
        QString word;
        if constexpr (std::is_convertible_v<decltype(name), const char*>)
            word = QLatin1StringView(name);
        else
            word = name;
        EXPECT_NE(smartFolderText(word), word) << word.toStdString();
    };
    const auto expectFields = [&]<typename... Kinds>(std::type_identity<Kinds>...) {
        (std::ranges::for_each(Kinds::fields, [&](const auto& row) { expectText(row.rawValue); }), ...);
    };
    expectFields(
        std::type_identity<SmartFolderTextKind>(), std::type_identity<SmartFolderChoiceKind>(),
        std::type_identity<SmartFolderNumberKind>(), std::type_identity<SmartFolderVersionKind>(),
        std::type_identity<SmartFolderDateKind>(), std::type_identity<SmartFolderBooleanKind>());
    const auto expectWords = [&]<typename... Words>(std::type_identity<Words>...) {
        (std::ranges::for_each(json::RawValues<Words>::values,
                               [&](const auto& word) { expectText(QLatin1StringView(word.second)); }),
         ...);
    };
    expectWords(std::type_identity<SmartFolderMatchMode>(),
                std::type_identity<SmartFolderApplicationLocation>(),
                std::type_identity<SmartFolderInstallSource>(),
                std::type_identity<SmartFolderDistributionChannel>(),
                std::type_identity<SmartFolderPlatform>(), std::type_identity<SmartFolderUpdateState>(),
                std::type_identity<SmartFolderPermission>(),
                std::type_identity<SmartFolderRelativeDateUnit>(),
                std::type_identity<SmartFolderSortDirection>());
}

TEST(Language, OffersThoseThatThereAre) {
    const Setting* setting = settingNamed(Language::settingKey);
    ASSERT_TRUE(setting);
    Language language;
    for (const QJsonValue& choice : setting->choices)
        if (choice != Language::asSystem) {
            language.follow(choice.toString(), Locale(u"fr"_s));
            EXPECT_EQ(language.code(), choice.toString());
        }
    EXPECT_EQ(setting->titles.size(), setting->choices.size());
}

} // namespace
} // namespace tessellar
