#include "app/removal_panel.h"

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_messages.h"

#include <QLocale>

namespace tessellar {

using Phase = LauncherCleanup::Phase;

static QString sizeText(std::uint64_t bytes) {
    return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

// ---- the items

int RemovalItems::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QHash<int, QByteArray> RemovalItems::roleNames() const {
    return {{PathRole, "path"},      {NameRole, "name"}, {PlaceRole, "place"},
            {ReasonRole, "reason"},  {SizeRole, "size"}, {SelectedRole, "isSelected"},
            {LockedRole, "isLocked"}};
}

QVariant RemovalItems::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || index.row() >= items().size() || index.row() >= rowCount())
        return {};
    const RelatedFile& file = items().at(index.row());
    const Row& row = _rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PathRole:
        return file.path;
    case NameRole:
        return FileSystem::fileName(file.path);
    case PlaceRole:
        return file.location;
    case ReasonRole:
        return file.reason;
    case SizeRole:
        return row.size ? sizeText(*row.size) : QStringLiteral("…");
    case SelectedRole:
        return row.isSelected;
    case LockedRole:
        return file.needsAdministrator;
    default:
        return {};
    }
}

void RemovalItems::refresh() {
    const CleanupReviewState& review = _cleanup.review();
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(review.items.size()));
    for (const RelatedFile& file : review.items)
        rows.push_back({file.size, review.isSelected(file.path)});
    // Within a review the items stay the same; another review has passed through none.
    if (rows.size() != _rows.size()) {
        beginResetModel();
        _rows = std::move(rows);
        endResetModel();
        return;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i] == _rows[i])
            continue;
        QList<int> roles;
        if (rows[i].size != _rows[i].size)
            roles.append(SizeRole);
        if (rows[i].isSelected != _rows[i].isSelected)
            roles.append(SelectedRole);
        _rows[i] = rows[i];
        const QModelIndex at = index(static_cast<int>(i));
        Q_EMIT dataChanged(at, at, roles);
    }
}

// ---- the sheet

QString RemovalPanel::phase() const {
    switch (_viewModel.cleanup().phase()) {
    case Phase::idle:
        return {};
    case Phase::scanning:
        return QStringLiteral("scanning");
    case Phase::review:
        return QStringLiteral("review");
    case Phase::removing:
        return QStringLiteral("removing");
    case Phase::done:
        return QStringLiteral("done");
    }
    return {};
}

QString RemovalPanel::appName() const { return isOpen() ? _viewModel.cleanup().app().name : QString(); }

void RemovalPanel::refresh() {
    if (std::exchange(_isRefreshWanted, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            _isRefreshWanted = false;
            _items.refresh();
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

QString RemovalPanel::total() const {
    const CleanupReviewState& review = _viewModel.cleanup().review();
    const qsizetype count = review.selectedPaths.size();
    const QString size = sizeText(review.selectedSize().bytes);
    return count == 1 ? tr("1 item, %1").arg(size) : tr("%1 items, %2").arg(count).arg(size);
}

bool RemovalPanel::canRemove() const {
    return _viewModel.cleanup().phase() == Phase::review &&
           !_viewModel.cleanup().review().selectedPaths.isEmpty();
}

QString RemovalPanel::warning() const {
    const LauncherCleanup& cleanup = _viewModel.cleanup();
    if (const auto& notice = cleanup.helperNotice())
        return notice->text;
    if (const auto& error = cleanup.error())
        return error->message;
    if (cleanup.phase() != Phase::review)
        return {};
    if (!cleanup.review().isComplete)
        return tr("Some folders could not be searched.");
    return cleanup.review().needsAdministrator() ? administratorWarning : QString();
}

double RemovalPanel::progress() const {
    const CleanupRemovalProgress& progress = _viewModel.cleanup().progress();
    return progress.total > 0 ? static_cast<double>(progress.done) / static_cast<double>(progress.total)
                              : 0;
}

QString RemovalPanel::progressText() const {
    const LauncherCleanup& cleanup = _viewModel.cleanup();
    if (cleanup.phase() == Phase::scanning)
        return tr("Looking for files of “%1”…").arg(appName());
    return cleanup.phase() == Phase::removing ? cleanup.progress().name : QString();
}

QVariantList RemovalPanel::log() const {
    QVariantList result;
    for (const CleanupLogLine& line : _viewModel.cleanup().log())
        result.append(
            QVariantMap{{QStringLiteral("text"), line.text},
                        {QStringLiteral("isFailure"), line.kind == CleanupLogLine::Kind::failed}});
    return result;
}

void RemovalPanel::select(const QString& path, bool isSelected) {
    _viewModel.cleanup().setSelected(path, isSelected);
}

void RemovalPanel::remove() { _viewModel.cleanup().remove(_viewModel.messages().asker()); }

void RemovalPanel::cancel() {
    if (_viewModel.cleanup().phase() == Phase::removing)
        _viewModel.cleanup().stop();
    else
        _viewModel.cleanup().close();
}

void RemovalPanel::restore() {
    _viewModel.cleanup().restore([this](const LauncherCleanup::Restored& restored) {
        if (!restored)
            _viewModel.messages().report(restored.error());
    });
    _viewModel.cleanup().close();
}

} // namespace tessellar
