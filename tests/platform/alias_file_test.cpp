#include "platform/alias_file.h"
#include "sample/alias_writer.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <QtEndian>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace tessellar {
namespace {

const QString target = QStringLiteral("/Applications/Foo Bar é.app");

TEST(AliasFile, SaysWhereItPoints) {
    const test::TestMachine machine;
    const FileSystem& files = machine.machine.files;
    machine.write(QStringLiteral("/Applications/Foo"), sample::aliasFileBytes(target));
    machine.write(QStringLiteral("/Applications/short"), "book");
    machine.write(QStringLiteral("/Applications/bookmark"),
                  QByteArray("book\x3C\2\0\0\0\0\4\x10\x30\0\0\0", 16));
    machine.write(QStringLiteral("/Applications/large"),
                  sample::aliasFileBytes(target) + QByteArray(1 << 20, ' '));
    machine.link(QStringLiteral("/Applications/link"), QStringLiteral("Foo"));
    ASSERT_EQ(::mkfifo(files.hostPath(QStringLiteral("/Applications/pipe")).constData(), 0600), 0);

    EXPECT_EQ(isAliasFile(files, QStringLiteral("/Applications/Foo")), true);
    EXPECT_EQ(isAliasFile(files, QStringLiteral("/Applications/link")), true);
    EXPECT_EQ(isAliasFile(files, QStringLiteral("/Applications/large")), true);
    for (const char16_t* other : {u"/short", u"/bookmark", u"/pipe"})
        EXPECT_EQ(isAliasFile(files, QStringLiteral("/Applications") + QString::fromUtf16(other)),
                  false);
    EXPECT_EQ(isAliasFile(files, QStringLiteral("/Applications/none")).error().code,
              FileError::Code::notFound);
    EXPECT_EQ(aliasTarget(files, QStringLiteral("/Applications/Foo")), target);
    EXPECT_EQ(aliasTarget(files, QStringLiteral("/Applications/large")), std::nullopt);
    EXPECT_EQ(aliasTarget(files, QStringLiteral("/Applications/bookmark")), std::nullopt);
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
    EXPECT_EQ(withPath("Apps", 72), QStringLiteral("/Apps/Apps"));
    EXPECT_EQ(withPath("Apps", 73), std::nullopt);
    EXPECT_EQ(withPath("Apps", 0xFFFFFFFF), std::nullopt);
    for (const QByteArray& bad : {QByteArray("..  ").first(2), QByteArray("."), QByteArray(),
                                  QByteArray("a/b"), QByteArray("a\0b", 3), QByteArray(5'000, 'x')})
        EXPECT_EQ(withPath(bad, 72), std::nullopt) << bad.left(9).toStdString();

    Alias loop;
    loop << 4u << 0u << mark << 1u << 24u << 0u << 0u << mark << 2u << 4u << 0u;
    EXPECT_EQ(aliasTarget(loop.bytes()), std::nullopt);
    Alias endless;
    endless << 4u << 0u << mark << 1u << 4u << 0xFFFFFFFFu << 0u << 0u << 0u;
    EXPECT_EQ(aliasTarget(endless.bytes()), std::nullopt);
}

TEST(AliasFile, DamageGivesNothing) {
    const QByteArray good = sample::aliasFileBytes(target);
    ASSERT_EQ(aliasTarget(good), target);
    // What is cut off behind the table's entry of the path does no harm.
    bool found = false;
    for (qsizetype size = 0; size < good.size(); ++size) {
        const auto cut = aliasTarget(good.first(size));
        EXPECT_TRUE(!cut || *cut == target) << size;
        EXPECT_FALSE(found && !cut);
        found = cut.has_value();
    }
    for (qsizetype bit = 0; bit < 8 * good.size(); ++bit) {
        QByteArray flipped = good;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        if (const auto other = aliasTarget(flipped)) {
            EXPECT_TRUE(other->startsWith(u'/') && !other->contains(u"/../")) << bit;
        }
    }
}

} // namespace
} // namespace tessellar
