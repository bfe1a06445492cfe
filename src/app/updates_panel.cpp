#include "app/updates_panel.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_updates.h"

#include <QMetaMethod>

namespace tessellar {

QString UpdatesPanel::title() { return update_texts::settingsTitle; }
QString UpdatesPanel::explanation() { return update_texts::settingsExplanation; }
bool UpdatesPanel::isEnabled() const { return _viewModel.updates().isEnabled(); }
QString UpdatesPanel::summary() const { return _viewModel.updates().summary(); }
bool UpdatesPanel::isChecking() const { return _viewModel.updates().isChecking(); }

void UpdatesPanel::refresh() {
    Q_EMIT changed();
    // A check that goes on is told often; the list is made anew only when somebody sees it and it
    // differs.
    static const QMetaMethod watched = QMetaMethod::fromSignal(&UpdatesPanel::availableChanged);
    if (!isSignalConnected(watched))
        return;
    if (const QVariantList now = available(); std::exchange(_listed, now) != now)
        Q_EMIT availableChanged();
}

void UpdatesPanel::report(const LauncherUpdates::Outcome& outcome) {
    _viewModel.messages().report(outcome);
}

void UpdatesPanel::setEnabled(bool isEnabled) {
    report(_viewModel.updates().setEnabled(isEnabled));
    refresh();
}

QVariantList UpdatesPanel::intervals() const {
    struct Row {
        AppUpdateInterval interval;
        const char* title;
    };
    static constexpr std::array rows{
        Row{AppUpdateInterval::sixHours, "6 Hours"}, Row{AppUpdateInterval::daily, "Day"},
        Row{AppUpdateInterval::threeDays, "3 Days"}, Row{AppUpdateInterval::weekly, "Week"}};
    QVariantList result;
    for (const Row& row : rows)
        result.append(
            QVariantMap{{QStringLiteral("title"), QLatin1StringView(row.title)},
                        {QStringLiteral("seconds"), static_cast<int>(row.interval)},
                        {QStringLiteral("isChosen"), _viewModel.updates().interval() == row.interval}});
    return result;
}

void UpdatesPanel::chooseInterval(int seconds) {
    if (const auto interval = appUpdateInterval(seconds))
        report(_viewModel.updates().setInterval(*interval));
    refresh();
}

double UpdatesPanel::progress() const {
    const AppUpdateProgress progress = _viewModel.updates().progress();
    return progress.total > 0
               ? static_cast<double>(progress.checked) / static_cast<double>(progress.total)
               : 0;
}

QString UpdatesPanel::progressText() const {
    const AppUpdateProgress progress = _viewModel.updates().progress();
    if (progress.total == 0)
        return {};
    const QString count = tr("%1 of %2").arg(progress.checked).arg(progress.total);
    return progress.currentAppName.isEmpty()
               ? count
               : QStringLiteral("%1 · %2").arg(count, progress.currentAppName);
}

QVariantList UpdatesPanel::available() const {
    const LauncherUpdates& updates = _viewModel.updates();
    QVariantList result;
    for (const AppEntry& app : _viewModel.applications().all()) {
        const QString key = appKey(app);
        const QString text = updates.statusText(key);
        if (text.isEmpty())
            continue;
        result.append(QVariantMap{
            {QStringLiteral("appKey"), key},
            {QStringLiteral("name"), app.name},
            {QStringLiteral("text"), text},
            {QStringLiteral("action"), updates.actionLabel(key)},
            {QStringLiteral("isRunning"), updates.activeAppKey() == key},
            {QStringLiteral("canRun"), !updates.activeAppKey() && updates.actionKind(key)}});
    }
    return result;
}

void UpdatesPanel::checkNow() { _viewModel.updates().checkNow(); }
void UpdatesPanel::cancelCheck() { _viewModel.updates().cancelCheck(); }
void UpdatesPanel::run(const QString& appKey) { _viewModel.updates().run(appKey); }
void UpdatesPanel::cancelRun() { _viewModel.updates().cancelRun(); }

} // namespace tessellar
