#pragma once

#include "platform/worker_pool.h"

#include <QSet>
#include <QString>

#include <deque>
#include <map>

namespace tessellar {

/// Serializes queries per external tool, in call order: concurrent commands of one brew would compete
/// for its locks. Main thread only.
class ToolLanes {
public:
    explicit ToolLanes(WorkerPool& workers) : _workers(workers) {}
    ToolLanes(const ToolLanes&) = delete;
    ToolLanes& operator=(const ToolLanes&) = delete;

    /// Runs `work(stop)` once the tool is free, then `done(value)` on the main thread, even after a
    /// stop request, unless the lanes were destroyed. The work must check its stop token.
    template <typename Work, typename Done>
    void run(const QString& tool, std::stop_token stop, Work work, Done done) {
        enter(tool, [this, tool, stop = std::move(stop), work = std::move(work),
                     done = std::move(done)]() mutable {
            _workers.submit(
                Lane::tools, std::move(stop),
                [&mailbox = _workers.mailbox(), lanes = std::weak_ptr(_alive), tool,
                 work = std::move(work), done = std::move(done)](std::stop_token token) mutable {
                    mailbox.post([lanes, tool, done = std::move(done), value = work(token)]() mutable {
                        if (lanes.expired())
                            return;
                        done(std::move(value)); // may destroy the lanes
                        if (const auto alive = lanes.lock())
                            (*alive)->leave(tool);
                    });
                });
        });
    }

private:
    using Entry = MoveOnlyFunction<void()>;

    void enter(const QString& tool, Entry start);
    void leave(const QString& tool);

    WorkerPool& _workers;
    std::map<QString, std::deque<Entry>> _waiting; ///< queued behind busy tools
    QSet<QString> _busy;
    std::shared_ptr<ToolLanes*> _alive = std::make_shared<ToolLanes*>(this);
};

} // namespace tessellar
