#include "platform/settings.h"

#include <QJsonArray>

namespace tessellar {

std::optional<QJsonValue> Settings::value(const QString& key) const {
    const QMap<QString, QJsonValue> all = values();
    const auto found = all.constFind(key);
    return found == all.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<bool> Settings::boolean(const QString& key) const {
    const auto found = value(key);
    return found && found->isBool() ? std::optional(found->toBool()) : std::nullopt;
}

std::optional<double> Settings::number(const QString& key) const {
    const auto found = value(key);
    return found && found->isDouble() ? std::optional(found->toDouble()) : std::nullopt;
}

std::optional<qint64> Settings::integer(const QString& key) const {
    const auto found = value(key);
    if (!found || !found->isDouble())
        return std::nullopt;
    // Two defaults distinguish a number that is not an integer from one that equals the default.
    const qint64 integer = found->toInteger(0);
    return integer != 0 || found->toInteger(1) == 0 ? std::optional(integer) : std::nullopt;
}

std::optional<QString> Settings::text(const QString& key) const {
    const auto found = value(key);
    return found && found->isString() ? std::optional(found->toString()) : std::nullopt;
}

std::optional<QStringList> Settings::texts(const QString& key) const {
    const auto found = value(key);
    if (!found || !found->isArray())
        return std::nullopt;
    QStringList texts;
    for (const QJsonArray array = found->toArray(); const QJsonValue element : array) {
        if (!element.isString())
            return std::nullopt;
        texts.append(element.toString());
    }
    return texts;
}

} // namespace tessellar
