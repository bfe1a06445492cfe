#pragma once

#include "updates/app_update_checker.h"

#include <list>

namespace tessellar {

/// A checker that asks a server about each application: the same address once, at most four at a time
/// over all its checks together, and answers judged on a worker, for they come from strangers.
class WebUpdateChecker : public AppUpdateChecker {
public:
    static constexpr qsizetype maximumRequests = 4;

    explicit WebUpdateChecker(Machine& machine) : _machine(machine) {}
    ~WebUpdateChecker() override;

    [[nodiscard]] std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                       AppUpdateObserver observer) final;

protected:
    /// Gives the verdicts of one answer, in the order of the candidates; on any thread.
    using Judge = std::function<QList<AppUpdateStatus>(const HttpClient::Answer& answer,
                                                       const QList<AppUpdateCandidate>& candidates)>;

    /// What to ask about an application, or the verdict where there is nothing to ask.
    virtual std::expected<HttpRequest, AppUpdateStatus>
    request(const AppUpdateCandidate& candidate) const = 0;
    virtual Judge judge() const = 0;

    Machine& _machine;

private:
    class Run;
    struct Listener {
        std::weak_ptr<const AppUpdateObserver> observer; ///< gone with its run
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
    void dropUnwanted();
    void pump();
    void answered(Fetches::iterator fetch, HttpClient::Answer answer);
    void judged(Fetches::iterator fetch, const QList<AppUpdateStatus>& statuses);

    Fetches _fetches; ///< oldest first
    std::shared_ptr<WebUpdateChecker*> _alive = std::make_shared<WebUpdateChecker*>(this);
};

} // namespace tessellar
