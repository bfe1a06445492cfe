#include "launcher/replacement_merger.h"

namespace tessellar {

struct ReplacementMerger::State {
    LayoutDocument document;
    QSet<QString> unavailableAppKeys;
    qsizetype pageCapacity = 0;
    RememberedPlaces places;
    bool canRemember = false;
    std::shared_ptr<const InstalledScan> installed;
    QString locale;

    bool operator==(const State&) const = default;
};

ReplacementMerger::ReplacementMerger(const Machine& machine, const LiveLayouts& layouts,
                                     const InstalledApplications& applications,
                                     const PlaceMemory& places)
    : _machine(machine), _layouts(layouts), _applications(applications), _places(places) {}

ReplacementMerger::State ReplacementMerger::state(Mode mode) const {
    const LiveLayout& layout = _layouts[mode];
    return {.document = layout.document(),
            .unavailableAppKeys = layout.unavailableAppKeys(),
            .pageCapacity = layout.capacities().page,
            .places = _places[mode],
            .canRemember = _places.canRemember(mode),
            .installed = _applications.latest(),
            .locale = _machine.locale.identifier()};
}

void ReplacementMerger::merge(Mode mode, std::function<Wanted()> wanted,
                              std::function<void(const MergeResult&)> done) {
    attempt(mode, std::move(wanted), std::move(done), 3);
}

void ReplacementMerger::attempt(Mode mode, std::function<Wanted()> wanted,
                                std::function<void(const MergeResult&)> done, int attemptsLeft) {
    const LiveLayout& layout = _layouts[mode];
    MergeInput input = mergeInput({}, layout, _applications.latest(), _places, _machine);
    input.context.isRestore = true;
    Wanted now = wanted();
    if (now.apps)
        input.context.scannedApps = *std::move(now.apps);
    const auto work = [input = std::move(input), layoutNow = layout.document(),
                       unavailable = layout.unavailableAppKeys(), document = std::move(now.document)] {
        MergeInput all = input;
        all.document = document();
        forEachItem(layoutNow.pages, [&](const LaunchpadItem& item) {
            const AppEntry* app = item.app();
            if (app && !app->alias && unavailable.contains(appKey(*app)))
                all.context.unseenApps.append(*app);
            return true;
        });
        return all.merge();
    };
    if (attemptsLeft == 0)
        return done(work());
    const auto task = _tasks.insert(_tasks.end(), Task());
    *task = _machine.workers.run(
        Lane::computing, [work](std::stop_token) { return work(); },
        [this, task, mode, before = state(mode), wanted = std::move(wanted), done = std::move(done),
         attemptsLeft](const MergeResult& merged) {
            const Task ended = std::move(*task); // kept until the end of this call
            _tasks.erase(task);
            if (state(mode) == before)
                return done(merged);
            attempt(mode, wanted, done, attemptsLeft - 1);
        });
}

} // namespace tessellar
