#include "editing/tile_clipboard.h"

#include "editing/arrangements.h"
#include "editing/tile_paste.h"
#include "smartfolders/smart_folder_rule.h"
#include "support/printers.h"
#include "support/sequential_uuids.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::app;
using test::folder;
using test::sketch;
using test::tileID;
using Operation = TileClipboardPayload::Operation;

constexpr auto fullScreen = LauncherWindowMode::fullScreen;
constexpr auto windowed = LauncherWindowMode::windowed;

class TileClipboardTest : public testing::Test {
protected:
    MemoryPasteboard pasteboard;
    TileClipboard clipboard{pasteboard};

    void putBytes(const QByteArray& bytes) {
        pasteboard.write({{{{pasteboard::text, "x"}}}, {{{TileClipboard::type, bytes}}}});
    }
    QByteArray bytes() const { return pasteboard.items().value(0).data.value(TileClipboard::type); }
    static Page tiles(int count) {
        Page page;
        for (int i = 0; i < count; ++i)
            page.append(app(unsigned(i + 1)));
        return page;
    }
};

TEST_F(TileClipboardTest, CarriesTilesForUsAndNamesAndFilesForOthers) {
    AppEntry spaced = app(2, u"Two\nlines"_s);
    spaced.path = u"/Applications/Zwei & drei ü.app"_s;
    const Page selection{SmartFolderReference{tileID(9)}, app(1, u"One"_s), spaced,
                         folder(8, {{app(4)}, {app(5)}}, u"Box"_s), app(3, u"Three"_s)};
    ASSERT_TRUE(clipboard.write(selection, Operation::cut, windowed));

    const auto items = pasteboard.items();
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items[0].data[pasteboard::text], "Smart Folder\nOne\nTwo lines\nBox\nThree");
    EXPECT_EQ(items[0].data[pasteboard::fileUrl], "file:///Applications/1.app/");
    EXPECT_EQ(items[1].data.keys(), QStringList{pasteboard::fileUrl});
    EXPECT_EQ(items[1].data[pasteboard::fileUrl], "file:///Applications/Zwei%20&%20drei%20%C3%BC.app/");
    EXPECT_EQ(items[2].data[pasteboard::fileUrl], "file:///Applications/3.app/");

    const auto payload = clipboard.read();
    ASSERT_TRUE(payload);
    EXPECT_EQ(*payload, (TileClipboardPayload{1, selection, Operation::cut, windowed}));
    const QJsonObject object = json::parse(bytes())->toObject();
    EXPECT_EQ(object.keys(), (QStringList{u"items"_s, u"operation"_s, u"sourceMode"_s, u"version"_s}));
}

TEST_F(TileClipboardTest, LimitsCountTheWholeTreeAndTheBytes) {
    const LaunchpadItem box = folder(5'000, {tiles(600), tiles(400)});
    EXPECT_TRUE(clipboard.write(Page{box} + tiles(23), Operation::copy, {}));
    const auto before = pasteboard.items();
    EXPECT_FALSE(clipboard.write(Page{box} + tiles(24), Operation::copy, {}));
    EXPECT_FALSE(clipboard.write({}, Operation::copy, {}));
    EXPECT_FALSE(
        clipboard.write({app(1, QString(TileClipboard::maximumBytes, u'x'))}, Operation::copy, {}));
    EXPECT_EQ(pasteboard.items(), before);

    TileClipboardPayload foreign{.items = tiles(TileClipboard::maximumTiles)};
    putBytes(json::write(json::encode(foreign)));
    EXPECT_TRUE(clipboard.read());
    foreign.items += app(9'999);
    putBytes(json::write(json::encode(foreign)));
    EXPECT_FALSE(clipboard.read());

    foreign.items = tiles(1);
    QByteArray padded = json::write(json::encode(foreign));
    padded += QByteArray(TileClipboard::maximumBytes - padded.size(), ' ');
    putBytes(padded);
    EXPECT_TRUE(clipboard.read());
    putBytes(padded + ' ');
    EXPECT_FALSE(clipboard.read());
}

TEST_F(TileClipboardTest, ForeignAndDamagedPayloadsAreNothing) {
    EXPECT_FALSE(clipboard.read());
    ASSERT_TRUE(clipboard.write(tiles(2), Operation::copy, fullScreen));
    const QByteArray good = bytes();
    putBytes(good.chopped(1));
    EXPECT_FALSE(clipboard.read());
    const auto change = [&](const char* key, const QJsonValue& value) {
        QJsonObject object = json::parse(good)->toObject();
        object.insert(QLatin1StringView(key), value);
        putBytes(json::write(object));
        return clipboard.read();
    };
    EXPECT_FALSE(change("version", 2));
    EXPECT_FALSE(change("items", QJsonArray()));
    EXPECT_FALSE(change("operation", u"link"_s));
    EXPECT_FALSE(change("sourceMode", u"tiled"_s));
    EXPECT_TRUE(change("later", 1));
    const auto withoutMode = change("sourceMode", QJsonValue::Undefined);
    ASSERT_TRUE(withoutMode);
    EXPECT_FALSE(withoutMode->sourceMode);
    // Only the first item with the type counts.
    pasteboard.write({{{{TileClipboard::type, "{}"}}}, {{{TileClipboard::type, good}}}});
    EXPECT_FALSE(clipboard.read());
}

// ---- pasting

class Paste : public testing::Test {
protected:
    test::SequentialUuids uuids;
    PasteContext context{.layout = {.pages = test::drawn(u"1 2 [10: 3 4]|5 6 7 8")},
                         .capacities = {4, 3},
                         .now = {1'000}};
    Navigation navigation;

    auto paste(const Page& items, Operation operation, std::optional<LauncherWindowMode> mode) {
        return pasteTiles({.items = items, .operation = operation, .sourceMode = mode}, context,
                          navigation, uuids);
    }
    LaunchpadItem tile(unsigned number) const {
        return *locate(context.layout.pages, tileID(number))->item;
    }
    /// All pages after that, as a sketch, or the code of the refusal.
    QString pasted(const Page& items, Operation operation = Operation::copy,
                   std::optional<LauncherWindowMode> mode = {}) {
        const auto result = paste(items, operation, mode);
        return result ? sketch(result->layout.pages) : code(result.error());
    }
};

TEST_F(Paste, CopiesAreNewTilesAndShareNothing) {
    SmartFolderDefinition games{
        .id = tileID(50), .name = u"Games"_s, .modifiedAt = {5}, .resultLimit = 7};
    SmartFolderTextRule rule;
    rule.id = tileID(51);
    games.rules = {rule, rule};
    context.smartFolderDefinitions = {games};
    const Page items{folder(30, {{app(31), SmartFolderReference{tileID(50)}}}),
                     SmartFolderReference{tileID(50)}, SmartFolderReference{tileID(99)}};
    const auto result = paste(items, Operation::copy, {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->tiles.size(), 2);

    QSet<QUuid> ids;
    const auto isFresh = [&](const QUuid& id) {
        const bool fresh =
            !ids.contains(id) && id.data2 == 0; // numbered by the source, not by the test
        ids.insert(id);
        return fresh;
    };
    for (const QUuid& id : result->tiles)
        forEachItem({{*locate(result->layout.pages, id)->item}}, [&](const LaunchpadItem& item) {
            EXPECT_TRUE(isFresh(item.id()));
            return true;
        });
    ASSERT_EQ(result->addedDefinitions.size(), 2);
    for (SmartFolderDefinition definition : result->addedDefinitions) {
        EXPECT_TRUE(locate(result->layout.pages, definition.id));
        EXPECT_EQ(definition.modifiedAt, context.now);
        definition.id = games.id;
        definition.modifiedAt = games.modifiedAt;
        for (SmartFolderRule& each : definition.rules) {
            EXPECT_TRUE(isFresh(each.id()));
            each = each.withID(rule.id);
        }
        EXPECT_EQ(definition, games);
    }
    EXPECT_EQ(pasted({SmartFolderReference{tileID(99)}}), u"nothingToPaste");
}

TEST_F(Paste, GoesAfterTheSelectionElseToTheEndOfThePageShown) {
    const Page one{app(9)};
    EXPECT_EQ(pasted(one), u"1 2 [10: 3 4] 9|5 6 7 8");
    navigation.selectedItemID = tileID(1);
    EXPECT_EQ(pasted(one), u"1 9 2 [10: 3 4]|5 6 7 8");
    // A selection that is not on the level shown does not count.
    navigation.folderStack = {{tileID(10), 0}};
    EXPECT_EQ(pasted(one), u"1 2 [10: 3 4 9]|5 6 7 8");
    navigation = {.currentPage = 1};
    EXPECT_EQ(pasted(one), u"1 2 [10: 3 4]|5 6 7 8|9");
    navigation = {.currentPage = 7, .folderStack = {{tileID(98), 0}}};
    EXPECT_EQ(pasted(one), u"1 2 [10: 3 4]|5 6 7 8|9");
}

TEST_F(Paste, ACutIsAMoveWithinItsMode) {
    const AppEntry stale = app(2, u"as it was when it was cut"_s);
    navigation = {.currentPage = 0, .selectedItemID = tileID(2)};
    EXPECT_EQ(paste({stale}, Operation::cut, fullScreen)->layout, context.layout);
    navigation = {.currentPage = 1, .selectedItemID = tileID(5)};
    EXPECT_EQ(pasted({stale, tile(10)}, Operation::cut, fullScreen), u"1|5 2 [10: 3 4] 6|7 8");
    EXPECT_TRUE(paste({stale, tile(10)}, Operation::cut, fullScreen)->addedDefinitions.isEmpty());

    EXPECT_EQ(pasted({stale}, Operation::cut, windowed), u"otherMode");
    EXPECT_EQ(pasted({stale}, Operation::cut), u"otherMode");
    EXPECT_TRUE(paste({stale}, Operation::copy, windowed));
    EXPECT_EQ(pasted({stale, app(99)}, Operation::cut, fullScreen), u"tilesGone");
    navigation.folderStack = {{tileID(10), 0}};
    EXPECT_EQ(pasted({tile(10)}, Operation::cut, fullScreen), u"intoItself");
}

} // namespace
} // namespace tessellar
