#pragma once

#include "platform/file_system.h"

#include <QJsonValue>
#include <QMap>
#include <QString>

#include <expected>
#include <memory>
#include <optional>

namespace tessellar {

/// The user's settings: a flat map from dotted keys to JSON values, kept in memory.
/// Reading never fails: a value of the wrong type counts as absent. Main thread only; `values` is a
/// plain copy that may travel to a worker.
class Settings {
public:
    virtual ~Settings() = default;

    virtual QMap<QString, QJsonValue> values() const = 0;
    /// False when what is stored could not be read or is damaged: then `values` is not all that the
    /// user has set.
    virtual bool isReadable() const { return true; }
    /// Stores all of these values in one write, or none; null or undefined removes a key.
    virtual std::expected<void, FileError> set(const QMap<QString, QJsonValue>& changes) = 0;
    std::expected<void, FileError> set(const QString& key, const QJsonValue& value) {
        return set({{key, value}});
    }

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

/// Settings in a JSON object in a file, of the home's Library/Preferences as a rule. While there is no
/// such file, the property list beside it (".plist" for ".json") is read instead, and carried over when
/// a value is first set; `path` may name either. Read at the start and before each change, so that two
/// programs that set different keys in turn lose neither. A damaged file costs nothing but the
/// defaults: it is kept beside the new one (".damaged" added to its name) when a value is first set;
/// while it cannot be read, nothing is set. The memory holds what the disk does: a value that could not
/// be written is not set.
class FileSettings final : public Settings {
public:
    FileSettings(const FileSystem& files, const QString& path);
    ~FileSettings() override;

    QMap<QString, QJsonValue> values() const override;
    bool isReadable() const override;
    using Settings::set;
    std::expected<void, FileError> set(const QMap<QString, QJsonValue>& changes) override;

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
