#pragma once

#include "editing/navigation.h"
#include "platform/signal.h"

namespace tessellar {

class LiveLayout;

/// The user's position in a layout: the page, the open folders and the selected tiles. Pages out of
/// range become the nearest.
///
/// Main thread only.
class LayoutNavigation {
public:
    explicit LayoutNavigation(const LiveLayout& layout) : _layout(layout) {}

    const Navigation& position() const { return _position; }
    /// Restores a position, as far as its folders and tiles still exist.
    void setPosition(const Navigation& position);

    int currentPage() const { return _position.currentPage; }
    void setCurrentPage(int page);

    const QList<OpenFolderLevel>& folderStack() const { return _position.folderStack; }
    /// The innermost open folder.
    std::optional<FolderEntry> openFolder() const;
    /// True if the open folder is a smart folder: its rules determine its contents.
    bool isOpenFolderComputed() const;
    /// Opens a folder or smart folder inside the innermost open one; false if it is not there.
    bool openFolder(const QUuid& id);
    void setFolderPage(int page);
    void closeFolder();

    const std::optional<QUuid>& selectedItemID() const { return _position.selectedItemID; }
    /// All selected tiles; `selectedItemID` is the last one.
    const QSet<QUuid>& selectedItemIDs() const { return _position.selectedItemIDs; }
    void select(const std::optional<QUuid>& id);
    void select(const QList<QUuid>& ids);
    /// Selects a tile of the innermost open folder, or of the grid, and shows its page.
    void reveal(const QUuid& id);

    /// Leaves folders, pages and tiles that are gone. Call after the layout has changed.
    void tidy();

    Signal<> changed;
    Signal<> selectionChanged;

private:
    const LiveLayout& _layout;
    Navigation _position;
};

} // namespace tessellar
