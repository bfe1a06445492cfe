#include "app/updates_panel.h"

#include "launcher/launcher_messages.h"
#include "launcher/launcher_settings.h"
#include "launcher/launcher_updates.h"
#include "platform/texts.h"
#include "updates/app_update_settings.h"

#include <QPointer>

#include <algorithm>

namespace tessellar {

QString UpdatesPanel::title() { return update_texts::settingsTitle(); }
QString UpdatesPanel::explanation() { return update_texts::settingsExplanation(); }
bool UpdatesPanel::isEnabled() const { return settings().enabled; }
QString UpdatesPanel::summary() const { return _viewModel.updates().summary(); }
bool UpdatesPanel::isChecking() const { return _viewModel.updates().isChecking(); }

bool UpdatesPanel::isRunning() const { return _viewModel.updates().isRunning(); }

void UpdatesPanel::setShown(bool isShown) {
    if (!std::exchange(_isShown, isShown) && isShown)
        refresh();
}

void UpdatesPanel::refresh() {
    // A running check notifies often, even while the sheet is closed.
    if (_isShown)
        _rows.refresh();
    Q_EMIT changed();
}

AppUpdateSettings UpdatesPanel::settings() const {
    return readAppUpdateSettings(_viewModel.settings().expected());
}

void UpdatesPanel::store(const QString& key, const QJsonValue& value) {
    _viewModel.settings().store(key, value,
                                [self = QPointer(this)](const LauncherSettings::Outcome& stored) {
                                    if (!self)
                                        return;
                                    self->_viewModel.messages().report(stored);
                                    self->refresh();
                                });
    refresh();
}

void UpdatesPanel::setEnabled(bool isEnabled) { store(AppUpdateSettings::enabledKey, isEnabled); }

namespace {

struct IntervalRow {
    AppUpdateInterval interval;
    const char* title;
};
constexpr std::array intervalRows{IntervalRow{AppUpdateInterval::sixHours, Texts::noop("6 Hours")},
                                  IntervalRow{AppUpdateInterval::daily, Texts::noop("Day")},
                                  IntervalRow{AppUpdateInterval::threeDays, Texts::noop("3 Days")},
                                  IntervalRow{AppUpdateInterval::weekly, Texts::noop("Week")}};

} // namespace

QVariantList UpdatesPanel::intervals() const {
    QVariantList result;
    for (const IntervalRow& row : intervalRows)
        result.append(QVariantMap{{QStringLiteral("title"), Texts::tr(row.title)},
                                  {QStringLiteral("seconds"), static_cast<int>(row.interval)},
                                  {QStringLiteral("isChosen"), settings().interval == row.interval}});
    return result;
}

void UpdatesPanel::chooseInterval(int seconds) {
    if (const auto interval = appUpdateInterval(seconds))
        store(AppUpdateSettings::intervalKey, qToUnderlying(*interval));
}

void UpdatesPanel::stepInterval(int by) {
    const auto chosen = std::ranges::find(intervalRows, settings().interval, &IntervalRow::interval);
    const auto place =
        std::clamp<std::ptrdiff_t>(chosen - intervalRows.begin() + by, 0, std::ssize(intervalRows) - 1);
    chooseInterval(static_cast<int>(intervalRows[static_cast<std::size_t>(place)].interval));
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

int UpdatesPanel::runnableCount() const {
    // Called at each change, and finding the runnable updates is expensive.
    return _isShown && _viewModel.updates().availableCount() > 0
               ? static_cast<int>(_viewModel.updates().runnable().size())
               : 0;
}

void UpdatesPanel::checkNow() { _viewModel.updates().check(); }
void UpdatesPanel::cancelCheck() { _viewModel.updates().cancelCheck(); }
void UpdatesPanel::runAll() { _viewModel.updates().runAll(); }
void UpdatesPanel::cancelRun() { _viewModel.updates().cancelRun(); }

void UpdatesPanel::act(int row) {
    const QModelIndex line = _rows.index(row);
    const QString key = _rows.appKey(row);
    if (key.isEmpty())
        _rows.toggle(row);
    else if (_rows.data(line, UpdateRows::RunningRole).toBool())
        cancelRun();
    else if (_rows.data(line, UpdateRows::CanActRole).toBool())
        _viewModel.updates().run(key);
}

} // namespace tessellar
