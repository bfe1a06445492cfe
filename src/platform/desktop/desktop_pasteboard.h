#pragma once

#include "platform/pasteboard.h"

namespace tessellar {

/// The desktop's own pasteboard. Needs a running QGuiApplication.
///
/// Where the desktop's clipboard holds one thing in several forms, and not several things, all file
/// URLs go into one list and are given back as one item each; other types are kept under their own
/// names, of the first item that has them. Of what other programs put there, text, file URLs and types
/// with the application's prefix are seen.
class DesktopPasteboard final : public Pasteboard {
public:
    QList<PasteboardItem> items() const override;
    bool write(const QList<PasteboardItem>& items) override;
};

} // namespace tessellar
