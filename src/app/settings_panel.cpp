#include "app/settings_panel.h"

#include "discovery/app_discovery_settings.h"
#include "launcher/installed_applications.h"
#include "launcher/language.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_settings.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "model/layout_settings.h"
#include "platform/desktop/hot_key.h"
#include "platform/desktop/pointer_watch.h"
#include "platform/texts.h"
#include "updates/app_update_settings.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QLocale>
#include <QPointer>

#include <algorithm>

namespace tessellar {
namespace {

using Kind = Setting::Kind;
using Discovery = AppDiscoverySettings;

// Rows that are not settings.
const QString folderPrefix = QStringLiteral("folder:");
const QString addedFolder = QStringLiteral("addFolder");
const QString loginKey = QStringLiteral("launchAtLogin");
const QString copyKey = QStringLiteral("copyToggleCommand");
const QString toggleCommand = QStringLiteral("tessellarctl toggle");
const QString usageKey = QStringLiteral("forgetUsage");
const QString skippedKey = QStringLiteral("skippedUpdates");

QString text(const char* string) { return SettingsPanel::tr(string); }

const char* kindName(Kind kind) {
    switch (kind) {
    case Kind::integer:
    case Kind::number:
        return "slider";
    case Kind::boolean:
        return "switch";
    case Kind::choice:
        return "choice";
    case Kind::text:
    case Kind::folders:
    case Kind::keys:
    case Kind::address:
        break;
    }
    return "field";
}

/// "5", "110 %", "64".
QString valueText(const Setting& setting, const QJsonValue& value) {
    const QLocale locale;
    if (value.isNull())
        return SettingsPanel::tr("Automatic");
    const bool isShare = setting.maximum <= 2;
    return isShare ? locale.toString(qRound(value.toDouble() * 100)) + QStringLiteral(" %")
                   : locale.toString(qRound(value.toDouble()));
}

QString text(HotKeyState state) {
    switch (state) {
    case HotKeyState::refused:
        return SettingsPanel::tr("Another program has these keys.");
    case HotKeyState::away:
        return SettingsPanel::tr("The keys and the corner need a launcher that stays in the "
                                 "background: start it with “tessellar --resident”, or at login.");
    case HotKeyState::taken:
        break;
    }
    return {};
}

QVariantMap note(const QString& words) {
    return {{QStringLiteral("kind"), QStringLiteral("note")}, {QStringLiteral("title"), words}};
}

} // namespace

SettingsPanel::SettingsPanel(LauncherViewModel& viewModel, Machine& machine)
    : _viewModel(viewModel), _machine(machine) {}

// ---- rows

QVariantMap SettingsPanel::row(const QString& key, const QString& title) const {
    const Setting& setting = *settingNamed(key);
    const QJsonValue now = settingNow(_viewModel.settings().expected(), setting);
    QVariantList choices;
    for (qsizetype i = 0; i < setting.choices.size(); ++i)
        choices.append(QVariantMap{{QStringLiteral("title"), Texts::tr(setting.titles[i])},
                                   {QStringLiteral("isChosen"), setting.choices[i] == now}});
    return {{QStringLiteral("key"), key},
            {QStringLiteral("kind"), QLatin1StringView(kindName(setting.kind))},
            {QStringLiteral("title"), title},
            {QStringLiteral("hint"), Texts::tr(setting.description)},
            {QStringLiteral("value"), now.toVariant()},
            {QStringLiteral("text"), valueText(setting, now)},
            {QStringLiteral("low"), setting.minimum},
            {QStringLiteral("high"), setting.maximum},
            {QStringLiteral("step"), setting.step},
            {QStringLiteral("choices"), choices},
            {QStringLiteral("isSet"), _viewModel.settings().expected().value(key).has_value()}};
}

QVariantMap SettingsPanel::section(const QString& title, const QVariantList& rows,
                                   const QString& note) const {
    return {{QStringLiteral("title"), title},
            {QStringLiteral("rows"), rows},
            {QStringLiteral("note"), note}};
}

QVariantMap SettingsPanel::grid() const {
    struct Row {
        const char* key;
        const char* title;
        bool isOfWindows = true;
        bool isOfScreens = true;
    };
    static constexpr std::array all{
        Row{"gridRows", QT_TR_NOOP("Rows")},
        Row{"gridColumns", QT_TR_NOOP("Columns")},
        Row{"iconScale", QT_TR_NOOP("Icon size"), false},
        Row{"windowedIconSize", QT_TR_NOOP("Icon size"), true, false},
        Row{"windowedHorizontalSpacing", QT_TR_NOOP("Space between columns"), true, false},
        Row{"windowedVerticalSpacing", QT_TR_NOOP("Space between rows"), true, false},
        Row{"tileLabelFontSize", QT_TR_NOOP("Size of names")},
        Row{"folderRows", QT_TR_NOOP("Rows in a folder")},
        Row{"folderColumns", QT_TR_NOOP("Columns in a folder")},
        Row{"folderIconScale", QT_TR_NOOP("Icon size in a folder")},
        Row{"folderIconSpacing", QT_TR_NOOP("Space in a folder")}};
    const LauncherWindowMode mode = _viewModel.shown().mode();
    const bool isWindowed = mode == LauncherWindowMode::windowed;
    QVariantList rows;
    for (const Row& each : all)
        if (isWindowed ? each.isOfWindows : each.isOfScreens)
            rows.append(row(settingKey(mode, QLatin1StringView(each.key)), text(each.title)));
    return section(isWindowed ? tr("Grid in the window") : tr("Grid in full screen"), rows,
                   tr("Layout settings are remembered separately for each mode."));
}

QStringList SettingsPanel::additionalFolders() const {
    QStringList folders = _viewModel.settings()
                              .expected()
                              .texts(Discovery::additionalSearchPathsKey)
                              .value_or(QStringList());
    // Invalid entries are neither shown nor kept.
    folders.removeIf([this](const QString& folder) {
        return Discovery::normalized({folder}, _machine.places.home).isEmpty();
    });
    return folders;
}

QVariantMap SettingsPanel::folders() const {
    const QString home = _machine.places.home;
    const QStringList added = Discovery::normalized(additionalFolders(), home);
    QVariantList rows;
    for (const QString& path : Discovery::read(_viewModel.settings().expected(), home).searchPaths) {
        const auto count = std::ranges::count_if(_viewModel.applications().all(), [&](const auto& app) {
            return app.path.startsWith(path + u'/');
        });
        rows.append(
            QVariantMap{{QStringLiteral("key"), folderPrefix + path},
                        {QStringLiteral("kind"), QStringLiteral("action")},
                        {QStringLiteral("title"), path},
                        {QStringLiteral("text"),
                         count == 1 ? tr("1 application")
                                    : tr("%Ln applications", nullptr, static_cast<int>(count))},
                        {QStringLiteral("action"), added.contains(path) ? tr("Remove") : QString()}});
    }
    QStringList incomplete;
    for (const auto& bundle : _viewModel.applications().scan().incompleteBundles)
        incomplete.append(bundle.path);
    if (!incomplete.isEmpty())
        rows.append(note(tr("Left out, because they are incomplete: %1")
                             .arg(incomplete.mid(0, 5).join(QStringLiteral(", ")) +
                                  (incomplete.size() > 5 ? QStringLiteral(", …") : QString()))));
    rows.append(QVariantMap{{QStringLiteral("key"), addedFolder},
                            {QStringLiteral("kind"), QStringLiteral("field")},
                            {QStringLiteral("title"), tr("Add a folder")},
                            {QStringLiteral("hint"), tr("Its path, such as ~/Tools")},
                            {QStringLiteral("value"), QString()}});
    rows.append(row(Discovery::scanDepthKey, tr("Depth")));
    return section(tr("Applications"), rows);
}

QVariantMap SettingsPanel::opening() const {
    QVariantList rows{row(QStringLiteral("window.mode"), tr("Show in"))};
    if (_loginItem.isOn)
        rows.append(QVariantMap{{QStringLiteral("key"), loginKey},
                                {QStringLiteral("kind"), QStringLiteral("switch")},
                                {QStringLiteral("title"), tr("Start at login")},
                                {QStringLiteral("value"), _loginItem.isOn()}});
    if (HotKey::areAvailable()) {
        rows.append(row(QStringLiteral("summon.hotKey"), tr("Shortcut")));
        if (const QString trouble = text(_hotKeyState()); !trouble.isEmpty())
            rows.append(note(trouble));
    } else {
        rows.append(QVariantMap{
            {QStringLiteral("key"), copyKey},
            {QStringLiteral("kind"), QStringLiteral("action")},
            {QStringLiteral("title"), tr("Shortcut")},
            {QStringLiteral("text"), tr("A shortcut of your desktop that runs “%1” shows the launcher "
                                        "from anywhere.")
                                         .arg(toggleCommand)},
            {QStringLiteral("action"), tr("Copy Command")}});
    }
    if (PointerWatch::isAvailable())
        rows.append(row(QStringLiteral("summon.hotCorner"), tr("Hot corner")));
    return section(tr("Opening"), rows);
}

QVariantMap SettingsPanel::privacy() const {
    QVariantList rows{QVariantMap{
        {QStringLiteral("key"), usageKey},
        {QStringLiteral("kind"), QStringLiteral("action")},
        {QStringLiteral("title"), tr("Usage")},
        {QStringLiteral("text"),
         tr("When and how often applications are started here, for smart folders. It stays on this "
            "computer.")},
        {QStringLiteral("action"), tr("Forget…")}}};
    rows.append(note(tr("Removal helper: %1").arg(removalHelperDescription())));
    if (!_helper.isEmpty())
        rows.append(note(_helper));
    return section(tr("Usage and Removal"), rows);
}

void SettingsPanel::show() {
    _sections = {grid(),
                 section(tr("Appearance"), {row(QStringLiteral("appearance"), tr("Sheets and menus")),
                                            row(QStringLiteral("background"), tr("Background")),
                                            row(Language::settingKey, tr("Language")),
                                            row(QStringLiteral("textScale"), tr("Text size")),
                                            row(QStringLiteral("reducesMotion"), tr("Reduce motion"))}),
                 opening(),
                 folders(),
                 section(tr("Updates for Installed Apps"),
                         {row(AppUpdateSettings::enabledKey, tr("Check for updates")),
                          row(AppUpdateSettings::intervalKey, tr("How often")),
                          QVariantMap{{QStringLiteral("key"), skippedKey},
                                      {QStringLiteral("kind"), QStringLiteral("action")},
                                      {QStringLiteral("title"), tr("Sources, and what is skipped")},
                                      {QStringLiteral("action"), tr("Show…")}}}),
                 privacy()};
    Q_EMIT changed();
}

void SettingsPanel::setShown(bool isShown) {
    if (isShown != _shown.empty())
        return;
    _shown.clear();
    if (!isShown) {
        // Discards a value that was only tried out.
        if (!std::exchange(_tried, {}))
            return;
        for (const LauncherWindowMode mode : LiveLayouts::modes)
            _viewModel.layout(mode).settingsChanged();
        return;
    }
    _issue.clear();
    const auto follow = [this](auto& signal) { _shown.push_back(signal.connect([this] { show(); })); };
    _shown.push_back(_viewModel.settingsChanged.connect([this] {
        if (_tried) // still being dragged
            tryOut(_tried->first, _tried->second);
        show();
    }));
    follow(_viewModel.layouts().shownModeChanged);
    follow(_viewModel.applications().scanned);
    _viewModel.cleanup().checkHelper(
        [self = QPointer(this)](const std::expected<void, QString>& health) {
            if (!self)
                return;
            self->_helper = health ? tr("The removal helper answers.") : health.error();
            self->show();
        });
    show();
}

// ---- changes

void SettingsPanel::tell(const QString& issue) {
    _issue = issue;
    show();
}

void SettingsPanel::tryOut(const QString& key, double value) {
    const LauncherWindowMode mode = _viewModel.shown().mode();
    _tried = {key, value};
    const ChangedSettings tried(_viewModel.settings().expected(), {{{key, value}}});
    _viewModel.shown().tryOut(readLayoutSettings(tried, mode));
}

void SettingsPanel::store(const QString& key, const QJsonValue& value) {
    _issue.clear();
    _tried.reset();
    _viewModel.settings().store(
        key, value, [self = QPointer(this)](const LauncherSettings::Outcome& stored) {
            if (!self || stored)
                return;
            for (const LauncherWindowMode mode : LiveLayouts::modes)
                self->_viewModel.layout(mode).settingsChanged(); // discard the value that was tried out
            self->tell(stored.error().message);
        });
    show();
}

void SettingsPanel::set(const QString& key, const QVariant& value) {
    if (key == loginKey) {
        const auto stored = _loginItem.set(value.toBool());
        return tell(stored ? QString() : stored.error());
    }
    const QString text = value.toString().trimmed();
    if (key == addedFolder)
        return setFolders(additionalFolders() + QStringList(text));
    const Setting* setting = settingNamed(key);
    const bool isCleared = setting && setting->kind == Kind::keys && text.isEmpty();
    store(key, isCleared ? QJsonValue() : QJsonValue::fromVariant(value));
}

void SettingsPanel::choose(const QString& key, int index) {
    const Setting* setting = settingNamed(key);
    if (!setting || index < 0 || index >= setting->choices.size())
        return;
    store(key, setting->choices[index]);
    if (key == u"window.mode")
        if (const auto mode =
                json::fromRawValue<LauncherWindowMode>(setting->choices[index].toString()))
            _viewModel.layouts().show(*mode);
}

void SettingsPanel::setFolders(const QStringList& folders) {
    store(Discovery::additionalSearchPathsKey,
          folders.isEmpty() ? QJsonValue() : QJsonValue(QJsonArray::fromStringList(folders)));
}

void SettingsPanel::act(const QString& key) {
    if (key == usageKey)
        return askToForgetUsage();
    if (key == copyKey)
        return QGuiApplication::clipboard()->setText(toggleCommand);
    if (key == skippedKey)
        return Q_EMIT updatesRequested();
    if (!key.startsWith(folderPrefix))
        return;
    QStringList folders = additionalFolders();
    folders.removeIf([&](const QString& folder) {
        return Discovery::normalized({folder}, _machine.places.home)
            .contains(key.sliced(folderPrefix.size()));
    });
    setFolders(folders);
}

void SettingsPanel::askToForgetUsage() {
    _viewModel.messages().ask(
        {.title = tr("Forget when applications were started?"),
         .text = tr("Smart folders with rules about use start over. This cannot be undone."),
         .accept = tr("Forget"),
         .isDestructive = true},
        [&library = _viewModel.smartFolders()](bool accepted) {
            if (accepted)
                library.forgetUsage();
        });
}

} // namespace tessellar
