#include "tessellarctl_fixture.h"

namespace tessellar {
namespace {

TEST_F(TessellarctlTest, AnArrangementIsRestoredRenamedReplacedTakenElsewhereAndBroughtIn) {
    const QString id = run({u"arrangements"_s, u"save"_s, u"My Own"_s}).json()[u"id"].toString();
    run(u"rename org.example.ash Tree"_s);
    EXPECT_EQ(text(u"arrangements restore "_s + id), "Restored “My Own”.\n");
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(text(u"arrangements rename %1 Ours"_s.arg(id)), "Renamed to “Ours”.\n");
    EXPECT_EQ(text(u"arrangements replace "_s + id), "Replaced “Ours”.\n");
    EXPECT_EQ(run(u"arrangements rename x y"_s).code(), u"notAnIdentifier");

    QTemporaryDir elsewhere;
    const QString file = elsewhere.path() + u"/ours"_s;
    EXPECT_EQ(text(u"arrangements export %1 %2"_s.arg(id, file)), "Exported “Ours”.\n");
    EXPECT_EQ(text(u"arrangements delete "_s + id), "Deleted “Ours”.\n");
    EXPECT_EQ(text(u"arrangements list"_s), "There are no saved arrangements.\n");
    const Result taken = run(u"arrangements import "_s + file);
    EXPECT_EQ(taken.json()[u"name"].toString(), u"Ours") << taken.error.toStdString();
    EXPECT_EQ(run(u"arrangements undo"_s).code(), u"nothingToUndo") << "each is a launcher anew";
    run(u"batch -"_s, "arrangements save Another\narrangements undo\n");
    const auto saved = json::parse(run(u"arrangements list"_s).out);
    ASSERT_TRUE(saved && saved->toArray().size() == 1);
    EXPECT_EQ((*saved)[0][u"name"].toString(), u"Ours");
}

TEST_F(TessellarctlTest, AllIsArrangedAnew) {
    run(u"group org.example.ash --with org.example.beech"_s);
    const QByteArray before = text(u"list"_s);
    const QByteArray preview = text(u"arrange by-name --preview"_s);
    EXPECT_NE(preview, before);
    EXPECT_EQ(text(u"list"_s), before);
    EXPECT_EQ(run(u"arrange by-name"_s).status, 0);
    EXPECT_EQ(text(u"list"_s), preview);
}

TEST_F(TessellarctlTest, TellsWhatThePanelsShow) {
    const Result info = run(u"info org.example.ash"_s);
    ASSERT_EQ(info.status, 0) << info.error.toStdString();
    EXPECT_EQ(info.json()[u"facts"][u"version"].toString(), u"1.0");
    EXPECT_TRUE(info.json()[u"size"].isDouble());
    const QByteArray shown = text(u"info org.example.ash"_s).simplified();
    EXPECT_TRUE(shown.startsWith("General Name: Ash Version: 1.0 ")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("Security Signature: Unknown ")) << shown.toStdString();
    EXPECT_EQ(run(u"info org.example.none"_s).status, 1);

    EXPECT_EQ(text(u"unplaced"_s), "Everything is on the pages.\n");
    EXPECT_EQ(run(u"hide org.example.ash"_s).status, 0);
    EXPECT_EQ(text(u"unplaced"_s), "hidden  org.example.ash  Ash\n");
}

} // namespace
} // namespace tessellar
