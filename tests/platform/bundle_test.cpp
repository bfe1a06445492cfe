#include "platform/alias_file.h"
#include "platform/bundle.h"
#include "platform/strings_file.h"
#include "sample/alias_writer.h"
#include "sample/mac_builder.h"

#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <QStringEncoder>
#include <QtEndian>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using sample::LocalizationForm;
using sample::MacBuilder;

class BundleTest : public testing::Test {
protected:
    Bundle added(const sample::Application& application) {
        const QString path = mac.addApplication(application);
        EXPECT_EQ(mac.failure(), std::nullopt);
        return readBundle(files, path);
    }

    test::TestMachine machine;
    MacBuilder mac{machine.hostPath(QString())};
    const FileSystem& files = machine.machine.files;
};

TEST_F(BundleTest, HasNothingThatItCannotRead) {
    const QString path = u"/Applications/Odd.app"_s;
    const auto nothing = [&] {
        const Bundle bundle = readBundle(files, path);
        EXPECT_TRUE(bundle.info.isAbsent());
        EXPECT_EQ(bundle.identifier(), std::nullopt);
        EXPECT_EQ(bundle.executablePath(), std::nullopt);
        EXPECT_EQ(bundle.iconPath(), std::nullopt);
        EXPECT_EQ(finderDisplayName(files, bundle, {u"en"_s}), u"Odd"_s);
        return bundle.shape == BundleShape::mac;
    };
    EXPECT_TRUE(nothing());
    machine.write(path + u"/Contents/Info.plist"_s, "<plist><dict>");
    EXPECT_TRUE(nothing());
    machine.write(path + u"/Contents/Info.plist"_s, QByteArray(5 << 20, ' '));
    EXPECT_TRUE(nothing());
    // A list that is there but cannot be read does not give way to another.
    machine.write(path + u"/Info.plist"_s,
                  "<plist><dict><key>CFBundleIdentifier</key><string>x</string></dict></plist>");
    EXPECT_TRUE(nothing());
    machine.remove(path + u"/Contents"_s);
    EXPECT_EQ(readBundle(files, path).shape, BundleShape::flat);
    EXPECT_EQ(readBundle(files, path).identifier(), u"x"_s);

    const Bundle wrong =
        added({.name = u"Wrong"_s,
               .identifier = std::nullopt,
               .version = std::nullopt,
               .info = {{u"CFBundleIdentifier"_s, 7}, {u"CFBundleExecutable"_s, true}}});
    EXPECT_EQ(wrong.identifier(), std::nullopt);
    EXPECT_EQ(wrong.version(), std::nullopt);
    EXPECT_EQ(wrong.executablePath(), std::nullopt);
}

TEST_F(BundleTest, KeepsDeclaredPathsInside) {
    const auto declared = [&](const QString& name) {
        const Bundle bundle =
            added({.name = u"Fern"_s,
                   .info = {{u"CFBundleExecutable"_s, name}, {u"CFBundleIconFile"_s, name}}});
        return std::pair(bundle.executablePath(), bundle.iconPath());
    };
    const QString contents = u"/Applications/Fern.app/Contents"_s;
    using Paths = std::pair<std::optional<QString>, std::optional<QString>>;
    EXPECT_EQ(declared(u"a.ICNS"_s),
              Paths(contents + u"/MacOS/a.ICNS"_s, contents + u"/Resources/a.ICNS"_s));
    EXPECT_EQ(declared(u"sub/a.b"_s),
              Paths(contents + u"/MacOS/sub/a.b"_s, contents + u"/Resources/sub/a.b.icns"_s));
    EXPECT_EQ(declared(u"../x"_s), Paths(contents + u"/x"_s, contents + u"/x.icns"_s));
    for (const QString& bad :
         {u"../../../Fern.appx"_s, u"../../../../etc/passwd"_s, u"/bin/sh"_s, u"a/../../../../x"_s})
        EXPECT_EQ(declared(bad), Paths()) << bad.toStdString();
    EXPECT_EQ(declared(QString()), Paths());
    EXPECT_EQ(declared(u"."_s).first, std::nullopt);
    EXPECT_EQ(declared(u"../.."_s).first, std::nullopt);
}

TEST_F(BundleTest, FindsTheRealBundleOfAWrappedApplication) {
    const sample::Application application{
        .name = u"Pump"_s,
        .identifier = u"com.example.pump"_s,
        .wrapped = sample::WrappedMetadata{
            .realName = u"PumpReal"_s, .itemId = 6717572591, .itemName = u"Pump: Go"_s}};
    const QString real = u"/Applications/Pump.app/Wrapper/PumpReal.app"_s;
    Bundle bundle = added(application);
    EXPECT_EQ(bundle.shape, BundleShape::wrapped);
    EXPECT_EQ(bundle.infoPath, real + u"/Info.plist"_s);
    EXPECT_EQ(bundle.resourcesPath, real);
    EXPECT_EQ(bundle.executablePath(), real + u"/PumpReal"_s);
    EXPECT_EQ(bundle.identifier(), u"com.example.pump"_s);
    EXPECT_EQ(bundle.storeMetadata[u"itemId"_s].integer(), 6717572591);
    EXPECT_TRUE(isWrappedApplication(files, bundle.path));

    // A link that is missing, or leads elsewhere, gives way to the only bundle there is.
    EXPECT_FALSE(isWrappedApplication(files, added({.name = u"Other"_s}).path));
    for (const QString& link :
         {u""_s, u"../Other.app"_s, u"/Applications/Other.app"_s, u"Wrapper"_s, u"Wrapper/No.app"_s}) {
        machine.remove(u"/Applications/Pump.app/WrappedBundle"_s);
        if (link.isEmpty())
            machine.write(u"/Applications/Pump.app/WrappedBundle"_s, "");
        else
            machine.link(u"/Applications/Pump.app/WrappedBundle"_s, link);
        EXPECT_EQ(readBundle(files, bundle.path).identifier(), u"com.example.pump"_s)
            << link.toStdString();
    }
    machine.makeFolder(u"/Applications/Pump.app/Wrapper/Second.app"_s);
    bundle = readBundle(files, bundle.path);
    EXPECT_EQ(bundle.shape, BundleShape::wrapped);
    EXPECT_TRUE(bundle.info.isAbsent());
    EXPECT_EQ(bundle.storeMetadata[u"itemName"_s].text(), u"Pump: Go"_s);
}

TEST_F(BundleTest, ShowsTheNameThatTheFinderShows) {
    const QMap<QString, QString> names{
        {u"de"_s, u"Farn é"_s}, {u"pt_BR"_s, u"Samambaia"_s}, {u"zh-Hans"_s, u"蕨"_s}};
    for (const auto form : {LocalizationForm::stringsUtf8, LocalizationForm::stringsUtf16,
                            LocalizationForm::propertyList, LocalizationForm::loctable}) {
        const Bundle bundle = added({.name = u"Fern %1"_s.arg(static_cast<int>(form)),
                                     .displayName = u"Fern %1"_s.arg(static_cast<int>(form)),
                                     .localizedNames = names,
                                     .localizationForm = form,
                                     .info = {{u"CFBundleDevelopmentRegion"_s, u"en_US"_s}}});
        const auto shown = [&](const QStringList& languages) {
            return finderDisplayName(files, bundle, languages);
        };
        const QString onDisk = bundle.info[u"CFBundleDisplayName"_s].text().value();
        EXPECT_EQ(shown({u"de"_s}), u"Farn é"_s);
        EXPECT_EQ(shown({u"de-AT"_s, u"en"_s}), u"Farn é"_s);
        EXPECT_EQ(shown({u"pt-BR"_s}), u"Samambaia"_s);
        EXPECT_EQ(shown({u"zh_CN"_s}), u"蕨"_s);
        EXPECT_EQ(shown({u"sv"_s, u"de"_s}), u"Farn é"_s);
        EXPECT_EQ(shown({u"en"_s, u"de"_s}), onDisk); // the bundle's own language
        EXPECT_EQ(shown({u"../de"_s, u"sv"_s}), onDisk);
        EXPECT_EQ(shown({}), onDisk);
    }

    sample::Application renamed{
        .name = u"Renamed"_s, .displayName = u"Fern"_s, .localizedNames = names};
    EXPECT_EQ(finderDisplayName(files, added(renamed), {u"de"_s}), u"Renamed"_s);
    renamed.info[u"LSHasLocalizedDisplayName"_s] = 1;
    EXPECT_EQ(finderDisplayName(files, added(renamed), {u"de"_s}), u"Farn é"_s);
    renamed.extension = u"APP"_s;
    EXPECT_EQ(finderDisplayName(files, added(renamed), {u"sv"_s}), u"Renamed"_s);
}

TEST_F(BundleTest, SpeaksTheNearestOfTheUsersLanguages) {
    const auto shown = [&](const QStringList& spoken, const QStringList& languages,
                           const QString& native = u"fr"_s) {
        QMap<QString, QString> names;
        for (const QString& language : spoken)
            names.insert(language, language);
        return finderDisplayName(files,
                                 added({.name = u"Fern"_s,
                                        .displayName = u"Fern"_s,
                                        .localizedNames = names,
                                        .info = {{u"CFBundleDevelopmentRegion"_s, native}}}),
                                 languages);
    };
    const QStringList chinese{u"zh-Hans"_s, u"zh-Hant"_s};
    for (const auto& language : {u"zh_HK"_s, u"zh-MO"_s, u"zh_TW"_s, u"zh-Hant-HK"_s, u"zh_Hant_SG"_s})
        EXPECT_EQ(shown(chinese, {language}), u"zh-Hant"_s) << language.toStdString();
    for (const auto& language : {u"zh_SG"_s, u"zh-CN"_s, u"zh"_s, u"zh-Hans-HK"_s})
        EXPECT_EQ(shown(chinese, {language}), u"zh-Hans"_s) << language.toStdString();
    EXPECT_EQ(shown({u"zh_TW"_s, u"zh_CN"_s}, {u"zh_HK"_s}), u"zh_TW"_s);
    EXPECT_EQ(shown({u"zh-HK"_s, u"zh-Hant"_s}, {u"zh-Hant-HK"_s}), u"zh-HK"_s);
    EXPECT_EQ(shown({u"es"_s, u"es-419"_s}, {u"es_MX"_s}), u"es-419"_s);
    EXPECT_EQ(shown({u"es"_s, u"es-419"_s}, {u"es_ES"_s}), u"es"_s);
    EXPECT_EQ(shown({u"pt-PT"_s, u"pt"_s}, {u"pt_AO"_s}), u"pt-PT"_s);
    // The first that the bundle speaks; else the one that it was developed in; else the disk's.
    EXPECT_EQ(shown({u"de"_s, u"sv"_s}, {u"ja"_s, u"de"_s, u"sv"_s}), u"de"_s);
    EXPECT_EQ(shown({u"de"_s, u"fr"_s}, {u"ja"_s}), u"fr"_s);
    EXPECT_EQ(shown({u"de"_s}, {u"ja"_s}), u"Fern"_s);
    EXPECT_EQ(nameOnDisk(u"/Applications/Either:Or.app"_s), u"Either/Or"_s);
}

TEST(StringsFile, ReadsWhatPeopleWrite) {
    const auto reading = [](const QByteArray& bytes) {
        QMap<QString, QString> result;
        const auto entries = readStringsFile(bytes).dictionary();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            result.insert(entry.key(), entry.value().text().value_or(u"?"_s));
        return result;
    };
    using Entries = QMap<QString, QString>;
    const QString text = u"/* names */ CFBundleName = \"Fern\"; // \"no\" = \"no\";\n"
                         "\"a \\\"b\\\"\" = \"x\\ny\\U00e9\\101\\7/*\";\n'k';"_s;
    const Entries expected{
        {u"CFBundleName"_s, u"Fern"_s}, {u"a \"b\""_s, u"x\ny\u00E9A\a/*"_s}, {u"k"_s, u"k"_s}};
    const auto wide = [&](bool bigEndian) {
        QStringEncoder encoder(bigEndian ? QStringConverter::Utf16BE : QStringConverter::Utf16LE);
        return QByteArray(encoder(text));
    };
    EXPECT_EQ(reading(text.toUtf8()), expected);
    EXPECT_EQ(reading("\xEF\xBB\xBF{" + text.toUtf8() + "}"), expected);
    EXPECT_EQ(reading(wide(false)), expected);
    EXPECT_EQ(reading(wide(true)), expected);
    EXPECT_EQ(reading("\xFE\xFF" + wide(true)), expected);

    const Entries first{{u"a"_s, u"b"_s}};
    for (const char* damage : {"a = b; c = d e", "a = b; c = \"d", "a = b; c = ;", "a=b;/*", "a=b;\"\\",
                               "a=b", "a = b; c = {d = e;};", "a=b}c=d;"})
        EXPECT_EQ(reading(damage), first) << damage;
    EXPECT_EQ(reading(""), Entries());
    EXPECT_TRUE(readStringsFile("<plist>").isAbsent());
}

const QString target = u"/Applications/Foo Bar é.app"_s;

TEST(AliasFile, SaysWhereItPoints) {
    const test::TestMachine machine;
    const FileSystem& files = machine.machine.files;
    machine.write(u"/Applications/Foo"_s, sample::aliasFileBytes(target));
    machine.write(u"/Applications/short"_s, "book");
    machine.write(u"/Applications/bookmark"_s, QByteArray("book\x3C\2\0\0\0\0\4\x10\x30\0\0\0", 16));
    machine.write(u"/Applications/large"_s, sample::aliasFileBytes(target) + QByteArray(1 << 20, ' '));
    machine.link(u"/Applications/link"_s, u"Foo"_s);
    ASSERT_EQ(::mkfifo(files.hostPath(u"/Applications/pipe"_s).constData(), 0600), 0);

    EXPECT_EQ(isAliasFile(files, u"/Applications/Foo"_s), true);
    EXPECT_EQ(isAliasFile(files, u"/Applications/link"_s), true);
    EXPECT_EQ(isAliasFile(files, u"/Applications/large"_s), true);
    for (const char16_t* other : {u"/short", u"/bookmark", u"/pipe"})
        EXPECT_EQ(isAliasFile(files, u"/Applications"_s + QString::fromUtf16(other)), false);
    EXPECT_EQ(isAliasFile(files, u"/Applications/none"_s).error().code, FileError::Code::notFound);
    EXPECT_EQ(aliasTarget(files, u"/Applications/Foo"_s), target);
    EXPECT_EQ(aliasTarget(files, u"/Applications/large"_s), std::nullopt);
    EXPECT_EQ(aliasTarget(files, u"/Applications/bookmark"_s), std::nullopt);
}

/// An alias file of 32-bit numbers and texts, written down one after the other behind a header of 56
/// bytes.
class Alias {
public:
    Alias() : _bytes("book\0\0\0\0mark\0\0\0\0\x38\0\0\0", 20) { _bytes.append(36, '\0'); }

    Alias& operator<<(quint32 value) {
        const quint32 little = qToLittleEndian(value);
        _bytes.append(reinterpret_cast<const char*>(&little), 4);
        return *this;
    }
    Alias& operator<<(const QByteArray& text) {
        *this << static_cast<quint32>(text.size()) << 0x0101;
        _bytes += text + QByteArray(-text.size() & 3, '\0');
        return *this;
    }
    QByteArray bytes() const { return _bytes; }

private:
    QByteArray _bytes;
};

constexpr quint32 mark = 0xFFFFFFFE;

TEST(AliasFile, SearchesItsTablesAndNoFurther) {
    const auto withPath = [](const QByteArray& first, quint32 second) {
        Alias alias;
        alias << 4u << 0u << mark << 1u << 24u << 0u; // a table at 4 that has nothing, the next at 24
        alias << 0u << mark << 2u << 0u << 1u << 0x1004u << 56u << 0u;
        alias << 8u << 0x0601u << 72u << second << first;
        return aliasTarget(alias.bytes());
    };
    EXPECT_EQ(withPath("Apps", 72), u"/Apps/Apps"_s);
    EXPECT_EQ(withPath("Apps", 73), std::nullopt);
    EXPECT_EQ(withPath("Apps", 0xFFFFFFFF), std::nullopt);
    for (const QByteArray& bad : {QByteArray("..  ").first(2), QByteArray("."), QByteArray(),
                                  QByteArray("a/b"), QByteArray("a\0b", 3), QByteArray(5'000, 'x')})
        EXPECT_EQ(withPath(bad, 72), std::nullopt) << bad.left(9).toStdString();

    Alias empty; // a path of no names
    empty << 4u << 0u << mark << 1u << 24u << 0u << 0u << mark << 2u << 0u << 1u << 0x1004u << 56u
          << 0u;
    empty << 0u << 0x0601u;
    EXPECT_EQ(aliasTarget(empty.bytes()), std::nullopt);
    Alias loop;
    loop << 4u << 0u << mark << 1u << 24u << 0u << 0u << mark << 2u << 4u << 0u;
    EXPECT_EQ(aliasTarget(loop.bytes()), std::nullopt);
    Alias endless;
    endless << 4u << 0u << mark << 1u << 4u << 0xFFFFFFFFu << 0u << 0u << 0u;
    EXPECT_EQ(aliasTarget(endless.bytes()), std::nullopt);
}

} // namespace
} // namespace tessellar
