#include "platform/user_settings.h"

#include "platform/defaults_settings.h"
#include "platform/machine.h"

namespace tessellar {

std::unique_ptr<Settings> makeUserSettings(const UserSettingsContext& store) {
    if (!store.hasRoot)
        return std::make_unique<DefaultsSettings>(store.files, store.commands, store.environment,
                                                  applicationIdentifier);
    return std::make_unique<FileSettings>(store.files,
                                          store.home + QLatin1StringView("/Library/Preferences/") +
                                              applicationIdentifier + QLatin1StringView(".json"));
}

QString applicationSupportDirectory(const UserSettingsContext& store) {
    return store.home + QLatin1StringView("/Library/Application Support");
}

} // namespace tessellar
