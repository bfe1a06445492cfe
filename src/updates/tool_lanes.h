#pragma once

#include "platform/worker_pool.h"

#include <QSet>
#include <QString>

#include <deque>
#include <map>

namespace tessellar {

/// Questions to external tools, one at a time for each tool and in the order of asking: two commands of
/// one brew would fight over its locks. Main thread.
class ToolLanes {
public:
    explicit ToolLanes(WorkerPool& workers) : _workers(workers) {}
    ToolLanes(const ToolLanes&) = delete;
    ToolLanes& operator=(const ToolLanes&) = delete;

    /// Runs `work(stop)` when the tool is free, then `done(value)` on the main thread: always, also
    /// when a stop was requested, unless the lanes are gone by then. The work itself looks at the stop.
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
                        done(std::move(value)); // may be the end of the lanes
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
    std::map<QString, std::deque<Entry>> _waiting; ///< behind the tools that are busy
    QSet<QString> _busy;
    std::shared_ptr<ToolLanes*> _alive = std::make_shared<ToolLanes*>(this);
};

} // namespace tessellar
