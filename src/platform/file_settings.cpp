#include "platform/settings.h"

#include "platform/property_list_json.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tessellar {

namespace {

constexpr std::uint64_t maximumBytes = 4u << 20;
constexpr int maximumDamagedFiles = 100;

const QString jsonSuffix = QStringLiteral(".json");
const QString propertyListSuffix = QStringLiteral(".plist");

QMap<QString, QJsonValue> members(const QJsonObject& object) {
    QMap<QString, QJsonValue> values;
    for (auto member = object.begin(); member != object.end(); ++member)
        if (!member->isNull())
            values.insert(member.key(), *member);
    return values;
}

QString withoutSuffix(const QString& path) {
    for (const QString& suffix : {jsonSuffix, propertyListSuffix})
        if (path.endsWith(suffix))
            return path.chopped(suffix.size());
    return path;
}

} // namespace

struct FileSettings::State {
    State(const FileSystem& fileSystem, const QString& path)
        : files(fileSystem)
        , json(withoutSuffix(path) + jsonSuffix)
        , propertyList(withoutSuffix(path) + propertyListSuffix) {
        load();
    }

    void load();
    std::expected<void, FileError> keepDamagedFile() const;

    const FileSystem& files;
    const QString json;
    const QString propertyList;
    QMap<QString, QJsonValue> values;
    bool damaged = false; ///< the JSON file is there but gave no values
};

void FileSettings::State::load() {
    values.clear();
    damaged = false;
    if (const auto bytes = files.read(json, maximumBytes)) {
        const QJsonDocument document = QJsonDocument::fromJson(*bytes);
        values = members(document.object());
        damaged = !document.isObject();
    } else if (bytes.error().code != FileError::Code::notFound) {
        damaged = true;
    } else if (const auto list = files.read(propertyList, maximumBytes)) {
        if (const auto parsed = parsePropertyList(*list))
            values = members(toJson(*parsed).toObject());
    }
}

std::expected<void, FileError> FileSettings::State::keepDamagedFile() const {
    std::expected<void, FileError> moved;
    for (int number = 1; number <= maximumDamagedFiles; ++number) {
        QString kept = json + QStringLiteral(".damaged");
        if (number > 1)
            kept += QStringLiteral("-%1").arg(number);
        moved = files.move(json, kept);
        if (moved || moved.error().code != FileError::Code::alreadyExists)
            break;
    }
    return moved;
}

FileSettings::FileSettings(const FileSystem& files, const QString& path)
    : _state(std::make_unique<State>(files, path)) {}

FileSettings::~FileSettings() = default;

QMap<QString, QJsonValue> FileSettings::values() const { return _state->values; }

std::expected<void, FileError> FileSettings::set(const QString& key, const QJsonValue& value) {
    // What another program stored meanwhile stays, and damage may have been a moment's failure.
    const QMap<QString, QJsonValue> known = _state->values;
    _state->load();
    if (_state->damaged)
        _state->values = known;
    const bool removes = value.isNull() || value.isUndefined();
    QMap<QString, QJsonValue> changed = _state->values;
    if (removes)
        changed.remove(key);
    else
        changed.insert(key, value);
    if (changed == _state->values && !_state->damaged)
        return {};

    QJsonObject object;
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry)
        object.insert(entry.key(), *entry);
    if (_state->damaged) {
        if (const auto kept = _state->keepDamagedFile(); !kept)
            return kept;
    } else if (const auto made = _state->files.createDirectories(FileSystem::parent(_state->json));
               !made) {
        return made;
    }
    if (const auto written =
            _state->files.writeAtomically(_state->json, QJsonDocument(object).toJson());
        !written)
        return written;
    _state->values = changed;
    _state->damaged = false;
    return {};
}

} // namespace tessellar
