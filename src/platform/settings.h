#pragma once

#include "platform/file_system.h"

#include <QJsonValue>
#include <QMap>
#include <QString>

#include <expected>
#include <memory>
#include <optional>

namespace tessellar {

/// The user's settings: an in-memory map from dotted keys to JSON values. Reading never fails: a value
/// of the wrong type counts as absent. Thread-safe. `set` blocks on a disk or a tool: the launcher
/// calls it on a worker.
class Settings {
public:
    virtual ~Settings() = default;

    virtual QMap<QString, QJsonValue> values() const = 0;
    /// False if the stored settings are unreadable or damaged: `values` may then be incomplete.
    virtual bool isReadable() const { return true; }
    /// Stores all of these values or none, in one write; null or undefined removes a key.
    virtual std::expected<void, FileError> set(const QMap<QString, QJsonValue>& changes) = 0;
    std::expected<void, FileError> set(const QString& key, const QJsonValue& value) {
        return set({{key, value}});
    }

    std::optional<QJsonValue> value(const QString& key) const;
    /// nullopt unless it is true or false; numbers are not converted, nor are booleans to numbers.
    std::optional<bool> boolean(const QString& key) const;
    std::optional<double> number(const QString& key) const;
    /// nullopt unless it is a finite whole number within the type's range.
    std::optional<qint64> integer(const QString& key) const;
    std::optional<QString> text(const QString& key) const;
    /// nullopt unless it is a list of strings only.
    std::optional<QStringList> texts(const QString& key) const;
};

/// Settings in a JSON file, usually in the home's Library/Preferences; `path` may end in ".json" or
/// ".plist". While only the ".plist" beside it exists, that is read, and migrated on the first `set`.
/// The file is re-read before each change, so that programs setting different keys in turn lose
/// nothing. If it is damaged, defaults apply, and the first `set` keeps it with ".damaged" appended;
/// while it is unreadable, every `set` fails. A value that could not be written is not kept in memory
/// either.
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
