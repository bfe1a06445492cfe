#pragma once

#include <QString>
#include <QUuid>

namespace tessellar {

/// Generates new identifiers.
class UuidSource {
public:
    virtual ~UuidSource() = default;
    virtual QUuid next() = 0;
};

/// Random UUIDs (version 4).
class RandomUuidSource final : public UuidSource {
public:
    QUuid next() override { return QUuid::createUuid(); }
};

/// A UUID as macOS writes it: 36 characters, upper case, hyphens, no braces.
inline QString toText(const QUuid& id) {
    return QString::fromLatin1(id.toByteArray(QUuid::WithoutBraces).toUpper());
}

} // namespace tessellar
