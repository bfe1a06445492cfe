#include "model/json.h"

#include "platform/uuid_source.h"

namespace tessellar::json {

QString message(const DecodeError& error) {
    return error.path.isEmpty() ? error.message
                                : QStringLiteral("%1 (at %2)").arg(error.message, error.path);
}

Decoded<QJsonValue> parse(const QByteArray& bytes) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(
            QStringLiteral("Not JSON: %1 at byte %2.").arg(error.errorString()).arg(error.offset));
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

static QByteArray write(const QJsonValue& value, QJsonDocument::JsonFormat format) {
    return value.isArray() ? QJsonDocument(value.toArray()).toJson(format)
                           : QJsonDocument(value.toObject()).toJson(format);
}

QByteArray write(const QJsonValue& value) { return write(value, QJsonDocument::Indented); }
QByteArray writeCompact(const QJsonValue& value) { return write(value, QJsonDocument::Compact); }

Decoded<std::size_t> decodeCase(const QJsonObject& object, std::span<const char* const> names,
                                bool strict) {
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!object.contains(QLatin1StringView(names[i])))
            continue;
        if (found)
            return fail(QStringLiteral("Invalid number of keys found, expected one."));
        found = i;
    }
    if (!found || (strict && object.size() != 1))
        return fail(QStringLiteral("Invalid number of keys found, expected one."));
    return *found;
}

static int hexDigit(char16_t c) {
    const char16_t lower = c | 0x20;
    return c >= u'0' && c <= u'9' ? c - u'0' : lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

Decoded<QUuid> Codec<QUuid>::decode(const QJsonValue& value) {
    // By hand: QUuid itself takes braces and more, and does not tell damage from the null UUID.
    const QString text = value.toString();
    if (text.size() != 36)
        return expected("a UUID");
    std::array<unsigned char, 16> bytes = {};
    int digits = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (c != u'-')
                return expected("a UUID");
            continue;
        }
        const int digit = hexDigit(c);
        if (digit < 0)
            return expected("a UUID");
        auto& byte = bytes[static_cast<std::size_t>(digits++ / 2)];
        byte = static_cast<unsigned char>(byte << 4 | digit);
    }
    return QUuid::fromRfc4122(QByteArrayView(bytes));
}

QJsonValue Codec<QUuid>::encode(const QUuid& value) { return toText(value); }

Decoded<Instant> Iso8601::decode(const QJsonValue& value) {
    if (const auto instant = Instant::fromIso8601(value.toString()))
        return *instant;
    return expected("a date in ISO 8601 form");
}

} // namespace tessellar::json
