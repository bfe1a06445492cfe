#pragma once

#include "sample/mac_builder.h"

#include <variant>

namespace tessellar::sample {

/// An application as the Mac's old Launchpad knew it.
struct OldTile {
    QString title;
    QString identifier;
};
struct OldFolder {
    QString title;
    QList<QList<OldTile>> pages;
};
using OldItem = std::variant<OldTile, OldFolder>;

/// An arrangement of the old Launchpad.
struct OldLaunchpad {
    QList<QList<OldItem>> pages;
    /// With the rows and tables of older systems: a Dashboard tree, categories, application sources.
    bool olderForm = false;
    /// As in a Mac that is running: the rows stand in the write-ahead log beside the file. Else all is
    /// in the file.
    bool inUse = true;
};

/// Writes the database where `getconf` of tools.h leads, or to `path`. Returns where it lies.
QString addOldLaunchpad(MacBuilder& mac, const OldLaunchpad& launchpad, const QString& path = {});

} // namespace tessellar::sample
