#include "editing/edit_names.h"

#include "platform/texts.h"

namespace tessellar {
namespace {

struct EditTexts {
    EditKind kind;
    const char* one;
    const char* several;
};

constexpr EditTexts texts[] = {
    {EditKind::move, Texts::noop("Move Tile"), Texts::noop("Move Tiles")},
    {EditKind::group, Texts::noop("Group Tiles"), nullptr},
    {EditKind::ungroup, Texts::noop("Ungroup Tiles"), nullptr},
    {EditKind::renameFolder, Texts::noop("Rename Folder"), nullptr},
    {EditKind::renameApp, Texts::noop("Rename App"), nullptr},
    {EditKind::revertAppName, Texts::noop("Revert App Name"), nullptr},
    {EditKind::hide, Texts::noop("Hide App"), Texts::noop("Hide Apps")},
    {EditKind::unhide, Texts::noop("Unhide App"), nullptr},
    {EditKind::paste, Texts::noop("Paste Tile"), Texts::noop("Paste Tiles")},
    {EditKind::createAlias, Texts::noop("Create Alias"), nullptr},
    {EditKind::removeAlias, Texts::noop("Remove Alias"), Texts::noop("Remove Aliases")},
    {EditKind::sort, Texts::noop("Sort by Name"), nullptr},
    {EditKind::changeFolderSymbol, Texts::noop("Change Folder Symbol"), nullptr},
    {EditKind::addSmartFolder, Texts::noop("Add Smart Folder"), nullptr},
    {EditKind::changeSmartFolder, Texts::noop("Edit Smart Folder"), nullptr},
    {EditKind::deleteSmartFolder, Texts::noop("Delete Smart Folder"), nullptr},
    {EditKind::moveToTrash, Texts::noop("Move App to Trash"), Texts::noop("Move Apps to Trash")},
    {EditKind::importLaunchpad, Texts::noop("Import Launchpad Layout"), nullptr},
    {EditKind::removeSmartFolderTile, Texts::noop("Remove Smart Folder Tile"), nullptr},
    {EditKind::restoreArrangement, Texts::noop("Restore Arrangement"), nullptr},
    {EditKind::restoreBackup, Texts::noop("Restore Backup"), nullptr},
    {EditKind::resetLayout, Texts::noop("Reset Layout"), nullptr},
    {EditKind::arrange, Texts::noop("Arrange Applications"), nullptr},
    {EditKind::putBack, Texts::noop("Put App Back"), Texts::noop("Put Apps Back")},
};

} // namespace

QString editName(EditKind kind, qsizetype count) {
    for (const EditTexts& text : texts)
        if (text.kind == kind)
            return Texts::tr(count == 1 || !text.several ? text.one : text.several);
    return {};
}

} // namespace tessellar
