#pragma once

#include "platform/desktop/hot_key.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>

namespace tessellar {

/// A key that the desktop keeps for this program and that its user can change there: the interface
/// org.freedesktop.portal.GlobalShortcuts, version 1. It is asked for in steps, each answered by a
/// signal: a session, then the key in it; from then on it tells of each press. A desktop that refuses
/// says nothing more.
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
    QString _token; ///< that the names of its requests begin with
    QDBusObjectPath _session;
};

/// As the shortcuts specification of the desktops writes it: "CTRL+ALT+space".
QString shortcutTrigger(KeyChord chord);

} // namespace tessellar
