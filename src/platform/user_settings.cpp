#include "platform/user_settings.h"

#include "platform/machine.h"

namespace tessellar {

std::unique_ptr<Settings> makeUserSettings(const UserSettingsContext& store) {
    return std::make_unique<FileSettings>(store.files,
                                          store.home + QLatin1StringView("/Library/Preferences/") +
                                              applicationIdentifier + QLatin1StringView(".json"));
}

QString applicationSupportDirectory(const UserSettingsContext& store) {
    const auto xdg = store.environment.find("XDG_DATA_HOME");
    if (store.hasRoot)
        return store.home + QLatin1StringView("/Library/Application Support");
    return xdg != store.environment.end() && xdg->second.startsWith('/')
               ? FileSystem::standardized(QString::fromUtf8(xdg->second))
               : store.home + QLatin1StringView("/.local/share");
}

} // namespace tessellar
