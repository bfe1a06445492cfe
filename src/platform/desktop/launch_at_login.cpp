#include "platform/desktop/launch_at_login.h"

#include "platform/atomic_file.h"
#include "platform/texts.h"

#include <QDir>
#include <QFile>

namespace tessellar {

namespace {

QString entryPath(const QString& configuration) {
    return configuration + QStringLiteral("/autostart/com.tessellar.app.desktop");
}

} // namespace

bool launchesAtLogin(const QString& configuration) {
    QFile entry(entryPath(configuration));
    if (!entry.open(QFile::ReadOnly))
        return false;
    const QByteArrayList lines = entry.read(16 << 10).split('\n');
    return !lines.contains(QByteArray("Hidden=true")) &&
           !lines.contains(QByteArray("X-GNOME-Autostart-enabled=false"));
}

std::expected<void, QString> setLaunchesAtLogin(bool on, const QString& configuration) {
    const QString path = entryPath(configuration);
    if (!on) {
        if (QFile::exists(path) && !QFile::remove(path))
            return std::unexpected(Texts::tr("“%1” could not be removed.").arg(path));
        return {};
    }
    if (!QDir().mkpath(configuration + QStringLiteral("/autostart")) ||
        !replaceFile(QFile::encodeName(path), "[Desktop Entry]\nType=Application\nName=Tessellar\n"
                                              "Exec=tessellar --hidden\nIcon=com.tessellar.app\n"))
        return std::unexpected(Texts::tr("“%1” could not be written.").arg(path));
    return {};
}

} // namespace tessellar
