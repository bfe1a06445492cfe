#include "app/sheets.h"

#include <QPointer>

#include "launcher/launcher_icons.h"
#include "launcher/launcher_messages.h"

namespace tessellar {

void Sheets::open(const QString& sheet, const AppEntry* app) {
    setIssue({});
    _app = app ? std::optional(*app) : std::nullopt;
    _isTyped = false;
    if (std::exchange(_current, sheet) != sheet)
        Q_EMIT changed();
}

void Sheets::openNews(const QString& news) {
    _news = news;
    open(whatIsNew);
}

void Sheets::leave() {
    if (!_isTyped)
        return close();
    _viewModel.messages().ask({.title = tr("Discard your changes?"),
                               .text = tr("What you entered has not been used yet."),
                               .accept = tr("Discard"),
                               .isDestructive = true},
                              [sheet = QPointer(this)](bool accepted) {
                                  if (sheet && accepted)
                                      sheet->close();
                              });
}

void Sheets::changeIcon(const QString& file) {
    if (!_app || file.isEmpty())
        return;
    static const FileSystem host;
    _viewModel.icons().set(
        appKey(*_app), file,
        [sheet = QPointer(this), app = appKey(*_app)](const LauncherIcons::Outcome& outcome) {
            // By now it may have been closed, or be about another application.
            if (!sheet || !sheet->_app || appKey(*sheet->_app) != app)
                return;
            if (outcome)
                sheet->close();
            else
                sheet->setIssue(outcome.error().message);
        },
        &host);
}

void Sheets::setIssue(const QString& issue) {
    if (std::exchange(_issue, issue) != issue)
        Q_EMIT issueChanged();
}

} // namespace tessellar
