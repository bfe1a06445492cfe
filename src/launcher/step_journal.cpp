#include "launcher/step_journal.h"

#include "launcher/smart_folder_library.h"
#include "model/json_file.h"
#include "model/layout_settings.h"

#include <QCryptographicHash>

#include <algorithm>

namespace tessellar {

using Change = StepJournal::Change;

template <typename Value>
struct json::Fields<Change::Part<Value>> {
    using P = Change::Part<Value>;
    static constexpr auto list =
        json::fields(json::required("before", &P::before), json::required("after", &P::after));
};
template <>
struct json::Fields<Change> {
    static constexpr auto list = json::fields(json::required("mode", &Change::mode),
                                              json::optional("fullScreen", &Change::fullScreen),
                                              json::optional("windowed", &Change::windowed),
                                              json::optional("definitions", &Change::definitions),
                                              json::optional("settings", &Change::settings));
};

template <typename Value>
static QString digest(const Value& value) {
    // As a file has it: what is written and read again is the same.
    const QByteArray bytes = json::writeCompact(json::encode(value));
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

template <typename Value>
Change::Part<Value> StepJournal::part(const Value& before, const Value& after) {
    return {digest(before), after};
}
template Change::Part<LayoutDocument> StepJournal::part(const LayoutDocument&, const LayoutDocument&);
template Change::Part<ArrangementLayout> StepJournal::part(const ArrangementLayout&,
                                                           const ArrangementLayout&);
template Change::Part<QList<SmartFolderDefinition>>
StepJournal::part(const QList<SmartFolderDefinition>&, const QList<SmartFolderDefinition>&);

int Change::files() const {
    return int(fullScreen.has_value()) + int(windowed.has_value()) + int(definitions.has_value()) +
           int(settings.has_value());
}

StepJournal::StepJournal(const Machine& machine, const QString& directory)
    : _machine(machine)
    , _file(machine.files, FileSystem::joined(directory, QStringLiteral("unfinished-step.json")),
            3 * maximumLayoutBytes) {}

std::expected<void, FileError> StepJournal::begin(const Change& change) {
    _file.forget(); // one that could not be read is of a step that was cut off long ago
    return saveJson(_file, change);
}

void StepJournal::end() {
    const auto removed = _machine.files.remove(_file.path());
    // Empty, it stands for no step either.
    if (!removed && removed.error().code != FileError::Code::notFound && !_file.write("{}"))
        _machine.log.warning(message(removed.error()));
}

namespace {
enum class State { asItWas, asWanted, other };

template <typename Value>
State stateOf(const std::optional<Change::Part<Value>>& part, const Value& now) {
    if (!part)
        return State::asWanted;
    const QString found = digest(now);
    return found == part->before          ? State::asItWas
           : found == digest(part->after) ? State::asWanted
                                          : State::other;
}
} // namespace

void StepJournal::finish(LayoutStore& store, std::array<LayoutStore::LoadResult, 2>& loaded,
                         SmartFolderLibrary& smartFolders) {
    const auto change = loadJson<Change>(_file);
    if (!change)
        return change.error().kind == JsonFileError::Kind::damaged ? end() : void();
    if (!*change)
        return;
    const std::array layouts{&(*change)->fullScreen, &(*change)->windowed};
    std::array<State, 2> states{State::asWanted, State::asWanted};
    for (std::size_t i = 0; i < layouts.size(); ++i)
        if (*layouts[i]) {
            const auto* document = std::get_if<LayoutDocument>(&loaded[i]);
            states[i] = document ? stateOf(*layouts[i], *document) : State::other;
        }
    const State definitions = stateOf((*change)->definitions, smartFolders.definitions());
    if (definitions == State::other || std::ranges::find(states, State::other) != states.end())
        return end();

    _machine.log.warning(QStringLiteral("A step that was cut off is brought to its end."));
    for (std::size_t i = 0; i < layouts.size(); ++i)
        if (states[i] == State::asItWas) {
            const LayoutDocument& after = (*layouts[i])->after;
            if (!store.saveNow(static_cast<LauncherWindowMode>(i), after))
                return;
            loaded[i] = after;
        }
    if (definitions == State::asItWas && !smartFolders.setDefinitions((*change)->definitions->after))
        return;
    if (const auto& settings = (*change)->settings)
        if (stateOf(settings, readLayoutSettings(_machine.settings, (*change)->mode)) ==
                State::asItWas &&
            !writeLayoutSettings(_machine.settings, (*change)->mode, settings->after))
            return;
    end();
}

} // namespace tessellar
