#include "platform/host_traits.h"

#include <QCoreApplication>
#include <QDir>

#include <pthread.h>
#include <sys/resource.h>

namespace tessellar {

qint64 peakResidentMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024; // bytes on a Mac
}

bool hasReliableGraphics() { return true; }

bool keepsRunningWithoutWindow() { return true; }

void giveWay() { (void)::pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0); }

QStringList preferredFontFamilies() { return {}; }

QString helperSetupFolder() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Resources"));
}

} // namespace tessellar
