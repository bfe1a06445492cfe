#include "cleanup/related_file.h"

namespace tessellar {
namespace {

/// Case-insensitive, as a Mac's volumes usually are: "/SYSTEM" is "/System".
bool liesWithin(const QString& path, QLatin1StringView folder) {
    return path.startsWith(folder, Qt::CaseInsensitive) &&
           (path.size() == folder.size() || path[folder.size()] == u'/');
}

} // namespace

ProtectionClass protectionClass(const FileSystem& files, const QString& path) {
    const QString real = files.resolved(path).value_or(FileSystem::standardized(path));
    for (const QString& seen : {real, FileSystem::standardized(path)})
        if (liesWithin(seen, QLatin1StringView("/System")) ||
            liesWithin(seen, QLatin1StringView("/Library/Apple")))
            return ProtectionClass::systemProtected;
    return liesWithin(real, QLatin1StringView("/Applications")) ? ProtectionClass::applications
                                                                : ProtectionClass::ordinary;
}

} // namespace tessellar
