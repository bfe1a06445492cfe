#include "app/past_removals_panel.h"

#include "launcher/launcher_messages.h"
#include "platform/uuid_source.h"

namespace tessellar {

void PastRemovalsPanel::open() {
    _isOpen = true;
    _wasMoving = isMoving();
    list();
}

void PastRemovalsPanel::close() {
    _isOpen = false;
    _removals.clear();
    _message.clear();
}

void PastRemovalsPanel::list() {
    _viewModel.cleanup().listPast([this](const LauncherCleanup::Past& past) {
        if (!_isOpen)
            return;
        _removals.clear();
        _message = !past             ? past.error().message
                   : past->isEmpty() ? tr("Nothing was removed yet.")
                                     : QString();
        for (const CleanupRecord& removal : past.value_or(QList<CleanupRecord>())) {
            const qsizetype count = removal.items.size();
            const QString state = count == 0 ? tr("put back")
                                  : count == 1
                                      ? tr("1 item in the Trash")
                                      : tr("%n items in the Trash", nullptr, static_cast<int>(count));
            _removals.append(QVariantMap{
                {QStringLiteral("id"), toText(removal.id)},
                {QStringLiteral("name"), removal.name},
                {QStringLiteral("text"),
                 QStringLiteral("%1 · %2").arg(_viewModel.cleanup().dateText(removal), state)},
                {QStringLiteral("canPutBack"), count > 0}});
        }
        Q_EMIT changed();
    });
}

void PastRemovalsPanel::putBack(const QString& id) {
    _viewModel.cleanup().restore(QUuid::fromString(id),
                                 [this](const LauncherCleanup::Restored& restored) {
                                     if (!restored)
                                         _viewModel.messages().report(restored.error());
                                 });
}

void PastRemovalsPanel::refresh() {
    if (!_isOpen)
        return;
    if (std::exchange(_wasMoving, isMoving()) && !isMoving())
        list();
    Q_EMIT changed();
}

} // namespace tessellar
