#include "updates/homebrew_update_checker.h"

namespace tessellar {

/// Thousands of casks in full have some ten megabytes.
constexpr std::uint64_t maximumListingBytes = 32u << 20;

/// Asks the brews, each in its lane, and hands over what they told when the last has answered.
class HomebrewUpdateChecker::Preparation final : public AppUpdateWork {
public:
    Preparation(HomebrewUpdateChecker& checker, QList<AppUpdateCandidate> applications,
                QMap<QString, AppUpdateRecord> known, Depth depth, std::function<void()> done)
        : candidates(std::move(applications))
        , records(std::move(known))
        , _checker(checker)
        , _depth(depth)
        , _done(std::move(done)) {
        Machine& machine = checker._machine;
        _search = machine.workers.run([&files = machine.files, environment = machine.environment](
                                          std::stop_token) { return findBrews(files, environment); },
                                      [this](const QStringList& brews) { found(brews); });
    }
    ~Preparation() override { _stop.request_stop(); }

    QList<AppUpdateCandidate> candidates;
    QMap<QString, AppUpdateRecord> records;

private:
    using Answer = std::optional<HomebrewCaskSnapshot>;

    void found(const QStringList& brews) {
        _result.discoveredExecutablePaths = brews;
        _answers.resize(brews.size());
        _left = brews.size();
        if (_left == 0)
            return finish();
        Machine& machine = _checker._machine;
        for (qsizetype i = 0; i < brews.size(); ++i)
            _checker._lanes.run(
                brews[i], _stop.get_token(),
                [&machine, brew = brews[i], depth = _depth](const std::stop_token& stop) {
                    return ask(machine, brew, depth, stop);
                },
                [this, i, alive = std::weak_ptr(_alive)](Answer answer) {
                    if (alive.expired())
                        return;
                    _answers[i] = std::move(answer);
                    if (--_left == 0)
                        finish();
                });
    }

    static Answer ask(const Machine& machine, const QString& brew, Depth depth,
                      const std::stop_token& stop) {
        const auto run = [&](QList<QByteArray> arguments) -> std::optional<QByteArray> {
            const CommandResult result =
                machine.commands.run(listing(machine, brew, std::move(arguments)), stop);
            if (!result.succeeded() || result.outputTruncated)
                return std::nullopt;
            return result.standardOutput;
        };
        HomebrewCaskSnapshot snapshot{.brewExecutablePath = brew};
        if (depth == Depth::statuses) {
            const auto output = run({"outdated", "--cask", "--json=v2"});
            const auto outdated = decodeOutdated(output.value_or(QByteArray()));
            if (!outdated)
                return std::nullopt;
            for (const OutdatedCask& cask : outdated->casks)
                snapshot.outdated.insert(cask.name, cask.currentVersion);
        }
        const auto output = run({"info", "--json=v2", "--cask", "--installed"});
        const auto info = decodeInfo(output.value_or(QByteArray()));
        if (!info)
            return std::nullopt;
        for (const InfoCask& cask : info->casks)
            snapshot.casks.append(decodedCask(cask));
        buildMatches(machine.files, machine.places.home, snapshot);
        return snapshot;
    }

    void finish() {
        for (qsizetype i = 0; i < _answers.size(); ++i) {
            if (_answers[i])
                _result.snapshots.append(*std::move(_answers[i]));
            else
                _result.failedExecutablePaths.append(_result.discoveredExecutablePaths[i]);
        }
        _checker.learned(*this, _result);
        const auto done = std::move(_done);
        done(); // may destroy this object
    }

    HomebrewUpdateChecker& _checker;
    Depth _depth;
    std::function<void()> _done;
    HomebrewCaskCheckResult _result;
    QList<Answer> _answers;
    qsizetype _left = 0;
    std::stop_source _stop;
    std::shared_ptr<bool> _alive = std::make_shared<bool>();
    Task _search;
};

Command HomebrewUpdateChecker::listing(const Machine& machine, const QString& brew,
                                       QList<QByteArray> arguments) {
    auto environment = machine.environment;
    environment["LC_ALL"] = "C";
    return {.executable = machine.files.hostPath(brew),
            .arguments = std::move(arguments),
            .environment = std::move(environment),
            .timeout = std::chrono::seconds(90),
            .maximumOutput = maximumListingBytes,
            .input = {},
            .terminationGrace = 2 * std::chrono::seconds(1)};
}

std::unique_ptr<AppUpdateWork>
HomebrewUpdateChecker::prepare(const QList<AppUpdateCandidate>& candidates,
                               const QMap<QString, AppUpdateRecord>& records, Depth depth,
                               const std::function<void()>& done) {
    return std::make_unique<Preparation>(*this, candidates, records, depth, done);
}

void HomebrewUpdateChecker::learned(const Preparation& preparation,
                                    const HomebrewCaskCheckResult& result) {
    _discoveredExecutablePaths = result.discoveredExecutablePaths;
    _isPrepared = true;
    QHash<QString, HomebrewCaskOwnership> ownership;
    for (const AppUpdateCandidate& candidate : preparation.candidates) {
        if (auto owner = result.owner(candidate.resolvedPath)) {
            ownership.insert(candidate.appKey, *std::move(owner));
            continue;
        }
        // A brew that did not answer still owns what it owned.
        if (auto before = _ownership.constFind(candidate.appKey); before != _ownership.constEnd()) {
            if (result.failedExecutablePaths.contains(before->brewExecutablePath)) {
                HomebrewCaskOwnership kept = *before;
                kept.status = UpdateCheckFailed();
                ownership.insert(candidate.appKey, kept);
            }
            continue;
        }
        const QString recorded =
            preparation.records.value(candidate.appKey).sourceFingerprint.value_or(QString());
        for (const QString& path : result.failedExecutablePaths)
            if (isHomebrewFingerprint(recorded, {path}))
                ownership.insert(
                    candidate.appKey,
                    {.brewExecutablePath = path,
                     .catalogVersion = recorded.sliced(recorded.indexOf(path + u':') + path.size() + 1),
                     .status = UpdateCheckFailed()});
    }
    _ownership = std::move(ownership);
}

std::optional<AppUpdateChannel>
HomebrewUpdateChecker::channel(const AppUpdateCandidate& candidate) const {
    const auto owner = _ownership.constFind(candidate.appKey);
    if (owner == _ownership.constEnd())
        return std::nullopt;
    return HomebrewCaskChannel{owner->token};
}

QString HomebrewUpdateChecker::fingerprint(const AppUpdateCandidate& candidate) const {
    return _ownership.value(candidate.appKey).fingerprint();
}

bool HomebrewUpdateChecker::accepts(const QString& recordedFingerprint,
                                    const AppUpdateCandidate& candidate) const {
    if (const auto owner = _ownership.constFind(candidate.appKey); owner != _ownership.constEnd())
        return recordedFingerprint == owner->fingerprint();
    return !_isPrepared && isHomebrewFingerprint(recordedFingerprint, _discoveredExecutablePaths);
}

std::unique_ptr<AppUpdateWork> HomebrewUpdateChecker::check(QList<AppUpdateCandidate> candidates,
                                                            AppUpdateObserver observer) {
    /// The brews have told everything before; what is left is to say it.
    class Telling final : public AppUpdateWork {
    public:
        Timer timer;
        std::shared_ptr<const AppUpdateObserver> observer;
    };
    auto telling = std::make_unique<Telling>();
    telling->observer = std::make_shared<const AppUpdateObserver>(std::move(observer));
    QList<std::pair<QString, AppUpdateStatus>> verdicts;
    for (const AppUpdateCandidate& candidate : std::as_const(candidates)) {
        const auto owner = _ownership.constFind(candidate.appKey);
        verdicts.append({candidate.appKey, owner == _ownership.constEnd()
                                               ? AppUpdateStatus(UpdateCheckFailed())
                                               : owner->status});
    }
    telling->timer = _machine.scheduler.after(
        std::chrono::milliseconds(0),
        [verdicts = std::move(verdicts), observer = std::weak_ptr(telling->observer)] {
            for (const auto& [appKey, status] : verdicts) {
                if (const auto told = observer.lock())
                    told->began(appKey);
                if (const auto told = observer.lock())
                    told->ended(appKey, status);
            }
        });
    return telling;
}

} // namespace tessellar
