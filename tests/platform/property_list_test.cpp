#include "platform/property_list.h"
#include "tests/support/binary_list_builder.h"
#include "tests/support/printers.h"

#include <gmock/gmock.h>
#include <plist/plist.h>
#include <pthread.h>

#include <functional>
#include <random>

namespace tessellar {
namespace {

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

class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : _random(seed) {}

    PropertyValue next(int depth) {
        switch (below(depth > 0 ? 10 : 7)) {
        case 0:
            return PropertyValue(below(2) == 1);
        case 1:
            return PropertyValue(static_cast<qint64>(_random() >> below(64)) * (below(2) ? -1 : 1));
        case 2:
            return PropertyValue((below(2'000'001) - 1'000'000) / 8.0);
        case 3:
            return PropertyValue(QByteArray(below(70), static_cast<char>(below(256))));
        case 4:
            return PropertyValue(Instant{static_cast<double>(below(1'600'000'000) - 800'000'000)});
        case 5:
        case 6:
            return PropertyValue(word());
        case 7: {
            PropertyValue::Array array;
            for (int i = below(20); i > 0; --i)
                array.append(next(depth - 1));
            return PropertyValue(array);
        }
        default: {
            PropertyValue::Dictionary dictionary;
            for (int i = below(20); i > 0; --i)
                dictionary.insert(word(), next(depth - 1));
            return PropertyValue(dictionary);
        }
        }
    }

private:
    int below(int end) { return static_cast<int>(_random() % static_cast<unsigned>(end)); }

    QString word() {
        static const QStringList pieces{
            QStringLiteral("a"),    QStringLiteral("CFBundle"), QStringLiteral(" "),
            QStringLiteral("&lt;"), QStringLiteral("<"),        QStringLiteral("\n"),
            QStringLiteral("é"),    QStringLiteral("日本"),     QStringLiteral("😀"),
            QStringLiteral("]]>"),  QStringLiteral("\""),       QStringLiteral("\t")};
        QString result;
        for (int i = below(20); i > 0; --i)
            result += pieces[below(static_cast<int>(pieces.size()))];
        return result;
    }

    std::mt19937_64 _random;
};

plist_t toOracle(const PropertyValue& value) {
    if (const auto flag = value.boolean())
        return plist_new_bool(*flag);
    if (const auto integer = value.integer())
        return plist_new_uint(static_cast<std::uint64_t>(*integer));
    if (const auto number = value.number())
        return plist_new_real(*number);
    if (const auto string = value.text())
        return plist_new_string(string->toUtf8().constData());
    if (const auto data = value.data())
        return plist_new_data(data->constData(), static_cast<std::uint64_t>(data->size()));
    if (const auto date = value.date())
        return plist_new_date(static_cast<std::int32_t>(date->secondsSince2001), 0);
    if (value.isArray()) {
        plist_t array = plist_new_array();
        for (const PropertyValue& child : value.array())
            plist_array_append_item(array, toOracle(child));
        return array;
    }
    plist_t dictionary = plist_new_dict();
    const PropertyValue::Dictionary entries = value.dictionary();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        plist_dict_set_item(dictionary, entry.key().toUtf8().constData(), toOracle(entry.value()));
    return dictionary;
}

QByteArray written(plist_t list, void (*write)(plist_t, char**, std::uint32_t*)) {
    char* bytes = nullptr;
    std::uint32_t length = 0;
    write(list, &bytes, &length);
    const QByteArray copy(bytes, length);
    plist_to_bin_free(bytes);
    return copy;
}

TEST(PropertyList, ReadsBothFormsThatAnotherWriterMakes) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        const PropertyValue tree(PropertyValue::Array{RandomTrees(seed).next(4)});
        plist_t oracle = toOracle(tree);
        EXPECT_EQ(parsed(written(oracle, plist_to_xml)), tree) << "seed " << seed;
        EXPECT_EQ(parsed(written(oracle, plist_to_bin)), tree) << "seed " << seed;
        plist_free(oracle);
    }
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
    EXPECT_EQ(parsedXml("<dict><key>a</key><true/><key>a</key><false/></dict>")[QStringLiteral("a")]
                  .boolean(),
              false);
    EXPECT_EQ(
        parsed("\xEF\xBB\xBF \n<dict><key>é</key><string>\xFF</string></dict>")[QStringLiteral("é")],
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
    EXPECT_EQ(reading("\x80\x07")[QStringLiteral("CF$UID")].integer(), 7);
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
    EXPECT_EQ(list[QStringLiteral("é")].texts(),
              QStringList({QStringLiteral("a"), QStringLiteral("a")}));
    EXPECT_EQ(list[QStringLiteral("a")], list.dictionary().last());
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
    EXPECT_TRUE(at("t")[QStringLiteral("x")].isAbsent());
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
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t stackSize = 8u << 20; // its frames are many times as large
#else
    constexpr std::size_t stackSize = 512u << 10;
#endif
    pthread_attr_setstacksize(&attributes, stackSize);
    pthread_t thread{};
    const auto run = [](void* it) -> void* {
        (*static_cast<std::function<void()>*>(it))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &call), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
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
    const auto with = [&](qsizetype at, const QByteArray& bytes) {
        return QByteArray(good).replace(at, bytes.size(), bytes);
    };
    const QByteArray huge(8, '\xFF');
    EXPECT_EQ(errorOf(with(trailer + 6, QByteArray(1, '\0'))), damaged); // width of offsets
    EXPECT_EQ(errorOf(with(trailer + 6, "\x09")), damaged);
    EXPECT_EQ(errorOf(with(trailer + 7, QByteArray(1, '\0'))), damaged); // width of references
    EXPECT_EQ(errorOf(with(trailer + 7, "\xFF")), damaged);
    EXPECT_EQ(errorOf(with(trailer + 8, huge)), damaged); // count of objects
    EXPECT_EQ(errorOf(with(trailer + 15, "\3")), damaged);
    EXPECT_EQ(errorOf(with(trailer + 16, huge)), damaged); // top object
    EXPECT_EQ(errorOf(with(trailer + 23, "\2")), damaged);
    EXPECT_EQ(errorOf(with(trailer + 24, huge)), damaged);               // where the table lies
    EXPECT_EQ(errorOf(with(trailer - 4, QByteArray(4, '\0'))), damaged); // an offset into the header
    EXPECT_EQ(errorOf(with(trailer - 4, huge.first(4))), damaged);
    EXPECT_EQ(errorOf(with(9, "\xFF\xFF")), damaged); // a reference
    EXPECT_EQ(errorOf(with(8, "\xAE")), damaged);     // more references than bytes
    EXPECT_EQ(errorOf(with(8, "\xAF\x13")), damaged); // a count of eight bytes
    EXPECT_EQ(errorOf(with(11, "\x5E")), damaged);    // more text than bytes
    EXPECT_EQ(errorOf(with(11, "\x7F")), damaged);    // kinds that there are none of

    BinaryListBuilder numbered;
    numbered.dictionary({1}, {1});
    numbered.add("\x10\1");
    EXPECT_EQ(errorOf(numbered.bytes()), damaged);
}

TEST(PropertyList, CutOrFlippedBytesStayHarmless) {
    const PropertyValue tree(PropertyValue::Dictionary{
        {QStringLiteral("CFBundleName"), text("Café")},
        {QStringLiteral("Flags"),
         PropertyValue(PropertyValue::Array{PropertyValue(true), PropertyValue(qint64{70'000}),
                                            PropertyValue(2.5), PropertyValue(Instant{1})})},
        {QStringLiteral("Data"), PropertyValue(QByteArray(20, 'x'))}});
    plist_t oracle = toOracle(tree);
    const QByteArray binary = written(oracle, plist_to_bin);
    const QByteArray xml = written(oracle, plist_to_xml).trimmed();
    plist_free(oracle);
    ASSERT_EQ(parsed(binary), tree);
    ASSERT_EQ(parsed(xml), tree);

    for (const QByteArray& whole : {binary, xml}) {
        for (qsizetype size = 0; size < whole.size(); ++size)
            EXPECT_NE(errorOf(whole.first(size)), std::nullopt) << size;
        for (qsizetype bit = 0; bit < 8 * whole.size(); ++bit) {
            QByteArray flipped = whole;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
            if (const auto read = parsePropertyList(flipped)) {
                EXPECT_LE(touchAll(*read), 100);
            }
        }
    }
}

} // namespace
} // namespace tessellar
