#include "discovery/launchpad_tree.h"

#include "discovery/app_resolver.h"
#include "model/layout_document.h"
#include "support/items.h"
#include "support/printers.h"

#include <gmock/gmock.h>

namespace tessellar::test {

using namespace Qt::Literals::StringLiterals;

namespace {

using Items = QList<NativeLaunchpadItem>;

/// `{rowid, type, parent, ordering}`; the first is the root.
struct ShortItem {
    std::int64_t rowid;
    std::int64_t type;
    std::optional<std::int64_t> parent;
    std::int64_t ordering = 0;
    QString uuid = {};
};
Items items(const QList<ShortItem>& list) {
    Items result;
    for (const auto& [rowid, type, parent, ordering, uuid] : list)
        result.append({rowid, result.isEmpty() ? u"ROOTPAGE"_s : uuid, 0, type, parent, ordering});
    return result;
}

/// Pages apart by bars, applications as numbers, folders in brackets.
QString sketch(const QList<ImportedNode>& pages) {
    QStringList shown;
    for (const ImportedNode& page : pages) {
        QStringList tiles;
        for (const ImportedNode& tile : page.children)
            tiles += tile.kind == ImportedNode::Kind::app
                         ? QString::number(tile.item)
                         : u"[%1: %2]"_s.arg(tile.title, sketch(tile.children));
        shown += tiles.join(u' ');
    }
    return shown.join(u'|');
}

TEST(LaunchpadTree, IsWhatHangsUnderTheRootInOrder) {
    const struct {
        const char* what;
        Items rows;
        QString shown;
    } cases[] = {
        {"no root", Items{{1, u"OTHER"_s, 0, 1, 0, 0}, {2, {}, 0, 3, 1, 0}, {3, {}, 0, 4, 2, 0}}, {}},
        {"a folder called as the root", Items{{1, u"ROOTPAGE"_s, 0, 2, 0, 0}, {3, {}, 0, 4, 1, 0}}, {}},
        {"order, by row in one place",
         items({{1, 1, 0},
                {5, 3, 1, 2},
                {4, 3, 1, -1},
                {8, 4, 4, 1},
                {7, 4, 4, 1},
                {9, 4, 4, 0},
                {6, 4, 5}}),
         u"9 7 8|6"_s},
        {"the holding page, other trees, orphans, no parent",
         items({{1, 1, 0},
                {2, 3, 1, 0, u"HOLDINGPAGE"_s},
                {20, 4, 2},
                {3, 1, 0, 0, u"ROOTPAGE_DB"_s},
                {4, 3, 3},
                {21, 4, 4},
                {5, 3, 1, 1},
                {22, 4, 5},
                {23, 4, 77},
                {24, 4, std::nullopt}}),
         u"22"_s},
        {"rings, through the root and apart from it",
         items({{1, 1, 6},
                {5, 3, 1},
                {6, 2, 5},
                {7, 3, 6},
                {8, 4, 7},
                {9, 3, 10},
                {10, 3, 9},
                {11, 11, 11}}),
         u"[Folder: 8]"_s},
        {"one row twice", items({{1, 1, 0}, {5, 3, 1}, {6, 4, 5}, {6, 4, 5, 1}, {1, 3, 1, 3}}), u"6"_s},
        {"things without a page, pages in a page",
         items({{1, 1, 0},
                {5, 4, 1, 0},
                {6, 3, 1, 1},
                {7, 4, 6, 0},
                {8, 3, 6, 1},
                {9, 4, 8},
                {10, 4, 6, 2},
                {11, 4, 1, 2},
                {12, 2, 1, 3},
                {13, 4, 12}}),
         u"5|7|9|10|11 [Folder: 13]"_s},
        {"what is not a tile",
         items({{1, 1, 0}, {5, 3, 1}, {6, 5, 5}, {7, 6, 5}, {8, 0, 5}, {9, 4, 8}}), u""_s},
    };
    for (const auto& [what, rows, shown] : cases)
        EXPECT_EQ(sketch(launchpadTree({.items = rows})), shown) << what;
}

TEST(LaunchpadTree, IsNoDeeperThanAnArrangementAndTakesAHundredThousandItems) {
    constexpr std::int64_t count = 100'000;
    Items chain = items({{1, 1, 0}, {2, 3, 1}});
    Items pages = chain;
    Items flat = chain;
    for (std::int64_t row = 3; row < count; ++row) {
        chain.append({row, {}, 0, row + 1 == count ? 4 : 2, row - 1, 0});
        pages.append({row, {}, 0, 3, row - 1, 0});
        flat.append({row, {}, 0, 4, 2, count - row});
    }
    QList<ImportedNode> level = launchpadTree({.items = chain});
    int depth = 0;
    while (level.first().children.first().kind == ImportedNode::Kind::folder) {
        ++depth;
        level = QList<ImportedNode>(level.first().children.first().children);
    }
    EXPECT_EQ(depth, maximumFolderDepth);
    EXPECT_EQ(level.first().children.first().item, count - 1);
    EXPECT_EQ(launchpadTree({.items = pages}).size(), count - 2);
    const auto tiles = launchpadTree({.items = flat}).first().children;
    EXPECT_EQ(tiles.size(), count - 3);
    EXPECT_EQ(tiles.first().item, count - 1);
}

AppEntry at(const QString& name, const QString& identifier, const QString& path) {
    AppEntry entry = app(name);
    entry.bundleIdentifier = identifier;
    entry.path = path;
    return entry;
}

TEST(AppResolver, GivesEachInstalledApplicationToOneTile) {
    const AppResolver resolver(
        {at(u"Editor"_s, u"org.editor"_s, u"/Applications/Editor.app"_s),
         at(u"Editor Beta"_s, u"org.editor"_s, u"/Applications/Editor Beta.app"_s),
         at(u"Café"_s, u"org.café"_s, u"/Applications/Coffee.app"_s),
         at(u"Notes"_s, u"org.notes"_s, u"/Applications/Notes.app"_s)},
        Locale(u"en_US"_s));
    const auto names = [&](const QList<NativeLaunchpadApp>& apps) {
        QStringList result;
        for (const auto& entry : resolver.resolve(apps))
            result += entry ? entry->name : u"-"_s;
        return result;
    };
    // Two copies of one identifier, in either order; a third finds neither.
    EXPECT_EQ(names({{1, u"Editor BETA"_s, u"org.editor"_s, {}},
                     {2, u"Editor"_s, u"org.editor"_s, {}},
                     {3, u"Editor"_s, u"org.editor"_s, {}}}),
              (QStringList{u"Editor Beta"_s, u"Editor"_s, u"-"_s}));
    // By title: folded and trimmed, also by the name on the disk; not where another tile says so
    // exactly.
    EXPECT_EQ(names({{1, u" CAFE "_s, {}, {}},
                     {2, u"Notes"_s, u"old.notes"_s, {}},
                     {3, u"Notizen"_s, u"org.notes"_s, {}}}),
              (QStringList{u"Café"_s, u"-"_s, u"Notes"_s}));
    EXPECT_EQ(names({{1, u"coffee"_s, {}, {}}, {2, {}, {}, {}}}), (QStringList{u"Café"_s, u"-"_s}));
}

} // namespace
} // namespace tessellar::test
