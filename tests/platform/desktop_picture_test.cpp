#include "platform/desktop_picture.h"

#include "platform/property_list.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar::test {
namespace {

class DesktopPictureTest : public testing::Test {
protected:
    QString found(const std::map<QByteArray, QByteArray>& environment = {}) {
        return desktopPicture({mac.files, u"/Users/ada"_qs, mac.commands, environment})
            .value_or(u"(none)"_qs);
    }
    void keep(const QByteArray& choice) {
        mac.write(u"/Users/ada/Library/Application Support/com.apple.wallpaper/Store/Index.plist"_qs,
                  "<plist><dict><key>AllSpacesAndDisplays</key><dict><key>Desktop</key><dict>"
                  "<key>Content</key><dict><key>Choices</key><array><dict>" +
                      choice + "</dict></array></dict></dict></dict></dict></plist>");
    }
    TestMachine mac;
};

TEST_F(DesktopPictureTest, IsWhatTheMacKeepsOfIt) {
    EXPECT_EQ(found(), u"(none)");
    const QByteArray file =
        "<dict><key>relative</key><string>file:///Users/ada/My%20Lake.jpg</string></dict>";
    keep("<key>Files</key><array>" + file + "</array>");
    EXPECT_EQ(found(), u"(none)") << "the file is not there";
    mac.write(u"/Users/ada/My Lake.jpg"_qs, "jpeg");
    EXPECT_EQ(found(), u"/Users/ada/My Lake.jpg");

    const QByteArray inner = "<plist><dict><key>url</key>" + file + "</dict></plist>";
    keep("<key>Files</key><array/><key>Configuration</key><data>" + inner.toBase64() + "</data>");
    EXPECT_EQ(found(), u"/Users/ada/My Lake.jpg");
    for (const char* other : {"<key>Configuration</key><data>AAAA</data>", "<key>Files</key><true/>"}) {
        keep(other);
        EXPECT_EQ(found(), u"(none)");
    }
}

TEST_F(DesktopPictureTest, IsWhatOtherDesktopsSay) {
    mac.write(u"/pictures/day.png"_qs, "png");
    mac.write(u"/pictures/night.png"_qs, "png");
    QByteArray scheme = "'default'\n";
    mac.tool(u"/usr/bin/gsettings"_qs, [&](const Command& command, std::stop_token) {
        const QByteArray& key = command.arguments.last();
        if (key == "color-scheme")
            return exited(0, scheme);
        return exited(0, key == "picture-uri-dark" ? "'file:///pictures/night.png'\n"
                                                   : "'file:///pictures/day.png'\n");
    });
    EXPECT_EQ(found(), u"(none)") << "another desktop";
    const std::map<QByteArray, QByteArray> gnome{{"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"}};
    EXPECT_EQ(found(gnome), u"/pictures/day.png");
    scheme = "'prefer-dark'\n";
    EXPECT_EQ(found(gnome), u"/pictures/night.png");

    mac.write(u"/Users/ada/.config/plasma-org.kde.plasma.desktop-appletsrc"_qs,
              "[Containments][1]\nImage=file:///pictures/day.png\n");
    EXPECT_EQ(found(), u"/pictures/day.png");
}

} // namespace
} // namespace tessellar::test
