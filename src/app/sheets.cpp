#include "app/sheets.h"

#include "launcher/launcher_icons.h"
#include "launcher/launcher_messages.h"

namespace tessellar {

void Sheets::open(const QString& sheet, const AppEntry* app) {
    _app = app ? std::optional(*app) : std::nullopt;
    if (std::exchange(_current, sheet) != sheet)
        Q_EMIT changed();
}

void Sheets::changeIcon(const QString& file) {
    if (!_app || file.isEmpty())
        return;
    static const FileSystem host;
    _viewModel.icons().set(
        appKey(*_app), file,
        [&viewModel = _viewModel](const LauncherIcons::Outcome& outcome) {
            viewModel.messages().report(outcome);
        },
        &host);
    close();
}

} // namespace tessellar
