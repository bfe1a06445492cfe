#pragma once

#include "updates/app_update_checker.h"

#include <QSet>

#include <list>

namespace tessellar {

/// A checker that queries a server per application. Shares requests for the same URL, limits concurrent
/// requests in total and per server, and evaluates answers on a worker, as they are untrusted. A
/// throttling server is not queried again in the same round.
class WebUpdateChecker : public AppUpdateChecker {
public:
    static constexpr qsizetype maximumRequests = 8;
    static constexpr qsizetype maximumRequestsOfOneServer = 4;

    explicit WebUpdateChecker(Machine& machine) : _machine(machine) {}
    ~WebUpdateChecker() override;

    [[nodiscard]] std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                       AppUpdateSink sink) final;

protected:
    /// Evaluates one response body; one verdict per candidate, in order. Called on any thread.
    using Judge = std::function<QList<AppUpdateVerdict>(const QByteArray& body,
                                                        const QList<AppUpdateCandidate>& candidates)>;

    /// The request for an application, or its verdict if none is needed.
    virtual std::expected<HttpRequest, AppUpdateVerdict>
    request(const AppUpdateCandidate& candidate) const = 0;
    virtual Judge judge() const = 0;
    /// True if the status means too many requests.
    virtual bool isThrottling(int httpStatus) const { return httpStatus == 429 || httpStatus == 503; }

    Machine& _machine;

private:
    class Run;
    struct Listener {
        std::weak_ptr<const AppUpdateSink> sink; ///< expires with its run
        AppUpdateCandidate candidate;
    };
    struct Fetch {
        HttpRequest request;
        QList<Listener> listeners;
        bool isRunning = false;
        bool isJudged = false; ///< too late to join
        HttpCall call;
        Task judging;
    };
    using Fetches = std::list<Fetch>;

    void add(Run& run, const AppUpdateCandidate& candidate);
    void forget(const AppUpdateSink* sink, const QString& appKey);
    void dropUnwanted();
    void pump();
    void answered(Fetches::iterator fetch, HttpClient::Answer answer);
    void judged(Fetches::iterator fetch, const QList<AppUpdateVerdict>& verdicts);
    std::optional<AppUpdateReason> problem(const HttpClient::Answer& answer) const;

    Fetches _fetches; ///< oldest first
    std::shared_ptr<WebUpdateChecker*> _alive = std::make_shared<WebUpdateChecker*>(this);
};

} // namespace tessellar
