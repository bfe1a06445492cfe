#pragma once

#include "cleanup/app_related_files_scanner.h"
#include "platform/texts.h"

#include <QSet>

namespace tessellar {

/// The review before a removal: what was found and what the user selected. A plain value, updated on
/// the main thread as scan results and sizes arrive.
struct CleanupReviewState {
    CleanupApplication application;
    RelatedFilesProgress progress;
    bool isScanning = true;
    bool isComplete = true; ///< false if some of the Libraries could not be searched
    QList<RelatedFile> items;
    QSet<QString> selectedPaths; ///< of items

    /// Whether an item is selected initially: the bundle, and files that certainly belong to it.
    static bool isPreselected(const RelatedFile& file);

    void show(const RelatedFilesScan& scan);
    void setSize(const QString& path, const MeasuredSize& size);
    void setSelected(const QString& path, bool selected);
    void selectAllMatches(); ///< including those only offered

    bool isSelected(const QString& path) const { return selectedPaths.contains(path); }
    QList<RelatedFile> selectedItems() const;
    MeasuredSize selectedSize() const; ///< complete once all sizes are complete
    bool needsAdministrator() const;

    bool operator==(const CleanupReviewState&) const = default;
};

/// Shown for items in /Library.
inline QString administratorWarning() {
    return Texts::tr("Some selected items are in /Library and need administrator approval.");
}
inline QString administratorMark() { return Texts::tr("Needs administrator approval to delete"); }

} // namespace tessellar
