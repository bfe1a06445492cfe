#pragma once

#include "platform/pasteboard.h"

namespace tessellar {

/// The desktop's own pasteboard. Needs a running QGuiApplication.
///
/// A desktop's clipboard holds one item in several forms, not several items: all file URLs are written
/// as one list and read back as one item each; of the other types, the first item that has one wins.
/// From other programs, reads text, file URLs and types with the application's prefix.
class DesktopPasteboard final : public Pasteboard {
public:
    QList<PasteboardItem> items() const override;
    bool write(const QList<PasteboardItem>& items) override;
};

} // namespace tessellar
