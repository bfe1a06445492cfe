#pragma once

#include "updates/app_update_records.h"

namespace tessellar {

/// One release in a feed.
struct SparkleItem {
    QString version;      ///< compared with CFBundleVersion
    QString shownVersion; ///< for display
    AppUpdateNotes notes;

    bool operator==(const SparkleItem&) const = default;
};

/// Determines which releases apply to a machine.
struct SparkleCircumstances {
    std::optional<QString> systemVersion; ///< without it, all requirements count as met
    Instant now;
    /// 0 to 6: a release in a phased roll-out reaches group N after N intervals.
    int rolloutGroup = 0;
};

enum class SparkleFeedError { damaged, noItems };

/// The highest version in a feed that is currently offered to everyone on such a machine; nullopt if
/// none. Feeds are untrusted XML: entities are not expanded, nothing external is loaded, and only the
/// items of the channel are read.
std::expected<std::optional<SparkleItem>, SparkleFeedError>
bestSparkleItem(const QByteArray& feed, const SparkleCircumstances& circumstances);

} // namespace tessellar
