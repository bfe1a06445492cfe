#include "app/backups_panel.h"

#include "launcher/launcher_messages.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"

#include <QDateTime>
#include <QLocale>
#include <QPointer>

#include <algorithm>

namespace tessellar {

/// What came after a backup, by the reason that it gives.
static QString reasonText(const QString& reason) {
    struct Row {
        const char* reason;
        const char* text;
    };
    static constexpr std::array rows{
        Row{"reset", "Before the layout was reset"},
        Row{"arrangement-restore", "Before an arrangement was restored"},
        Row{"backup-restore", "Before a backup was restored"},
        Row{"legacy-launchpad-import", "Before the old Launchpad was imported"},
        Row{"changed-by-another-program", "Written by another program"}};
    for (const Row& row : rows)
        if (reason == QLatin1StringView(row.reason))
            return QLatin1StringView(row.text);
    return reason.left(100);
}

static QString counted(int count, const QString& one) {
    return QStringLiteral("%1 %2%3").arg(count).arg(one, count == 1 ? QString() : QStringLiteral("s"));
}

static QStringList counts(const BackupSummary& backup) {
    QStringList all{counted(backup.appCount, QStringLiteral("application"))};
    if (backup.folderCount > 0)
        all.append(counted(backup.folderCount, QStringLiteral("folder")));
    return all + QStringList(counted(backup.pageCount, QStringLiteral("page")));
}

QString BackupsPanel::summary() const {
    if (!_backups.isEmpty())
        return {};
    return _isLooking ? tr("Looking for backups…") : tr("There are no backups yet.");
}

void BackupsPanel::refresh() {
    _backups.clear();
    _isLooking = true;
    Q_EMIT changed();
    _viewModel.archive().listBackups([self = QPointer(this)](const QList<BackupSummary>& all) {
        if (self)
            self->show(all);
    });
}

void BackupsPanel::show(const QList<BackupSummary>& all) {
    _isLooking = false;
    _backups.clear();
    const QLocale locale;
    for (const BackupSummary& backup : all) {
        const QDateTime date =
            QDateTime::fromString(backup.createdAt.toIso8601(), Qt::ISODate).toLocalTime();
        _backups.append(
            QVariantMap{{QStringLiteral("name"), backup.name},
                        {QStringLiteral("title"), locale.toString(date, QLocale::ShortFormat)},
                        {QStringLiteral("text"), reasonText(backup.reason) + QStringLiteral(" · ") +
                                                     counts(backup).join(QStringLiteral(", "))}});
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
        {.title = QStringLiteral("Restore the backup of %1?")
                      .arg(backup->toMap()[QStringLiteral("title")].toString()),
         .text = QStringLiteral(
             "The current arrangement will be backed up first. Apps that are no longer installed will "
             "be removed, and newly installed apps will be placed on new pages at the end."),
         .accept = QStringLiteral("Restore")},
        [&viewModel = _viewModel, mode = _viewModel.shown().mode(), name](bool accepted) {
            if (accepted)
                viewModel.archive().restoreBackup(mode, name,
                                                  [&viewModel](const LayoutArchive::Outcome& outcome) {
                                                      viewModel.messages().report(outcome);
                                                  });
        });
}

} // namespace tessellar
