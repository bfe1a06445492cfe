#pragma once

#include <QString>
#include <QUuid>

namespace tessellar {

/// Where fresh identifiers come from.
class UuidSource {
public:
    virtual ~UuidSource() = default;
    virtual QUuid next() = 0;
};

/// Random identifiers (version 4) from the system's generator.
class RandomUuidSource final : public UuidSource {
public:
    QUuid next() override { return QUuid::createUuid(); }
};

/// The standard text of a UUID as the Mac writes it: 36 characters, upper case, hyphens, no braces.
inline QString toText(const QUuid& id) {
    return QString::fromLatin1(id.toByteArray(QUuid::WithoutBraces).toUpper());
}

} // namespace tessellar
