#include "updates/app_update_check.h"

#include "updates/app_update_settings.h"
#include "updates/known_app_updates.h"

#include <algorithm>

namespace tessellar {

AppUpdateInspection::AppUpdateInspection(Machine& machine, const QList<AppEntry>& apps, Done done)
    : _done(std::move(done)) {
    constexpr qsizetype atOnce = 64;
    _left = std::max<qsizetype>(1, (apps.size() + atOnce - 1) / atOnce);
    _found.resize(_left);
    for (qsizetype i = 0; i < _found.size(); ++i)
        _tasks.push_back(machine.workers.run(
            [&files = machine.files, part = apps.mid(i * atOnce, atOnce)](const std::stop_token& stop) {
                QList<AppUpdateCandidate> found;
                for (const AppEntry& app : part)
                    if (!stop.stop_requested())
                        found.append(inspectForUpdates(files, app));
                return found;
            },
            [this, i](const QList<AppUpdateCandidate>& found) {
                _found[i] = found;
                if (--_left > 0)
                    return;
                QList<AppUpdateCandidate> all;
                for (const QList<AppUpdateCandidate>& part : std::as_const(_found))
                    all += part;
                const Done tell = std::move(_done);
                tell(all); // may destroy this object
            }));
}

AppUpdateCheck::AppUpdateCheck(Machine& machine, AppUpdateChannels& channels, KnownAppUpdates& known,
                               const QList<AppEntry>& apps, AppUpdateCheckRequest request, bool isShown,
                               Ended ended)
    : _machine(machine)
    , _channels(channels)
    , _known(known)
    , _request(std::move(request))
    , _isShown(isShown)
    , _ended(std::move(ended))
    , _checking(channels.checkers().size()) {
    _inspection.emplace(machine, apps,
                        [this](const QList<AppUpdateCandidate>& found) { inspected(found); });
}

AppUpdateCheck::~AppUpdateCheck() = default;

void AppUpdateCheck::inspected(const QList<AppUpdateCandidate>& candidates) {
    _candidates = candidates;
    _places.reserve(_candidates.size());
    for (qsizetype i = 0; i < _candidates.size(); ++i)
        _places.insert(_candidates[i].appKey, i);
    _channels.updateCandidates(candidates);
    const auto& checkers = _channels.checkers();
    for (std::size_t i = 0; i < checkers.size(); ++i)
        if (isToDiscover(*checkers[i]))
            if (auto work = checkers[i]->discover(_candidates, sink(i))) {
                ++_discoveries;
                _discovering.push_back(std::move(work));
            }
    assign();
}

/// A full check asks all tools; others ask those that their applications need, and those that were
/// never asked, because they may own some of them.
bool AppUpdateCheck::isToDiscover(const AppUpdateChecker& checker) const {
    if (_request.isFull() || _request.asksAllTools || _request.channel == checker.kind())
        return true;
    if (!_request.appKeys)
        return !checker.isDiscovered();
    return std::ranges::any_of(_candidates, [&](const AppUpdateCandidate& candidate) {
        return isWanted(candidate) && (!checker.isDiscovered() || checker.channel(candidate));
    });
}

bool AppUpdateCheck::isWanted(const AppUpdateCandidate& candidate) const {
    return !_request.appKeys || _request.appKeys->contains(candidate.appKey);
}

AppUpdateSink AppUpdateCheck::sink(std::size_t checker) {
    return _lifetime.guard(
        [this, checker](const AppUpdateFinding& finding) { handle(checker, finding); });
}

/// Hands each application to the first checker that claims it, and takes it away from the previous one.
void AppUpdateCheck::assign() {
    _learning.cancel();
    std::vector<QList<AppUpdateCandidate>> shares(_checking.size());
    for (const AppUpdateCandidate& candidate : std::as_const(_candidates)) {
        if (!isWanted(candidate))
            continue;
        const std::size_t owner = ownerOf(candidate);
        const std::size_t had = _assigned.value(candidate.appKey, noChecker);
        if (owner == had)
            continue;
        if (had != noChecker)
            for (const auto& work : _checking[had])
                work->forget(candidate.appKey);
        if (owner == noChecker) {
            _assigned.remove(candidate.appKey);
            _left.remove(candidate.appKey);
            continue;
        }
        _assigned[candidate.appKey] = owner;
        _left.insert(candidate.appKey);
        shares[owner].append(candidate);
    }
    for (std::size_t i = 0; i < shares.size(); ++i)
        if (!shares[i].isEmpty())
            _checking[i].push_back(_channels.checkers()[i]->check(shares[i], sink(i)));
    _progress.total = _assigned.size();
    _progress.checked = _assigned.size() - _left.size();
    const auto alive = _lifetime.watch();
    _known.keepChannels();
    _known.publish();
    if (!alive.expired())
        progressed();
}

/// The checker that is to check it, or `noChecker`.
std::size_t AppUpdateCheck::ownerOf(const AppUpdateCandidate& candidate) const {
    const AppUpdateChecker* owner = _channels.checker(candidate);
    if (!owner || (_request.channel && *_request.channel != owner->kind()))
        return noChecker;
    const auto& checkers = _channels.checkers();
    const auto place = std::ranges::find(checkers, owner, &std::unique_ptr<AppUpdateChecker>::get);
    return static_cast<std::size_t>(place - checkers.begin());
}

/// All that checkers report.
void AppUpdateCheck::handle(std::size_t checker, const AppUpdateFinding& finding) {
    if (std::holds_alternative<ChannelsLearned>(finding)) {
        // Debounced: tools may report one application after another.
        if (!_learning.isActive())
            _learning = _machine.scheduler.after(learnDelay, [this] { assign(); });
    } else if (const auto* discovery = std::get_if<DiscoveryEnded>(&finding)) {
        --_discoveries;
        if (discovery->problem)
            _problems.append({_channels.checkers()[checker]->kind(), *discovery->problem});
        assign();
    } else if (const auto* begun = std::get_if<AppCheckBegan>(&finding)) {
        if (!_left.contains(begun->appKey))
            return;
        _progress.currentAppKey = begun->appKey;
        _progress.currentAppName = _candidates.at(_places.value(begun->appKey)).name;
        progressed();
    } else {
        const auto& [appKey, verdict] = std::get<AppCheckEnded>(finding);
        if (!_left.contains(appKey) || _assigned.value(appKey, noChecker) != checker)
            return;
        if (!isUpdateCheckingEnabled(_machine.settings))
            return end(true);
        const AppUpdateCandidate candidate = _candidates.at(_places.value(appKey));
        _left.remove(appKey);
        ++_progress.checked;
        const auto alive = _lifetime.watch();
        _known.recordVerdict(candidate, *_channels.checkers()[checker], verdict, _replaced);
        if (!alive.expired())
            progressed();
    }
}

/// Tells of the progress, and of the end once all have ended.
void AppUpdateCheck::progressed() {
    const auto alive = _lifetime.watch();
    if (_isShown)
        _known.notify(AppUpdateEvent::Kind::progressed);
    if (alive.expired() || !_left.isEmpty() || _discoveries > 0 || _ending.isActive())
        return;
    _ending = _machine.scheduler.after(std::chrono::milliseconds(0), [this] {
        if (_left.isEmpty() && _discoveries == 0)
            end(false);
    });
}

void AppUpdateCheck::end(bool isDisabled) {
    const Ended ended = std::move(_ended);
    ended(*this, isDisabled); // may destroy this object
}

void AppUpdateCheck::revert() { _known.revert(_replaced); }

} // namespace tessellar
