#pragma once

#include "cleanup/trash.h"
#include "platform/machine.h"

namespace tessellar {

/// The Trash of desktops other than macOS, in the user's data folder: "Trash/files" holds the items,
/// "Trash/info" their original paths and dates. Items are moved by renaming; those on other volumes are
/// refused.
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
