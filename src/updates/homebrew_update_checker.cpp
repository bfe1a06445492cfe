#include "updates/homebrew_update_checker.h"

#include "platform/lifetime.h"
#include "updates/untrusted_text.h"

#include <QSet>

namespace tessellar {

/// Thousands of casks take some ten megabytes.
constexpr std::uint64_t maximumListingBytes = 32u << 20;
constexpr qsizetype longestComplaint = 200;

namespace {

template <typename Response>
using Listed = std::expected<Response, AppUpdateReason>;

/// The last line of a tool's error output.
QString complaint(const CommandResult& result) {
    const QByteArray said =
        result.standardError.trimmed().isEmpty() ? result.standardOutput : result.standardError;
    return toSingleLine(QString::fromUtf8(said.trimmed().split('\n').last()), longestComplaint);
}

/// Runs one listing command; blocks.
template <typename Response>
Listed<Response> list(const Machine& machine, const QString& brew, QList<QByteArray> arguments,
                      json::Decoded<Response> (*decode)(const QByteArray&),
                      const std::stop_token& stop) {
    using enum AppUpdateReason::Code;
    const CommandResult result =
        machine.commands.run(HomebrewUpdateChecker::listing(machine, brew, std::move(arguments)), stop);
    if (result.outcome == CommandResult::Outcome::timedOut)
        return std::unexpected(AppUpdateReason{brewTimedOut, {}});
    if (!result.succeeded())
        return std::unexpected(AppUpdateReason{brewFailed, complaint(result)});
    auto listing = decode(result.standardOutput);
    if (!listing || result.outputTruncated)
        return std::unexpected(AppUpdateReason{brewNotUnderstood, {}});
    return *std::move(listing);
}

} // namespace

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

// ---- ownership

/// Asks the brews for their casks, each in its lane; each answer counts at once.
class HomebrewUpdateChecker::Discovery final : public AppUpdateWork {
public:
    Discovery(HomebrewUpdateChecker& checker, QList<AppUpdateCandidate> candidates, AppUpdateSink sink)
        : _checker(checker)
        , _registry(checker._alive)
        , _candidates(std::move(candidates))
        , _sink(std::move(sink)) {
        Machine& machine = checker._machine;
        ++checker._searches;
        QSet<QString> owning;
        for (const HomebrewCaskOwnership& known : std::as_const(checker._owners))
            owning.insert(known.brewExecutablePath);
        _search = machine.workers.run(
            [&files = machine.files, environment = machine.environment, owning](std::stop_token) {
                QStringList brews = findBrews(files, environment);
                // A brew that owned something is asked unless it is certainly gone.
                for (const QString& brew : owning)
                    if (const auto there = files.status(brew);
                        !there && there.error().code != FileError::Code::notFound &&
                        !brews.contains(brew))
                        brews.append(brew);
                return brews;
            },
            [this](const QStringList& brews) { found(brews); });
    }
    ~Discovery() override {
        _stop.request_stop();
        const auto checker = _registry.lock();
        if (!checker)
            return;
        if (!_isFound)
            --_checker._searches;
        for (const QString& brew : std::as_const(_left))
            --_checker._asked[brew];
        _checker.askSoon();
    }
    void forget(const QString&) override {}

private:
    using Answer = Listed<HomebrewCaskSnapshot>;

    void found(const QStringList& brews) {
        _isFound = true;
        --_checker._searches;
        _brews = brews;
        _left = brews;
        if (brews.isEmpty())
            return tell();
        Machine& machine = _checker._machine;
        for (const QString& brew : brews) {
            ++_checker._asked[brew];
            _checker._lanes.run(
                brew, _stop.get_token(),
                [&machine, brew](const std::stop_token& stop) { return ask(machine, brew, stop); },
                [this, brew, alive = _lifetime.watch()](Answer answer) {
                    if (alive.expired())
                        return;
                    _checker._silent.remove(brew);
                    if (answer) {
                        _answers.insert(brew, *std::move(answer));
                    } else {
                        _problem = answer.error();
                        if (_problem->code == AppUpdateReason::Code::brewTimedOut)
                            _checker._silent.insert(brew, *_problem);
                    }
                    _left.removeOne(brew);
                    --_checker._asked[brew];
                    tell();
                });
        }
    }

    static Answer ask(const Machine& machine, const QString& brew, const std::stop_token& stop) {
        const auto info = list<InfoResponse>(
            machine, brew, {"info", "--json=v2", "--cask", "--installed"}, &decodeInfo, stop);
        if (!info)
            return std::unexpected(info.error());
        HomebrewCaskSnapshot snapshot{.brewExecutablePath = brew, .casks = info->casks};
        buildMatches(machine.files, machine.places.home, snapshot);
        return snapshot;
    }

    void tell() {
        HomebrewCaskCheckResult result;
        for (const QString& brew : std::as_const(_brews)) {
            if (const auto answer = _answers.constFind(brew); answer != _answers.constEnd())
                result.snapshots.append(*answer);
            else
                result.failedExecutablePaths.append(brew);
        }
        _checker.learn(_candidates, result);
        _checker.askSoon();
        const auto alive = _lifetime.watch();
        const AppUpdateSink sink = _sink;
        if (_left.isEmpty() && !_problem)
            _checker._isDiscovered = true;
        sink(ChannelsLearned());
        if (!alive.expired() && _left.isEmpty())
            sink(DiscoveryEnded{std::exchange(_problem, std::nullopt)});
    }

    HomebrewUpdateChecker& _checker;
    std::weak_ptr<HomebrewUpdateChecker*> _registry;
    QList<AppUpdateCandidate> _candidates;
    AppUpdateSink _sink;
    bool _isFound = false;
    QStringList _brews;
    QStringList _left; ///< not yet answered
    QHash<QString, HomebrewCaskSnapshot> _answers;
    std::optional<AppUpdateReason> _problem;
    std::stop_source _stop;
    Lifetime _lifetime;
    Task _search;
};

std::unique_ptr<AppUpdateWork>
HomebrewUpdateChecker::discover(const QList<AppUpdateCandidate>& candidates, AppUpdateSink sink) {
    return std::make_unique<Discovery>(*this, candidates, std::move(sink));
}

void HomebrewUpdateChecker::learn(const QList<AppUpdateCandidate>& candidates,
                                  const HomebrewCaskCheckResult& result) {
    QMap<QString, HomebrewCaskOwnership> owners = _owners; // keeps those that are out of sight now
    for (const AppUpdateCandidate& candidate : candidates) {
        owners.remove(candidate.appKey);
        if (const auto told = result.owner(candidate.resolvedPath)) {
            owners.insert(candidate.appKey, *told);
            continue;
        }
        // While a brew does not answer, it keeps what it owned.
        const HomebrewCaskOwnership* before = owner(candidate);
        if (before && result.failedExecutablePaths.contains(before->brewExecutablePath))
            owners.insert(candidate.appKey, *before);
    }
    _owners = std::move(owners);
}

const HomebrewCaskOwnership* HomebrewUpdateChecker::owner(const AppUpdateCandidate& candidate) const {
    const auto found = _owners.constFind(candidate.appKey);
    const bool isIts =
        found != _owners.constEnd() && (found->path.isEmpty() || found->path == candidate.resolvedPath);
    return isIts ? &*found : nullptr;
}

std::optional<AppUpdateChannel>
HomebrewUpdateChecker::channel(const AppUpdateCandidate& candidate) const {
    const HomebrewCaskOwnership* cask = owner(candidate);
    return cask ? std::optional<AppUpdateChannel>(HomebrewCaskChannel{cask->token}) : std::nullopt;
}

QString HomebrewUpdateChecker::fingerprint(const AppUpdateCandidate& candidate) const {
    const HomebrewCaskOwnership* cask = owner(candidate);
    return cask ? cask->fingerprint() : QString();
}

void HomebrewUpdateChecker::restore(const AppUpdateCache& cache) {
    _isDiscovered = cache.owners.has_value();
    if (cache.owners)
        for (const auto& [appKey, known] : cache.owners->asKeyValueRange())
            if (isCaskToken(known.token))
                _owners.insert(appKey, known);
    // An old record tells the brew, though not the cask.
    for (const auto& [appKey, record] : cache.records.asKeyValueRange())
        if (auto told = ownershipOf(record.sourceFingerprint.value_or(QString()));
            told && !_owners.contains(appKey))
            _owners.insert(appKey, *std::move(told));
}

void HomebrewUpdateChecker::keep(AppUpdateCache& cache) const {
    if (_isDiscovered || cache.owners)
        cache.owners = _owners;
}

// ---- outdated casks

/// One check: its applications wait until their brews are free.
class HomebrewUpdateChecker::Run final : public AppUpdateWork {
public:
    Run(HomebrewUpdateChecker& checker, QList<AppUpdateCandidate> candidates, AppUpdateSink sink)
        : waiting(std::move(candidates))
        , _checker(checker)
        , _registry(checker._alive)
        , _sink(std::move(sink)) {
        checker._runs.push_back(this);
    }
    ~Run() override {
        if (_registry.expired())
            return;
        _checker._runs.remove(this);
        for (const QString& brew : asked.keys()) {
            // A listing that has just been answered has ended already.
            const auto listing = _checker._listings.find(brew);
            if (listing != _checker._listings.end() &&
                std::ranges::none_of(_checker._runs,
                                     [&](const Run* run) { return run->asked.contains(brew); }))
                listing->request_stop();
        }
    }
    void forget(const QString& appKey) override {
        const auto isIt = [&](const AppUpdateCandidate& one) { return one.appKey == appKey; };
        waiting.removeIf(isIt);
        for (auto& candidates : asked)
            candidates.removeIf(isIt);
    }

    void answered(const QString& brew, const Listed<OutdatedResponse>& answer) {
        QList<AppUpdateCandidate> candidates = asked.value(brew);
        const auto alive = _lifetime.watch();
        const AppUpdateSink sink = _sink;
        for (; !candidates.isEmpty(); candidates = asked.value(brew)) {
            const AppUpdateCandidate candidate = asked[brew].takeFirst();
            const HomebrewCaskOwnership* cask = _checker.owner(candidate);
            const AppUpdateVerdict found =
                !answer ? AppUpdateVerdict::failed(answer.error())
                : cask && !cask->token.isEmpty()
                    ? verdict(*cask, *answer)
                    : AppUpdateVerdict::failed({AppUpdateReason::Code::brewNotUnderstood, {}});
            sink(AppCheckBegan{candidate.appKey});
            if (!alive.expired())
                sink(AppCheckEnded{candidate.appKey, found});
            if (alive.expired())
                return;
        }
        asked.remove(brew);
    }

    QList<AppUpdateCandidate> waiting;
    QMap<QString, QList<AppUpdateCandidate>> asked; ///< by brew

private:
    HomebrewUpdateChecker& _checker;
    std::weak_ptr<HomebrewUpdateChecker*> _registry;
    AppUpdateSink _sink;
    Lifetime _lifetime;
};

std::unique_ptr<AppUpdateWork> HomebrewUpdateChecker::check(QList<AppUpdateCandidate> candidates,
                                                            AppUpdateSink sink) {
    auto run = std::make_unique<Run>(*this, std::move(candidates), std::move(sink));
    askSoon();
    return run;
}

bool HomebrewUpdateChecker::isBusy(const QString& brew) const {
    return _searches > 0 || _asked.value(brew) > 0 || _listings.contains(brew);
}

/// Deferred, so that checks that begin together share an answer, and nothing is reported before `check`
/// returns.
void HomebrewUpdateChecker::askSoon() {
    _asking = _machine.scheduler.after(std::chrono::milliseconds(0), [this] { ask(); });
}

void HomebrewUpdateChecker::ask() {
    QSet<QString> brews;
    for (Run* run : _runs)
        run->waiting.removeIf([&](const AppUpdateCandidate& candidate) {
            const HomebrewCaskOwnership* cask = owner(candidate);
            const QString brew = cask ? cask->brewExecutablePath : QString();
            if (isBusy(brew))
                return false;
            run->asked[brew].append(candidate);
            brews.insert(brew);
            return true;
        });
    for (const QString& brew : std::as_const(brews)) {
        const std::stop_token token = (_listings[brew] = std::stop_source()).get_token();
        const auto answered = [this, brew,
                               alive = std::weak_ptr(_alive)](const Listed<OutdatedResponse>& answer) {
            if (alive.expired())
                return;
            _listings.remove(brew);
            askSoon(); // for those that missed this answer
            for (Run* run : std::list(_runs))
                if (!alive.expired() && std::ranges::find(_runs, run) != _runs.end())
                    run->answered(brew, answer);
        };
        // A brew that has just failed to answer is not asked again, and no brew never.
        const AppUpdateReason noBrew{AppUpdateReason::Code::brewFailed, {}};
        if (brew.isEmpty() || _silent.contains(brew)) {
            _machine.workers.mailbox().post([answered, reason = _silent.value(brew, noBrew)] {
                answered(std::unexpected(reason));
            });
            continue;
        }
        _lanes.run(
            brew, token,
            [&machine = _machine, brew](const std::stop_token& stop) {
                return list<OutdatedResponse>(machine, brew, {"outdated", "--cask", "--json=v2"},
                                              &decodeOutdated, stop);
            },
            answered);
    }
}

} // namespace tessellar
