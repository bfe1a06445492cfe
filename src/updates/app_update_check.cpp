#include "updates/app_update_check.h"

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

/// Passes one checker's findings to the check.
class AppUpdateCheck::Findings final : public AppUpdateFindings {
public:
    Findings(std::weak_ptr<AppUpdateCheck*> check, std::size_t checker)
        : _check(std::move(check)), _checker(checker) {}
    void learned() override {
        if (AppUpdateCheck* const told = check())
            told->learned();
    }
    void discovered(const std::optional<AppUpdateReason>& problem) override {
        if (AppUpdateCheck* const told = check())
            told->discovered(_checker, problem);
    }
    void began(const QString& appKey) override {
        if (AppUpdateCheck* const told = check())
            told->began(appKey);
    }
    void ended(const QString& appKey, const AppUpdateVerdict& verdict) override {
        if (AppUpdateCheck* const told = check())
            told->ended(_checker, appKey, verdict);
    }

private:
    /// Null once the check is destroyed. Does not keep the token: a notification may destroy the check,
    /// which watches the token to notice.
    AppUpdateCheck* check() const {
        const auto alive = _check.lock();
        return alive ? *alive : nullptr;
    }

    std::weak_ptr<AppUpdateCheck*> _check;
    std::size_t _checker;
};

AppUpdateCheck::AppUpdateCheck(Machine& machine, const Checkers& checkers, const QList<AppEntry>& apps,
                               AppUpdateCheckRequest request, Listener& listener)
    : _machine(machine)
    , _checkers(checkers)
    , _request(std::move(request))
    , _listener(listener)
    , _checking(checkers.size()) {
    _inspection.emplace(machine, apps,
                        [this](const QList<AppUpdateCandidate>& found) { begin(found); });
}

AppUpdateCheck::~AppUpdateCheck() = default;

void AppUpdateCheck::begin(const QList<AppUpdateCandidate>& candidates) {
    _candidates = candidates;
    for (qsizetype i = 0; i < _candidates.size(); ++i)
        _places.insert(_candidates[i].appKey, i);
    const std::weak_ptr<AppUpdateCheck*> alive = _alive;
    _listener.inspected(*this, candidates);
    if (alive.expired())
        return;
    for (std::size_t i = 0; i < _checkers.size(); ++i)
        if (isToDiscover(*_checkers[i]))
            if (auto work =
                    _checkers[i]->discover(_candidates, std::make_shared<Findings>(_alive, i))) {
                ++_discoveries;
                _discovering.push_back(std::move(work));
            }
    reassign();
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

/// Assigns each application to the first checker that is responsible for it, and takes it away from the
/// previous one.
void AppUpdateCheck::assign() {
    std::vector<QList<AppUpdateCandidate>> shares(_checkers.size());
    for (const AppUpdateCandidate& candidate : std::as_const(_candidates)) {
        if (!isWanted(candidate))
            continue;
        std::size_t owner = 0;
        while (owner < _checkers.size() && !_checkers[owner]->channel(candidate))
            ++owner;
        if (owner < _checkers.size() && _request.channel &&
            *_request.channel != _checkers[owner]->kind())
            owner = _checkers.size();
        const auto before = _assigned.constFind(candidate.appKey);
        const std::size_t had = before == _assigned.constEnd() ? _checkers.size() : *before;
        if (owner == had)
            continue;
        if (had < _checkers.size())
            for (const auto& work : _checking[had])
                work->forget(candidate.appKey);
        if (owner == _checkers.size()) {
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
            _checking[i].push_back(
                _checkers[i]->check(shares[i], std::make_shared<Findings>(_alive, i)));
    _progress.total = _assigned.size();
    _progress.checked = _assigned.size() - _left.size();
}

/// Debounced: tools may report one application after another.
void AppUpdateCheck::learned() {
    if (!_learning.isActive())
        _learning = _machine.scheduler.after(learnDelay, [this] { reassign(); });
}

void AppUpdateCheck::reassign() {
    _learning.cancel();
    assign();
    const std::weak_ptr<AppUpdateCheck*> alive = _alive;
    _listener.channelsLearned(*this);
    if (!alive.expired())
        _listener.progressed(*this);
    if (!alive.expired())
        endIfOver();
}

void AppUpdateCheck::discovered(std::size_t checker, const std::optional<AppUpdateReason>& problem) {
    --_discoveries;
    if (problem)
        _problems.append({_checkers[checker]->kind(), *problem});
    reassign();
}

void AppUpdateCheck::began(const QString& appKey) {
    if (!_left.contains(appKey))
        return;
    _progress.currentAppKey = appKey;
    _progress.currentAppName = _candidates.at(_places.value(appKey)).name;
    _listener.progressed(*this);
}

void AppUpdateCheck::ended(std::size_t checker, const QString& appKey,
                           const AppUpdateVerdict& verdict) {
    if (!_left.contains(appKey) || _assigned.value(appKey, _checkers.size()) != checker)
        return;
    const AppUpdateCandidate candidate = _candidates.at(_places.value(appKey));
    _left.remove(appKey);
    ++_progress.checked;
    const std::weak_ptr<AppUpdateCheck*> alive = _alive;
    _listener.found(*this, candidate, *_checkers[checker], verdict);
    if (!alive.expired())
        _listener.progressed(*this);
    if (!alive.expired())
        endIfOver();
}

void AppUpdateCheck::endIfOver() {
    if (_left.isEmpty() && _discoveries == 0 && !_ending.isActive())
        _ending = _machine.scheduler.after(std::chrono::milliseconds(0), [this] {
            if (_left.isEmpty() && _discoveries == 0)
                _listener.ended(*this);
        });
}

} // namespace tessellar
