#pragma once

#include <QString>

namespace tessellar {

/// Why the old Launchpad's arrangement could not be taken over.
struct LaunchpadImportError {
    enum class Code {
        cannotResolveDarwinUserDirectory,
        databaseNotFound,
        unableToOpenDatabase,
        unsupportedSchema,
        queryFailed,
        importConversionFailed,
        cancelled,
    };
    Code code = Code::queryFailed;
    QString detail = {}; ///< what exactly, such as SQLite's own words; may be empty

    bool operator==(const LaunchpadImportError&) const = default;
};

/// The user-facing sentence; the detail is for those who look closer.
QString message(const LaunchpadImportError& error);

} // namespace tessellar
