#pragma once

#include "platform/desktop/hot_key.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>

namespace tessellar {

/// A hot key through the interface org.freedesktop.portal.GlobalShortcuts, version 1; users can change
/// it in the desktop's settings. Requested in two steps, a session and then the key in it, each
/// answered by a signal. If the desktop refuses, the key never fires.
class PortalHotKey final : public QObject, public HotKey {
    Q_OBJECT

public:
    /// Blocks for one call.
    static bool isAvailable(const QDBusConnection& bus);

    PortalHotKey(QDBusConnection bus, KeyChord chord, std::function<void()> pressed);
    ~PortalHotKey() override;

private Q_SLOTS:
    void sessionMade(uint response, const QVariantMap& results);
    void activated(const QDBusObjectPath& session, const QString& shortcut);

private:
    QString request(const QString& step);

    QDBusConnection _bus;
    KeyChord _chord;
    std::function<void()> _pressed;
    QString _token; ///< prefix of its request names
    QDBusObjectPath _session;
};

/// In the format of the desktops' shortcuts specification: "CTRL+ALT+space".
QString shortcutTrigger(KeyChord chord);

} // namespace tessellar
