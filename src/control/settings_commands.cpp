// The settings: list, get, set; and what the system permits.

#include "control/command_set.h"
#include "platform/full_disk_access.h"

namespace tessellar {
namespace {

/// JSON where it reads as such, else text.
QJsonValue settingValue(const QString& text) {
    if (const auto list = json::parse('[' + text.toUtf8() + ']'); list && list->toArray().size() == 1)
        return list->toArray().first();
    return text;
}

struct FullDiskAccessAnswer {
    const char* code;
    const char* sentence;
};

FullDiskAccessAnswer answerFor(FullDiskAccess access) {
    switch (access) {
    case FullDiskAccess::granted:
        return {"granted", "Tessellar has full disk access."};
    case FullDiskAccess::denied:
        return {"denied",
                "Tessellar has no full disk access: a removal does not find what applications left in "
                "guarded folders. System Settings > Privacy & Security > Full Disk Access grants it."};
    case FullDiskAccess::notGuarded:
        break;
    }
    return {"notGuarded", "This system guards no folders from Tessellar."};
}

void addPermissions(CommandSet& set) {
    set.onRun(set.add("permissions", "What the system lets Tessellar see"), CommandNeeds::machine,
              [](const Call& call) {
                  auto task = std::make_shared<Task>();
                  call->held.push_back(task);
                  *task = call->machine.workers.run(
                      [&files = call->machine.files, home = call->machine.places.home](
                          std::stop_token) { return fullDiskAccess(files, home); },
                      [call](FullDiskAccess access) {
                          const FullDiskAccessAnswer answer = answerFor(access);
                          call->succeed(QJsonObject{{QStringLiteral("fullDiskAccess"),
                                                     QLatin1String(answer.code)}},
                                        QString::fromUtf8(answer.sentence));
                      });
              });
}

} // namespace

void addSettingsCommands(CommandSet& set) {
    addPermissions(set);
    CLI::App* group = set.addGroup("settings", "What the user has set");
    set.onRun(set.add("list", "Every setting that is stored", group), CommandNeeds::machine,
              [](const Call& call) {
                  QJsonObject object;
                  QString text;
                  const auto values = call->machine.settings.values();
                  for (auto it = values.begin(); it != values.end(); ++it) {
                      object.insert(it.key(), it.value());
                      text += QStringLiteral("%1 = %2\n").arg(it.key(), valueText(it.value()));
                  }
                  call->succeed(object, text);
              });

    CLI::App* get = set.add("get", "One setting", group);
    set.onRun(get, CommandNeeds::machine, [key = word(get, "key", "Its name")](const Call& call) {
        const auto value = call->machine.settings.value(text(key));
        if (!value)
            return call->fail(
                {QStringLiteral("notSet"), QStringLiteral("“%1” is not set.").arg(text(key)), {}});
        call->succeed(QJsonObject{{text(key), *value}}, valueText(*value));
    });

    CLI::App* put = set.add("set", "Store a setting; null removes it", group);
    set.onRun(put, CommandNeeds::launcher,
              [key = word(put, "key", "Its name"),
               value = word(put, "value", "JSON, or else text")](const Call& call) {
                  const auto stored = call->machine.settings.set(text(key), settingValue(text(value)));
                  if (!stored)
                      return call->fail(launcherError(stored.error()));
                  call->launcher().applySettings();
                  call->succeed(QJsonObject{{text(key), settingValue(text(value))}}, {});
              });
}

} // namespace tessellar
