#pragma once

#include "discovery/launchpad_import_error.h"
#include "discovery/launchpad_rows.h"

#include <chrono>
#include <expected>
#include <stop_token>

namespace tessellar {

/// Limits for reading a database; exceeding `rows` or `time` is an error.
struct LaunchpadReadLimits {
    qsizetype rows = 500'000; ///< of each table
    /// Longer titles and identifiers count as absent.
    int textBytes = 4'096;
    std::chrono::milliseconds time{10'000};
};

/// Checks the schema and reads apps, groups and items. `hostPath` must be a private copy (see
/// launchpad_snapshot.h), as SQLite creates a lock file beside it.
///
/// The database is untrusted: nothing in it is executed or written, and views and virtual tables are
/// not accepted as tables. Blocks; any thread.
std::expected<LaunchpadRows, LaunchpadImportError>
readLaunchpadRows(const QString& hostPath, std::stop_token stop = {},
                  const LaunchpadReadLimits& limits = {});

} // namespace tessellar
