#include "platform/defaults_settings.h"

#include "platform/property_list_json.h"

#include <QJsonObject>

#include <pugixml.hpp>

#include <sstream>
#include <string_view>

namespace tessellar {

namespace {

using namespace std::chrono_literals;

const QString toolPath = QStringLiteral("/usr/bin/defaults");

bool removes(const QJsonValue& value) { return value.isNull() || value.isUndefined(); }

/// The value's arguments on the tool's command line. Texts need a type: without one the tool would
/// parse them as property lists.
QList<QByteArray> valueArguments(const QJsonValue& value) {
    if (value.isString())
        return {"-string", value.toString().toUtf8()};
    if (value.isBool())
        return {"-bool", value.toBool() ? "true" : "false"};
    // The tool's own numbers are single precision, and its lists guess their elements' types.
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
    _isReadable = true;
}

QMap<QString, QJsonValue> DefaultsSettings::values() const {
    const std::lock_guard lock(_reading);
    return _values;
}

std::expected<void, FileError> DefaultsSettings::set(const QMap<QString, QJsonValue>& changes) {
    const std::lock_guard turn(_writing);
    const QMap<QString, QJsonValue> now = values();
    QMap<QString, QJsonValue> changed;
    for (auto it = changes.begin(); it != changes.end(); ++it)
        if (removes(*it) ? now.contains(it.key()) : now.value(it.key(), QJsonValue::Undefined) != *it)
            changed.insert(it.key(), *it);
    if (changed.isEmpty())
        return {};
    if (!(changed.size() == 1 ? store(changed.firstKey(), changed.first()) : store(changed)))
        return std::unexpected(FileError{FileError::Code::io, toolPath});
    const std::lock_guard lock(_reading);
    for (auto it = changed.begin(); it != changed.end(); ++it) {
        if (removes(*it))
            _values.remove(it.key());
        else
            _values.insert(it.key(), *it);
    }
    return {};
}

bool DefaultsSettings::store(const QString& key, const QJsonValue& value) const {
    const QByteArray name = key.toUtf8();
    return (removes(value) ? run({"delete", _domain, name})
                           : run(QList<QByteArray>{"write", _domain, name} + valueArguments(value)))
        .succeeded();
}

/// Imports the whole domain with the changes: whether or not `import` removes missing keys, they stay.
bool DefaultsSettings::store(const QMap<QString, QJsonValue>& changes) const {
    const CommandResult exported = run({"export", _domain, "-"});
    pugi::xml_document document;
    if (!exported.succeeded() || exported.outputTruncated ||
        !document.load_buffer(exported.standardOutput.constData(),
                              static_cast<std::size_t>(exported.standardOutput.size()),
                              pugi::parse_full | pugi::parse_ws_pcdata))
        return false;
    pugi::xml_node dict = document.child("plist").child("dict");
    if (!dict)
        return false;
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        const QByteArray name = it.key().toUtf8();
        pugi::xml_node key = dict.find_child([&](const pugi::xml_node& node) {
            return name == node.child_value() && std::string_view(node.name()) == "key";
        });
        const bool wasThere = !key.empty();
        if (wasThere) {
            while (key.next_sibling() && key.next_sibling().type() != pugi::node_element)
                dict.remove_child(key.next_sibling());
            dict.remove_child(key.next_sibling());
            dict.remove_child(key);
        }
        if (removes(*it)) {
            if (wasThere && !store(it.key(), *it)) // in case `import` only adds
                return false;
            continue;
        }
        dict.append_child("key").text().set(name.constData());
        const QByteArray element = toPropertyListElement(*it);
        dict.append_buffer(element.constData(), static_cast<std::size_t>(element.size()));
    }
    std::ostringstream text;
    document.save(text, "", pugi::format_raw);
    return run({"import", _domain, "-"}, QByteArray::fromStdString(text.str())).succeeded();
}

CommandResult DefaultsSettings::run(const QList<QByteArray>& arguments,
                                    const std::optional<QByteArray>& input) const {
    return _commands.run({.executable = _files.hostPath(toolPath),
                          .arguments = arguments,
                          .environment = _environment,
                          .timeout = 5s,
                          .input = input},
                         {});
}

} // namespace tessellar
