#include "smartfolders/smart_folder_facts_catalog.h"

#include <deque>
#include <mutex>
#include <unordered_map>

namespace tessellar {

namespace {

using Fingerprint = SmartFolderFactsCatalog::Fingerprint;
using Request = SmartFolderFactsCatalog::Request;

constexpr int maximumAttempts = 3;
constexpr std::size_t maximumEntries = 20'000;

/// What is remembered of a bundle.
struct Entry {
    Fingerprint fingerprint;
    QString infoPath;
    std::optional<FileStatus> infoStatus; ///< tells without reading that version and build are the same
    BundleFindings findings;
    SignatureFindings signature;
    std::optional<QStringList> architectures;
    bool inspectedArchitecture = false;
    bool inspectedSigningTeamID = false;
    std::shared_ptr<const SmartFolderAppFacts> record; ///< the last one that was given out
};

std::optional<FileStatus> statusOf(const FileSystem& files, const QString& path) {
    const auto status = files.status(path);
    return status ? std::optional(*status) : std::nullopt;
}

SmartFolderDistributionChannel channel(const AppEntry& app, const BundleFindings& findings) {
    using enum SmartFolderDistributionChannel;
    if (findings.isFromStore)
        return macAppStore;
    if (FileSystem::isWithin(app.path, QStringLiteral("/System")) ||
        FileSystem::isWithin(app.path, QStringLiteral("/Library/Apple")) ||
        app.source == AppSource::system)
        return system;
    if (findings.hasSparkle)
        return sparkle;
    const QString identifier = app.bundleIdentifier.value_or(QString());
    if (findings.hasKeystone || identifier.startsWith(u"com.microsoft.", Qt::CaseInsensitive))
        return vendor;
    return unsupported;
}

template <typename Map>
std::optional<typename Map::mapped_type> found(const Map& map, const QString& key) {
    const auto it = map.constFind(key);
    return it == map.constEnd() ? std::nullopt : std::optional(*it);
}

SmartFolderAppFacts factsOf(const AppEntry& app, const Entry& entry,
                            const SmartFolderRuntimeFacts& runtime, const QString& home) {
    const BundleFindings& bundle = entry.findings;
    const QString key = appKey(app);
    SmartFolderAppFacts facts{
        .entry = app,
        .developer = bundle.storeArtist ? bundle.storeArtist : entry.signature.developer,
        .publisher = bundle.publisher,
        .signingTeamID = entry.signature.teamID,
        .version = bundle.version,
        .build = bundle.build,
        .installedDate = bundle.installedDate,
        .firstSeenDate = found(runtime.firstSeenDates, key),
        .applicationLocation = SmartFolderFactsCatalog::location(app, home),
        .distributionChannel = found(runtime.distributionChannels, key),
        .platform = bundle.platform,
        .architectures = entry.architectures,
        .minimumMacOSVersion = bundle.minimumMacOSVersion,
        .lastUsedDate = found(runtime.lastUsedDates, key),
        .launchCount = found(runtime.launchCounts, key),
        .hasCustomIcon = runtime.customIconKeys.contains(key),
        .declaredPermissions = bundle.declaredPermissions,
    };
    if (bundle.exists) {
        facts.installSource = bundle.isFromStore ? SmartFolderInstallSource::macAppStore
                                                 : SmartFolderInstallSource::manual;
        if (!facts.distributionChannel)
            facts.distributionChannel = channel(app, bundle);
    }
    if (facts.lastUsedDate || facts.launchCount.value_or(0) > 0)
        facts.isNeverUsed = false;
    else if (runtime.usageDataIsComplete)
        facts.isNeverUsed = true;
    if (runtime.updateCheckingEnabled)
        facts.updateStatus =
            found(runtime.updateStatuses, key).value_or(SmartFolderUpdateState::notChecked);
    return facts;
}

} // namespace

SmartFolderApplicationLocation SmartFolderFactsCatalog::location(const AppEntry& app,
                                                                 const QString& home) {
    using enum SmartFolderApplicationLocation;
    if (isNestedInAnotherApplication(app.path))
        return nestedApplication;
    if (app.source == AppSource::system || FileSystem::isWithin(app.path, QStringLiteral("/System")))
        return system;
    if (FileSystem::isWithin(app.path, FileSystem::joined(home, QStringLiteral("Applications"))))
        return userApplications;
    if (FileSystem::isWithin(app.path, QStringLiteral("/Applications")))
        return applications;
    return other;
}

/// The requests and what is remembered. One request is worked on at a time: its first step takes the
/// entries that it needs out of the cache and its last one puts them back, so that the workers in
/// between have them for themselves and no bundle is inspected twice at once.
class SmartFolderFactsCatalog::State : public std::enable_shared_from_this<State> {
public:
    explicit State(const Machine& machine) : _machine(machine) {}

    void add(Request request, std::stop_token stop, Done done) {
        auto round =
            std::make_shared<Round>(_machine, std::move(request), std::move(stop), std::move(done));
        {
            const std::lock_guard lock(_mutex);
            _waiting.push_back(std::move(round));
            if (std::exchange(_isWorking, true))
                return;
        }
        beginNext();
    }

    /// On the main thread, where results arrive.
    void end() { _isEnding = true; }

    std::atomic<quint64> inspectionCount = 0;

private:
    struct Item {
        std::optional<Entry> entry;
        std::shared_ptr<const SmartFolderAppFacts> record;
    };
    struct Round {
        Round(const Machine& machine, Request asked, std::stop_token token, Done call)
            : request(std::move(asked))
            , stop(std::move(token))
            , done(std::move(call))
            , tools(machine)
            , items(request.apps.size()) {}
        Request request;
        std::stop_token stop;
        Done done;
        BundleTools tools;
        std::vector<Item> items;
        std::atomic<std::size_t> next = 0;
        std::atomic<unsigned> working = 0;
    };

    /// Puts the next round on all workers, or rests.
    void beginNext() {
        std::shared_ptr<Round> round;
        {
            const std::lock_guard lock(_mutex);
            if (_waiting.empty()) {
                _isWorking = false;
                return;
            }
            round = std::move(_waiting.front());
            _waiting.pop_front();
        }
        for (std::size_t i = 0; i < round->items.size(); ++i) {
            const auto known = _cache.find(round->request.apps.at(i).path);
            if (known == _cache.end())
                continue;
            round->items[i].entry = std::move(known->second);
            _cache.erase(known);
        }
        const Lane lane = round->request.inspections.empty() ? Lane::files : Lane::tools;
        const auto workers =
            std::clamp<std::size_t>(round->items.size(), 1, _machine.workers.threadCount());
        round->working = static_cast<unsigned>(workers);
        for (std::size_t i = 0; i < workers; ++i)
            _machine.workers.submit(lane, round->stop,
                                    [self = shared_from_this(), round](std::stop_token stop) {
                                        self->work(*round, stop);
                                        if (--round->working == 0)
                                            self->finish(*round);
                                    });
    }

    void work(Round& round, const std::stop_token& stop) {
        for (std::size_t i = round.next++;
             i < round.items.size() && !stop.stop_requested() && !_isEnding; i = round.next++) {
            Item& item = round.items[i];
            const AppEntry& app = round.request.apps.at(static_cast<qsizetype>(i));
            bool inspected = false;
            // Once more when the bundle changed meanwhile; one that never rests is left to another
            // time.
            for (int attempt = 0; attempt < maximumAttempts && inspect(app, item.entry, round, stop);
                 ++attempt)
                inspected = true;
            inspectionCount += inspected;
            auto facts = factsOf(app, *item.entry, round.request.runtime, _machine.places.home);
            if (!item.entry->record || *item.entry->record != facts)
                item.entry->record = std::make_shared<const SmartFolderAppFacts>(std::move(facts));
            item.record = item.entry->record;
        }
    }

    /// Brings an entry up to date; false when it was.
    bool inspect(const AppEntry& app, std::optional<Entry>& entry, Round& round,
                 const std::stop_token& stop) {
        const FileSystem& files = _machine.files;
        // All that is compared later is asked before the bundle is read: what changes meanwhile differs
        // then.
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
        const Fingerprint current{
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
        bool did = false;
        if (!sameInfo || !sameBundle) {
            if (!bundle)
                bundle = readBundle(files, app.path);
            if (!sameBundle)
                entry = Entry{.record = entry ? std::move(entry->record) : nullptr};
            entry->fingerprint = current;
            entry->infoPath = bundle->infoPath;
            entry->infoStatus = infoStatus;
            entry->findings = readBundleFindings(files, *bundle);
            did = true;
        }
        const auto& needed = round.request.inspections;
        const auto& executable = entry->findings.executablePath;
        if (needed.contains(SmartFolderInspection::architectures) && !entry->inspectedArchitecture &&
            executable) {
            if (auto answer = round.tools.architectures(*executable, stop)) {
                entry->architectures = *std::move(answer);
                entry->inspectedArchitecture = did = true;
            }
        }
        if (needed.contains(SmartFolderInspection::signature) && !entry->inspectedSigningTeamID &&
            status) {
            if (auto answer = round.tools.signature(app.path, stop)) {
                entry->signature = std::move(*answer).value_or(SignatureFindings());
                entry->inspectedSigningTeamID = did = true;
            }
        }
        return did;
    }

    void finish(Round& round) {
        if (_cache.size() > maximumEntries)
            _cache.clear();
        SmartFolderFactsList records;
        for (std::size_t i = 0; i < round.items.size(); ++i) {
            Item& item = round.items[i];
            if (item.entry)
                _cache.insert_or_assign(round.request.apps.at(static_cast<qsizetype>(i)).path,
                                        std::move(*item.entry));
            if (item.record)
                records.append(std::move(item.record));
        }
        if (records.size() == round.request.apps.size())
            _machine.workers.mailbox().post([self = shared_from_this(), stop = round.stop,
                                             done = std::move(round.done),
                                             records = std::move(records)]() mutable {
                if (!stop.stop_requested() && !self->_isEnding)
                    done(std::move(records));
            });
        beginNext();
    }

    const Machine& _machine;
    std::mutex _mutex; ///< of the queue; the cache belongs to the round that is worked on
    std::deque<std::shared_ptr<Round>> _waiting;
    bool _isWorking = false;
    std::unordered_map<QString, Entry> _cache; ///< by path
    std::atomic<bool> _isEnding = false;
};

SmartFolderFactsCatalog::SmartFolderFactsCatalog(const Machine& machine)
    : _state(std::make_shared<State>(machine)) {}

SmartFolderFactsCatalog::~SmartFolderFactsCatalog() { _state->end(); }

Task SmartFolderFactsCatalog::facts(Request request, Done done) {
    std::stop_source source;
    _state->add(std::move(request), source.get_token(), std::move(done));
    return Task(std::move(source));
}

quint64 SmartFolderFactsCatalog::inspectionCount() const { return _state->inspectionCount; }

} // namespace tessellar
