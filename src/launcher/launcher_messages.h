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

/// A short message over the grid that goes by itself. A later one has a higher revision.
struct LauncherNotice {
    QString text;
    QString symbolName;
    int revision = 0;
};

/// What the user is told and asked: one notice at a time, alerts until they are taken, questions one
/// after the other. Main thread only.
class LauncherMessages {
public:
    explicit LauncherMessages(Scheduler& scheduler) : _scheduler(scheduler) {}

    const std::optional<LauncherNotice>& notice() const { return _notice; }
    void showNotice(const QString& text, const QString& symbolName = {},
                    std::chrono::milliseconds duration = std::chrono::seconds(3));

    void alert(LauncherError error);
    /// Alerts not shown yet, oldest first; taking them empties the list.
    QList<LauncherError> takeAlerts() { return std::exchange(_alerts, {}); }
    /// Tells of something that was not done: as an alert where it has a title, else as a notice.
    void report(const LauncherError& error);
    void report(const std::expected<void, LauncherError>& outcome);

    /// Questions wait for one another; `answer` is called once.
    void ask(const LauncherQuestion& question, std::function<void(bool accepted)> answer);
    LauncherAsker asker();
    /// The question that waits for its answer, or null.
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
    std::list<Asked> _questions; ///< the first one is shown
};

} // namespace tessellar
