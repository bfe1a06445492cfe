#pragma once

#include <QByteArray>
#include <QString>

#include <expected>
#include <optional>

namespace tessellar {

/// One release that a feed offers.
struct SparkleItem {
    QString version;      ///< to be compared with a bundle's CFBundleVersion
    QString shownVersion; ///< for people

    bool operator==(const SparkleItem&) const = default;
};

enum class SparkleFeedError { damaged, noItems };

/// The best release of a feed for a system: the highest version among those that are offered to
/// everybody on it, or none. Feeds are XML from strangers: entities that a document declares are not
/// expanded, nothing outside it is looked at, and only the items of its channel are walked. Without a
/// system version every system requirement counts as met.
std::expected<std::optional<SparkleItem>, SparkleFeedError>
bestSparkleItem(const QByteArray& feed, const std::optional<QString>& systemVersion);

} // namespace tessellar
