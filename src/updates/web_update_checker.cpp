#include "updates/web_update_checker.h"

#include <algorithm>

namespace tessellar {

class WebUpdateChecker::Run final : public AppUpdateWork {
public:
    Run(std::weak_ptr<WebUpdateChecker*> checker, AppUpdateSink told)
        : sink(std::make_shared<const AppUpdateSink>(std::move(told))), _checker(std::move(checker)) {}
    ~Run() override {
        sink.reset();
        if (const auto checker = _checker.lock())
            (*checker)->dropUnwanted();
    }
    void forget(const QString& appKey) override {
        atOnce->removeIf([&](const auto& verdict) { return verdict.first == appKey; });
        if (const auto checker = _checker.lock())
            (*checker)->forget(sink.get(), appKey);
    }

    using AtOnce = QList<std::pair<QString, AppUpdateVerdict>>;
    std::shared_ptr<const AppUpdateSink> sink;
    std::shared_ptr<AtOnce> atOnce = std::make_shared<AtOnce>(); ///< verdicts that need no request
    Timer timer;

private:
    std::weak_ptr<WebUpdateChecker*> _checker;
};

WebUpdateChecker::~WebUpdateChecker() = default;

std::unique_ptr<AppUpdateWork> WebUpdateChecker::check(QList<AppUpdateCandidate> candidates,
                                                       AppUpdateSink sink) {
    auto run = std::make_unique<Run>(_alive, std::move(sink));
    for (const AppUpdateCandidate& candidate : std::as_const(candidates))
        add(*run, candidate);
    // Nothing is reported before the caller has the work, so that it can cancel it.
    run->timer = _machine.scheduler.after(
        std::chrono::milliseconds(0),
        [this, alive = std::weak_ptr(_alive), atOnce = run->atOnce, sink = std::weak_ptr(run->sink)] {
            while (!atOnce->isEmpty()) {
                const auto [appKey, verdict] = atOnce->takeFirst();
                if (const auto told = sink.lock())
                    (*told)(AppCheckBegan{appKey});
                if (const auto told = sink.lock())
                    (*told)(AppCheckEnded{appKey, verdict});
            }
            if (alive.expired())
                return;
            dropUnwanted();
            pump();
        });
    return run;
}

void WebUpdateChecker::add(Run& run, const AppUpdateCandidate& candidate) {
    const auto wanted = request(candidate);
    if (!wanted) {
        run.atOnce->append({candidate.appKey, wanted.error()});
        return;
    }
    const auto same = std::ranges::find_if(_fetches, [&](const Fetch& fetch) {
        return !fetch.isJudged && fetch.request.url == wanted->url;
    });
    Fetch& fetch = same != _fetches.end() ? *same : _fetches.emplace_back(Fetch{.request = *wanted});
    fetch.listeners.append({run.sink, candidate});
}

void WebUpdateChecker::forget(const AppUpdateSink* sink, const QString& appKey) {
    for (Fetch& fetch : _fetches)
        if (!fetch.isJudged)
            fetch.listeners.removeIf([&](const Listener& listener) {
                return listener.candidate.appKey == appKey && listener.sink.lock().get() == sink;
            });
    dropUnwanted();
}

/// Requests that nobody waits for are cancelled; the next ones take their places.
void WebUpdateChecker::dropUnwanted() {
    const auto gone = _fetches.remove_if([](const Fetch& fetch) {
        return std::ranges::all_of(fetch.listeners,
                                   [](const Listener& listener) { return listener.sink.expired(); });
    });
    if (gone > 0)
        pump();
}

void WebUpdateChecker::pump() {
    QHash<QString, qsizetype> running; // by server
    qsizetype all = 0;
    for (const Fetch& fetch : _fetches)
        if (fetch.isRunning) {
            ++running[fetch.request.url.host()];
            ++all;
        }
    QList<Listener> begun;
    for (auto fetch = _fetches.begin(); fetch != _fetches.end() && all < maximumRequests; ++fetch) {
        qsizetype& ofServer = running[fetch->request.url.host()];
        if (fetch->isRunning || fetch->isJudged || ofServer >= maximumRequestsOfOneServer)
            continue;
        fetch->isRunning = true;
        ++ofServer;
        ++all;
        fetch->call = _machine.http.get(fetch->request, [this, fetch](HttpClient::Answer answer) {
            answered(fetch, std::move(answer));
        });
        begun += fetch->listeners;
    }
    // Last: listeners may destroy runs, and with them fetches.
    for (const Listener& listener : std::as_const(begun))
        if (const auto told = listener.sink.lock())
            (*told)(AppCheckBegan{listener.candidate.appKey});
}

std::optional<AppUpdateReason> WebUpdateChecker::problem(const HttpClient::Answer& answer) const {
    using enum AppUpdateReason::Code;
    if (!answer) {
        switch (answer.error()) {
        case HttpError::addressRefused:
            return AppUpdateReason{noSecureAddress, {}};
        case HttpError::redirectRefused:
            return AppUpdateReason{redirected, {}};
        case HttpError::timedOut:
            return AppUpdateReason{timedOut, {}};
        case HttpError::tooLarge:
            return AppUpdateReason{tooLarge, {}};
        case HttpError::transport:
            return AppUpdateReason{unreachable, {}};
        }
    }
    if (isThrottling(answer->status))
        return AppUpdateReason{throttled, {}};
    if (answer->status != 200)
        return AppUpdateReason{refused, QStringLiteral("(%1)").arg(answer->status)};
    return std::nullopt;
}

void WebUpdateChecker::answered(Fetches::iterator fetch, HttpClient::Answer answer) {
    fetch->isRunning = false;
    fetch->isJudged = true;
    const auto failed = problem(answer);
    std::vector<Fetches::iterator> unasked{fetch};
    if (failed && failed->code == AppUpdateReason::Code::throttled)
        for (auto other = _fetches.begin(); other != _fetches.end(); ++other)
            if (!other->isRunning && !other->isJudged &&
                other->request.url.host() == fetch->request.url.host()) {
                other->isJudged = true;
                unasked.push_back(other);
            }
    for (const auto& one : unasked) {
        QList<AppUpdateCandidate> candidates;
        for (const Listener& listener : std::as_const(one->listeners))
            candidates.append(listener.candidate);
        const auto work = [judge = judge(), failed, candidates,
                           body = failed ? QByteArray() : answer->body](std::stop_token) {
            return failed
                       ? QList<AppUpdateVerdict>(candidates.size(), AppUpdateVerdict::failed(*failed))
                       : judge(body, candidates);
        };
        one->judging = _machine.workers.run(
            work, [this, one](const QList<AppUpdateVerdict>& verdicts) { judged(one, verdicts); });
    }
    pump();
}

void WebUpdateChecker::judged(Fetches::iterator fetch, const QList<AppUpdateVerdict>& verdicts) {
    Fetches finished; // removed from the list before reporting its verdicts, which may destroy runs
    finished.splice(finished.begin(), _fetches, fetch);
    const auto alive = std::weak_ptr(_alive);
    for (qsizetype i = 0; i < verdicts.size(); ++i)
        if (const auto told = fetch->listeners[i].sink.lock())
            (*told)(AppCheckEnded{fetch->listeners[i].candidate.appKey, verdicts[i]});
    // Runs may have ended while their sink was held.
    if (!alive.expired())
        dropUnwanted();
}

} // namespace tessellar
