#pragma once

#include "cleanup/app_related_files_scanner.h"
#include "platform/texts.h"

#include <QSet>

namespace tessellar {

/// What the user sees and chooses before anything is removed. A plain value; its owner changes it on
/// the main thread as scans and sizes arrive.
struct CleanupReviewState {
    CleanupApplication application;
    RelatedFilesProgress progress;
    bool isScanning = true;
    bool isComplete = true; ///< false where a part of the Libraries could not be searched
    QList<RelatedFile> items;
    QSet<QString> selectedPaths; ///< of items

    /// What is chosen when the review opens: the bundle and what is surely its own.
    static bool isPreselected(const RelatedFile& file);

    void show(const RelatedFilesScan& scan);
    void setSize(const QString& path, const MeasuredSize& size);
    void setSelected(const QString& path, bool selected);
    void selectAllMatches(); ///< also those that are only offered

    bool isSelected(const QString& path) const { return selectedPaths.contains(path); }
    QList<RelatedFile> selectedItems() const;
    MeasuredSize selectedSize() const; ///< complete once all of them are counted whole
    bool needsAdministrator() const;

    bool operator==(const CleanupReviewState&) const = default;
};

/// What the review says of items in the system's Library.
inline QString administratorWarning() {
    return Texts::tr("Some selected items are in /Library and need administrator approval.");
}
inline QString administratorMark() { return Texts::tr("Needs administrator approval to delete"); }

} // namespace tessellar
