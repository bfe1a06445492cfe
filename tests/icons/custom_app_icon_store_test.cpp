#include "icons/custom_app_icon_store.h"

#include "icns_bytes.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace tessellar;
using namespace tessellar::test;
using namespace Qt::StringLiterals;
using Error = CustomAppIconStore::Error;

namespace {

class CustomAppIconStoreTest : public testing::Test {
protected:
    QString write(const QString& path, const QByteArray& bytes) {
        EXPECT_TRUE(files.createDirectories(FileSystem::parent(path)));
        EXPECT_TRUE(files.writeAtomically(path, bytes));
        return path;
    }
    std::optional<Error> importing(const QString& path, const QString& key = u"com.example.fern"_s) {
        const auto imported = store.importIcon(path, key);
        return imported ? std::nullopt : std::optional(imported.error());
    }
    std::optional<Error> importing(const QByteArray& bytes) {
        return importing(write(u"/in/Icon.icns"_s, bytes));
    }

    /// A valid icon of exactly this many bytes.
    static QByteArray iconOfSize(qsizetype size) {
        const QByteArray image = icnsEntry("ic07", png(128, Qt::red));
        return icnsFile(image + icnsEntry("info", QByteArray(size - image.size() - 16, '\0')));
    }

    QTemporaryDir folder;
    FileSystem files{folder.path()};
    const QString directory =
        u"/Users/ada/Library/Application Support/com.tessellar.app/Custom Icons"_s;
    CustomAppIconStore store{files, directory, Locale(u"en_US"_s)};
    const QByteArray icon = icnsFile(icnsEntry("ic07", png(128, Qt::red)));
};

} // namespace

TEST_F(CustomAppIconStoreTest, keepsAPrivateCopyByTheDigestOfTheKey) {
    EXPECT_EQ(importing(write(u"/in/Icon.ICNS"_s, icon)), std::nullopt);
    EXPECT_EQ(store.iconPath(u"com.example.fern"_s),
              directory + u"/8dfe41ca55c48de8dc293ecd766ae90ba8ed62275424792bc9e65f496d40e3f5.icns"_s);
    EXPECT_EQ(files.read(*store.iconPath(u"com.example.fern"_s), 1 << 20), icon);
    EXPECT_EQ(store.iconPath(u"/Applications/Fern.app"_s), std::nullopt);

    // What is known in memory is what the next start finds on the disk.
    EXPECT_EQ(importing(u"/in/Icon.ICNS"_s, u"é"_s), std::nullopt);
    const CustomAppIconStore later(files, directory, Locale(u"en_US"_s));
    const QStringList keys{u"com.example.fern"_s, u"com.example.moss"_s, u"é"_s};
    EXPECT_EQ(later.keysWithIcon(keys), (QSet<QString>{u"com.example.fern"_s, u"é"_s}));
    EXPECT_EQ(store.keysWithIcon(keys), later.keysWithIcon(keys));
    EXPECT_EQ(later.knownIconPath(u"é"_s), store.iconPath(u"é"_s));
}

TEST_F(CustomAppIconStoreTest, refusesWhatIsNoIconAndKeepsTheEarlierOne) {
    ASSERT_EQ(importing(icon), std::nullopt);
    EXPECT_EQ(importing(write(u"/in/icon.png"_s, icon)), Error::notICNSFile);
    EXPECT_EQ(importing(u"/in/missing.png"_s), Error::notICNSFile)
        << "the extension is looked at first";
    EXPECT_EQ(importing(u"/in/missing.icns"_s), Error::unreadableFile);
    EXPECT_TRUE(files.createDirectories(u"/in/folder.icns"_s));
    EXPECT_EQ(importing(u"/in/folder.icns"_s), Error::unreadableFile);

    EXPECT_EQ(importing(QByteArray("icns\0\0\0", 7)), Error::invalidICNSFile);
    EXPECT_EQ(importing(QByteArray("icns\0\0\0\x08", 8)), Error::invalidICNSFile) << "no image";
    EXPECT_EQ(importing(icon + 'x'), Error::invalidICNSFile);
    EXPECT_EQ(importing(icon.chopped(1)), Error::invalidICNSFile);
    EXPECT_EQ(importing(icnsFile(icnsEntry("ic07", png(128, Qt::red).first(50)) +
                                 icnsEntry("ic08", png(256, Qt::red)))),
              Error::invalidICNSFile)
        << "the first image counts";
    EXPECT_EQ(files.read(*store.iconPath(u"com.example.fern"_s), 1 << 20), icon);
}

TEST_F(CustomAppIconStoreTest, takes64MebibytesAndNotAByteMore) {
    EXPECT_EQ(importing(iconOfSize(67'108'864)), std::nullopt);
    EXPECT_EQ(importing(iconOfSize(67'108'865)), Error::fileTooLarge);
}

TEST_F(CustomAppIconStoreTest, holdsAccessToTheFileWhileItReads) {
    int begun = 0;
    int ended = 0;
    CustomAppIconStore guarded(
        files, directory, Locale(u"en_US"_s), std::make_shared<QtIconDecoder>(), [&](const QString&) {
            ++begun;
            return std::shared_ptr<void>(&ended, [](void* count) { ++*static_cast<int*>(count); });
        });
    EXPECT_TRUE(guarded.importIcon(write(u"/in/a.icns"_s, icon), u"a"_s));
    EXPECT_FALSE(guarded.importIcon(u"/in/missing.icns"_s, u"a"_s));
    EXPECT_EQ(begun, 2);
    EXPECT_EQ(ended, 2);
}

TEST_F(CustomAppIconStoreTest, removesTheIconWithItsRecordAndBackup) {
    const QString key = u"com.example.fern"_s;
    ASSERT_EQ(importing(icon), std::nullopt);
    ASSERT_TRUE(store.writeAppliedIconRecord({u"/Applications//Fern.app/"_s, true}, key));
    ASSERT_TRUE(store.writeOriginalIcon("II*", key));
    EXPECT_EQ(store.appliedIconRecord(key), (AppliedIconRecord{u"/Applications/Fern.app"_s, true}));
    EXPECT_EQ(store.originalIcon(key), QByteArray("II*"));

    EXPECT_TRUE(store.removeIcon(key));
    EXPECT_EQ(store.iconPath(key), std::nullopt);
    EXPECT_EQ(store.knownIconPath(key), std::nullopt);
    EXPECT_EQ(files.entries(directory)->size(), 0);
    EXPECT_TRUE(store.removeIcon(key)) << "nothing to remove is no failure";

    // A folder in the place of the record cannot be removed as a file: then the icon stays, too.
    ASSERT_EQ(importing(icon), std::nullopt);
    write(directory + u'/' + CustomAppIconStore::baseName(key) + u".macos-icon.json/x"_s, "x");
    EXPECT_EQ(store.removeIcon(key), std::unexpected(Error::couldNotRemove));
    EXPECT_TRUE(store.iconPath(key));
    EXPECT_TRUE(store.knownIconPath(key));
}

TEST_F(CustomAppIconStoreTest, followsAnApplicationToItsNewKey) {
    const QString from = u"com.example.fern"_s;
    const QString to = u"/Applications/Fern.app"_s;
    ASSERT_EQ(importing(icon), std::nullopt);
    ASSERT_TRUE(store.writeAppliedIconRecord({to, false}, from));
    EXPECT_TRUE(store.changeKey(from, to));
    EXPECT_EQ(store.keysWithIcon({from, to}), QSet<QString>{to});
    EXPECT_EQ(files.read(*store.iconPath(to), 1 << 20), icon);
    EXPECT_TRUE(store.appliedIconRecord(to));
    EXPECT_FALSE(store.appliedIconRecord(from));

    // An icon that the new key has already stays.
    const QByteArray other = icnsFile(icnsEntry("ic07", png(128, Qt::blue)));
    ASSERT_EQ(importing(other), std::nullopt);
    EXPECT_TRUE(store.changeKey(from, to));
    EXPECT_EQ(files.read(*store.iconPath(to), 1 << 20), icon);
    EXPECT_EQ(files.read(*store.iconPath(from), 1 << 20), other);
}

TEST_F(CustomAppIconStoreTest, saysWhenItCannotSave) {
    write(FileSystem::parent(directory), "a file where the folder would be");
    EXPECT_EQ(importing(icon), Error::couldNotSave);
    EXPECT_EQ(store.keysWithIcon({u"com.example.fern"_s}), QSet<QString>());
}
