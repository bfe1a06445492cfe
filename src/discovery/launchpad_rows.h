#pragma once

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

namespace tessellar {

// Rows of the old Launchpad's database; members are named like the columns. Values of the wrong type
// are absent.

struct NativeLaunchpadApp {
    std::int64_t item_id = 0;
    QString title;
    QString bundleid;
    QString storeid;

    bool operator==(const NativeLaunchpadApp&) const = default;
};

struct NativeLaunchpadGroup {
    std::int64_t item_id = 0;
    QString title;

    bool operator==(const NativeLaunchpadGroup&) const = default;
};

struct NativeLaunchpadItem {
    /// The relevant values of `type`; others (downloads, widgets) are not tiles.
    static constexpr std::int64_t rootType = 1;
    static constexpr std::int64_t folderType = 2;
    static constexpr std::int64_t pageType = 3;
    static constexpr std::int64_t appType = 4;

    std::int64_t rowid = 0; ///< `item_id` in the other tables
    QString uuid;
    std::int64_t flags = 0; ///< meaning unknown
    std::int64_t type = 0;
    std::optional<std::int64_t> parent_id;
    std::int64_t ordering = 0;

    bool operator==(const NativeLaunchpadItem&) const = default;
};

struct LaunchpadRows {
    QList<NativeLaunchpadApp> apps;
    QList<NativeLaunchpadGroup> groups;
    QList<NativeLaunchpadItem> items;
    int schemaUserVersion = 0;

    bool operator==(const LaunchpadRows&) const = default;
};

} // namespace tessellar
