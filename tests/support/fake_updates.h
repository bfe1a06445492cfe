#pragma once

#include "tests/support/fake_commands.h"

namespace tessellar::test {

/// A brew that owns "Cask.app" as its cask "cask", outdated where there is a newer version, and whose
/// upgrade ends so.
inline FakeCommands::Answer brewOfOneCask(const QByteArray& newer, int upgradeStatus = 0) {
    return [=](const Command& command, const std::stop_token&) {
        const QByteArray asked = command.arguments.value(0);
        if (asked == "outdated")
            return exited(0, newer.isEmpty()
                                 ? QByteArray(R"({"casks":[]})")
                                 : R"({"casks":[{"name":"cask","current_version":")" + newer + "\"}]}");
        if (asked == "info")
            return exited(0, R"({"casks":[{"token":"cask","version":"2.0","artifacts":)"
                             R"([{"app":["Cask.app"]}]}]})");
        return exited(upgradeStatus);
    };
}

/// A feed whose only item is this build, shown as version 2.5.
inline QByteArray sparkleFeed(const QByteArray& build) {
    return "<rss xmlns:s=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item>"
           "<enclosure s:version=\"" +
           build + "\" s:shortVersionString=\"2.5\"/></item></channel></rss>";
}

} // namespace tessellar::test
