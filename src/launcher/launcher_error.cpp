#include "launcher/launcher_error.h"

#include "platform/texts.h"

#include <array>

namespace tessellar {

QString code(const FileError& error) {
    using Code = FileError::Code;
    static constexpr std::array names{
        std::pair{Code::notFound, "notFound"},
        std::pair{Code::permissionDenied, "permissionDenied"},
        std::pair{Code::notADirectory, "notADirectory"},
        std::pair{Code::isADirectory, "isADirectory"},
        std::pair{Code::notARegularFile, "notARegularFile"},
        std::pair{Code::tooLarge, "tooLarge"},
        std::pair{Code::noSpace, "noSpace"},
        std::pair{Code::readOnly, "readOnly"},
        std::pair{Code::alreadyExists, "alreadyExists"},
        std::pair{Code::notEmpty, "notEmpty"},
        std::pair{Code::otherVolume, "otherVolume"},
        std::pair{Code::linkLoop, "linkLoop"},
        std::pair{Code::badPath, "badPath"},
        std::pair{Code::damaged, "damaged"},
        std::pair{Code::io, "io"},
    };
    for (const auto& [value, name] : names)
        if (value == error.code)
            return QLatin1StringView(name);
    return {};
}

LauncherError launcherError(const FileError& error, const QString& title) {
    return {code(error), message(error), title};
}

LauncherError launcherError(const LayoutStore::Error& error, const QString& title) {
    if (const auto* file = std::get_if<FileError>(&error))
        return launcherError(*file, title);
    const auto& storage = std::get<LayoutStore::StorageError>(error);
    using Code = LayoutStore::StorageError::Code;
    const QString name = storage.code == Code::layoutNotReady ? QStringLiteral("layoutNotReady")
                         : storage.code == Code::workingDocumentUnreadable
                             ? QStringLiteral("workingDocumentUnreadable")
                             : QStringLiteral("unsupportedWorkingDocumentVersion");
    return {name, message(storage), title};
}

LauncherError offering(LauncherError::Remedy remedy, LauncherError error) {
    error.remedy = remedy;
    return error;
}

QString couldNotSaveLayout() { return Texts::tr("Could not save the layout"); }

} // namespace tessellar
