// The settings: list, get, set.

#include "control/command_set.h"

namespace tessellar {
namespace {

/// JSON where it reads as such, else text.
QJsonValue settingValue(const QString& text) {
    if (const auto list = json::parse('[' + text.toUtf8() + ']'); list && list->toArray().size() == 1)
        return list->toArray().first();
    return text;
}

} // namespace

void addSettingsCommands(CommandSet& set) {
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
