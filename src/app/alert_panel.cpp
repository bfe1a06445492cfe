#include "app/alert_panel.h"

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

QString AlertPanel::accept() const {
    return _alerts.isEmpty() && _viewModel.messages().question()
               ? _viewModel.messages().question()->accept
               : QString();
}

bool AlertPanel::isDestructive() const {
    return _alerts.isEmpty() && _viewModel.messages().question() &&
           _viewModel.messages().question()->isDestructive;
}

void AlertPanel::refresh() {
    _alerts += _viewModel.messages().takeAlerts();
    _isAcceptDefault = !isDestructive();
    Q_EMIT changed();
}

void AlertPanel::answer(bool accepted) {
    if (_alerts.isEmpty())
        return _viewModel.messages().answer(accepted);
    _alerts.removeFirst();
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
