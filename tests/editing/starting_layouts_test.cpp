#include "editing/starting_layouts.h"

#include "support/items.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar::test {
namespace {

TEST(LayoutByCategory, FoldersOfTwoOrMoreComeFirstAndTheRestByName) {
    const auto of = [](const QString& name, const char* category) {
        AppEntry entry = app(name);
        if (category)
            entry.category = QStringLiteral("public.app-category.") + QLatin1StringView(category);
        return entry;
    };
    const QList<AppEntry> apps{of(u"Viola"_qs, "music"),       of(u"Zither"_qs, nullptr),
                               of(u"Halma"_qs, "board-games"), of(u"Banjo"_qs, "music"),
                               of(u"Draughts"_qs, "games"),    of(u"Mill"_qs, "puzzle-games"),
                               of(u"Alone"_qs, "medical"),     of(u"Odd"_qs, "gadgets")};
    RandomUuidSource uuids;
    const Pages pages = layoutByCategory(apps, {SmartFolderReference{}}, {.page = 4, .folder = 2},
                                         Locale(u"en_US"_qs), uuids);
    EXPECT_EQ(sketch(pages), u"* [Games: Draughts Halma|Mill] [Music: Banjo Viola] Alone|Odd Zither");
    EXPECT_NE(pages[0][1].id(), pages[0][2].id());
    EXPECT_TRUE(layoutByCategory({}, {}, {}, Locale(u"en_US"_qs), uuids).isEmpty());
}

} // namespace
} // namespace tessellar::test
