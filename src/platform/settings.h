#pragma once

#include "platform/file_system.h"

#include <QJsonValue>
#include <QMap>
#include <QString>

#include <expected>
#include <memory>
#include <optional>

namespace tessellar {

/// The user's settings: a flat map from dotted keys to JSON values, read once and kept in memory.
/// Reading never fails: a value of the wrong type counts as absent. Main thread only; `values` is a
/// plain copy that may travel to a worker.
class Settings {
public:
    virtual ~Settings() = default;

    virtual QMap<QString, QJsonValue> values() const = 0;
    /// Stores a value at once; null or undefined removes the key.
    virtual std::expected<void, FileError> set(const QString& key, const QJsonValue& value) = 0;

    std::optional<QJsonValue> value(const QString& key) const;
    /// Present only as true or false; a number is no boolean and a boolean no number.
    std::optional<bool> boolean(const QString& key) const;
    std::optional<double> number(const QString& key) const;
    /// A finite number without a fraction, within the range of the type.
    std::optional<qint64> integer(const QString& key) const;
    std::optional<QString> text(const QString& key) const;
    /// Present only when it is a list and every element is a string.
    std::optional<QStringList> texts(const QString& key) const;
};

/// Settings in a file of the home's Library/Preferences: a JSON object, or a property list when the
/// name ends in ".plist" or the JSON file does not exist and the ".plist" beside it does. A damaged
/// file costs nothing but the defaults: it is kept beside the new one (".damaged" added to its name)
/// when a value is first set.
class FileSettings final : public Settings {
public:
    FileSettings(const FileSystem& files, QString path);
    ~FileSettings() override;

    QMap<QString, QJsonValue> values() const override;
    std::expected<void, FileError> set(const QString& key, const QJsonValue& value) override;

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
