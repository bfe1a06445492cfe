#include "app/alert_panel.h"

#include "launcher/launcher_history.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"

#include <QPointer>

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

AlertPanel::Remedy AlertPanel::remedy() const {
    return _alerts.isEmpty() ? Remedy::none : _alerts.first().remedy;
}

QString AlertPanel::accept() const {
    switch (remedy()) {
    case Remedy::resetLayout:
        return tr("Reset");
    case Remedy::saveAgain:
        return tr("Try Again");
    case Remedy::none:
        break;
    }
    return _alerts.isEmpty() && _viewModel.messages().question()
               ? _viewModel.messages().question()->accept
               : QString();
}

bool AlertPanel::isDestructive() const {
    return remedy() == Remedy::resetLayout || (_alerts.isEmpty() && _viewModel.messages().question() &&
                                               _viewModel.messages().question()->isDestructive);
}

void AlertPanel::refresh() {
    for (const LauncherError& alert : _viewModel.messages().takeAlerts())
        if (!_alerts.contains(alert)) // do not repeat an open alert
            _alerts.append(alert);
    _isAcceptDefault = !isDestructive();
    Q_EMIT changed();
}

void AlertPanel::answer(bool accepted) {
    if (_alerts.isEmpty())
        return _viewModel.messages().answer(accepted);
    const Remedy wanted = accepted ? remedy() : Remedy::none;
    _alerts.removeFirst();
    refresh();
    if (wanted == Remedy::saveAgain)
        saveAgain();
    else if (wanted == Remedy::resetLayout)
        resetLayouts();
}

void AlertPanel::saveAgain() {
    // A new failure raises a new alert.
    _viewModel.history().unsaved().whenSaved(
        {}, UnsavedEdits::Whose::all, [self = QPointer(this)](const UnsavedEdits::Outcome& saved) {
            if (self && saved)
                Q_EMIT self->savedAgain();
        });
}

void AlertPanel::resetLayouts() {
    // Each unreadable mode has an alert of its own; one answer resets all.
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (!_viewModel.history().guard(mode))
            _viewModel.messages().report(_viewModel.archive().reset(mode));
    const bool areAllReset = std::ranges::all_of(LiveLayouts::modes, [this](LauncherWindowMode mode) {
        return _viewModel.history().guard(mode).has_value();
    });
    if (areAllReset)
        _alerts.removeIf(
            [](const LauncherError& alert) { return alert.remedy == Remedy::resetLayout; });
    refresh();
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
