#include "editing/folder_names.h"

#include "editing/arrangements.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

AppEntry named(const QString& name, const char* category = nullptr) {
    static unsigned number = 0;
    AppEntry entry = test::app(++number, name);
    if (category)
        entry.category = QStringLiteral("public.app-category.") + QLatin1StringView(category);
    return entry;
}

TEST(SuggestedFolderName, MajorityThenCommonWordThenFolder) {
    const Locale english(QStringLiteral("en_US"));
    const auto suggest = [&](const Page& tiles) { return suggestedFolderName(tiles, english); };

    EXPECT_EQ(
        suggest({named(u"A"_qs, "puzzle-games"), named(u"B"_qs, "games"), named(u"C"_qs, "music")}),
        u"Games");
    // Half is no majority, and a category without a name does not count.
    EXPECT_EQ(suggest({named(u"A"_qs, "games"), named(u"B"_qs)}), u"Folder");
    EXPECT_EQ(suggest({named(u"A"_qs, "gadgets"), named(u"B"_qs, "gadgets")}), u"Folder");
    EXPECT_EQ(suggest({test::folder(900, {{named(u"A"_qs, "music"), named(u"B"_qs, "music")}}),
                       named(u"C"_qs, "video")}),
              u"Music");

    EXPECT_EQ(suggest({named(u"The Maple Mail"_qs), named(u"MAPLE-Notes 2"_qs), named(u"Máple"_qs)}),
              u"Maple");
    EXPECT_EQ(suggest({named(u"Maple 2"_qs), named(u"Birch 2"_qs)}), u"Folder");
    EXPECT_EQ(suggest({named(u"日本語 入力"_qs), named(u"日本語 辞書"_qs)}), u"日本語");
    EXPECT_EQ(suggest({named(u"Maple"_qs), SmartFolderReference{}}), u"Folder");
}

} // namespace
} // namespace tessellar
