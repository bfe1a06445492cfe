#include "editing/folder_names.h"
#include "editing/starting_layouts.h"

#include "support/items.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar::test {
namespace {

using namespace Qt::Literals::StringLiterals;

AppEntry named(const QString& name, const char* category = nullptr) {
    AppEntry entry = app(name);
    if (category)
        entry.category = u"public.app-category."_s + QLatin1StringView(category);
    return entry;
}

TEST(SuggestedFolderName, MajorityThenCommonWordThenFolder) {
    const Locale english(u"en_US"_s);
    const auto suggest = [&](const Page& tiles) { return suggestedFolderName(tiles, english); };

    EXPECT_EQ(suggest({named(u"A"_s, "puzzle-games"), named(u"B"_s, "games"), named(u"C"_s, "music")}),
              u"Games");
    // Half is no majority, and a category without a name does not count.
    EXPECT_EQ(suggest({named(u"A"_s, "games"), named(u"B"_s)}), u"Folder");
    EXPECT_EQ(suggest({named(u"A"_s, "gadgets"), named(u"B"_s, "gadgets")}), u"Folder");
    EXPECT_EQ(suggest({folder(u"f"_s, {{named(u"A"_s, "music"), named(u"B"_s, "music")}}),
                       named(u"C"_s, "video")}),
              u"Music");

    EXPECT_EQ(suggest({named(u"The Maple Mail"_s), named(u"MAPLE-Notes 2"_s), named(u"Máple"_s)}),
              u"Maple");
    EXPECT_EQ(suggest({named(u"Maple 2"_s), named(u"Birch 2"_s)}), u"Folder");
    EXPECT_EQ(suggest({named(u"日本語 入力"_s), named(u"日本語 辞書"_s)}), u"日本語");
    EXPECT_EQ(suggest({named(u"Maple"_s), SmartFolderReference{}}), u"Folder");
}

TEST(LayoutByCategory, FoldersOfTwoOrMoreComeFirstAndTheRestByName) {
    const QList<AppEntry> apps{named(u"Viola"_s, "music"),       named(u"Zither"_s),
                               named(u"Halma"_s, "board-games"), named(u"Banjo"_s, "music"),
                               named(u"Draughts"_s, "games"),    named(u"Mill"_s, "puzzle-games"),
                               named(u"Alone"_s, "medical"),     named(u"Odd"_s, "gadgets")};
    RandomUuidSource uuids;
    const Pages pages = layoutByCategory(apps, {SmartFolderReference{}}, {.page = 4, .folder = 2},
                                         Locale(u"en_US"_s), uuids);
    EXPECT_EQ(sketch(pages), u"* [Games: Draughts Halma|Mill] [Music: Banjo Viola] Alone|Odd Zither");
    EXPECT_NE(pages[0][1].id(), pages[0][2].id());
    EXPECT_TRUE(layoutByCategory({}, {}, {}, Locale(u"en_US"_s), uuids).isEmpty());
}

} // namespace
} // namespace tessellar::test
