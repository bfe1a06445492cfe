#include "tessellarctl_fixture.h"

#include <QFile>

namespace tessellar {
namespace {

class ArrangementCommandsTest : public TessellarctlTest {
protected:
    Result arrangements(const QStringList& words) {
        return run(QStringList{u"arrangements"_qs} + words);
    }
    QStringList names() {
        QStringList names;
        const auto list = json::parse(arrangements({u"list"_qs}).out);
        for (const QJsonValue& each : list.value_or(QJsonValue()).toArray())
            names += each.toObject()[u"name"].toString();
        return names;
    }
};

TEST_F(ArrangementCommandsTest, AnArrangementIsRenamedReplacedTakenElsewhereAndBroughtIn) {
    const QString id = arrangements({u"save"_qs, u"Mine"_qs}).json()[u"id"].toString();
    EXPECT_EQ(run({u"arrangements"_qs, u"rename"_qs, id, u"Ours"_qs}, {}, false).out,
              "It is called “Ours” now.\n");
    EXPECT_EQ(run({u"arrangements"_qs, u"replace"_qs, id}, {}, false).out, "Replaced “Ours”.\n");
    EXPECT_EQ(arrangements({u"rename"_qs, id, u" "_qs}).code(), u"emptyName");
    EXPECT_EQ(arrangements({u"rename"_qs, u"x"_qs, u"y"_qs}).code(), u"notAnIdentifier");

    QTemporaryDir elsewhere;
    const QString file = elsewhere.path() + u"/ours"_qs;
    EXPECT_EQ(run({u"arrangements"_qs, u"export"_qs, id, file}, {}, false).out, "Exported “Ours”.\n");
    EXPECT_EQ(arrangements({u"export"_qs, id, file}).code(), u"alreadyExists");
    EXPECT_EQ(arrangements({u"delete"_qs, id}).status, 0);
    EXPECT_EQ(names(), QStringList());
    const Result taken = arrangements({u"import"_qs, file});
    EXPECT_EQ(taken.json()[u"name"].toString(), u"Ours") << taken.error.toStdString();
    EXPECT_EQ(names(), QStringList{u"Ours"_qs});
    EXPECT_EQ(arrangements({u"import"_qs, elsewhere.path()}).status, 1);
    EXPECT_EQ(arrangements({u"undo"_qs}).code(), u"nothingToUndo") << "each command is a launcher anew";
    run({u"batch"_qs, u"-"_qs}, "arrangements save Another\narrangements undo\n");
    EXPECT_EQ(names(), QStringList{u"Ours"_qs});
}

TEST_F(ArrangementCommandsTest, AllIsArrangedAnew) {
    run({u"group"_qs, u"org.example.ash"_qs, u"--with"_qs, u"org.example.beech"_qs});
    const QByteArray before = run({u"list"_qs}, {}, false).out;
    const QByteArray preview = run({u"arrange"_qs, u"by-name"_qs, u"--preview"_qs}, {}, false).out;
    EXPECT_NE(preview, before);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, before);
    EXPECT_EQ(run({u"arrange"_qs, u"by-name"_qs}).status, 0);
    EXPECT_EQ(run({u"list"_qs}, {}, false).out, preview);
    EXPECT_EQ(run({u"arrange"_qs, u"by-size"_qs}).status, 2);
}

TEST_F(ArrangementCommandsTest, InformationSaysWhatThePanelShows) {
    const Result info = run({u"info"_qs, u"org.example.ash"_qs});
    ASSERT_EQ(info.status, 0) << info.error.toStdString();
    EXPECT_EQ(info.json()[u"facts"].toObject()[u"version"].toString(), u"1.0");
    EXPECT_TRUE(info.json()[u"size"].isDouble());
    const QByteArray text = run({u"info"_qs, u"org.example.ash"_qs}, {}, false).out.simplified();
    EXPECT_TRUE(text.startsWith("General Name: Ash Version: 1.0 ")) << text.toStdString();
    EXPECT_TRUE(text.contains("Security Signature: Unknown ")) << text.toStdString();
    EXPECT_EQ(run({u"info"_qs, u"org.example.none"_qs}).status, 1);
}

TEST_F(ArrangementCommandsTest, WhatIsNotOnThePagesIsListed) {
    EXPECT_EQ(run({u"unplaced"_qs}, {}, false).out, "Everything is on the pages.\n");
    EXPECT_EQ(run({u"hide"_qs, u"org.example.ash"_qs}).status, 0);
    EXPECT_EQ(run({u"unplaced"_qs}, {}, false).out, "hidden  org.example.ash  Ash\n");
}

} // namespace
} // namespace tessellar
