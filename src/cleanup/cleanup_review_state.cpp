#include "cleanup/cleanup_review_state.h"

#include <algorithm>

namespace tessellar {

bool CleanupReviewState::isPreselected(const RelatedFile& file) {
    return file.match <= RelatedFileMatch::strongish && !file.isContested;
}

void CleanupReviewState::show(const RelatedFilesScan& scan) {
    items = scan.files;
    isScanning = false;
    isComplete = scan.isComplete;
    selectedPaths.clear();
    for (const RelatedFile& file : std::as_const(items))
        if (isPreselected(file))
            selectedPaths.insert(file.path);
}

void CleanupReviewState::setSize(const QString& path, const MeasuredSize& size) {
    const auto item = std::ranges::find(items, path, &RelatedFile::path);
    if (item == items.end())
        return;
    item->size = size.bytes;
    item->isSizePartial = !size.isComplete;
}

void CleanupReviewState::setSelected(const QString& path, bool selected) {
    if (!selected)
        selectedPaths.remove(path);
    else if (std::ranges::find(std::as_const(items), path, &RelatedFile::path) != items.cend())
        selectedPaths.insert(path);
}

void CleanupReviewState::selectAllMatches() {
    for (const RelatedFile& file : std::as_const(items))
        selectedPaths.insert(file.path);
}

QList<RelatedFile> CleanupReviewState::selectedItems() const {
    QList<RelatedFile> selected;
    std::ranges::copy_if(items, std::back_inserter(selected),
                         [this](const RelatedFile& file) { return isSelected(file.path); });
    return selected;
}

MeasuredSize CleanupReviewState::selectedSize() const {
    MeasuredSize total;
    for (const RelatedFile& file : items)
        if (isSelected(file.path)) {
            total.bytes += file.size.value_or(0);
            total.isComplete = total.isComplete && file.size && !file.isSizePartial;
        }
    return total;
}

bool CleanupReviewState::needsAdministrator() const {
    return std::ranges::any_of(items, [this](const RelatedFile& file) {
        return file.needsAdministrator && isSelected(file.path);
    });
}

} // namespace tessellar
