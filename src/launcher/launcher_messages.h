#pragma once

#include "launcher/launcher_error.h"
#include "launcher/launcher_question.h"
#include "platform/scheduler.h"
#include "platform/signal.h"

#include <QList>

#include <functional>
#include <list>
#include <optional>

namespace tessellar {

/// A short message over the grid that disappears by itself. Revisions increase.
struct LauncherNotice {
    QString text;
    QString symbolName;
    int revision = 0;
};

/// Messages to the user: one notice at a time, alerts queued until taken, questions one after the
/// other. Main thread only.
class LauncherMessages {
public:
    explicit LauncherMessages(Scheduler& scheduler) : _scheduler(scheduler) {}

    const std::optional<LauncherNotice>& notice() const { return _notice; }
    void showNotice(const QString& text, const QString& symbolName = {},
                    std::chrono::milliseconds duration = std::chrono::seconds(3));

    void alert(LauncherError error);
    /// Returns the new alerts, oldest first, and clears the list.
    QList<LauncherError> takeAlerts() { return std::exchange(_alerts, {}); }
    /// Reports a failure: as an alert if it has a title, else as a notice.
    void report(const LauncherError& error);
    void report(const std::expected<void, LauncherError>& outcome);

    /// Queues a question; `answer` is called once.
    void ask(const LauncherQuestion& question, std::function<void(bool accepted)> answer);
    LauncherAsker asker();
    /// The question being asked, or null.
    const LauncherQuestion* question() const;
    void answer(bool accepted);

    Signal<> noticeChanged;
    Signal<> alerted;
    Signal<> questionChanged;

private:
    struct Asked {
        LauncherQuestion question;
        std::function<void(bool)> answer;
    };

    Scheduler& _scheduler;
    std::optional<LauncherNotice> _notice;
    int _noticeRevision = 0;
    Timer _noticeTimer;
    QList<LauncherError> _alerts;
    std::list<Asked> _questions; ///< the first is shown
};

} // namespace tessellar
