#include "sample/plist.h"

#include <QtEndian>

#include <array>
#include <bit>
#include <limits>

namespace tessellar::sample {

namespace {

const QDateTime& referenceDate() {
    static const QDateTime date(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return date;
}

class XmlWriter {
public:
    QByteArray bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                       "<plist version=\"1.0\">\n";

    void write(const Plist& value) {
        value.visit([this](const auto& held) { put(held); });
    }

private:
    void line(const QByteArray& text) { bytes += QByteArray(_depth, '\t') + text + '\n'; }
    void element(const char* name, const QString& text) {
        line(QByteArray("<") + name + '>' + text.toHtmlEscaped().toUtf8() + "</" + name + '>');
    }

    void put(bool value) { line(value ? "<true/>" : "<false/>"); }
    void put(qint64 value) { element("integer", QString::number(value)); }
    void put(double value) { element("real", QString::number(value, 'g', 17)); }
    void put(const QString& value) { element("string", value); }
    void put(const QDateTime& value) { element("date", value.toUTC().toString(Qt::ISODate)); }
    void put(const QByteArray& value) {
        line("<data>");
        const QByteArray encoded = value.toBase64();
        for (qsizetype i = 0; i < encoded.size(); i += 68)
            line(encoded.mid(i, 68));
        line("</data>");
    }
    void put(const Plist::Array& values) {
        line("<array>");
        ++_depth;
        for (const Plist& value : values)
            write(value);
        --_depth;
        line("</array>");
    }
    void put(const Plist::Dictionary& values) {
        line("<dict>");
        ++_depth;
        for (auto entry = values.begin(); entry != values.end(); ++entry) {
            element("key", entry.key());
            write(entry.value());
        }
        --_depth;
        line("</dict>");
    }

    int _depth = 0;
};

/// Objects in the order in which they are met, each written once for each place that holds it.
class BinaryWriter {
public:
    QByteArray write(const Plist& value) {
        _referenceSize = bytesFor(count(value) - 1);
        add(value);

        QByteArray bytes = "bplist00";
        QList<qsizetype> offsets;
        for (const QByteArray& object : std::as_const(_objects)) {
            offsets.append(bytes.size());
            bytes += object;
        }
        const qsizetype tableOffset = bytes.size();
        const int offsetSize = bytesFor(tableOffset);
        for (const qsizetype offset : std::as_const(offsets))
            bytes += bigEndian(offset, offsetSize);
        bytes += QByteArray(6, '\0') + char(offsetSize) + char(_referenceSize);
        bytes += bigEndian(_objects.size(), 8) + bigEndian(0, 8) + bigEndian(tableOffset, 8);
        return bytes;
    }

private:
    static int bytesFor(qint64 value) {
        return value <= 0xff ? 1 : value <= 0xffff ? 2 : value <= 0xffffffff ? 4 : 8;
    }
    static QByteArray bigEndian(qint64 value, int size) {
        std::array<char, 8> bytes{};
        qToBigEndian(value, bytes.data());
        return {bytes.data() + 8 - size, size};
    }
    static QByteArray integer(qint64 value) {
        const int size = value < 0 ? 8 : bytesFor(value);
        return char(0x10 | std::countr_zero(unsigned(size))) + bigEndian(value, size);
    }
    static QByteArray head(int kind, qsizetype count) {
        return count < 15 ? QByteArray(1, char(kind | count)) : char(kind | 15) + integer(count);
    }

    static qsizetype count(const Plist& value) {
        return value.visit([]<typename T>(const T& held) {
            qsizetype total = 1;
            if constexpr (std::is_same_v<T, Plist::Dictionary>)
                total += held.size();
            if constexpr (std::is_same_v<T, Plist::Array> || std::is_same_v<T, Plist::Dictionary>) {
                for (const Plist& child : held)
                    total += count(child);
            }
            return total;
        });
    }

    qsizetype add(const Plist& value) {
        const qsizetype index = _objects.size();
        _objects.append(QByteArray());
        const QByteArray bytes = value.visit([this](const auto& held) { return this->encode(held); });
        _objects[index] = bytes;
        return index;
    }
    QByteArray reference(const Plist& value) { return bigEndian(add(value), _referenceSize); }

    static QByteArray encode(bool value) { return {1, char(value ? 0x09 : 0x08)}; }
    static QByteArray encode(qint64 value) { return integer(value); }
    static QByteArray encode(double value) {
        return char(0x23) + bigEndian(std::bit_cast<qint64>(value), 8);
    }
    static QByteArray encode(const QDateTime& value) {
        const double seconds = double(referenceDate().msecsTo(value)) / 1000;
        return char(0x33) + bigEndian(std::bit_cast<qint64>(seconds), 8);
    }
    static QByteArray encode(const QByteArray& value) { return head(0x40, value.size()) + value; }
    static QByteArray encode(const QString& value) {
        const auto isAscii = [](QChar c) { return c.unicode() < 0x80; };
        if (std::all_of(value.begin(), value.end(), isAscii))
            return head(0x50, value.size()) + value.toLatin1();
        QByteArray bytes = head(0x60, value.size());
        for (const QChar c : value)
            bytes += bigEndian(c.unicode(), 2);
        return bytes;
    }
    QByteArray encode(const Plist::Array& values) {
        QByteArray bytes = head(0xa0, values.size());
        for (const Plist& value : values)
            bytes += reference(value);
        return bytes;
    }
    QByteArray encode(const Plist::Dictionary& values) {
        QByteArray bytes = head(0xd0, values.size());
        for (auto entry = values.begin(); entry != values.end(); ++entry)
            bytes += reference(Plist(entry.key()));
        for (const Plist& value : values)
            bytes += reference(value);
        return bytes;
    }

    QByteArrayList _objects;
    int _referenceSize = 1;
};

} // namespace

Plist texts(const QStringList& values) {
    Plist::Array array;
    for (const QString& value : values)
        array.append(Plist(value));
    return array;
}

QByteArray plistBytes(const Plist& value, PlistForm form) {
    if (form == PlistForm::binary)
        return BinaryWriter().write(value);
    XmlWriter writer;
    writer.write(value);
    return writer.bytes + "</plist>\n";
}

QByteArray stringsFileBytes(const QMap<QString, QString>& entries, bool utf16) {
    QString text;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        QString value = entry.value();
        value.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
        text += u'"' + entry.key() + QStringLiteral("\" = \"") + value + QStringLiteral("\";\n");
    }
    if (!utf16)
        return text.toUtf8();
    QByteArray bytes("\xff\xfe", 2);
    for (const QChar c : std::as_const(text))
        bytes += char(c.unicode() & 0xff), bytes += char(c.unicode() >> 8);
    return bytes;
}

} // namespace tessellar::sample
