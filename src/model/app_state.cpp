#include "model/app_state.h"

#include "platform/bundle.h"

namespace tessellar {

AppInstallKind installKind(const FileSystem& files, const QString& bundlePath) {
    for (const auto* receipt : {u"Contents/_MASReceipt/receipt", u"_MASReceipt/receipt"})
        if (files.isRegularFile(FileSystem::joined(bundlePath, QString::fromUtf16(receipt))))
            return AppInstallKind::appStore;
    return isWrappedApplication(files, bundlePath) ? AppInstallKind::appStore : AppInstallKind::manual;
}

bool isAvailable(const FileSystem& files, const AppEntry& entry) {
    return entry.source != AppSource::legacyImport || files.exists(entry.path);
}

} // namespace tessellar
