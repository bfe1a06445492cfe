#include "launcher/removal_steps.h"

#include "platform/texts.h"

#include <algorithm>

namespace tessellar {
namespace {

const char* const notKnown = Texts::noop("Its location is not known.");

bool isThere(const FileSystem& files, const RelatedFile& item) {
    const auto status = files.linkStatus(item.path);
    return status && isSameOnItsVolume(identityOf(*status), item.identity);
}

constexpr auto isBundle = &CleanupItemResult::isBundle;

} // namespace

void RemovalSteps::write(const CleanupRecord& record) const {
    if (const auto written = _store.put(record); !written)
        _tools.machine.log.warning(written.error());
}

RemovalStep RemovalSteps::take(CleanupRecord record, const QList<RelatedFile>& items, bool mayQuit,
                               std::stop_token stop,
                               const AppCleanupRemover::Progress& progress) const {
    const QList<CleanupItemResult> inTrash = record.items;
    const CleanupRemovalResult result = _tools.remover(mayQuit).remove(
        record.application(), items, stop, progress, [&](const QList<CleanupItemResult>& planned) {
            record.items = inTrash + planned;
            return _store.put(record);
        });
    RemovalStep step{.record = std::move(record), .log = result.log, .stillOpen = {}, .failure = {}};
    step.record.items = inTrash;
    step.record.restored.clear();
    step.stillOpen = result.stillRunning.value(0);
    for (const CleanupItemResult& item : result.items) {
        if (item.isMoved())
            step.record.items.append(item);
        else if (!step.failure || item.isBundle())
            step.failure = item.failure;
    }
    const bool bundleStays = std::ranges::any_of(
        result.items, [](const CleanupItemResult& item) { return item.isBundle() && !item.isMoved(); });
    if (step.record.items.size() > inTrash.size() && !bundleStays)
        step.failure.reset();
    write(step.record);
    return step;
}

RemovalStep RemovalSteps::takeAgain(const QUuid& removal, std::stop_token stop) const {
    const auto found = find(removal);
    if (!found || !*found || (*found)->restored.isEmpty())
        return {.record = {},
                .log = {},
                .stillOpen = {},
                .failure = found ? Texts::tr(notKnown) : found.error()};
    const CleanupRecord before = **found;
    QList<RelatedFile> items;
    for (const CleanupItemResult& item : before.restored)
        items.append(item.item);
    // Nobody can be asked here: a running application is not removed.
    RemovalStep step = take(before, items, false, stop);
    if (step.failure) {
        // If it fails, everything is moved back.
        const RemovalStep back = bringBack(step.record, false, stop);
        step.record = back.record;
        step.record.restored = before.restored;
        write(step.record);
    }
    return step;
}

RemovalStep RemovalSteps::bringBack(CleanupRecord record, bool onlyWithBundle,
                                    std::stop_token stop) const {
    const FileSystem& files = _tools.machine.files;
    AppCleanupRemover remover = _tools.remover(false);
    RemovalStep step{.record = record, .log = {}, .stillOpen = {}, .failure = {}};
    step.record.items.clear();
    const auto bring = [&](const QList<CleanupItemResult>& items) {
        for (CleanupItemResult outcome : remover.restore(record.application(), items, stop)) {
            const QString name = FileSystem::fileName(outcome.item.path);
            if (outcome.failure && isThere(files, outcome.item))
                outcome.failure.reset(); // restored by other means
            if (!outcome.failure) {
                step.record.restored.append(outcome);
                step.log.append({CleanupLogLine::Kind::moved, outcome.item.path,
                                 Texts::tr("%1: put back.").arg(name)});
                continue;
            }
            step.log.append({CleanupLogLine::Kind::failed, outcome.item.path,
                             name + QStringLiteral(": ") + *outcome.failure});
            if (!step.failure && outcome.isBundle())
                step.failure = outcome.failure;
            if (!std::exchange(outcome.isGone, false)) {
                outcome.failure.reset();
                step.record.items.append(outcome);
            }
        }
    };
    QList<CleanupItemResult> others = record.items;
    QList<CleanupItemResult> bundles;
    std::ranges::copy_if(others, std::back_inserter(bundles), isBundle);
    others.removeIf([](const CleanupItemResult& item) { return item.isBundle(); });
    bring(bundles);
    if (onlyWithBundle && step.failure)
        step.record.items = record.items;
    else
        bring(others);
    if (step.record.restored.size() == record.restored.size() && !step.failure && !step.log.isEmpty())
        step.failure = step.log.first().text;
    // In the order of a removal, the bundle last, for redo.
    std::ranges::stable_sort(step.record.restored, {}, isBundle);
    write(step.record);
    return step;
}

RemovalStep RemovalSteps::bringBack(const QUuid& removal, const QString& path,
                                    std::stop_token stop) const {
    const auto found = find(removal);
    if (found && *found && !(*found)->items.isEmpty())
        return bringBack(**found, true, stop);
    RemovalStep step;
    if (!found)
        step.failure = found.error();
    else if (!_tools.machine.files.exists(path)) // otherwise it was restored by other means
        step.failure = Texts::tr(notKnown);
    return step;
}

std::expected<QList<CleanupRecord>, QString> RemovalSteps::all() const {
    std::expected<QList<CleanupRecord>, QString> records = _store.read();
    if (!records)
        return records;
    // Items that a killed removal had not moved are dropped.
    for (CleanupRecord& record : *records)
        record.items.removeIf([this](const CleanupItemResult& item) {
            return !item.trashedPath && isThere(_tools.machine.files, item.item);
        });
    records->removeIf([](const CleanupRecord& record) {
        return record.items.isEmpty() && record.restored.isEmpty();
    });
    std::ranges::reverse(*records);
    return records;
}

std::expected<std::optional<CleanupRecord>, QString>
RemovalSteps::find(const std::optional<QUuid>& removal) const {
    const auto records = all();
    if (!records)
        return std::unexpected(records.error());
    for (const CleanupRecord& record : *records)
        if (removal ? record.id == *removal : !record.items.isEmpty())
            return record;
    return std::nullopt;
}

} // namespace tessellar
