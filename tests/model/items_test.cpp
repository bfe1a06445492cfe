#include "model/items.h"
#include "model/json_losses.h"
#include "model/layout_document.h"

#include "model/drawn.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

json::Decoded<LaunchpadItem> decodeItem(const QByteArray& text) {
    return json::decodeDocument<LaunchpadItem>(text);
}

QByteArray appObject(const QByteArray& extra = {}) {
    return R"({"id": "0A0B0C0D-0000-4000-8000-000000000001", "name": "Maple",
               "path": "file:///Applications/Maple.app/", "source": "local")" +
           (extra.isEmpty() ? QByteArray() : ", " + extra) + "}";
}

QByteArray folderObject(const QByteArray& contents) {
    return R"({"folder": {"_0": {"id": "0A0B0C0D-0000-4000-8000-000000000002", "name": "Trees")" +
           (contents.isEmpty() ? QByteArray() : ", " + contents) + "}}}";
}

TEST(ItemJson, MissingOptionalKeysOfAnApplicationTakeTheirDefaults) {
    for (const QByteArray& extra :
         {QByteArray(), QByteArray(R"("bundleIdentifier": null, "category": null, "alias": null)")}) {
        const auto item = decodeItem("{\"app\": {\"_0\": " + appObject(extra) + "}}");
        ASSERT_TRUE(item) << message(item.error()).toStdString();
        const AppEntry& app = *item->app();
        EXPECT_EQ(app.originalName, u"Maple");
        EXPECT_FALSE(app.isDuplicateBundleIdentifier);
        EXPECT_FALSE(app.bundleIdentifier || app.category || app.alias);
        EXPECT_EQ(app.path, u"/Applications/Maple.app");
    }
}

TEST(ItemJson, ATileHasExactlyOneKnownKey) {
    const QByteArray app = "{\"_0\": " + appObject() + "}";
    for (const QByteArray& text :
         {QByteArray("{}"), QByteArray("{\"widget\": {}}"), "{\"app\": " + app + ", \"folder\": {}}"}) {
        const auto item = decodeItem(text);
        ASSERT_FALSE(item);
        EXPECT_EQ(item.error().message, u"Invalid number of keys found, expected one.");
    }
    EXPECT_TRUE(decodeItem("{\"app\": " + app + ", \"later\": 1}"));
}

TEST(ItemJson, FoldersReadEveryFormTheyEverHad) {
    const QByteArray tile = "{\"app\": {\"_0\": " + appObject() + "}}";
    const struct {
        QByteArray contents;
        qsizetype tiles;
        qsizetype losses = 0;
    } forms[] = {
        {"", 0},
        {"\"pages\": []", 0},
        {"\"pages\": [[" + tile + "]]", 1},
        {"\"items\": [" + tile + "]", 1},
        {"\"items\": [" + appObject() + "]", 1},
        {"\"items\": []", 0},
        {"\"pages\": 3, \"items\": [" + tile + "]", 1},
        {"\"pages\": [[{}]], \"items\": \"x\"", 0, 1},
        {"\"pages\": [[{}, " + tile + "]]", 0, 1},
    };
    for (const auto& form : forms) {
        const json::Losses losses;
        const auto item = decodeItem(folderObject(form.contents));
        EXPECT_EQ(losses.count(), form.losses) << form.contents.toStdString();
        ASSERT_TRUE(item) << form.contents.toStdString();
        ASSERT_EQ(item->folder()->pages.size(), 1) << form.contents.toStdString();
        EXPECT_EQ(item->folder()->pages[0].size(), form.tiles) << form.contents.toStdString();
        const QByteArray written = json::write(json::encode(*item));
        EXPECT_FALSE(written.contains("\"items\""));
        EXPECT_EQ(decodeItem(written), *item);
    }
}

TEST(ItemJson, PathsOfAnyNameSurviveTheFileUrl) {
    AppEntry entry = test::app(u"a"_s);
    for (const QString& name : {u"Käse & Brot"_s, u"Two Words"_s, u"100% #1? [a];b"_s, u"日本語"_s,
                                u"%41"_s, u"a+b~c\\d\""_s}) {
        entry.path = u"/Applications/%1.app"_s.arg(name);
        const auto decoded = json::decode<AppEntry>(json::encode(entry));
        ASSERT_TRUE(decoded);
        EXPECT_EQ(decoded->path, entry.path);
    }
    for (const char* bad : {"https://example.com/x.app", "file://", "/Applications/X.app", "",
                            "file:///a%00b", "file:///a b"})
        EXPECT_FALSE(json::BundleUrl::decode(QLatin1StringView(bad))) << bad;
}

TEST(ItemJson, IdentifiersAreCanonicalText) {
    EXPECT_TRUE(json::decode<QUuid>(u"0a0b0c0d-0000-4000-8000-000000000001"_s));
    for (const char* bad : {"", "{0A0B0C0D-0000-4000-8000-000000000001}",
                            "0A0B0C0D000040008000000000000001", "0A0B0C0D-0000-4000-8000-00000000000G"})
        EXPECT_FALSE(json::decode<QUuid>(QLatin1StringView(bad))) << bad;
}

TEST(Items, NestingLooksAtEveryComponentButTheLast) {
    EXPECT_TRUE(isNestedInAnotherApplication(u"/Applications/Suite.APP/Contents/Library/Tool.app"_s));
    for (const auto& own : {u"/Applications/Tool.app"_s, u"/Applications/Tool.app/"_s,
                            u"/Applications/X.app/../Tool.app"_s})
        EXPECT_FALSE(isNestedInAnotherApplication(own));
}

TEST(Items, FoldersListApplicationsDeepAndPreviewsShallow) {
    const FolderEntry outer = *test::drawn(u"[outer: a [inner: b] *|c]")[0][0].folder();
    QStringList names;
    for (const AppEntry& entry : allApplications(outer))
        names += entry.name;
    EXPECT_EQ(names, QStringList({u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(previewItems(outer, 2), outer.pages[0].first(2));
    EXPECT_EQ(previewItems(outer, 9).size(), 4);
    EXPECT_TRUE(previewItems(outer, 0).isEmpty());
}

TEST(ItemJson, SetsAreWrittenInOneOrder) {
    QSet<QString> set;
    for (const QChar c : QStringLiteral("hgfedcba"))
        set.insert(c);
    EXPECT_EQ(json::write(json::encode(set)).simplified().replace(' ', ""),
              R"(["a","b","c","d","e","f","g","h"])");
}

} // namespace
} // namespace tessellar
