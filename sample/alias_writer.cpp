#include "sample/alias_writer.h"

#include <QList>
#include <QStringList>
#include <QtEndian>

#include <array>
#include <bit>

namespace tessellar::sample {

namespace {

enum ItemType : quint32 {
    text = 0x0101,
    data = 0x0201,
    integer32 = 0x0303,
    integer64 = 0x0304,
    date = 0x0400,
    isTrue = 0x0501,
    array = 0x0601,
    url = 0x0901,
};

QByteArray number(quint32 value) {
    std::array<char, 4> bytes{};
    qToLittleEndian(value, bytes.data());
    return {bytes.data(), 4};
}
QByteArray number(quint64 value) {
    std::array<char, 8> bytes{};
    qToLittleEndian(value, bytes.data());
    return {bytes.data(), 8};
}

/// The part after the header. Offsets count from its beginning, where the first table's offset stands.
class Body {
public:
    quint32 add(ItemType type, const QByteArray& content) {
        const auto offset = quint32(_bytes.size());
        _bytes += number(quint32(content.size())) + number(quint32(type)) + content;
        _bytes += QByteArray(-content.size() & 3, '\0');
        return offset;
    }
    void set(quint32 key, quint32 offset) { _entries.append({key, offset}); }
    void set(quint32 key, ItemType type, const QByteArray& content) { set(key, add(type, content)); }
    void set(quint32 key, const QList<quint32>& elements) {
        QByteArray offsets;
        for (const quint32 element : elements)
            offsets += number(element);
        set(key, array, offsets);
    }

    QByteArray finish() const {
        QByteArray entries;
        for (const auto& [key, offset] : _entries)
            entries += number(key) + number(offset) + number(quint32(0));
        const quint32 count = quint32(_entries.size());
        const QByteArray table = number(12 + quint32(entries.size())) + number(quint32(0xfffffffe)) +
                                 number(quint32(1)) + number(quint32(0)) + number(count) + entries;
        return number(quint32(_bytes.size())) + _bytes.sliced(4) + table;
    }

private:
    QByteArray _bytes = QByteArray(4, '\0');
    QList<std::pair<quint32, quint32>> _entries; ///< in rising order of their keys
};

} // namespace

QByteArray aliasFileBytes(const QString& target) {
    const QStringList components = target.split(u'/', Qt::SkipEmptyParts);
    Body body;

    QList<quint32> names;
    QList<quint32> fileNumbers;
    for (const QString& component : components)
        names.append(body.add(text, component.toUtf8()));
    for (qsizetype i = 0; i < components.size(); ++i)
        fileNumbers.append(body.add(integer32, number(quint32(4200 + i))));
    body.set(0x1004, names);
    body.set(0x1005, fileNumbers);
    body.set(0x1010, data, number(quint64(0x0212)) + number(quint64(0x021f)) + number(quint64(0)));
    // The one big-endian value: seconds since 2001.
    std::array<char, 8> created{};
    qToBigEndian(std::bit_cast<quint64>(736'257'600.0), created.data());
    body.set(0x1040, date, QByteArray(created.data(), 8));
    body.set(0x2002, text, "/");
    body.set(0x2005, url, "file:///");
    body.set(0x2010, text, "Macintosh HD");
    body.set(0x2011, text, "5D1B63C2-8E0F-4A57-9C33-60A4F1B8E2D7");
    body.set(0x2012, integer64, number(quint64(494'384'795'648)));
    body.set(0x2030, isTrue, QByteArray());
    body.set(0xd010, integer32, number(quint32(0x400)));
    body.set(0xf017, text, components.isEmpty() ? QByteArray("/") : components.last().toUtf8());

    constexpr quint32 headerSize = 0x38;
    const QByteArray content = body.finish();
    QByteArray header("book\0\0\0\0mark\0\0\0\0", 16);
    header += number(headerSize) + number(headerSize) + number(quint32(content.size())) +
              number(quint32(0x10040000));
    return header + QByteArray(headerSize - header.size(), '\0') + content;
}

} // namespace tessellar::sample
