#include "platform/settings.h"

#include "platform/property_list_json.h"
#include "platform/stored_file.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <mutex>

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
    struct Contents {
        QMap<QString, QJsonValue> values;
        bool isDamaged = false;     ///< the JSON file was read whole but could not be decoded
        bool hasUnreadList = false; ///< the property list is there instead, but could not be decoded
        bool isBlocked = false;     ///< the JSON file could not be read
    };

    State(const FileSystem& fileSystem, const QString& path)
        : files(fileSystem)
        , json(files, withoutSuffix(path) + jsonSuffix, maximumBytes)
        , propertyList(withoutSuffix(path) + propertyListSuffix)
        , known(read()) {}

    Contents read();
    std::expected<QString, FileError> keepDamagedFile() const;
    Contents contents() const {
        const std::lock_guard lock(reading);
        return known;
    }
    void setContents(Contents contents) {
        const std::lock_guard lock(reading);
        known = std::move(contents);
    }

    const FileSystem& files;
    std::mutex writing; ///< held by `set`; guards the files
    StoredFile json;
    const QString propertyList;

    mutable std::mutex reading; ///< held briefly; guards `known`
    Contents known;
};

FileSettings::State::Contents FileSettings::State::read() {
    auto bytes = json.read();
    if (!bytes)
        bytes = json.read(); // once more: transient errors must not cost the settings
    if (!bytes)
        return {.isBlocked = true};
    if (*bytes) {
        const QJsonDocument document = QJsonDocument::fromJson(**bytes);
        return {.values = members(document.object()), .isDamaged = !document.isObject()};
    }
    const auto list = files.read(propertyList, maximumBytes);
    if (const auto parsed = parsePropertyList(list.value_or(QByteArray())); list && parsed)
        return {.values = members(toJson(*parsed).toObject())};
    return {.hasUnreadList = list || list.error().code != FileError::Code::notFound};
}

/// Returns where it was moved.
std::expected<QString, FileError> FileSettings::State::keepDamagedFile() const {
    std::expected<void, FileError> moved;
    for (int number = 1; number <= maximumDamagedFiles; ++number) {
        QString kept = json.path() + QStringLiteral(".damaged");
        if (number > 1)
            kept += QStringLiteral("-%1").arg(number);
        moved = files.move(json.path(), kept);
        if (moved)
            return kept;
        if (moved.error().code != FileError::Code::alreadyExists)
            break;
    }
    return std::unexpected(moved.error());
}

FileSettings::FileSettings(const FileSystem& files, const QString& path)
    : _state(std::make_unique<State>(files, path)) {}

FileSettings::~FileSettings() = default;

QMap<QString, QJsonValue> FileSettings::values() const { return _state->contents().values; }

bool FileSettings::isReadable() const {
    const State::Contents known = _state->contents();
    return !known.isDamaged && !known.hasUnreadList && !known.isBlocked;
}

std::expected<void, FileError> FileSettings::set(const QMap<QString, QJsonValue>& changes) {
    const std::lock_guard turn(_state->writing);
    // Keep what another program has stored meanwhile; it may also have repaired the file.
    State::Contents now = _state->read();
    if (now.isDamaged || now.isBlocked)
        now.values = values();
    _state->setContents(now);
    if (now.isBlocked)
        return std::unexpected(*_state->json.blocked());
    QMap<QString, QJsonValue> changed = now.values;
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        if (it->isNull() || it->isUndefined())
            changed.remove(it.key());
        else
            changed.insert(it.key(), *it);
    }
    if (changed == now.values && !now.isDamaged)
        return {};

    QJsonObject object;
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry)
        object.insert(entry.key(), *entry);
    QString kept;
    if (now.isDamaged) {
        auto moved = _state->keepDamagedFile();
        if (!moved)
            return std::unexpected(moved.error());
        kept = *std::move(moved);
    }
    if (const auto written = _state->json.write(QJsonDocument(object).toJson()); !written) {
        // Without any file, the next change would take the values in memory for none.
        if (!kept.isEmpty())
            (void)_state->files.move(kept, _state->json.path());
        return written;
    }
    _state->setContents({.values = changed});
    return {};
}

} // namespace tessellar
