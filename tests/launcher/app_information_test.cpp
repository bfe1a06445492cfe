#include "launcher/app_information_gatherer.h"
#include "launcher/launcher_updates.h"
#include "small_launcher.h"
#include "smartfolders/smart_folder_rule.h"
#include "tests/support/fake_updates.h"

namespace tessellar::test {
namespace {

/// What tools say of code, by what it is signed with.
TEST(CodeFindings, SayWhatTheSignatureAndTheSystemSay) {
    const QByteArray developerId = "Executable=/A.app/Contents/MacOS/A\n"
                                   "CodeDirectory v=20500 size=612 flags=0x10000(runtime) hashes=8+7\n"
                                   "Authority=Developer ID Application: Ann (ABCDE12345)\n"
                                   "Authority=Apple Root CA\n";
    const QByteArray sandboxed = "<plist version=\"1.0\"><dict>"
                                 "<key>com.apple.security.app-sandbox</key><true/></dict></plist>";
    EXPECT_EQ(parseCode(exited(0, {}, developerId)),
              (CodeFindings{CodeSignature::developerId, true, {}, false}));
    EXPECT_EQ(parseCode(exited(0, sandboxed, developerId + "Notarization Ticket=stapled\n")),
              (CodeFindings{CodeSignature::developerId, true, true, true}));
    EXPECT_EQ(parseCode(exited(0, "<plist",
                               "CodeDirectory v=20400 size=3 flags=0x0 hashes=9+0(runtime)\n"
                               "Authority=Apple Mac OS Application Signing\n")),
              (CodeFindings{CodeSignature::appStore, false, {}, {}}))
        << "what cannot be read is unknown, and flags without words are none";
    EXPECT_EQ(parseCode(exited(0, {},
                               "CodeDirectory v=2 flags=0x20002(adhoc,linker-signed) hashes=9\n"
                               "Signature=adhoc\n")),
              (CodeFindings{CodeSignature::adHoc, false, false, false}));
    EXPECT_EQ(parseCode(exited(0, {}, "Authority=Software Signing\n")).signature, CodeSignature::apple);
    EXPECT_EQ(parseCode(exited(0, {}, "Authority=Apple Development: Ann\n")).signature,
              CodeSignature::other);
    EXPECT_EQ(parseCode(exited(1, {}, "/A.app: code object is not signed at all\n")),
              (CodeFindings{CodeSignature::none, false, false, false}));
    EXPECT_EQ(parseCode(exited(1, {}, "/A.app: internal error\n")), CodeFindings());

    EXPECT_EQ(parseAssessment(exited(0, {}, "/A.app: accepted\nsource=Notarized Developer ID\n")),
              true);
    EXPECT_EQ(parseAssessment(exited(3, {}, "/A.app: rejected\nsource=Unnotarized Developer ID\n")),
              false);
    EXPECT_EQ(parseAssessment(exited(0, {}, "/A.app: accepted\nsource=Mac App Store\n")), std::nullopt);
}

class AppInformationTest : public SmallLauncher {
protected:
    AppInformationTest() {
        mac.tool(u"/usr/bin/lipo"_s, exited(0, "x86_64 arm64\n"));
        mac.tool(u"/usr/bin/codesign"_s,
                 exited(0, {},
                        "CodeDirectory v=20500 size=612 flags=0x10000(runtime) hashes=8+7\n"
                        "Authority=Developer ID Application: Ann Déau (ABCDE12345)\n"
                        "TeamIdentifier=ABCDE12345\n"));
        mac.tool(u"/usr/sbin/spctl"_s, exited(0, {}, "source=Notarized Developer ID\n"));
        mac.tool(u"/usr/bin/open"_s, exited(0));
        mac.tool(u"/opt/homebrew/bin/brew"_s, brewOfOneCask({}));
        builder.addApplication({.name = u"Cask"_s,
                                .identifier = u"org.example.cask"_s,
                                .version = u"2.0"_s,
                                .build = u"20"_s,
                                .category = u"public.app-category.utilities"_s,
                                .minimumSystem = u"13.0"_s,
                                .privacyKeys = {u"NSCameraUsageDescription"_s}});
    }
    /// All that is told of an application, one after the other.
    QList<AppInformation> ask(const QString& key = u"org.example.cask"_s) {
        QList<AppInformation> all;
        const auto app = AppInformationGatherer::application(*launcher, mode(), key);
        if (!app)
            return all;
        const AppInformationGatherer inquiry(
            *launcher, mac.machine, mode(), *app,
            [&](const AppInformation& information) { all.append(information); });
        all.append(inquiry.information());
        for (int i = 0; i < 6; ++i) { // what is asked of channels goes on in a timer
            mac.settle();
            time.advance(0ms);
        }
        return all;
    }
    static QString lineOf(const AppInformation& information, const QString& label) {
        for (const InformationSection& section : informationSections(information, Locale(u"en_US"_s)))
            for (const InformationRow& row : section.rows)
                if (row.label == label)
                    return row.text;
        return u"(no such line)"_s;
    }
};

TEST_F(AppInformationTest, ComesAsItIsFoundAndEndsWithAllOfIt) {
    start();
    SmartFolderDefinition rules{.id = idOf(u"Tools"_s), .name = u"Tools"_s};
    rules.rules = {SmartFolderTextRule{mac.uuids.next(), "displayName", predicate::BeginsWith(u"C"_s)}};
    rules.sort.field = "name";
    ASSERT_TRUE(editor().addSmartFolder(mode(), rules));
    builder.addApplication({.name = u"Cask 2"_s,
                            .folder = u"/Users/ada/Applications"_s,
                            .identifier = u"org.example.cask"_s});
    rescan();
    const QString key = u"/Applications/Cask.app"_s; // of several copies
    launcher->opener().launch(key);
    mac.settle();

    const QList<AppInformation> all = ask(key);
    ASSERT_GE(all.size(), 3);
    EXPECT_EQ(lineOf(all.first(), u"Name"_s), u"Cask");
    EXPECT_EQ(lineOf(all.first(), u"Where"_s), key) << "known without a look";
    EXPECT_EQ(lineOf(all.first(), u"Notarized"_s), u"…") << "awaited";
    EXPECT_TRUE(all.first().pending.any());

    const AppInformation& last = all.last();
    EXPECT_FALSE(last.pending.any());
    const std::pair<const char16_t*, const char16_t*> lines[] = {
        {u"Version", u"2.0"},
        {u"Category", u"Utilities"},
        {u"Another Copy", u"/Users/ada/Applications/Cask 2.app"},
        {u"Developer", u"Ann Déau"},
        {u"Architectures", u"Intel 64-bit (x86_64), Apple silicon (arm64)"},
        {u"Signature", u"Developer ID"},
        {u"Notarized", u"Yes"},
        {u"Sandboxed", u"No"},
        {u"May Ask For", u"Camera"},
        {u"Come From", u"Homebrew (cask)"},
        {u"Last Checked", u"Never"},
        {u"Opened", u"Once from here"},
        {u"Smart Folders", u"Tools"},
        {u"Publisher", u"Unknown"}};
    for (const auto& [label, text] : lines)
        EXPECT_EQ(lineOf(last, QString::fromUtf16(label)), QString::fromUtf16(text));
    EXPECT_GT(last.size.value_or(0), 0);
    EXPECT_TRUE(last.modifiedDate);
    EXPECT_EQ(json::decode<AppInformation>(json::encode(last)).value().copies, last.copies);
}

TEST_F(AppInformationTest, WhatNobodyCanTellIsUnknown) {
    for (const auto* tool : {u"/usr/bin/codesign", u"/usr/sbin/spctl", u"/usr/bin/lipo"})
        mac.remove(QString::fromUtf16(tool));
    store({{app(u"Cask"_s), app(u"Gone"_s)}}, {u"org.example.cask"_s});
    start();
    const AppInformation last = ask().last();
    EXPECT_FALSE(last.pending.any());
    for (const auto* label : {u"Developer", u"Team", u"Architectures", u"Signature",
                              u"Hardened Runtime", u"Notarized", u"Sandboxed"})
        EXPECT_EQ(lineOf(last, QString::fromUtf16(label)), u"Unknown");
    EXPECT_EQ(lineOf(last, u"Shown"_s), u"Hidden from the pages");
    EXPECT_TRUE(ask(u"org.example.nothing"_s).isEmpty());

    // It goes while it is looked at.
    uninstall(u"Cask"_s);
    launcher->layouts().markUnavailable(u"org.example.cask"_s);
    const AppInformation gone = ask().last();
    EXPECT_EQ(lineOf(gone, u"Installed"_s), u"Not found where it was");
    EXPECT_EQ(lineOf(gone, u"Size"_s), u"Unknown");
}

} // namespace
} // namespace tessellar::test
