#include "app/removal_panel.h"

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_messages.h"

#include <QLocale>

namespace tessellar {

using Phase = LauncherCleanup::Phase;

static QString sizeText(std::uint64_t bytes) {
    return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

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

QString RemovalPanel::appKey() const {
    return isOpen() ? tessellar::appKey(_viewModel.cleanup().app()) : QString();
}

QString RemovalPanel::appName() const { return isOpen() ? _viewModel.cleanup().app().name : QString(); }

QVariantList RemovalPanel::items() const {
    const CleanupReviewState& review = _viewModel.cleanup().review();
    QVariantList result;
    if (!isOpen())
        return result;
    for (const RelatedFile& file : review.items)
        result.append(QVariantMap{
            {QStringLiteral("path"), file.path},
            {QStringLiteral("name"), FileSystem::fileName(file.path)},
            {QStringLiteral("place"), file.location},
            {QStringLiteral("reason"), file.reason},
            {QStringLiteral("size"), file.size ? sizeText(*file.size) : QStringLiteral("…")},
            {QStringLiteral("isSelected"), review.isSelected(file.path)},
            {QStringLiteral("isLocked"), file.needsAdministrator}});
    return result;
}

QString RemovalPanel::total() const {
    const CleanupReviewState& review = _viewModel.cleanup().review();
    const qsizetype count = review.selectedPaths.size();
    const QString size = sizeText(review.selectedSize());
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
