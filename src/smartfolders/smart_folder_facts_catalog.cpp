#include "smartfolders/smart_folder_facts_catalog.h"

#include "smartfolders/bundle_answer_cache.h"
#include "smartfolders/bundle_facts.h"
#include "smartfolders/bundle_findings.h"
#include "smartfolders/smart_folder_fields.h"

#include <QCryptographicHash>

#include <deque>
#include <mutex>
#include <unordered_map>

namespace tessellar {

namespace {

using Fingerprint = SmartFolderFactsCatalog::Fingerprint;
using Request = SmartFolderFactsCatalog::Request;

constexpr int maximumAttempts = 3;
constexpr std::size_t maximumEntries = 20'000;

/// What is known of a bundle.
struct Entry {
    Fingerprint fingerprint;
    QString infoPath;
    std::optional<FileStatus> infoStatus; ///< if unchanged, version and build need not be read
    BundleFindings findings;
    BundleAnswers answers;
};

/// A hash of the bundle's state, for the cache file.
QString textOf(const Entry& entry) {
    const Fingerprint& f = entry.fingerprint;
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const auto add = [&](const QString& text) {
        hash.addData(text.toUtf8());
        hash.addData(QByteArrayView("\0", 1));
    };
    const auto addOptional = [&](const std::optional<QString>& text) {
        add(text ? u'+' + *text : QString());
    };
    const auto addDate = [&](std::optional<Instant> date) {
        add(date ? QString::number(date->secondsSince2001, 'f', 9) : QString());
    };
    add(f.standardizedPath);
    addDate(f.modificationDate);
    add(f.fileSize ? QString::number(*f.fileSize) : QString());
    for (const auto& text : {f.bundleIdentifier, f.originalName, f.category, f.version, f.build})
        addOptional(text);
    if (const auto& info = entry.infoStatus) {
        addDate(info->modified);
        add(QString::number(info->size));
    }
    return QString::fromLatin1(hash.result().toHex());
}

std::optional<FileStatus> statusOf(const FileSystem& files, const QString& path) {
    const auto status = files.status(path);
    return status ? std::optional(*status) : std::nullopt;
}

} // namespace

/// The entries and the two stages. Workers share entries, which are immutable: they are replaced, not
/// changed.
class SmartFolderFactsCatalog::State : public std::enable_shared_from_this<State> {
public:
    State(const Machine& machine, const QString& cachePath)
        : _machine(machine), _kept(machine.files, cachePath) {}

    void add(Request request, std::stop_token stop, Gathered gathered) {
        enter(_fileStage, std::make_shared<Round>(_machine, std::move(request), std::move(stop),
                                                  std::move(gathered)));
    }

    /// Main thread only, where results are delivered.
    void end() { _isEnding = true; }

    std::atomic<quint64> inspectionCount = 0;

private:
    using EntryPointer = std::shared_ptr<const Entry>;
    using Record = std::shared_ptr<const SmartFolderAppFacts>;

    struct Item {
        EntryPointer entry;
        Record record;
        std::optional<Instant> lastUsed; ///< from the system's record; read again in each round
        bool wasInspected = false;
    };
    struct Round {
        Round(const Machine& machine, Request asked, std::stop_token token, Gathered call)
            : request(std::move(asked))
            , stop(std::move(token))
            , gathered(std::move(call))
            , tools(machine)
            , items(request.apps.size()) {}
        const AppEntry& app(std::size_t i) const { return request.apps.at(static_cast<qsizetype>(i)); }

        Request request;
        std::stop_token stop;
        Gathered gathered;
        BundleTools tools;
        std::mutex mutex; ///< guards `items` once the tools are running
        std::vector<Item> items;
        std::vector<std::size_t> waiting; ///< the items that need the tools
        Instant toldAt;
        std::atomic<std::size_t> next = 0;
        std::atomic<std::size_t> working = 0;
    };
    using RoundPointer = std::shared_ptr<Round>;

    struct Stage {
        void (State::*begin)(const RoundPointer&);
        std::deque<RoundPointer> rounds = {};
        bool isWorking = false;
    };

    void enter(Stage& stage, RoundPointer round) {
        {
            const std::lock_guard lock(_mutex);
            stage.rounds.push_back(std::move(round));
            if (std::exchange(stage.isWorking, true))
                return;
        }
        beginNext(stage);
    }

    void beginNext(Stage& stage) {
        RoundPointer round;
        {
            const std::lock_guard lock(_mutex);
            stage.isWorking = !stage.rounds.empty();
            if (!stage.isWorking)
                return;
            round = std::move(stage.rounds.front());
            stage.rounds.pop_front();
        }
        (this->*stage.begin)(round);
    }

    /// Runs `step` for `count` positions on several workers; the last one to finish calls `end`.
    template <typename Step, typename End>
    void spread(Lane lane, const RoundPointer& round, std::size_t count, Step step, End end) {
        const auto workers = std::clamp<std::size_t>(count, 1, _machine.workers.threadCount(lane));
        round->next = 0;
        round->working = workers;
        for (std::size_t i = 0; i < workers; ++i)
            _machine.workers.submit(
                lane, round->stop,
                [self = shared_from_this(), round, count, step, end](std::stop_token stop) {
                    for (std::size_t place = round->next++;
                         place < count && !stop.stop_requested() && !self->_isEnding;
                         place = round->next++)
                        step(place, stop);
                    if (--round->working == 0)
                        end();
                });
    }

    // ---- the bundles' own files

    void readBundles(const RoundPointer& round) {
        spread(
            Lane::files, round, round->items.size(),
            [this, round](std::size_t i, const std::stop_token& stop) {
                std::call_once(_cacheLoaded, [this] { _kept.load(); });
                Item& item = round->items[i];
                const AppEntry& app = round->app(i);
                item.entry = known(app.path);
                if (round->request.needs & (toolNeeds | SmartFolderNeed::bundle))
                    settle(
                        item, app, [](const Entry&) { return std::optional<BundleAnswers>(); }, stop);
                else if (!item.entry)
                    item.entry = std::make_shared<const Entry>();
                if (round->request.needs.testFlag(SmartFolderNeed::usage))
                    item.lastUsed = lastUsedBySystem(_machine.files, app.path);
                item.record = recordOf(*round, i, wanted(*round, app, *item.entry));
            },
            [this, round] { endReading(round); });
    }

    void endReading(const RoundPointer& round) {
        const bool isWhole =
            !round->stop.stop_requested() && !_isEnding &&
            std::ranges::all_of(round->items, [](const Item& item) { return item.record != nullptr; });
        if (!isWhole) {
            drop(*round);
        } else {
            for (std::size_t i = 0; i < round->items.size(); ++i)
                if (round->items[i].record->pending & toolNeeds)
                    round->waiting.push_back(i);
            tell(*round, round->waiting.empty());
            if (!round->waiting.empty())
                enter(_toolStage, round);
        }
        beginNext(_fileStage);
    }

    // ---- the tools

    void askTools(const RoundPointer& round) {
        spread(
            Lane::tools, round, round->waiting.size(),
            [this, round](std::size_t place, const std::stop_token& stop) {
                const std::size_t i = round->waiting[place];
                const AppEntry& app = round->app(i);
                // A copy, because the records are being read concurrently. An earlier request may have
                // found the answers.
                Item item = round->items[i];
                if (auto entry = known(app.path))
                    item.entry = std::move(entry);
                settle(
                    item, app, [&](const Entry& entry) { return asked(*round, app, entry, stop); },
                    stop);
                const std::lock_guard lock(round->mutex);
                round->items[i].entry = item.entry;
                round->items[i].record = recordOf(*round, i, wanted(*round, app, *item.entry));
                if (const Instant now = _machine.clock.now();
                    now - round->toldAt >= partialResultInterval)
                    tell(*round, false);
            },
            [this, round] { endAsking(round); });
    }

    void endAsking(const RoundPointer& round) {
        // What the tools have not answered by now is unknown.
        for (const std::size_t i : round->waiting)
            if (round->items[i].record->pending & toolNeeds)
                round->items[i].record = recordOf(*round, i, {});
        tell(*round, true);
        {
            const std::lock_guard lock(_cacheMutex);
            if (const auto saved = _kept.save(); !saved)
                _machine.log.warning(message(saved.error()));
        }
        beginNext(_toolStage);
    }

    /// What the tools need to be asked for, and can answer.
    static SmartFolderNeeds wanted(const Round& round, const AppEntry& app, const Entry& entry) {
        const SmartFolderNeeds needs = round.request.needs;
        SmartFolderNeeds result;
        result.setFlag(SmartFolderNeed::signature, needs.testFlag(SmartFolderNeed::signature) &&
                                                       !entry.answers.signature &&
                                                       entry.findings.exists && !isProtected(app) &&
                                                       round.tools.canReadSignatures());
        result.setFlag(SmartFolderNeed::architectures,
                       needs.testFlag(SmartFolderNeed::architectures) && !entry.answers.architectures &&
                           entry.findings.executablePath && round.tools.canReadArchitectures());
        return result;
    }

    /// The answers, including those of the tools that had to be asked; nullopt if none is new.
    static std::optional<BundleAnswers> asked(Round& round, const AppEntry& app, const Entry& entry,
                                              const std::stop_token& stop) {
        const SmartFolderNeeds needs = wanted(round, app, entry);
        BundleAnswers answers = entry.answers;
        if (needs.testFlag(SmartFolderNeed::architectures))
            answers.architectures = round.tools.architectures(*entry.findings.executablePath, stop);
        if (needs.testFlag(SmartFolderNeed::signature))
            answers.signature = round.tools.signature(app.path, stop);
        return answers == entry.answers ? std::nullopt : std::optional(std::move(answers));
    }

    // ---- entries

    /// Updates an item's entry and adds what `ask` returns; repeated if the bundle changed meanwhile.
    /// Gives up on a bundle that keeps changing, until the next round.
    template <typename Ask>
    void settle(Item& item, const AppEntry& app, Ask ask, const std::stop_token& stop) {
        for (int attempt = 0; attempt < maximumAttempts && !stop.stop_requested(); ++attempt) {
            bool isNew = refresh(item.entry, app);
            if (auto answers = ask(*item.entry)) {
                auto entry = std::make_shared<Entry>(*item.entry);
                entry->answers = *std::move(answers);
                item.entry = std::move(entry);
                isNew = true;
            }
            if (!isNew)
                return;
            item.entry = remember(app.path, item.entry);
            if (!std::exchange(item.wasInspected, true))
                ++inspectionCount;
        }
        if (!item.entry)
            item.entry = std::make_shared<const Entry>();
    }

    /// Rereads the bundle if the entry is outdated; returns whether it was.
    bool refresh(EntryPointer& entry, const AppEntry& app) {
        const FileSystem& files = _machine.files;
        // All that is compared later is queried before the bundle is read, so that a concurrent change
        // shows up as a difference.
        const QString infoPath =
            entry ? entry->infoPath : app.path + QStringLiteral("/Contents/Info.plist");
        auto infoStatus = statusOf(files, infoPath);
        const auto status = statusOf(files, app.path);
        const bool sameInfo = entry && entry->infoStatus == infoStatus;
        std::optional<Bundle> bundle;
        if (!sameInfo) {
            bundle = readBundle(files, app.path);
            if (bundle->infoPath != infoPath)
                infoStatus = statusOf(files, bundle->infoPath);
        }
        Fingerprint current{
            .standardizedPath = FileSystem::standardized(app.path),
            .modificationDate = status ? std::optional(status->modified) : std::nullopt,
            .fileSize = status ? std::optional<quint64>(status->size) : std::nullopt,
            .bundleIdentifier = app.bundleIdentifier,
            .originalName = app.originalName,
            .category = app.category,
            .version = sameInfo ? entry->fingerprint.version : bundle->version(),
            .build = sameInfo ? entry->fingerprint.build : bundle->build(),
        };
        const bool sameBundle = entry && entry->fingerprint == current;
        if (sameInfo && sameBundle)
            return false;
        if (!bundle)
            bundle = readBundle(files, app.path);
        Entry fresh{.fingerprint = std::move(current),
                    .infoPath = bundle->infoPath,
                    .infoStatus = infoStatus,
                    .findings = readBundleFindings(files, *bundle)};
        if (sameBundle) {
            fresh.answers = entry->answers;
        } else {
            const std::lock_guard lock(_cacheMutex);
            fresh.answers = _kept.answers(app.path, textOf(fresh));
        }
        entry = std::make_shared<const Entry>(std::move(fresh));
        return true;
    }

    EntryPointer known(const QString& path) {
        const std::lock_guard lock(_mutex);
        const auto found = _entries.find(path);
        return found == _entries.end() ? nullptr : found->second.entry;
    }

    /// Stores the entry, merged with the answers that another round has found meanwhile, and returns
    /// it.
    EntryPointer remember(const QString& path, EntryPointer entry) {
        {
            const std::lock_guard lock(_mutex);
            if (_entries.size() > maximumEntries)
                _entries.clear();
            Known& known = _entries[path];
            if (known.entry && known.entry->fingerprint == entry->fingerprint) {
                const BundleAnswers& others = known.entry->answers;
                BundleAnswers answers = entry->answers;
                if (!answers.signature)
                    answers.signature = others.signature;
                if (!answers.architectures)
                    answers.architectures = others.architectures;
                if (answers != entry->answers) {
                    auto joined = std::make_shared<Entry>(*entry);
                    joined->answers = std::move(answers);
                    entry = std::move(joined);
                }
            }
            known.entry = entry;
        }
        if (entry->answers != BundleAnswers()) {
            const std::lock_guard lock(_cacheMutex);
            _kept.keep(path, textOf(*entry), entry->answers);
        }
        return entry;
    }

    // ---- records

    /// Reuses the last record if nothing has changed.
    Record recordOf(const Round& round, std::size_t i, SmartFolderNeeds pending) {
        const AppEntry& app = round.app(i);
        const Item& item = round.items[i];
        auto facts = factsOf(app, item.entry->findings, item.entry->answers, item.lastUsed, pending,
                             round.request.runtime, _machine.places.home);
        const std::lock_guard lock(_mutex);
        Record& last = _entries[app.path].record;
        if (!last || *last != facts)
            last = std::make_shared<const SmartFolderAppFacts>(std::move(facts));
        return last;
    }

    /// Posts the records of all items to the main thread.
    void tell(Round& round, bool isComplete) {
        SmartFolderFactsList records;
        records.reserve(static_cast<qsizetype>(round.items.size()));
        for (const Item& item : round.items)
            records.append(item.record);
        round.toldAt = _machine.clock.now();
        _machine.workers.mailbox().post([self = shared_from_this(), stop = round.stop, isComplete,
                                         gathered = round.gathered, records = std::move(records)] {
            if (!stop.stop_requested() && !self->_isEnding)
                gathered(records, isComplete);
        });
        if (isComplete)
            drop(round);
    }

    /// Destroys the callback on the main thread: its captures may belong there.
    void drop(Round& round) {
        _machine.workers.mailbox().post([gathered = std::move(round.gathered)] {});
    }

    struct Known {
        EntryPointer entry;
        Record record; ///< the last one delivered
    };

    const Machine& _machine;
    std::mutex _mutex; ///< guards the stages' queues and the entries
    Stage _fileStage{&State::readBundles};
    Stage _toolStage{&State::askTools};
    std::unordered_map<QString, Known> _entries; ///< by path
    std::once_flag _cacheLoaded;
    std::mutex _cacheMutex;
    BundleAnswerCache _kept;
    std::atomic<bool> _isEnding = false;
};

SmartFolderFactsCatalog::SmartFolderFactsCatalog(const Machine& machine, const QString& cachePath)
    : _state(std::make_shared<State>(machine, cachePath)) {}

SmartFolderFactsCatalog::~SmartFolderFactsCatalog() { _state->end(); }

Task SmartFolderFactsCatalog::facts(Request request, Gathered gathered) {
    std::stop_source source;
    _state->add(std::move(request), source.get_token(), std::move(gathered));
    return Task(std::move(source));
}

quint64 SmartFolderFactsCatalog::inspectionCount() const { return _state->inspectionCount; }

} // namespace tessellar
