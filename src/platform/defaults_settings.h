#pragma once

#include "platform/process.h"
#include "platform/settings.h"

namespace tessellar {

/// Settings in the Mac's own store of user defaults, through its tool /usr/bin/defaults: other
/// programs may hold that store open, so its files are not for us to write. Each `set` runs the tool
/// and waits for it: once for one value, and for several once to learn the domain as it is now and once
/// to put it back changed. A tool that fails costs only the defaults when reading.
class DefaultsSettings final : public Settings {
public:
    /// `domain` is the application's identifier, `environment` that of the user.
    DefaultsSettings(const FileSystem& files, CommandRunner& commands,
                     std::map<QByteArray, QByteArray> environment, const QString& domain);

    QMap<QString, QJsonValue> values() const override { return _values; }
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
    QMap<QString, QJsonValue> _values;
    bool _isReadable = false;
};

} // namespace tessellar
