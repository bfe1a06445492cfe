// Commands for settings: list, get, set; and for the system's permissions.

#include "control/command_set.h"
#include "launcher/launcher_settings.h"
#include "launcher/setting_table.h"
#include "platform/full_disk_access.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

/// Parsed as JSON if it is valid, otherwise taken as text.
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
        return {"granted", Texts::noop("Tessellar has full disk access.")};
    case FullDiskAccess::denied:
        return {
            "denied",
            Texts::noop(
                "Tessellar has no full disk access: a removal does not find what applications left in "
                "guarded folders. System Settings > Privacy & Security > Full Disk Access grants it.")};
    case FullDiskAccess::notGuarded:
        break;
    }
    return {"notGuarded",
            Texts::noop("This system does not restrict which folders Tessellar may read.")};
}

/// Fails the command and returns false if the settings cannot be read.
bool areReadable(const Call& call) {
    if (call->machine.settings.isReadable())
        return true;
    call->fail(
        {QStringLiteral("settingsUnreadable"), Texts::tr("The settings could not be read."), {}});
    return false;
}

void addPermissions(CommandSet& set) {
    set.onRun(set.add("permissions", Texts::noop("Whether Tessellar has full disk access")),
              CommandNeeds::machine, [](const Call& call) {
                  auto task = std::make_shared<Task>();
                  call->held.push_back(task);
                  *task = call->machine.workers.run(
                      [&files = call->machine.files, home = call->machine.places.home](
                          std::stop_token) { return fullDiskAccess(files, home); },
                      [call](FullDiskAccess access) {
                          const FullDiskAccessAnswer answer = answerFor(access);
                          call->succeed(QJsonObject{{QStringLiteral("fullDiskAccess"),
                                                     QLatin1String(answer.code)}},
                                        Texts::tr(answer.sentence));
                      });
              });
}

const char* typeName(const Setting& setting) {
    switch (setting.kind) {
    case Setting::Kind::integer:
        return "integer";
    case Setting::Kind::number:
        return "number";
    case Setting::Kind::boolean:
        return "boolean";
    case Setting::Kind::folders:
        return "list";
    case Setting::Kind::choice:
        return setting.choices.first().isDouble() ? "integer" : "text";
    case Setting::Kind::text:
    case Setting::Kind::keys:
    case Setting::Kind::address:
        break;
    }
    return "text";
}

void list(const Call& call) {
    if (!areReadable(call))
        return;
    const Settings& settings = call->machine.settings;
    QJsonObject all;
    QString text;
    for (const Setting& setting : settingTable()) {
        const QJsonValue now = settingNow(settings, setting);
        const bool isSet = settings.value(setting.key).has_value();
        all.insert(setting.key,
                   QJsonObject{{QStringLiteral("value"), now},
                               {QStringLiteral("default"), setting.defaultValue},
                               {QStringLiteral("isSet"), isSet},
                               {QStringLiteral("type"), QLatin1StringView(typeName(setting))},
                               {QStringLiteral("range"), rangeText(setting)},
                               {QStringLiteral("description"), Texts::tr(setting.description)}});
        text += QStringLiteral("%1 = %2%3\n    %4: %5.\n")
                    .arg(setting.key, now.isNull() ? Texts::tr("(not set)") : valueText(now),
                         isSet || now.isNull() ? QString() : Texts::tr(" (the default)"),
                         Texts::tr(setting.description), rangeText(setting));
    }
    // Perhaps of another version.
    const auto values = settings.values();
    for (auto it = values.begin(); it != values.end(); ++it)
        if (!settingNamed(it.key())) {
            all.insert(it.key(), QJsonObject{{QStringLiteral("value"), it.value()},
                                             {QStringLiteral("isSet"), true}});
            text += Texts::tr("%1 = %2 (not used here)\n").arg(it.key(), valueText(it.value()));
        }
    call->succeed(all, text);
}

} // namespace

void addSettingsCommands(CommandSet& set) {
    addPermissions(set);
    CLI::App* group = set.addGroup("settings", Texts::noop("What the user has set"));
    set.onRun(set.add("list", Texts::noop("Every setting, with its current value and the allowed ones"),
                      group),
              CommandNeeds::machine, [](const Call& call) { list(call); });

    CLI::App* get = set.add("get", Texts::noop("One setting"), group);
    set.onRun(get, CommandNeeds::machine,
              [key = word(get, "key", Texts::noop("Its name"))](const Call& call) {
                  if (!areReadable(call))
                      return;
                  auto value = call->machine.settings.value(text(key));
                  if (const Setting* setting = settingNamed(text(key)))
                      value = settingNow(call->machine.settings, *setting);
                  if (!value || value->isNull())
                      return call->fail(
                          {QStringLiteral("notSet"), Texts::tr("“%1” is not set.").arg(text(key)), {}});
                  call->succeed(QJsonObject{{text(key), *value}}, valueText(*value));
              });

    CLI::App* put = set.add("set", Texts::noop("Store a setting; null removes it"), group);
    set.onRun(put, CommandNeeds::launcher,
              [key = word(put, "key", Texts::noop("Its name")),
               value = word(put, "value", Texts::noop("JSON or plain text"))](const Call& call) {
                  const QJsonValue wanted = settingValue(text(value));
                  call->launcher().settings().store(
                      text(key), wanted,
                      [call, key = text(key), wanted](const LauncherSettings::Outcome& stored) {
                          if (!stored)
                              return call->fail(stored.error());
                          call->succeed(QJsonObject{{key, wanted}}, {});
                      });
              });
}

} // namespace tessellar
