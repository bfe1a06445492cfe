#include "privileged/records.h"

#include "platform/texts.h"

#include <QCryptographicHash>

namespace tessellar {

QString message(AuthorizationError error) {
    switch (error) {
    case AuthorizationError::missing:
        return Texts::tr("The administrator request is missing authorization.");
    case AuthorizationError::malformed:
        return Texts::tr("The administrator request contains malformed authorization.");
    case AuthorizationError::invalid:
        return Texts::tr("The administrator authorization is no longer valid.");
    case AuthorizationError::denied:
        return Texts::tr("Administrator authorization was not granted.");
    case AuthorizationError::externalizationFailed:
        return Texts::tr("Could not prepare administrator authorization.");
    }
    return {};
}

QByteArray requestDigest(PrivilegedFileOperationRequest request) {
    request.authorization.clear();
    return QCryptographicHash::hash(json::writeCompact(json::encode(request)),
                                    QCryptographicHash::Sha256);
}

namespace json {

Decoded<QByteArray> Base64::decode(const QJsonValue& value) {
    if (!value.isString())
        return expected("base 64 data");
    const auto decoded = QByteArray::fromBase64Encoding(value.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return expected("base 64 data");
    return *decoded;
}
QJsonValue Base64::encode(const QByteArray& value) { return QString::fromLatin1(value.toBase64()); }

Decoded<std::uint64_t> DecimalU64::decode(const QJsonValue& value) {
    bool isNumber = false;
    const auto number = value.toString().toULongLong(&isNumber, 10);
    if (!isNumber)
        return expected("a whole number as text");
    return number;
}
QJsonValue DecimalU64::encode(std::uint64_t value) { return QString::number(value); }

} // namespace json
} // namespace tessellar
