#include "launcher/place_memory.h"

#include "platform/texts.h"

namespace tessellar {

static constexpr std::uint64_t maximumBytes = 16u << 20;

static QString pathOf(const Machine& machine, const QString& name) {
    return FileSystem::joined(machine.places.applicationFolder(), name);
}

PlaceMemory::PlaceMemory(const Machine& machine)
    : _machine(machine)
    , _kept{Kept(machine, pathOf(machine, QStringLiteral("remembered-places.json")), maximumBytes),
            Kept(machine, pathOf(machine, QStringLiteral("remembered-places-windowed.json")),
                 maximumBytes)} {}

void PlaceMemory::load() {
    for (const LauncherWindowMode mode : LiveLayouts::modes) {
        if (canRemember(mode))
            continue;
        kept(mode).load();
        if (folderDepth((*this)[mode].pages) > maximumFolderDepth)
            set(mode, {});
    }
}

void PlaceMemory::rememberRemoved(const LiveLayouts& layouts, const QString& path) {
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        set(mode, placesAfterRemoval(layouts[mode].pages(), (*this)[mode], path, _machine.clock.now(),
                                     _machine.locale));
}

void PlaceMemory::putBack(const QString& path, bool isBack) {
    for (const LauncherWindowMode mode : LiveLayouts::modes) {
        RememberedPlaces places = (*this)[mode];
        places.setRemoved(path, !isBack);
        set(mode, places);
    }
}

void PlaceMemory::forget(LauncherWindowMode mode, const std::optional<QString>& application,
                         Forgotten done) {
    if (!canRemember(mode))
        return done(std::unexpected(
            LauncherError{QStringLiteral("placesUnreadable"),
                          Texts::tr("The remembered places could not be read: nothing was forgotten."),
                          {}}));
    const RememberedPlaces before = (*this)[mode];
    RememberedPlaces places = before;
    places.forget([&](const AppEntry& app) {
        return !application || appKey(app) == *application || app.path == *application ||
               app.bundleIdentifier == application;
    });
    const qsizetype count = before.places.size() - places.places.size();
    set(mode, places);
    kept(mode).whenWritten([this, mode, before, places, count,
                            done = std::move(done)](const BackgroundFile::Result& written) mutable {
        if (written)
            return done(count);
        // Otherwise a later save would forget them after all.
        if ((*this)[mode] == places)
            set(mode, before);
        kept(mode).whenWritten([error = launcherError(written.error()), done = std::move(done)](
                                   const BackgroundFile::Result&) { done(std::unexpected(error)); });
    });
}

} // namespace tessellar
