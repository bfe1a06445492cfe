#include "platform/defaults_settings.h"

#include "platform/property_list_json.h"

#include <QJsonObject>

namespace tessellar {

namespace {

using namespace std::chrono_literals;

const QString toolPath = QStringLiteral("/usr/bin/defaults");

/// What follows the key on the tool's command line. Texts go as they are: without a type the tool
/// would read them as property lists.
QList<QByteArray> valueArguments(const QJsonValue& value) {
    if (value.isString())
        return {"-string", value.toString().toUtf8()};
    if (value.isBool())
        return {"-bool", value.toBool() ? "true" : "false"};
    // The tool's own numbers are single precision, its lists guess at the types of their elements.
    return {toPropertyListElement(value)};
}

} // namespace

DefaultsSettings::DefaultsSettings(const FileSystem& files, CommandRunner& commands,
                                   std::map<QByteArray, QByteArray> environment, const QString& domain)
    : _files(files)
    , _commands(commands)
    , _environment(std::move(environment))
    , _domain(domain.toUtf8()) {
    const CommandResult result = run({"export", _domain, "-"});
    if (!result.succeeded() || result.outputTruncated)
        return;
    const auto list = parsePropertyList(result.standardOutput);
    if (!list)
        return;
    const QJsonObject object = toJson(*list).toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        _values.insert(member.key(), *member);
}

std::expected<void, FileError> DefaultsSettings::set(const QString& key, const QJsonValue& value) {
    const bool removes = value.isNull() || value.isUndefined();
    if (removes ? !_values.contains(key) : _values.value(key, QJsonValue::Undefined) == value)
        return {};
    const QByteArray name = key.toUtf8();
    const CommandResult result =
        removes ? run({"delete", _domain, name})
                : run(QList<QByteArray>{"write", _domain, name} + valueArguments(value));
    if (!result.succeeded())
        return std::unexpected(FileError{FileError::Code::io, toolPath});
    if (removes)
        _values.remove(key);
    else
        _values.insert(key, value);
    return {};
}

CommandResult DefaultsSettings::run(const QList<QByteArray>& arguments) const {
    return _commands.run({.executable = _files.hostPath(toolPath),
                          .arguments = arguments,
                          .environment = _environment,
                          .timeout = 5s},
                         {});
}

} // namespace tessellar
