#include "launcher/action_table.h"

#include <algorithm>

namespace tessellar {

static bool isEnabled(const ActionRow& row, const ActionContext& context) {
    return !row.isEnabled || row.isEnabled(context);
}

/// True for the actions that apply to a target.
static bool isMeant(const ActionRow& row, const ActionContext& context) {
    return row.isAboutUpdates || !context.target.isAboutUpdates;
}

QList<MenuEntry> actionMenu(LauncherViewModel& launcher, const ActionTarget& target) {
    const ActionContext context = contextOf(launcher, target);
    QList<MenuEntry> menu;
    bool isGroupDue = false;
    for (const ActionRow& row : actionRows()) {
        if (!row.id) {
            isGroupDue = true;
            continue;
        }
        if (!row.isInMenu || !isMeant(row, context) || !row.applies(context))
            continue;
        if (std::exchange(isGroupDue, false) && !menu.isEmpty())
            menu.append(MenuEntry());
        const QString id = QLatin1StringView(row.id);
        menu.append({.id = id,
                     .title = row.title(context),
                     .isEnabled = isEnabled(row, context),
                     .isDestructive = row.isDestructive,
                     .entries = row.entries ? row.entries(context, id) : QList<MenuEntry>(),
                     .shortcut = QLatin1StringView(row.shortcut)});
    }
    return menu;
}

std::optional<ActionRequest> performAction(LauncherViewModel& launcher, const ActionTarget& target,
                                           const QString& id, ActionTold told) {
    const ActionContext context = contextOf(launcher, target, std::move(told));
    const qsizetype colon = id.indexOf(u':');
    const QStringView name = QStringView(id).first(colon < 0 ? id.size() : colon);
    for (const ActionRow& row : actionRows())
        if (row.id && name == QLatin1StringView(row.id) && row.perform && row.applies(context) &&
            isEnabled(row, context))
            return row.perform(context, colon < 0 ? QString() : id.mid(colon + 1));
    return std::nullopt;
}

// ---- keys

/// A key with its modifiers, as the table writes shortcuts.
static QString shortcutText(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (key == Qt::Key_Y && modifiers == Qt::ControlModifier) // as on other desktops
        return QStringLiteral("Ctrl+Shift+Z");
    QString text = modifiers & Qt::ControlModifier ? QStringLiteral("Ctrl+") : QString();
    if (modifiers & Qt::ShiftModifier)
        text += QStringLiteral("Shift+");
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return text + u'F' + QString::number(key - Qt::Key_F1 + 1);
    return key > Qt::Key_Space && key <= Qt::Key_AsciiTilde ? text + QChar(ushort(key)) : QString();
}

std::optional<ActionRequest> performShortcut(LauncherViewModel& launcher, const ActionTarget& target,
                                             Qt::Key key, Qt::KeyboardModifiers modifiers) {
    const QString shortcut = shortcutText(key, modifiers);
    const auto rows = actionRows();
    const auto row = std::ranges::find_if(rows, [&](const ActionRow& candidate) {
        return candidate.shortcut && shortcut == QLatin1StringView(candidate.shortcut);
    });
    if (row == rows.end())
        return std::nullopt;
    const QString id = QLatin1StringView(row->id);
    const auto done = performAction(launcher, target, id);
    return done || !target.item ? done : performAction(launcher, {.mode = target.mode}, id);
}

} // namespace tessellar
