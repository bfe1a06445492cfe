#pragma once

#include <QString>

namespace tessellar {

/// Why an import failed.
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
    QString detail = {}; ///< specifics, such as SQLite's error message; may be empty

    bool operator==(const LaunchpadImportError&) const = default;
};

/// One sentence for the user, without the detail.
QString message(const LaunchpadImportError& error);

} // namespace tessellar
