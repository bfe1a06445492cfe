#include "app/backups_panel.h"

#include "launcher/counts_text.h"
#include "launcher/launcher_messages.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "platform/texts.h"

#include <QDateTime>
#include <QLocale>
#include <QPointer>

#include <algorithm>

namespace tessellar {

QString BackupsPanel::summary() const {
    if (!_backups.isEmpty())
        return {};
    return _isLoading ? tr("Looking for backups…") : tr("There are no backups yet.");
}

void BackupsPanel::refresh() {
    _backups.clear();
    _isLoading = true;
    Q_EMIT changed();
    _viewModel.archive().listBackups([self = QPointer(this)](const QList<BackupSummary>& all) {
        if (self)
            self->show(all);
    });
}

void BackupsPanel::show(const QList<BackupSummary>& all) {
    _isLoading = false;
    _backups.clear();
    const QLocale locale;
    for (const BackupSummary& backup : all) {
        const QDateTime date =
            QDateTime::fromString(backup.createdAt.toIso8601(), Qt::ISODate).toLocalTime();
        _backups.append(
            QVariantMap{{QStringLiteral("name"), backup.name},
                        {QStringLiteral("title"), locale.toString(date, QLocale::ShortFormat)},
                        {QStringLiteral("text"),
                         backupReasonText(backup.reason) + QStringLiteral(" · ") +
                             countsText(backup.appCount, backup.folderCount, backup.pageCount)}});
    }
    Q_EMIT changed();
}

void BackupsPanel::restore(const QString& name) {
    const auto backup = std::ranges::find_if(std::as_const(_backups), [&](const QVariant& row) {
        return row.toMap()[QStringLiteral("name")].toString() == name;
    });
    if (backup == _backups.cend())
        return;
    _viewModel.messages().ask(
        {.title =
             tr("Restore the backup of %1?").arg(backup->toMap()[QStringLiteral("title")].toString()),
         .text = tr(
             "The current arrangement will be backed up first. Apps that are no longer installed will "
             "be removed, and newly installed apps will be placed on new pages at the end."),
         .accept = tr("Restore")},
        [&viewModel = _viewModel, mode = _viewModel.shown().mode(), name](bool accepted) {
            if (accepted)
                viewModel.archive().restoreBackup(mode, name,
                                                  [&viewModel](const LayoutArchive::Outcome& outcome) {
                                                      viewModel.messages().report(outcome);
                                                  });
        });
}

} // namespace tessellar
