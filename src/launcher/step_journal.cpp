#include "launcher/step_journal.h"

#include "launcher/smart_folder_library.h"
#include "model/json_file.h"
#include "model/layout_settings.h"

#include <QCryptographicHash>

namespace tessellar {

using Change = StepJournal::Change;

struct StepJournal::Note {
    QStringList before; ///< digests
    Change change;
};

template <>
struct json::Fields<Change> {
    static constexpr auto list = json::fields(json::required("mode", &Change::mode),
                                              json::optional("fullScreen", &Change::fullScreen),
                                              json::optional("windowed", &Change::windowed),
                                              json::optional("definitions", &Change::definitions),
                                              json::optional("settings", &Change::settings),
                                              json::optional("importRecord", &Change::importRecord));
};
template <>
struct json::Fields<StepJournal::Note> {
    using Note = StepJournal::Note;
    static constexpr auto list =
        json::fields(json::required("before", &Note::before), json::required("change", &Note::change));
};

static QString digest(const QByteArray& bytes) {
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

StepJournal::StepJournal(const Machine& machine, const QString& directory)
    : _machine(machine)
    , _directory(directory)
    , _file(machine.files, FileSystem::joined(directory, QStringLiteral("unfinished-step.json")),
            3 * maximumLayoutBytes) {}

QStringList StepJournal::digests(LauncherWindowMode mode) const {
    const auto ofFile = [&](const QString& path) {
        return digest(_machine.files.read(path, maximumLayoutBytes).value_or(QByteArray()));
    };
    const ArrangementLayout settings = readLayoutSettings(_machine.settings, mode);
    return {ofFile(LayoutStore::workingPath(_directory, LauncherWindowMode::fullScreen)),
            ofFile(LayoutStore::workingPath(_directory, LauncherWindowMode::windowed)),
            ofFile(FileSystem::joined(_directory, SmartFolderStore::fileName())),
            digest(json::writeCompact(json::encode(settings))),
            ofFile(FileSystem::joined(_directory, LegacyLaunchpadImportMetadata::fileName))};
}

std::expected<void, FileError> StepJournal::begin(Change change) {
    const QStringList before = digests(change.mode);
    _file.forget(); // one that could not be read is of a step that was cut off long ago
    return saveJson(_file, Note{before, std::move(change)});
}

void StepJournal::end() {
    const auto removed = _machine.files.remove(_file.path());
    // Empty, it stands for no step either.
    if (!removed && removed.error().code != FileError::Code::notFound && !_file.write("{}"))
        _machine.log.warning(message(removed.error()));
}

void StepJournal::finish(LayoutStore& store, std::array<LayoutStore::LoadResult, 2>& loaded,
                         SmartFolderLibrary& smartFolders) {
    const auto note = loadJson<Note>(_file);
    if (!note)
        return note.error().kind == JsonFileError::Kind::damaged ? end() : void();
    if (!*note)
        return;
    const Change& change = (*note)->change;
    const QStringList now = digests(change.mode);
    const auto isAsItWas = [&](qsizetype i) { return (*note)->before.value(i) == now[i]; };
    const std::array layouts{&change.fullScreen, &change.windowed};
    const auto isOfTheStep = [&](std::size_t i) {
        const auto* document = std::get_if<LayoutDocument>(&loaded[i]);
        return !*layouts[i] || isAsItWas(i) || (document && *document == **layouts[i]);
    };
    if (!isOfTheStep(0) || !isOfTheStep(1) ||
        (change.definitions && !isAsItWas(2) && *change.definitions != smartFolders.definitions()))
        return end();

    _machine.log.warning(QStringLiteral("A step that was cut off is brought to its end."));
    for (std::size_t i = 0; i < layouts.size(); ++i)
        if (*layouts[i] && isAsItWas(i)) {
            if (!store.saveNow(static_cast<LauncherWindowMode>(i), **layouts[i]))
                return;
            loaded[i] = **layouts[i];
        }
    if (change.definitions && !smartFolders.setDefinitions(*change.definitions))
        return;
    if (change.settings && isAsItWas(3) &&
        !writeLayoutSettings(_machine.settings, change.mode, *change.settings))
        return;
    if (change.importRecord && isAsItWas(4) &&
        !writeImportMetadata(_machine.files, _directory, *change.importRecord))
        return;
    end();
}

} // namespace tessellar
