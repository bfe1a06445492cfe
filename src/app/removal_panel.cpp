#include "app/removal_panel.h"

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_messages.h"

#include <QLocale>

namespace tessellar {

using Phase = LauncherCleanup::Phase;

static QString sizeText(std::uint64_t bytes, bool isPartial) {
    const QString text =
        QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
    return isPartial ? RemovalPanel::tr("at least %1").arg(text) : text;
}

static QString countText(qsizetype count) {
    return count == 1 ? RemovalPanel::tr("1 item")
                      : RemovalPanel::tr("%n items", nullptr, static_cast<int>(count));
}

// ---- the items

int RemovalItems::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QHash<int, QByteArray> RemovalItems::roleNames() const {
    return {{PathRole, "path"},      {NameRole, "name"}, {FolderRole, "folder"},
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
    case FolderRole:
        return FileSystem::parent(file.path);
    case ReasonRole:
        return file.reason;
    case SizeRole:
        return row.size ? sizeText(*row.size, row.isSizePartial) : QStringLiteral("…");
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
        rows.push_back({file.path, file.size, file.isSizePartial, review.isSelected(file.path)});
    // A review's items do not change, but this may be another review.
    if (!std::ranges::equal(rows, _rows, {}, &Row::path, &Row::path)) {
        beginResetModel();
        _rows = std::move(rows);
        endResetModel();
        return;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i] == _rows[i])
            continue;
        QList<int> roles;
        if (rows[i].size != _rows[i].size || rows[i].isSizePartial != _rows[i].isSizePartial)
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
            _currentRow = std::min(_currentRow, _items.rowCount() - 1);
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

QString RemovalPanel::total() const {
    const CleanupReviewState& review = _viewModel.cleanup().review();
    const MeasuredSize size = review.selectedSize();
    return QStringLiteral("%1, %2").arg(countText(review.selectedPaths.size()),
                                        sizeText(size.bytes, !size.isComplete));
}

QString RemovalPanel::staying() const {
    const CleanupReviewState& review = _viewModel.cleanup().review();
    const qsizetype count = review.items.size() - review.selectedPaths.size();
    return count == 0 ? QString() : tr("%1 will stay").arg(countText(count));
}

bool RemovalPanel::isAllSelected() const {
    const CleanupReviewState& review = _viewModel.cleanup().review();
    return review.items.size() == review.selectedPaths.size();
}

bool RemovalPanel::canRemove() const {
    return _viewModel.cleanup().phase() == Phase::review &&
           !_viewModel.cleanup().review().selectedPaths.isEmpty();
}

QString RemovalPanel::noticeTitle() const {
    const auto& notice = _viewModel.cleanup().helperNotice();
    return notice ? notice->title : QString();
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
    return cleanup.review().needsAdministrator() ? administratorWarning() : QString();
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
    if (cleanup.isStopping())
        return tr("Stopping…");
    return cleanup.phase() == Phase::removing ? cleanup.progress().text() : QString();
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

void RemovalPanel::selectAll(bool isSelected) {
    if (isSelected)
        _viewModel.cleanup().selectAllMatches();
    else
        _viewModel.cleanup().selectNothing();
}

void RemovalPanel::reveal(const QString& path) {
    _viewModel.cleanup().reveal(
        path, [&messages = _viewModel.messages()](const LauncherCleanup::Outcome& shown) {
            messages.report(shown);
        });
}

void RemovalPanel::moveTo(int row) {
    _currentRow = std::clamp(row, 0, std::max(0, _items.rowCount() - 1));
    Q_EMIT changed();
}

void RemovalPanel::pressKey(int key, bool withControl) {
    constexpr int rowsOfPage = 6;
    const bool isReview = _viewModel.cleanup().phase() == Phase::review;
    const QModelIndex current = _items.index(_currentRow);
    const QString path = _items.data(current, RemovalItems::PathRole).toString();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && phase() != u"removing")
        return cancel(); // the safe button
    if (!isReview)
        return;
    if (withControl) {
        if (key == Qt::Key_A)
            selectAll(!isAllSelected());
        else if (key == Qt::Key_R && !path.isEmpty())
            reveal(path);
        else if (key == Qt::Key_Backspace && canRemove())
            remove();
        return;
    }
    switch (key) {
    case Qt::Key_Up:
        return moveTo(_currentRow - 1);
    case Qt::Key_Down:
        return moveTo(_currentRow + 1);
    case Qt::Key_PageUp:
        return moveTo(_currentRow - rowsOfPage);
    case Qt::Key_PageDown:
        return moveTo(_currentRow + rowsOfPage);
    case Qt::Key_Home:
        return moveTo(0);
    case Qt::Key_End:
        return moveTo(_items.rowCount() - 1);
    case Qt::Key_Space:
        if (!path.isEmpty())
            select(path, !_items.data(current, RemovalItems::SelectedRole).toBool());
        return;
    default:
        return;
    }
}

void RemovalPanel::remove() { _viewModel.cleanup().remove(_viewModel.messages().asker()); }

void RemovalPanel::cancel() {
    if (_viewModel.cleanup().phase() == Phase::removing)
        _viewModel.cleanup().stop();
    else
        _viewModel.cleanup().close();
}

void RemovalPanel::restore() {
    LauncherCleanup& cleanup = _viewModel.cleanup();
    cleanup.restore(cleanup.lastRemoval(), [this](const LauncherCleanup::Restored& restored) {
        if (!restored)
            _viewModel.messages().report(restored.error());
    });
    cleanup.close();
}

} // namespace tessellar
