#include "updates/web_update_checker.h"

#include <algorithm>

namespace tessellar {

class WebUpdateChecker::Run final : public AppUpdateWork {
public:
    Run(std::weak_ptr<WebUpdateChecker*> checker, AppUpdateObserver told)
        : observer(std::make_shared<const AppUpdateObserver>(std::move(told)))
        , _checker(std::move(checker)) {}
    ~Run() override {
        observer.reset();
        if (const auto checker = _checker.lock())
            (*checker)->dropUnwanted();
    }

    std::shared_ptr<const AppUpdateObserver> observer;
    QList<std::pair<QString, AppUpdateStatus>> atOnce; ///< verdicts that need no answer
    Timer timer;

private:
    std::weak_ptr<WebUpdateChecker*> _checker;
};

WebUpdateChecker::~WebUpdateChecker() = default;

std::unique_ptr<AppUpdateWork> WebUpdateChecker::check(QList<AppUpdateCandidate> candidates,
                                                       AppUpdateObserver observer) {
    auto run = std::make_unique<Run>(_alive, std::move(observer));
    for (const AppUpdateCandidate& candidate : std::as_const(candidates))
        add(*run, candidate);
    // Nothing is told before the caller holds the work, with which it can end it.
    run->timer = _machine.scheduler.after(std::chrono::milliseconds(0),
                                          [this, alive = std::weak_ptr(_alive), verdicts = run->atOnce,
                                           observer = std::weak_ptr(run->observer)] {
                                              for (const auto& [appKey, status] : verdicts) {
                                                  if (const auto told = observer.lock())
                                                      told->began(appKey);
                                                  if (const auto told = observer.lock())
                                                      told->ended(appKey, status);
                                              }
                                              if (!alive.expired())
                                                  pump();
                                          });
    return run;
}

void WebUpdateChecker::add(Run& run, const AppUpdateCandidate& candidate) {
    const auto wanted = request(candidate);
    if (!wanted) {
        run.atOnce.append({candidate.appKey, wanted.error()});
        return;
    }
    const auto same = std::ranges::find_if(_fetches, [&](const Fetch& fetch) {
        return !fetch.isJudged && fetch.request.url == wanted->url;
    });
    Fetch& fetch = same != _fetches.end() ? *same : _fetches.emplace_back(Fetch{.request = *wanted});
    fetch.listeners.append({run.observer, candidate});
}

/// What nobody waits for any more is not asked for; its place goes to the next.
void WebUpdateChecker::dropUnwanted() {
    const auto gone = _fetches.remove_if([](const Fetch& fetch) {
        return std::ranges::all_of(
            fetch.listeners, [](const Listener& listener) { return listener.observer.expired(); });
    });
    if (gone > 0)
        pump();
}

void WebUpdateChecker::pump() {
    auto running = std::ranges::count_if(_fetches, &Fetch::isRunning);
    QList<Listener> begun;
    for (auto fetch = _fetches.begin(); fetch != _fetches.end() && running < maximumRequests; ++fetch) {
        if (fetch->isRunning || fetch->isJudged)
            continue;
        fetch->isRunning = true;
        ++running;
        fetch->call = _machine.http.get(fetch->request, [this, fetch](HttpClient::Answer answer) {
            answered(fetch, std::move(answer));
        });
        begun += fetch->listeners;
    }
    // Last: who is told may end runs, and with them fetches.
    for (const Listener& listener : std::as_const(begun))
        if (const auto told = listener.observer.lock())
            told->began(listener.candidate.appKey);
}

void WebUpdateChecker::answered(Fetches::iterator fetch, HttpClient::Answer answer) {
    fetch->isRunning = false;
    fetch->isJudged = true;
    QList<AppUpdateCandidate> candidates;
    for (const Listener& listener : std::as_const(fetch->listeners))
        candidates.append(listener.candidate);
    fetch->judging = _machine.workers.run(
        Lane::network,
        [judge = judge(), answer = std::move(answer), candidates](std::stop_token) {
            return judge(answer, candidates);
        },
        [this, fetch](const QList<AppUpdateStatus>& statuses) { judged(fetch, statuses); });
    pump();
}

void WebUpdateChecker::judged(Fetches::iterator fetch, const QList<AppUpdateStatus>& statuses) {
    Fetches finished; // out of the list before its verdicts are told, which may end runs
    finished.splice(finished.begin(), _fetches, fetch);
    for (qsizetype i = 0; i < statuses.size(); ++i)
        if (const auto told = fetch->listeners[i].observer.lock())
            told->ended(fetch->listeners[i].candidate.appKey, statuses[i]);
}

} // namespace tessellar
