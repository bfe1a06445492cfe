#include "torture/laws.h"

#include "model/json.h"
#include "model/layout_document.h"
#include "model/remembered_places.h"

#include <QRegularExpression>

#include <signal.h>

#include <algorithm>

namespace tessellar::torture {

using namespace Qt::Literals::StringLiterals;

// ---- without a fault

void Laws::prepare(const Command& command) {
    (void)reference(command);
    _mac.restore();
}

const Laws::Reference& Laws::reference(const Command& command) {
    const auto known = _references.constFind(command.line);
    if (known != _references.cend())
        return *known;
    Reference reference;
    reference.between = statesWithin(command);
    _mac.restore();
    reference.before = _mac.state();
    _mac.run(command.line);
    reference.after = _mac.state();
    _mac.run("list");
    reference.settledAfter = _mac.state();
    if (command.has(Trait::isBroughtBack)) {
        _mac.bringAllBack();
        reference.allBack = _mac.state();
    }
    return *_references.insert(command.line, reference);
}

/// A batch that is cut off stands where one of its lines has ended; one that goes on where a line has
/// failed, where the others lead.
QList<State> Laws::statesWithin(const Command& command) {
    QList<State> states;
    const QByteArray batch = SmallMac::batchFile(command);
    if (batch.isEmpty())
        return states;
    const QByteArray whole = _mac.builtFiles().value(batch);
    const QByteArrayList lines = whole.trimmed().split('\n');
    const auto addState = [&](const QByteArrayList& some) {
        _mac.restore();
        _mac.write(batch, some.join('\n') + '\n');
        _mac.run(command.line);
        _mac.write(batch, whole);
        states.append(_mac.state());
    };
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            addState(lines.first(i));
        addState(lines.first(i) + lines.sliced(i + 1));
    }
    return states;
}

// ---- after one

QByteArray Laws::brokenFile(Lenience lenience) const {
    const QMap<QByteArray, QByteArray> files = _mac.files();
    int temporary = 0;
    for (const auto& [path, bytes] : files.asKeyValueRange()) {
        if (!path.startsWith(SmallMac::applicationFolder) && path != SmallMac::settingsFile)
            continue;
        const bool isNew = !_mac.builtFiles().contains(path);
        temporary += path.contains(".tessellar-save-") ? 1 : 0;
        if (isNew && !(lenience.hidesRegistry && path.contains("/computed-folders.")) &&
            (path.contains(".damaged") || path.contains(".corrupt") || path.contains("recovery")))
            return path + " was set aside, and nothing was damaged";
        const bool isSetAside = lenience.hidesRegistry && path.contains("/computed-folders.corrupt");
        if (path.endsWith(".json") && !isSetAside && !json::parse(bytes))
            return path + " is broken";
        if (path.contains("/Backups/") && path.endsWith(".json") &&
            !json::decodeDocument<BackupDocument>(bytes))
            return path + " is no backup";
    }
    return temporary > 2 ? QByteArray("temporary files add up") : QByteArray();
}

/// What was set aside comes back when the user says so.
QByteArray Laws::putRegistryBack() {
    const QByteArray marker = SmallMac::applicationFolder + "/computed-folders.recovery.json";
    if (!_mac.files().contains(marker))
        return {};
    const Ending ending = _mac.run("smart-folders recover restore");
    return ending.status == 0 ? QByteArray()
                              : "the registry cannot be put back: " + shortened(ending.error);
}

/// A note that stands for no step is nothing, and so is what says that a registry lies aside while one
/// stands: the next start takes them away.
State Laws::now() const {
    const QByteArray note = SmallMac::applicationFolder + "/unfinished-step.json";
    State state = _mac.state();
    if (const auto value = json::parse(state.value(note)); value && value->toObject().isEmpty())
        state.remove(note);
    if (state.contains(SmallMac::applicationFolder + "/computed-folders.json"))
        state.remove(SmallMac::applicationFolder + "/computed-folders.recovery.json");
    return state;
}

/// What only remembers, and could not be written, is brought up to date by the next start.
bool Laws::isSettledByTheNext(const Command& command, const State& wanted) {
    if (withoutPlaces(now()) != withoutPlaces(wanted))
        return false;
    _mac.run("list");
    return now() == reference(command).settledAfter;
}

bool Laws::isWhole(const Command& command, bool werePlacesKept) {
    const Reference& expected = reference(command);
    const State now = this->now();
    return now == expected.before || now == expected.after || now == expected.settledAfter ||
           expected.between.contains(now) ||
           (withoutPlaces(now) == withoutPlaces(expected.before) &&
            (werePlacesKept || arePlacesKept(command)));
}

namespace {

/// Every tile that is remembered, with the folder that it lies in, in order.
QList<std::pair<QUuid, QUuid>> positions(const Pages& pages, const QUuid& folder = {}) {
    QList<std::pair<QUuid, QUuid>> all;
    for (const Page& page : pages)
        for (const LaunchpadItem& item : page) {
            all.append({item.id(), folder});
            if (const FolderEntry* inner = item.folder())
                all += positions(inner->pages, inner->id);
        }
    return all;
}

/// As a state has it: what is new is all one here.
RememberedPlaces placesIn(const QByteArray& state) {
    const QString bytes = QString::fromUtf8(state).replace(
        QRegularExpression(u"new-[0-9]+"_s),
        QUuid(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0).toString(QUuid::WithoutBraces));
    return json::decodeDocument<RememberedPlaces>(bytes.toUtf8()).value_or(RememberedPlaces());
}

/// Whether the tiles that both know lie alike.
bool lieAlike(const RememberedPlaces& one, const RememberedPlaces& other) {
    const auto among = [](const RememberedPlaces& some, const RememberedPlaces& known) {
        QSet<QUuid> tiles;
        for (const auto& [tile, folder] : positions(known.pages))
            tiles.insert(tile);
        auto all = positions(some.pages);
        all.removeIf([&](const auto& position) { return !tiles.contains(position.first); });
        return all;
    };
    return among(one, other) == among(other, one);
}

} // namespace

/// Places are on the disk before the layout without their tiles is: what is cut off there may remember
/// more than before, but nothing less, and each place lies where it lay, or where the command put it.
bool Laws::arePlacesKept(const Command& command) {
    const State state = _mac.state();
    const Reference& expected = reference(command);
    for (const auto& [path, bytes] : expected.before.asKeyValueRange()) {
        if (!path.contains("/remembered-places"))
            continue;
        const RememberedPlaces now = placesIn(state.value(path));
        const bool holdsAll = std::ranges::all_of(placesIn(bytes).places, [&](const auto& place) {
            return std::ranges::count(now.places, place.id, &RememberedPlace::id) > 0;
        });
        if (!holdsAll ||
            !(lieAlike(now, placesIn(bytes)) || lieAlike(now, placesIn(expected.after.value(path))) ||
              lieAlike(now, placesIn(expected.settledAfter.value(path)))))
            return false;
    }
    return true;
}

/// Where the layout is another than it was.
bool Laws::isCopyKept() const {
    const QByteArray layout = SmallMac::applicationFolder + "/layout.json";
    const QMap<QByteArray, QByteArray> files = _mac.files();
    const auto pages = [](const QByteArray& bytes) {
        return json::decodeDocument<LayoutDocument>(bytes).value_or(LayoutDocument()).pages;
    };
    const Pages before = pages(_mac.builtFiles().value(layout));
    if (pages(files.value(layout)) == before)
        return true;
    return std::ranges::any_of(files.keys(), [&](const QByteArray& path) {
        const auto copy = json::decodeDocument<BackupDocument>(files.value(path));
        return path.contains("/Backups/") && !_mac.builtFiles().contains(path) && copy &&
               copy->document.pages == before;
    });
}

/// A removal is of many items, and its record is written twice. What counts is that nothing is lost,
/// wherever it ended.
bool Laws::comesBack(const Command& command) {
    if (!command.has(Trait::isBroughtBack))
        return false;
    _mac.bringAllBack();
    // Where things stood is remembered anew at each start: one more or less shows there. Of what never
    // left there may be a record, which nobody is shown.
    const auto told = [](State state) {
        state.remove(SmallMac::applicationFolder + "/removals.json");
        return withoutPlaces(state);
    };
    return told(now()) == told(reference(command).allBack) && _mac.run("cleanup restore").status != 0;
}

/// An application that the scan could not see has no place in what is arranged anew; once it is seen
/// again it comes at the end.
bool Laws::holdsAll(const Command& command) {
    if (!command.has(Trait::isOfAllSeen))
        return false;
    const auto tiles = [](const State& state) {
        QByteArrayList all = state.value(SmallMac::applicationFolder + "/layout.json").split('\n');
        all.removeIf([](const QByteArray& line) { return !line.contains("\"path\""); });
        for (QByteArray& line : all)
            line = line.trimmed(); // in a folder, or not
        std::ranges::sort(all);
        return all;
    };
    _mac.run("list");
    return tiles(_mac.state()) == tiles(reference(command).settledAfter);
}

QByteArray Laws::broken(const Command& command, const Ending& ending, Lenience lenience) {
    const auto with = [&](const QByteArray& law) {
        return law + (ending.error.isEmpty() ? QByteArray() : "; it said: " + shortened(ending.error));
    };
    if (ending.isLate)
        return with("it did not end");
    if (!ending.status && ending.signal != SIGKILL)
        return with("it crashed with signal " + QByteArray::number(ending.signal));
    if (const QByteArray broken = brokenFile(lenience); !broken.isEmpty())
        return with(broken);
    if (const QByteArray broken = putRegistryBack(); !broken.isEmpty())
        return with(broken);
    if (command.has(Trait::keepsCopy) && !isCopyKept())
        return with("another arrangement took the place of the first, of which no copy is kept");
    const Reference& expected = reference(command);
    State now = this->now();
    if (lenience.deniesLock && withoutPlaces(now) != withoutPlaces(expected.before))
        return with("without the lock it changed " + difference(expected.before, now));
    const bool hasWarned = !ending.error.trimmed().isEmpty();
    if (ending.status == 0) {
        State wanted = expected.after;
        // What is recorded besides, of which nobody asked, may be missing where that was said.
        const QByteArray usage = SmallMac::applicationFolder + "/app-usage.json";
        if ((hasWarned || lenience.warnsElsewhere) && now.value(usage) == expected.before.value(usage))
            wanted.insert(usage, now.value(usage));
        if (now == wanted || isSettledByTheNext(command, wanted) ||
            (lenience.hidesSome && holdsAll(command)) || (hasWarned && comesBack(command)))
            return {};
        return with("it said that it was done, but " + difference(wanted, now));
    }
    // A batch may end where one of its lines has led to by itself.
    if (ending.status && !lenience.mayFailLate && now == expected.after &&
        expected.after != expected.before && !expected.between.contains(now))
        return with("it said that it failed, and did it");
    if (!isWhole(command)) {
        // The next start moves them with the layout that it finds.
        const bool arePlacesKept = this->arePlacesKept(command);
        _mac.run("list");
        const bool hadNote = now.remove(SmallMac::applicationFolder + "/unfinished-step.json") > 0;
        if (ending.status && hadNote && _mac.state() == expected.settledAfter &&
            withoutPlaces(now) != withoutPlaces(_mac.state()) &&
            std::ranges::none_of(expected.between, [&](const State& between) {
                return withoutPlaces(between) == withoutPlaces(_mac.state());
            }))
            return with("it said that it failed, and the next command did it");
        if (!isWhole(command, arePlacesKept)) {
            now = this->now();
            if (comesBack(command))
                return {};
            return with("it was half done: from before, " + difference(expected.before, now) +
                        "; from after, " + difference(expected.after, now));
        }
    }
    if (_mac.state() != expected.before)
        return {};
    const Ending again = _mac.run(command.line);
    if (again.status != 0)
        return with("it cannot be done again: " + shortened(again.error));
    const State later = _mac.state();
    return later == expected.after ? QByteArray()
                                   : with("done again, " + difference(expected.after, later));
}

} // namespace tessellar::torture
