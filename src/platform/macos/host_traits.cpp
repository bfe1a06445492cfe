#include "platform/host_traits.h"

#include <QCoreApplication>
#include <QDir>

#include <sys/resource.h>

namespace tessellar {

qint64 peakResidentMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024; // bytes on a Mac
}

bool hasReliableGraphics() { return true; }

bool keepsRunningWithoutWindow() { return true; }

void giveWay() {} // the main thread comes before all of the default quality of service anyway

QStringList preferredFontFamilies() { return {}; }

QString helperSetupFolder() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Resources"));
}

} // namespace tessellar
