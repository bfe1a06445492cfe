#include "platform/host_traits.h"

#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

namespace tessellar {

qint64 peakResidentMemory() {
    // getrusage includes what the process used before exec.
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("VmHWM:"))
                return line.sliced(6).simplified().split(' ').first().toLongLong();
    return 0;
}

bool hasReliableGraphics() { return false; }

bool keepsRunningWithoutWindow() { return false; }

void giveWay() {
    // On Linux, niceness is a thread's, and so are the process's number and the main thread's. Threads
    // inherit it, so it is counted from there.
    const int main = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid()));
    (void)::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), main + 10);
}

QStringList preferredFontFamilies() { return {QStringLiteral("Inter"), QStringLiteral("Noto Sans")}; }

QString helperSetupFolder() { return {}; }

} // namespace tessellar
