#include "platform/desktop/portal/portal_hot_key.h"

#include "platform/desktop/key_symbols.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QUuid>

namespace tessellar {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcuts = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString shortcutId = QStringLiteral("show");

/// One element of the list of shortcuts in a BindShortcuts call.
struct Shortcut {
    QString id;
    QVariantMap about;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Shortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.about;
    argument.endStructure();
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, Shortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.about;
    argument.endStructure();
    return argument;
}

QDBusMessage callOf(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, shortcuts, method);
}

} // namespace
} // namespace tessellar

Q_DECLARE_METATYPE(tessellar::Shortcut)

namespace tessellar {

QString shortcutTrigger(KeyChord chord) {
    QString trigger;
    for (const auto& [modifier, name] :
         {std::pair<unsigned, const char*>{KeyChord::withControl, "CTRL"},
          {KeyChord::withOption, "ALT"},
          {KeyChord::withShift, "SHIFT"},
          {KeyChord::withCommand, "LOGO"}})
        if (chord.modifiers & modifier)
            trigger += QLatin1StringView(name) + u'+';
    const auto key = keySymbol(chord.keyCode);
    return key ? trigger + QString::fromStdString(key->name) : QString();
}

bool PortalHotKey::isAvailable(const QDBusConnection& bus) {
    if (!bus.isConnected())
        return false;
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << shortcuts << QStringLiteral("version");
    constexpr int patience = 1000; // ms
    return bus.call(question, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

PortalHotKey::PortalHotKey(QDBusConnection bus, KeyChord chord, std::function<void()> pressed)
    : _bus(std::move(bus))
    , _chord(chord)
    , _pressed(std::move(pressed))
    , _token(QStringLiteral("tessellar_") + QUuid::createUuid().toString(QUuid::Id128)) {
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<QList<Shortcut>>();
    // Subscribed first: the response may arrive before the call returns.
    _bus.connect(service, request(QStringLiteral("_session")),
                 QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this,
                 SLOT(sessionMade(uint, QVariantMap)));
    _bus.connect(service, path, shortcuts, QStringLiteral("Activated"), this,
                 SLOT(activated(QDBusObjectPath, QString)));
    QDBusMessage call = callOf(QStringLiteral("CreateSession"));
    call << QVariantMap{{QStringLiteral("handle_token"), _token + QStringLiteral("_session")},
                        {QStringLiteral("session_handle_token"), _token}};
    _bus.send(call);
}

PortalHotKey::~PortalHotKey() {
    if (!_session.path().isEmpty())
        _bus.send(QDBusMessage::createMethodCall(service, _session.path(),
                                                 QStringLiteral("org.freedesktop.portal.Session"),
                                                 QStringLiteral("Close")));
}

/// A request's path follows from its token and the caller's bus name.
QString PortalHotKey::request(const QString& step) {
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
        .arg(_bus.baseService().mid(1).replace(u'.', u'_'), _token + step);
}

void PortalHotKey::sessionMade(uint response, const QVariantMap& results) {
    const QString session = results.value(QStringLiteral("session_handle")).toString();
    if (response != 0 || session.isEmpty())
        return;
    _session = QDBusObjectPath(session);
    QDBusMessage call = callOf(QStringLiteral("BindShortcuts"));
    const Shortcut show{shortcutId,
                        {{QStringLiteral("description"), tr("Show or hide the launcher")},
                         {QStringLiteral("preferred_trigger"), shortcutTrigger(_chord)}}};
    call << QVariant::fromValue(_session) << QVariant::fromValue(QList<Shortcut>{show}) << QString()
         << QVariantMap{{QStringLiteral("handle_token"), _token + QStringLiteral("_keys")}};
    _bus.send(call);
}

void PortalHotKey::activated(const QDBusObjectPath& session, const QString& shortcut) {
    if (session == _session && shortcut == shortcutId)
        _pressed();
}

} // namespace tessellar
