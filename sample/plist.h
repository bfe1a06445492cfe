#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>

#include <variant>

namespace tessellar::sample {

enum class PlistForm { xml, binary };

/// A property list to be written. Converts from what it can hold, so that one is written down as it
/// reads: `Plist::Dictionary{{u"LSUIElement"_s, true}, {u"CFBundleVersion"_s, u"12"_s}}`.
class Plist {
public:
    using Array = QList<Plist>;
    using Dictionary = QMap<QString, Plist>;

    Plist() : _value(false) {}
    Plist(bool value) : _value(value) {}
    Plist(int value) : _value(qint64(value)) {}
    Plist(qint64 value) : _value(value) {}
    Plist(double value) : _value(value) {}
    Plist(QString value) : _value(std::move(value)) {}
    Plist(const char* utf8) : _value(QString::fromUtf8(utf8)) {}
    Plist(QByteArray value) : _value(std::move(value)) {}
    Plist(QDateTime value) : _value(std::move(value)) {}
    Plist(Array value) : _value(std::move(value)) {}
    Plist(Dictionary value) : _value(std::move(value)) {}

    template <typename Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), _value);
    }

private:
    std::variant<bool, qint64, double, QString, QByteArray, QDateTime, Array, Dictionary> _value;
};

/// A list of texts.
Plist texts(const QStringList& values);

/// The bytes of a property list file; the same value gives the same bytes.
QByteArray plistBytes(const Plist& value, PlistForm form = PlistForm::xml);

/// "key" = "value"; lines, as .strings files hold them.
QByteArray stringsFileBytes(const QMap<QString, QString>& entries, bool utf16);

} // namespace tessellar::sample
