#pragma once

#include "discovery/launchpad_import_error.h"
#include "discovery/launchpad_rows.h"

#include <chrono>
#include <expected>
#include <stop_token>

namespace tessellar {

/// How much of a database is looked at; beyond it the reading fails.
struct LaunchpadReadLimits {
    qsizetype rows = 500'000; ///< of each table
    /// A title or identifier of more bytes counts as absent.
    int textBytes = 4'096;
    std::chrono::milliseconds time{10'000};
};

/// Checks the schema of a database and reads its apps, groups and items. `hostPath` is that of a copy
/// of our own (see launchpad_snapshot.h): SQLite keeps a lock file beside it.
///
/// The database is not trusted: nothing in it may be written or run, and what stands in for a table (a
/// view, a virtual table) is not one. Blocks; any thread.
std::expected<LaunchpadRows, LaunchpadImportError>
readLaunchpadRows(const QString& hostPath, std::stop_token stop = {},
                  const LaunchpadReadLimits& limits = {});

} // namespace tessellar
