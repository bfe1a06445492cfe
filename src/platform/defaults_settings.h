#pragma once

#include "platform/process.h"
#include "platform/settings.h"

#include <mutex>

namespace tessellar {

/// Settings in macOS user defaults, through /usr/bin/defaults: other programs may have the store open,
/// so its files must not be written directly. Each `set` blocks on the tool: one run for a single
/// value; two for several, to export the domain and import it changed. If reading fails, the defaults
/// apply.
class DefaultsSettings final : public Settings {
public:
    /// `domain` is the application's identifier, `environment` the user's.
    DefaultsSettings(const FileSystem& files, CommandRunner& commands,
                     std::map<QByteArray, QByteArray> environment, const QString& domain);

    QMap<QString, QJsonValue> values() const override;
    bool isReadable() const override { return _isReadable; }
    /// When the tool fails, the error names the tool.
    using Settings::set;
    std::expected<void, FileError> set(const QMap<QString, QJsonValue>& changes) override;

private:
    CommandResult run(const QList<QByteArray>& arguments,
                      const std::optional<QByteArray>& input = {}) const;
    bool store(const QString& key, const QJsonValue& value) const;
    bool store(const QMap<QString, QJsonValue>& changes) const;

    const FileSystem& _files;
    CommandRunner& _commands;
    std::map<QByteArray, QByteArray> _environment;
    QByteArray _domain;
    std::mutex _writing;         ///< held by `set`
    mutable std::mutex _reading; ///< held for moments; guards `_values`
    QMap<QString, QJsonValue> _values;
    bool _isReadable = false;
};

} // namespace tessellar
