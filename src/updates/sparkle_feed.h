#pragma once

#include "updates/app_update_records.h"

namespace tessellar {

/// One release that a feed offers.
struct SparkleItem {
    QString version;      ///< to be compared with a bundle's CFBundleVersion
    QString shownVersion; ///< for people
    AppUpdateNotes notes;

    bool operator==(const SparkleItem&) const = default;
};

/// What decides which releases are offered to a machine.
struct SparkleCircumstances {
    std::optional<QString> systemVersion; ///< without it every requirement counts as met
    Instant now;
    /// From 0 to 6: a release that is rolled out in phases comes to group N after N intervals.
    int rolloutGroup = 0;
};

enum class SparkleFeedError { damaged, noItems };

/// The best release of a feed: the highest version among those that are offered to everybody on such a
/// machine by now, or none. Feeds are XML from strangers: entities that a document declares are not
/// expanded, nothing outside it is looked at, and only the items of its channel are walked.
std::expected<std::optional<SparkleItem>, SparkleFeedError>
bestSparkleItem(const QByteArray& feed, const SparkleCircumstances& circumstances);

} // namespace tessellar
