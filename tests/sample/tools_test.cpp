#include "sample/tools.h"
#include "sample/trees.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;

struct Answer {
    int status = -1;
    QString out;
    QString error;
};

/// A Mac with the tools, which are run with an empty environment, as strangers have it.
class Tools : public testing::Test {
protected:
    Tools() {
        mac.addStandardFolders();
        addTools(mac);
        path = mac.addApplication(
            {.name = u"Fern"_s,
             .identifier = u"com.example.fern"_s,
             .storeIdentifier = 4711,
             .signature = {Signature::Kind::developerId, u"Fern Ltd."_s, u"TEAM123456"_s}});
        other = mac.addApplication({.name = u"Unsigned"_s, .architectures = {u"arm64"_s}});
    }

    Answer run(const QString& tool, const QStringList& arguments, const QByteArray& input = {}) const {
        QProcess process;
        process.setProcessEnvironment(QProcessEnvironment());
        process.start(mac.hostPath(tool), arguments);
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished();
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    QString host(const QString& macPath) const { return mac.hostPath(macPath); }

    QTemporaryDir folder;
    MacBuilder mac{folder.path() + u"/A Mac"_s};
    QString path;
    QString other;
};

TEST_F(Tools, TellOfSignaturesArchitecturesAndStoreIdentifiers) {
    const Answer signature = run(u"/usr/bin/codesign"_s, {u"-dvv"_s, host(path)});
    EXPECT_EQ(signature.status, 0);
    EXPECT_EQ(signature.out, u""_s);
    EXPECT_TRUE(
        signature.error.startsWith(u"Executable="_s + host(path) + u"/Contents/MacOS/Fern\n"_s));
    EXPECT_TRUE(
        signature.error.contains(u"\nAuthority=Developer ID Application: Fern Ltd. (TEAM123456)\n"_s));
    EXPECT_TRUE(signature.error.endsWith(u"\nTeamIdentifier=TEAM123456\n"_s));
    const Answer none = run(u"/usr/bin/codesign"_s, {u"-dvv"_s, host(other)});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.error, host(other) + u": code object is not signed at all\n"_s);

    EXPECT_EQ(run(u"/usr/bin/lipo"_s, {u"-archs"_s, host(path) + u"/Contents/MacOS/Fern"_s}).out,
              u"x86_64 arm64\n"_s);
    EXPECT_EQ(run(u"/usr/bin/lipo"_s, {u"-archs"_s, host(path) + u"/Contents/Info.plist"_s}).status, 1);
    const QStringList asked{u"-raw"_s, u"-name"_s, u"kMDItemAppStoreAdamID"_s};
    EXPECT_EQ(run(u"/usr/bin/mdls"_s, asked + QStringList{host(path)}).out, u"4711"_s);
    EXPECT_EQ(run(u"/usr/bin/mdls"_s, asked + QStringList{host(other)}).out, u"(null)"_s);
    const QString userFolder = run(u"/usr/bin/getconf"_s, {u"DARWIN_USER_DIR"_s}).out;
    EXPECT_TRUE(userFolder.startsWith(u"/var/folders/"_s) && userFolder.endsWith(u"/\n"_s));

    run(u"/usr/bin/open"_s, {host(path)});
    EXPECT_EQ(run(u"/usr/bin/open"_s, {host(u"/Applications/None.app"_s)}).status, 1);
    EXPECT_EQ(test::bytesOf(host(MacBuilder::toolData() + u"/opened.log"_s)),
              "/Applications/Fern.app\n");
}

QByteArray trashScript(const QList<QString>& paths) {
    QStringList quoted;
    for (QString path : paths) {
        path.replace(u'\\', u"\\\\"_s)
            .replace(u'"', u"\\\""_s)
            .replace(u'\n', u"\\n"_s)
            .replace(u'\r', u"\\r"_s);
        quoted.append(u'"' + path + u'"');
    }
    return u"set sourcePaths to {%1}\ntell application \"Finder\"\nend tell\n"_s
        .arg(quoted.join(u", "_s))
        .toUtf8();
}

TEST_F(Tools, TheFinderMovesWhatItIsGivenAndReportsLineByLine) {
    const QString odd = u"/tmp/say \"hi\" \\n {%d} $HOME\nand leave"_s;
    mac.addFile(odd, "odd");
    mac.addFile(u"/Users/ada/.Trash/Fern.app"_s, "here before");
    mac.addFile(u"/tmp/kept"_s, "kept");
    mac.addFile(MacBuilder::toolData() + u"/finder/refused"_s, "-5000\t/tmp/kept\n");
    const Answer answer = run(u"/usr/bin/osascript"_s, {},
                              trashScript({host(odd), host(path), host(u"/tmp/none"_s),
                                           host(u"/tmp/kept"_s), u"/etc/hosts"_s}));
    EXPECT_EQ(answer.status, 0);
    const QString trash = host(u"/Users/ada/.Trash/"_s);
    const QString mark = u"<<QZ-FINDER-TRASH>>\t"_s;
    EXPECT_EQ(answer.out, mark + u"0\tOK\t"_s + trash + odd.sliced(5) + u'\n' + mark + u"1\tOK\t"_s +
                              trash + u"Fern 2.app/\n"_s + mark +
                              u"2\tERR\t-43\tThe file wasn’t found.\n"_s + mark +
                              u"3\tERR\t-5000\tThe operation could not be completed.\n"_s + mark +
                              u"4\tERR\t-43\tThe file wasn’t found.\n\n"_s);
    EXPECT_EQ(test::bytesOf(trash + odd.sliced(5)), "odd");
    EXPECT_EQ(test::bytesOf(trash + u"Fern.app"_s), "here before");
    EXPECT_TRUE(test::bytesOf(trash + u"Fern 2.app/Contents/PkgInfo"_s).startsWith("APPL"));
    EXPECT_EQ(test::bytesOf(host(path) + u"/Contents/PkgInfo"_s), "");

    mac.addFile(MacBuilder::toolData() + u"/finder/error"_s, "execution error: Not allowed. (-1743)\n");
    const Answer refused =
        run(u"/usr/bin/osascript"_s, {u"-e"_s, QString::fromUtf8(trashScript({host(other)}))});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.error, u"execution error: Not allowed. (-1743)\n"_s);
}

TEST_F(Tools, BrewListsItsCasksAndAnUpgradeBringsTheUpdate) {
    const QString info = path + u"/Contents/Info.plist"_s;
    addHomebrew(mac, {{.token = u"fern"_s,
                       .tap = u"ada/tap"_s,
                       .version = u"2.0,7"_s,
                       .installedVersion = u"1.0"_s,
                       .artifacts = {QJsonObject{{u"app"_s, QJsonArray{u"Fern.app"_s}}}},
                       .update = PendingUpdate{u"fern"_s, u"2.0,7"_s, info, "new"}},
                      {.token = u"moss"_s, .version = u"latest"_s, .installedVersion = u"latest"_s}});
    const QString brew = u"/opt/homebrew/bin/brew"_s;
    const auto casks = [&](const QStringList& arguments) {
        return QJsonDocument::fromJson(run(brew, arguments).out.toUtf8())[u"casks"].toArray();
    };
    const QStringList outdated{u"outdated"_s, u"--cask"_s, u"--json=v2"_s};
    const QJsonArray installed = casks({u"info"_s, u"--json=v2"_s, u"--cask"_s, u"--installed"_s});
    ASSERT_EQ(installed.size(), 2);
    EXPECT_EQ(installed[0][u"full_token"].toString(), u"ada/tap/fern"_s);
    EXPECT_TRUE(installed[1][u"auto_updates"].isNull());
    ASSERT_EQ(casks(outdated).size(), 1);
    EXPECT_EQ(casks(outdated)[0][u"current_version"].toString(), u"2.0,7"_s);

    EXPECT_EQ(run(brew, {u"upgrade"_s, u"--cask"_s, u"none"_s}).status, 1);
    EXPECT_EQ(run(brew, {u"upgrade"_s, u"--cask"_s, u"fern"_s}).status, 0);
    EXPECT_EQ(test::bytesOf(host(info)), "new");
    EXPECT_TRUE(casks(outdated).isEmpty());
}

TEST_F(Tools, TheVendorsUpdaterSaysWhenThereIsNothingToDo) {
    const QString info = path + u"/Contents/Info.plist"_s;
    addMicrosoftUpdater(mac, {{u"MSWD2019"_s, u"2.0"_s, info, "new"}});
    const QString tool =
        u"/Library/Application Support/Microsoft/MAU2.0/Microsoft AutoUpdate.app/Contents/MacOS/msupdate"_s;
    const QStringList arguments{u"--install"_s, u"--apps"_s, u"MSWD2019"_s, u"--wait"_s, u"1800"_s};
    EXPECT_EQ(run(tool, arguments).out, u"Updates applied\n"_s);
    EXPECT_EQ(test::bytesOf(host(info)), "new");
    EXPECT_EQ(run(tool, arguments).out, u"No updates applied\n"_s);
}

} // namespace
} // namespace tessellar::sample
