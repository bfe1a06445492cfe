#include "platform/property_list.h"
#include "tests/support/binary_list_builder.h"
#include "tests/support/printers.h"

#include <QThread>

#include <gmock/gmock.h>
#include <plist/plist.h>

#include <functional>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using test::BinaryListBuilder;
using enum PropertyListError;

PropertyValue text(const char* utf8) { return PropertyValue(QString::fromUtf8(utf8)); }

PropertyValue parsed(const QByteArray& bytes) {
    const auto result = parsePropertyList(bytes);
    EXPECT_TRUE(result) << (result ? "" : message(result.error()).toStdString()) << "\n"
                        << bytes.left(400).toStdString();
    return result.value_or(PropertyValue());
}

PropertyValue parsedXml(const QByteArray& element) { return parsed("<plist>" + element + "</plist>"); }

std::optional<PropertyListError> errorOf(const QByteArray& bytes,
                                         const PropertyListLimits& limits = {}) {
    const auto result = parsePropertyList(bytes, limits);
    return result ? std::nullopt : std::optional(result.error());
}

/// Asks a value and all below it everything, as a caller might; the number of values seen.
std::size_t touchAll(const PropertyValue& value) {
    std::size_t seen = 1;
    value.isTruthy();
    value.data();
    value.texts();
    for (const PropertyValue& child : value.array())
        seen += touchAll(child);
    const PropertyValue::Dictionary entries = value.dictionary();
    for (const PropertyValue& child : entries)
        seen += touchAll(child);
    return seen;
}

TEST(PropertyList, ReadsTheSameOfBothFormsThatAnotherWriterMakes) {
    QByteArray elements;
    for (const char* integer : {"0", "-1", "-129", "255", "256", "70000", "-9223372036854775808",
                                "9223372036854775807", "18446744073709551615"})
        elements += QByteArray("<integer>") + integer + "</integer>";
    elements += "<true/><false/><real>-1250.125</real><date>1999-12-31T23:59:59Z</date>"
                "<string>CFBundle &lt;\n\"]]&gt;</string><string>é日本😀</string><data></data><data>" +
                QByteArray(70, '\xE9').toBase64() + "</data><string>" + QByteArray(300, 'x') +
                "</string><dict/><dict><key>é</key><dict><key>a</key><array/></dict></dict>";
    plist_t tree = nullptr;
    const QByteArray given = "<plist><array>" + elements + "</array></plist>";
    plist_from_xml(given, static_cast<std::uint32_t>(given.size()), &tree);
    for (const auto write : {plist_to_xml, plist_to_bin}) {
        char* bytes = nullptr;
        std::uint32_t length = 0;
        write(tree, &bytes, &length);
        EXPECT_EQ(parsed(QByteArray(bytes, length)), parsed(given));
        plist_to_bin_free(bytes);
    }
    plist_free(tree);
}

TEST(PropertyList, ReadsTheXmlThatPeopleWrite) {
    EXPECT_EQ(parsedXml("<string>a&amp;b<!-- no -->c<![CDATA[<d>&amp;]]>&#x65;</string>"),
              text("a&bc<d>&amp;e"));
    EXPECT_EQ(parsedXml("<string>   </string>"), text("   "));
    EXPECT_EQ(parsedXml("<string/>"), text(""));
    EXPECT_EQ(parsedXml("\n<array>\n\t<dict>\n\t</dict>\n</array>\n").array(),
              PropertyValue::Array{PropertyValue(PropertyValue::Dictionary())});
    EXPECT_EQ(parsedXml("<integer> 0xFF </integer>").integer(), 255);
    EXPECT_EQ(parsedXml("<integer>-9223372036854775808</integer>").integer(),
              std::numeric_limits<qint64>::min());
    EXPECT_EQ(parsedXml("<integer>9223372036854775808</integer>").number(), 9223372036854775808.0);
    EXPECT_EQ(parsedXml("<integer>9223372036854775808</integer>").integer(), std::nullopt);
    EXPECT_EQ(parsedXml("<integer>-99999999999999999999</integer>").number(), -1e20);
    EXPECT_EQ(parsedXml("<real>+1e3</real>").number(), 1000);
    EXPECT_EQ(parsedXml("<data>\n\tAA\n\tEC\n</data>").data(), QByteArray("\0\1\2", 3));
    EXPECT_EQ(parsedXml("<date>2001-01-01T00:01:00Z</date>").date(), Instant{60});
    EXPECT_EQ(parsedXml("<dict><key>a</key><true/><key>a</key><false/></dict>")[u"a"_s].boolean(),
              false);
    EXPECT_EQ(parsed("\xEF\xBB\xBF \n<dict><key>é</key><string>\xFF</string></dict>")[u"é"_s],
              text("\uFFFD"));

    const QString wide =
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?><plist><string>ü</string></plist>");
    EXPECT_EQ(
        parsed("\xFF\xFE" + QByteArray(reinterpret_cast<const char*>(wide.utf16()), wide.size() * 2)),
        text("ü"));
}

TEST(PropertyList, ReadsBinaryFormsThatOnlySomeWritersMake) {
    const auto reading = [](const std::string& object) {
        BinaryListBuilder list;
        list.add(object);
        return parsed(list.bytes());
    };
    EXPECT_EQ(reading({"\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE", 9}).integer(), -2);
    EXPECT_EQ(reading("\x11\xFF\xFE").integer(), 65534);
    EXPECT_EQ(reading('\x14' + std::string(8, '\0') + "\xFF" + std::string(7, '\0')).number(),
              255 * std::exp2(56));
    EXPECT_EQ(reading(std::string("\x14").append(15, '\xFF').append("\xFE")).integer(), -2);
    EXPECT_EQ(reading({"\x22\x3F\xC0\0\0", 5}).number(), 1.5);
    EXPECT_TRUE(reading({"\x33\x7F\xF8\0\0\0\0\0\0", 9}).isAbsent());
    EXPECT_TRUE(reading(std::string(1, '\0')).isAbsent());
    EXPECT_EQ(reading("\x80\x07")[u"CF$UID"_s].integer(), 7);
    EXPECT_EQ(reading("\x53"
                      "a\xFF"
                      "b"),
              text("a\uFFFDb"));
    EXPECT_EQ(reading({"\x64\xD8\x3D\0A\xD8\x3D\xDE\0", 9}), text("\uFFFDA😀"));

    BinaryListBuilder shared;
    shared.dictionary({1, 2}, {3, 3});
    shared.text("a");
    shared.add({"\x61\0\xE9", 3});
    shared.add(BinaryListBuilder::marker(0xC, 2) + BinaryListBuilder::references({1, 1}));
    const PropertyValue list = parsed(shared.bytes());
    EXPECT_EQ(list[u"é"_s].texts(), QStringList({u"a"_s, u"a"_s}));
    EXPECT_EQ(list[u"a"_s], list.dictionary().last());
}

TEST(PropertyValue, IsAbsentWhereTheTypeIsWrong) {
    const PropertyValue list =
        parsedXml("<dict><key>n</key><integer>1</integer><key>t</key><string>YES</string>"
                  "<key>b</key><true/><key>r</key><real>2.0</real>"
                  "<key>a</key><array><string>x</string><integer>1</integer></array></dict>");
    const auto at = [&](const char* key) { return list[QString::fromUtf8(key)]; };
    EXPECT_EQ(at("n").boolean(), std::nullopt);
    EXPECT_EQ(at("b").integer(), std::nullopt);
    EXPECT_EQ(at("r").integer(), std::nullopt);
    EXPECT_EQ(at("n").text(), std::nullopt);
    EXPECT_EQ(at("t").data(), std::nullopt);
    EXPECT_EQ(at("a").texts(), std::nullopt);
    EXPECT_EQ(at("t").texts(), std::nullopt);
    EXPECT_EQ(list.text(), std::nullopt);
    EXPECT_TRUE(at("t")[u"x"_s].isAbsent());
    EXPECT_TRUE(at("none").array().isEmpty());
    EXPECT_TRUE(at("a").dictionary().isEmpty());

    EXPECT_TRUE(at("n").isTruthy());
    EXPECT_TRUE(at("t").isTruthy());
    EXPECT_TRUE(text("True").isTruthy());
    EXPECT_FALSE(text("no").isTruthy());
    EXPECT_FALSE(PropertyValue(qint64{0}).isTruthy());
    EXPECT_FALSE(at("a").isTruthy());
    EXPECT_FALSE(at("none").isTruthy());
}

TEST(PropertyList, RefusesWhatIsNone) {
    for (const char* bytes : {"", "   ", "{ a = b; }", "<html><p/></html>", "icns"})
        EXPECT_EQ(errorOf(bytes), notAPropertyList) << bytes;
    EXPECT_EQ(errorOf("bplist"), notAPropertyList);
    EXPECT_EQ(errorOf("bplist00"), damaged);
    for (const char* element :
         {"", "<dict>", "<dict/><dict/>", "<string><b/></string>", "<dict><string>v</string></dict>",
          "<dict><key>k</key></dict>", "<dict>x<key>k</key><true/></dict>", "<integer/>",
          "<integer>1x</integer>", "<integer>--1</integer>", "<real>one</real>",
          "<date>yesterday</date>", "<uid>1</uid>", "<array><nothing/></array>",
          "<data><array/></data>"})
        EXPECT_EQ(errorOf(QByteArray("<plist>") + element + "</plist>"), damaged) << element;
}

TEST(PropertyList, KeepsItsLimits) {
    const QByteArray xml = "<array><string>abc</string><dict><key>k</key><array/></dict></array>";
    BinaryListBuilder list;
    list.array({1, 2});
    list.text("abc");
    list.dictionary({3}, {4});
    list.text("k");
    list.array({});
    for (const QByteArray& bytes : {xml, list.bytes()}) {
        EXPECT_EQ(errorOf(bytes, {.depth = 3, .nodes = 5}), std::nullopt);
        EXPECT_EQ(errorOf(bytes, {.depth = 2}), tooDeep);
        EXPECT_EQ(errorOf(bytes, {.nodes = 4}), tooManyNodes);
        EXPECT_EQ(errorOf(bytes, {.bytes = static_cast<std::uint64_t>(bytes.size())}), std::nullopt);
        EXPECT_EQ(errorOf(bytes, {.bytes = static_cast<std::uint64_t>(bytes.size()) - 1}), tooLarge);
    }
}

/// Runs in a thread whose stack is small, where runaway recursion does not stay unseen.
void onSmallStack(std::function<void()> call) {
    const std::unique_ptr<QThread> thread(QThread::create(std::move(call)));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    thread->setStackSize(8u << 20); // its frames are many times as large
#else
    thread->setStackSize(512u << 10);
#endif
    thread->start();
    thread->wait();
}

TEST(PropertyList, NestedDeeplyNeverOverflowsTheStack) {
    onSmallStack([] {
        constexpr int levels = 1'000'000;
        EXPECT_EQ(errorOf(QByteArray("<array>").repeated(levels)), damaged);
        EXPECT_EQ(
            errorOf(QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels)),
            tooDeep);

        // Each array holds the next.
        std::string body = "bplist00";
        for (int i = 1; i <= levels; ++i)
            body += '\xA1' + BinaryListBuilder::bigEndian(static_cast<std::size_t>(i), 4);
        body += '\x09';
        std::string offsets;
        for (std::size_t i = 0; i <= levels; ++i)
            offsets += BinaryListBuilder::bigEndian(8 + 5 * i, 4);
        const std::string trailer = std::string(6, '\0') + "\4\4" +
                                    BinaryListBuilder::bigEndian(levels + 1, 8) + std::string(8, '\0') +
                                    BinaryListBuilder::bigEndian(body.size(), 8);
        EXPECT_EQ(errorOf(QByteArray::fromStdString(body + offsets + trailer)), tooDeep);

        // The deepest that is taken can be used and compared.
        const PropertyListLimits generous{.depth = 1'000'000};
        const QByteArray deep =
            QByteArray("<array>").repeated(512) + QByteArray("</array>").repeated(512);
        const auto one = parsePropertyList(deep, generous);
        ASSERT_TRUE(one);
        EXPECT_EQ(touchAll(*one), 512);
        EXPECT_EQ(*one, *parsePropertyList(deep, generous));
        EXPECT_EQ(errorOf("<array>" + deep + "</array>", generous), tooDeep);
    });
}

TEST(PropertyList, BombsStayHarmless) {
    BinaryListBuilder cycle;
    cycle.array({0, 0});
    EXPECT_EQ(errorOf(cycle.bytes()), tooDeep);

    BinaryListBuilder doubling;
    for (unsigned level = 1; level <= 60; ++level)
        doubling.array({level, level});
    doubling.text("end");
    EXPECT_EQ(errorOf(doubling.bytes()), tooManyNodes);

    BinaryListBuilder longText; // 60 kB of references to 1 MB: a caller would make 30 GB of text
    longText.array(std::vector<unsigned>(30'000, 1));
    longText.text(std::string(1'000'000, 'x'));
    EXPECT_EQ(errorOf(longText.bytes()), tooLarge);

    BinaryListBuilder longKey;
    longKey.dictionary(std::vector<unsigned>(30'000, 1), std::vector<unsigned>(30'000, 2));
    longKey.text(std::string(1'000'000, 'x'));
    longKey.array({});
    EXPECT_EQ(errorOf(longKey.bytes()), tooLarge);

    EXPECT_EQ(errorOf(QByteArray("<array>") + QByteArray("<a/>").repeated(4'000'000)), tooManyNodes);

    QByteArray laughs = "<!DOCTYPE plist [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i)
        laughs += QStringLiteral("<!ENTITY a%1 \"&a%2;&a%2;\">").arg(i).arg(i - 1).toUtf8();
    EXPECT_EQ(
        parsed(laughs +
               "<!ENTITY file SYSTEM \"/etc/passwd\">]><plist><string>&a29;&file;</string></plist>"),
        text("&a29;&file;"));
}

TEST(PropertyList, WrongNumbersInTheBinaryFormAreDamage) {
    BinaryListBuilder list;
    list.array({1});
    list.text("a");
    const QByteArray good = list.bytes();
    ASSERT_EQ(errorOf(good), std::nullopt);
    const qsizetype trailer = good.size() - 32;
    const QByteArray huge(8, '\xFF');
    const std::pair<qsizetype, QByteArray> wrong[] = {
        {trailer + 6, QByteArray(1, '\0')}, // the width of offsets
        {trailer + 6, "\x09"},
        {trailer + 7, QByteArray(1, '\0')}, // the width of references
        {trailer + 7, "\xFF"},
        {trailer + 8, huge}, // the count of objects
        {trailer + 15, "\3"},
        {trailer + 16, huge},               // the top object
        {trailer + 24, huge},               // where the table lies
        {trailer - 4, QByteArray(4, '\0')}, // an offset into the header
        {trailer - 4, huge.first(4)},
        {9, "\xFF\xFF"}, // a reference
        {8, "\xAE"},     // more references than bytes
        {8, "\xAF\x13"}, // a count of eight bytes
        {11, "\x5E"},    // more text than bytes
        {11, "\x7F"},    // no such kind
    };
    for (const auto& [at, bytes] : wrong)
        EXPECT_EQ(errorOf(QByteArray(good).replace(at, bytes.size(), bytes)), damaged) << at;

    BinaryListBuilder numbered;
    numbered.dictionary({1}, {1});
    numbered.add("\x10\1");
    EXPECT_EQ(errorOf(numbered.bytes()), damaged);
}

} // namespace
} // namespace tessellar
