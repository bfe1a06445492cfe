#include "sample/catalog.h"
#include "sample/demonstration_mac.h"
#include "sample/picture.h"
#include "sample/trees.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <set>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::Key;

TEST(DemonstrationMac, IsTheSameToTheByteEveryTime) {
    const QTemporaryDir first;
    const QTemporaryDir second;
    MacBuilder one(first.path());
    MacBuilder other(second.path());
    buildDemonstrationMac(one, 14);
    buildDemonstrationMac(other, 14);
    ASSERT_EQ(one.failure(), std::nullopt);
    const auto tree = test::treeOf(first.path());
    EXPECT_EQ(tree, test::treeOf(second.path()));
    EXPECT_THAT(tree, Contains(Key("usr/bin/codesign")));
    EXPECT_THAT(tree, Contains(Key("Applications/Oldtimer.APP/Contents/Info.plist")));
}

TEST(DemonstrationMac, TheCatalogNamesEachApplicationOnceAndDrawsWhatThereIs) {
    const QList<QByteArray> glyphs = pictureNames();
    std::set<QByteArray> names;
    std::set<Kind> kinds;
    for (const CatalogEntry& entry : catalog()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        EXPECT_TRUE(glyphs.contains(entry.icon.glyph)) << entry.icon.glyph;
        EXPECT_LT(entry.vendor, int(vendors().size())) << entry.name;
        kinds.insert(entry.kind);
    }
    EXPECT_EQ(kinds.size(), std::size_t(Kind::user) + 1);
    EXPECT_GE(names.size(), 110u);
}

} // namespace
} // namespace tessellar::sample
