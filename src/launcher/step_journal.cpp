#include "launcher/step_journal.h"

#include "discovery/launchpad_import.h"
#include "launcher/smart_folder_library.h"
#include "model/json_file.h"

#include <QCryptographicHash>

#include <algorithm>

namespace tessellar {

using Files = StepJournal::Files;

struct StepJournal::Note {
    Files before;
    QMap<QString, QString> after; ///< digests by file name
};

/// Passed through unchanged.
template <>
struct json::Codec<QJsonValue> {
    static Decoded<QJsonValue> decode(const QJsonValue& value) { return value; }
    static QJsonValue encode(const QJsonValue& value) { return value; }
};
template <>
struct json::Fields<Files> {
    static constexpr auto list = json::fields(json::optional("fullScreen", &Files::fullScreen),
                                              json::optional("windowed", &Files::windowed),
                                              json::optional("definitions", &Files::definitions),
                                              json::optional("settings", &Files::settings),
                                              json::optional("importRecord", &Files::importRecord));
};
template <>
struct json::Fields<StepJournal::Note> {
    using Note = StepJournal::Note;
    static constexpr auto list =
        json::fields(json::required("before", &Note::before), json::required("after", &Note::after));
};

static QMap<QString, QString> digests(const Files& files) {
    QMap<QString, QString> all;
    const QJsonObject encoded = json::encode(files).toObject();
    for (auto file = encoded.begin(); file != encoded.end(); ++file)
        all.insert(file.key(),
                   QString::fromLatin1(QCryptographicHash::hash(
                                           json::writeCompact(QJsonObject{{file.key(), file.value()}}),
                                           QCryptographicHash::Sha256)
                                           .toHex()));
    return all;
}

StepJournal::StepJournal(const Machine& machine, const QString& directory)
    : _machine(machine)
    , _directory(directory)
    , _file(machine.files, FileSystem::joined(directory, QStringLiteral("unfinished-step.json")),
            3 * maximumLayoutBytes) {}

std::expected<void, FileError> StepJournal::begin(const Files& before, const Files& after) {
    _file.forget(); // one that could not be read belongs to a step interrupted long ago
    return saveJson(_file, Note{before, digests(after)});
}

std::expected<void, FileError> StepJournal::end() {
    // Overwritten first, because that is durable; on a full disk it is just removed.
    const auto ended = _file.write("{}");
    if (!ended && ended.error().code != FileError::Code::noSpace)
        return ended;
    const auto removed = _machine.files.remove(_file.path());
    const bool isGone = removed || removed.error().code == FileError::Code::notFound;
    return ended || isGone ? std::expected<void, FileError>() : removed;
}

std::optional<QString> StepJournal::importRecord() const {
    const auto bytes = _machine.files.read(
        FileSystem::joined(_directory, LegacyLaunchpadImportMetadata::fileName), maximumLayoutBytes);
    if (!bytes && bytes.error().code != FileError::Code::notFound)
        return std::nullopt;
    return QString::fromLatin1(bytes.value_or(QByteArray()));
}

std::expected<void, FileError> StepJournal::putImportRecordBack(const QString& record) const {
    const QString path = FileSystem::joined(_directory, LegacyLaunchpadImportMetadata::fileName);
    if (!record.isEmpty())
        return _machine.files.writeAtomically(path, record.toLatin1());
    const auto removed = _machine.files.remove(path);
    return removed || removed.error().code == FileError::Code::notFound
               ? std::expected<void, FileError>()
               : removed;
}

std::optional<Files> StepJournal::interruptedStep(const std::array<LayoutStore::LoadResult, 2>& loaded,
                                                  const SmartFolderLibrary& smartFolders) {
    auto note = loadJson<Note>(_file);
    if (!note && note.error().kind == JsonFileError::Kind::damaged)
        (void)end();
    if (!note || !*note)
        return std::nullopt;
    Files& before = (*note)->before;
    Files now;
    // An unreadable file does not prove that another program changed it: the journal is kept.
    bool isSeen = true;
    const auto look = [&](const std::optional<LayoutDocument>& wanted,
                          const LayoutStore::LoadResult& result, std::optional<LayoutDocument>& into) {
        if (!wanted)
            return;
        if (const auto* document = std::get_if<LayoutDocument>(&result))
            into = *document;
        isSeen = isSeen && !std::holds_alternative<LayoutStore::Failed>(result);
    };
    look(before.fullScreen, loaded[0], now.fullScreen);
    look(before.windowed, loaded[1], now.windowed);
    if (before.definitions) {
        now.definitions = smartFolders.definitions();
        isSeen = isSeen && !smartFolders.failure();
    }
    if (before.settings) {
        now.settings.emplace();
        for (const QString& key : before.settings->keys())
            now.settings->insert(key, _machine.settings.value(key).value_or(QJsonValue()));
        isSeen = isSeen && _machine.settings.isReadable();
    }
    if (before.importRecord) {
        now.importRecord = importRecord();
        isSeen = isSeen && now.importRecord;
    }
    if (!isSeen) {
        _machine.log.warning(
            QStringLiteral("An interrupted step cannot be checked now; its journal is kept."));
        return std::nullopt;
    }

    const QMap<QString, QString> then = digests(before);
    const QMap<QString, QString> here = digests(now);
    if (!std::ranges::all_of(then.keys(), [&](const QString& file) {
            const QString digest = here.value(file);
            return digest == then[file] || digest == (*note)->after.value(file);
        })) {
        (void)end();
        return std::nullopt;
    }
    return std::move(before);
}

} // namespace tessellar
