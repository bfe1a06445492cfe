#include "app/alert_panel.h"

#include "launcher/launcher_history.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"

namespace tessellar {

QString AlertPanel::title() const {
    if (!_alerts.isEmpty())
        return _alerts.first().title;
    return _viewModel.messages().question() ? _viewModel.messages().question()->title : QString();
}

QString AlertPanel::text() const {
    if (!_alerts.isEmpty())
        return _alerts.first().message;
    return _viewModel.messages().question() ? _viewModel.messages().question()->text : QString();
}

bool AlertPanel::offersReset() const {
    return !_alerts.isEmpty() && _alerts.first().title == LayoutArchive::resetTitle();
}

QString AlertPanel::accept() const {
    if (offersReset())
        return tr("Reset");
    return _alerts.isEmpty() && _viewModel.messages().question()
               ? _viewModel.messages().question()->accept
               : QString();
}

bool AlertPanel::isDestructive() const {
    return offersReset() || (_alerts.isEmpty() && _viewModel.messages().question() &&
                             _viewModel.messages().question()->isDestructive);
}

void AlertPanel::refresh() {
    _alerts += _viewModel.messages().takeAlerts();
    _isAcceptDefault = !isDestructive();
    Q_EMIT changed();
}

void AlertPanel::answer(bool accepted) {
    if (_alerts.isEmpty())
        return _viewModel.messages().answer(accepted);
    const bool resets = accepted && offersReset();
    _alerts.removeFirst();
    refresh();
    if (!resets)
        return;
    // Each mode that cannot be read has its own alert; one answer is enough.
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (!_viewModel.history().guard(mode))
            _viewModel.messages().report(_viewModel.archive().reset(mode));
}

void AlertPanel::pressKey(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return answer(_isAcceptDefault);
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        if (!accept().isEmpty()) {
            _isAcceptDefault = !_isAcceptDefault;
            Q_EMIT changed();
        }
        return;
    default:
        return;
    }
}

} // namespace tessellar
