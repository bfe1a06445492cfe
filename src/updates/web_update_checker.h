#pragma once

#include "updates/app_update_checker.h"

#include <QSet>

#include <list>

namespace tessellar {

/// A checker that asks a server about each application: the same address once, so many at a time over
/// all its checks together, not all of them of one server, and answers judged on a worker, for they
/// come from strangers. A server that takes no more questions is asked no more in this round.
class WebUpdateChecker : public AppUpdateChecker {
public:
    static constexpr qsizetype maximumRequests = 8;
    static constexpr qsizetype maximumRequestsOfOneServer = 4;

    explicit WebUpdateChecker(Machine& machine) : _machine(machine) {}
    ~WebUpdateChecker() override;

    [[nodiscard]] std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                       Findings findings) final;

protected:
    /// Gives the verdicts of one body, in the order of the candidates; on any thread.
    using Judge = std::function<QList<AppUpdateVerdict>(const QByteArray& body,
                                                        const QList<AppUpdateCandidate>& candidates)>;

    /// What to ask about an application, or the verdict where there is nothing to ask.
    virtual std::expected<HttpRequest, AppUpdateVerdict>
    request(const AppUpdateCandidate& candidate) const = 0;
    virtual Judge judge() const = 0;
    /// True for the answer of a server that was asked too often.
    virtual bool isThrottling(int httpStatus) const { return httpStatus == 429 || httpStatus == 503; }

    Machine& _machine;

private:
    class Run;
    struct Listener {
        std::weak_ptr<AppUpdateFindings> findings; ///< gone with its run
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
    void forget(const AppUpdateFindings* findings, const QString& appKey);
    void dropUnwanted();
    void pump();
    void answered(Fetches::iterator fetch, HttpClient::Answer answer);
    void judged(Fetches::iterator fetch, const QList<AppUpdateVerdict>& verdicts);
    std::optional<AppUpdateReason> problem(const HttpClient::Answer& answer) const;

    Fetches _fetches; ///< oldest first
    std::shared_ptr<WebUpdateChecker*> _alive = std::make_shared<WebUpdateChecker*>(this);
};

} // namespace tessellar
