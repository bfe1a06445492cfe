#include "editing/edit_names.h"

#include <QCoreApplication>

namespace tessellar {
namespace {

struct EditTexts {
    EditKind kind;
    const char* one;
    const char* several;
};

constexpr EditTexts texts[] = {
    {EditKind::move, QT_TRANSLATE_NOOP("Edits", "Move Tile"), QT_TRANSLATE_NOOP("Edits", "Move Tiles")},
    {EditKind::group, QT_TRANSLATE_NOOP("Edits", "Group Tiles"), nullptr},
    {EditKind::ungroup, QT_TRANSLATE_NOOP("Edits", "Ungroup Tiles"), nullptr},
    {EditKind::renameFolder, QT_TRANSLATE_NOOP("Edits", "Rename Folder"), nullptr},
    {EditKind::renameApp, QT_TRANSLATE_NOOP("Edits", "Rename App"), nullptr},
    {EditKind::revertAppName, QT_TRANSLATE_NOOP("Edits", "Revert App Name"), nullptr},
    {EditKind::hide, QT_TRANSLATE_NOOP("Edits", "Hide App"), QT_TRANSLATE_NOOP("Edits", "Hide Apps")},
    {EditKind::unhide, QT_TRANSLATE_NOOP("Edits", "Unhide App"), nullptr},
    {EditKind::paste, QT_TRANSLATE_NOOP("Edits", "Paste Tile"),
     QT_TRANSLATE_NOOP("Edits", "Paste Tiles")},
    {EditKind::createAlias, QT_TRANSLATE_NOOP("Edits", "Create Alias"), nullptr},
    {EditKind::removeAlias, QT_TRANSLATE_NOOP("Edits", "Remove Alias"),
     QT_TRANSLATE_NOOP("Edits", "Remove Aliases")},
    {EditKind::sort, QT_TRANSLATE_NOOP("Edits", "Sort by Name"), nullptr},
    {EditKind::changeFolderSymbol, QT_TRANSLATE_NOOP("Edits", "Change Folder Symbol"), nullptr},
    {EditKind::addSmartFolder, QT_TRANSLATE_NOOP("Edits", "Add Smart Folder"), nullptr},
    {EditKind::changeSmartFolder, QT_TRANSLATE_NOOP("Edits", "Edit Smart Folder"), nullptr},
    {EditKind::deleteSmartFolder, QT_TRANSLATE_NOOP("Edits", "Delete Smart Folder"), nullptr},
    {EditKind::moveToTrash, QT_TRANSLATE_NOOP("Edits", "Move App to Trash"),
     QT_TRANSLATE_NOOP("Edits", "Move Apps to Trash")},
    {EditKind::importLaunchpad, QT_TRANSLATE_NOOP("Edits", "Import Launchpad Layout"), nullptr},
    {EditKind::removeSmartFolderTile, QT_TRANSLATE_NOOP("Edits", "Remove Smart Folder Tile"), nullptr},
    {EditKind::restoreArrangement, QT_TRANSLATE_NOOP("Edits", "Restore Arrangement"), nullptr},
    {EditKind::restoreBackup, QT_TRANSLATE_NOOP("Edits", "Restore Backup"), nullptr},
    {EditKind::resetLayout, QT_TRANSLATE_NOOP("Edits", "Reset Layout"), nullptr},
    {EditKind::arrange, QT_TRANSLATE_NOOP("Edits", "Arrange Applications"), nullptr},
    {EditKind::putBack, QT_TRANSLATE_NOOP("Edits", "Put App Back"),
     QT_TRANSLATE_NOOP("Edits", "Put Apps Back")},
};

} // namespace

QString editName(EditKind kind, qsizetype count) {
    for (const EditTexts& text : texts)
        if (text.kind == kind)
            return QCoreApplication::translate("Edits",
                                               count == 1 || !text.several ? text.one : text.several);
    return {};
}

} // namespace tessellar
