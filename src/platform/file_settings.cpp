#include "platform/settings.h"

#include "platform/property_list_json.h"
#include "platform/stored_file.h"

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
        , json(files, withoutSuffix(path) + jsonSuffix, maximumBytes)
        , propertyList(withoutSuffix(path) + propertyListSuffix) {
        load();
    }

    void load();
    std::expected<void, FileError> keepDamagedFile() const;

    const FileSystem& files;
    StoredFile json;
    const QString propertyList;
    QMap<QString, QJsonValue> values;
    bool damaged = false;       ///< the JSON file was read whole but gives no values
    bool hasUnreadList = false; ///< the property list is there in its stead, and gave none
};

void FileSettings::State::load() {
    values.clear();
    damaged = false;
    hasUnreadList = false;
    auto bytes = json.read();
    if (!bytes)
        bytes = json.read(); // what passes at once costs no settings
    if (!bytes)
        return;
    if (*bytes) {
        const QJsonDocument document = QJsonDocument::fromJson(**bytes);
        values = members(document.object());
        damaged = !document.isObject();
    } else {
        const auto list = files.read(propertyList, maximumBytes);
        hasUnreadList = list || list.error().code != FileError::Code::notFound;
        if (const auto parsed = parsePropertyList(list.value_or(QByteArray())); list && parsed) {
            values = members(toJson(*parsed).toObject());
            hasUnreadList = false;
        }
    }
}

std::expected<void, FileError> FileSettings::State::keepDamagedFile() const {
    std::expected<void, FileError> moved;
    for (int number = 1; number <= maximumDamagedFiles; ++number) {
        QString kept = json.path() + QStringLiteral(".damaged");
        if (number > 1)
            kept += QStringLiteral("-%1").arg(number);
        moved = files.move(json.path(), kept);
        if (moved || moved.error().code != FileError::Code::alreadyExists)
            break;
    }
    return moved;
}

FileSettings::FileSettings(const FileSystem& files, const QString& path)
    : _state(std::make_unique<State>(files, path)) {}

FileSettings::~FileSettings() = default;

QMap<QString, QJsonValue> FileSettings::values() const { return _state->values; }

bool FileSettings::isReadable() const {
    return !_state->damaged && !_state->hasUnreadList && !_state->json.blocked();
}

std::expected<void, FileError> FileSettings::set(const QMap<QString, QJsonValue>& changes) {
    // What another program stored meanwhile stays, and damage may have been mended.
    const QMap<QString, QJsonValue> known = _state->values;
    _state->load();
    const auto& unreadable = _state->json.blocked();
    if (_state->damaged || unreadable)
        _state->values = known;
    if (unreadable)
        return std::unexpected(*unreadable);
    QMap<QString, QJsonValue> changed = _state->values;
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        if (it->isNull() || it->isUndefined())
            changed.remove(it.key());
        else
            changed.insert(it.key(), *it);
    }
    if (changed == _state->values && !_state->damaged)
        return {};

    QJsonObject object;
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry)
        object.insert(entry.key(), *entry);
    if (_state->damaged)
        if (const auto kept = _state->keepDamagedFile(); !kept)
            return kept;
    if (const auto written = _state->json.write(QJsonDocument(object).toJson()); !written)
        return written;
    _state->values = changed;
    _state->damaged = false;
    return {};
}

} // namespace tessellar
