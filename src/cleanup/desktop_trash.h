#pragma once

#include "cleanup/trash.h"
#include "platform/machine.h"

namespace tessellar {

/// The Trash of desktops that are not a Mac's, in the user's data folder: "Trash/files" holds the
/// items, "Trash/info" where each came from and when. Items are renamed into it; what lies on another
/// volume is refused.
class DesktopTrash final : public Trash {
public:
    explicit DesktopTrash(const Machine& machine);

    QList<TrashResult> moveToTrash(const QStringList& paths, std::stop_token stop) override;

    const QString& folder() const { return _folder; }

private:
    TrashResult moveOne(const QString& path);

    const FileSystem& _files;
    const Clock& _clock;
    QString _folder;
};

} // namespace tessellar
