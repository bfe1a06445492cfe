// The actions of the window's menus and keys, from the same table.

#include "control/command_set.h"
#include "launcher/actions.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_messages.h"
#include "launcher/smart_folder_editing.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

/// The target that a word names: a tile by its identifier or app key, or the background if empty.
std::optional<ActionTarget> target(const Call& call, const Word& name) {
    ActionTarget target{.mode = call->mode()};
    if (name->empty())
        return target;
    const auto id = findTile(call->layout().pages(), text(name));
    if (!id) {
        call->fail({QStringLiteral("noSuchTile"),
                    Texts::tr("There is no tile “%1”.").arg(text(name).left(200)),
                    {}});
        return std::nullopt;
    }
    target.item = *call->layout().item(*id);
    return target;
}

void writeEntries(QJsonArray& array, QString& lines, const QList<MenuEntry>& entries, int indent) {
    for (const MenuEntry& entry : entries) {
        if (entry.isSeparator())
            continue;
        QJsonObject object{{QStringLiteral("id"), entry.id},
                           {QStringLiteral("title"), entry.title},
                           {QStringLiteral("enabled"), entry.isEnabled}};
        if (!entry.shortcut.isEmpty())
            object.insert(QStringLiteral("shortcut"), entry.shortcut);
        lines += QString(indent, u' ') + entry.id.leftJustified(24 - indent) + QStringLiteral("  ") +
                 entry.title +
                 (entry.shortcut.isEmpty() ? QString() : QStringLiteral("  (%1)").arg(entry.shortcut)) +
                 (entry.isEnabled ? QString() : Texts::tr("  (not now)")) + u'\n';
        QJsonArray inner;
        writeEntries(inner, lines, entry.entries, indent + 2);
        if (!inner.isEmpty())
            object.insert(QStringLiteral("entries"), inner);
        array.append(object);
    }
}

} // namespace

void addActionCommands(CommandSet& set) {
    CLI::App* group = set.addGroup(
        "actions", Texts::noop("What the menu of a tile offers, or that of the background"));
    CLI::App* list = set.add("list", Texts::noop("The entries of a menu, with their shortcuts"), group);
    const char* tileHelp =
        Texts::noop("A tile, by its identifier or app key; without one the background");
    set.onRun(list, CommandNeeds::launcher,
              [tile = optionalWord(list, "tile", tileHelp)](const Call& call) {
                  const auto about = target(call, tile);
                  if (!about)
                      return;
                  QJsonArray entries;
                  QString lines;
                  writeEntries(entries, lines, actionMenu(call->launcher(), *about), 0);
                  call->succeed(entries, lines);
              });

    CLI::App* run = set.add("run", Texts::noop("Do what an entry says"), group);
    set.onRun(
        run, CommandNeeds::launcher,
        [id = word(run, "id", Texts::noop("The entry, as the list names it")),
         tile = optionalWord(run, "tile", tileHelp)](const Call& call) {
            const auto about = target(call, tile);
            if (!about)
                return;
            const auto& window = call->launcher().presenter();
            // Nor can the user open a menu then.
            if (window && window->isBusy())
                return call->fail({QStringLiteral("windowBusy"),
                                   Texts::tr("Finish what is open in the window first."),
                                   {}});
            const auto request = performAction(
                call->launcher(), *about, text(id),
                [call](const LauncherViewModel::Outcome& outcome) { call->answer(outcome); });
            if (request == ActionRequest::underway)
                return;
            if (request == ActionRequest::refused)
                return call->fail(LauncherClipboard::refusal());
            if (!request)
                return call->fail({QStringLiteral("noSuchAction"),
                                   Texts::tr("“%1” is not available there now.").arg(text(id).left(80)),
                                   {}});
            LauncherMessages& messages = call->launcher().messages();
            if (*request == ActionRequest::none && !messages.question())
                return call->succeed(QJsonObject(), {});
            if (window && window->perform(*about, *request)) {
                window->show();
                return call->succeed(QJsonObject(), Texts::tr("Continue in the window."));
            }
            if (*request == ActionRequest::none)
                messages.answer(false);
            else if (*request == ActionRequest::rules)
                call->launcher().smartFolderEditing().close();
            else if (*request == ActionRequest::removal)
                call->launcher().cleanup().close();
            if (window)
                return call->fail(
                    {QStringLiteral("notInWindow"),
                     Texts::tr("The window cannot show that: it is hidden, or of the other "
                               "display mode."),
                     {}});
            call->fail(
                {QStringLiteral("needsWindow"),
                 Texts::tr("“%1” continues in the window, which is not open.").arg(text(id).left(80)),
                 {}});
        });
}

} // namespace tessellar
