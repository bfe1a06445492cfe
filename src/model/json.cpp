#include "model/json_unions.h"

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

Decoded<QUuid> Codec<QUuid>::decode(const QJsonValue& value) {
    const QString text = value.toString();
    const QUuid id = QUuid::fromString(text);
    // QUuid also accepts other forms, such as braces, and returns the null UUID for invalid text.
    if (text.size() != 36 || (id.isNull() && text != toText(id)))
        return expected("a UUID");
    return id;
}

QJsonValue Codec<QUuid>::encode(const QUuid& value) { return toText(value); }

Decoded<Instant> Iso8601::decode(const QJsonValue& value) {
    if (const auto instant = Instant::fromIso8601(value.toString()))
        return *instant;
    return expected("a date in ISO 8601 form");
}

} // namespace tessellar::json
