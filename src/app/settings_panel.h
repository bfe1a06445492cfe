#pragma once

#include "launcher/launcher_view_model.h"
#include "launcher/setting_table.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tessellar {

/// Launching at login, as the system reports it. Empty if unsupported.
struct LoginItem {
    std::function<bool()> isOn;
    std::function<std::expected<void, QString>(bool)> set;
};

/// The state of the hot key that shows the launcher.
enum class HotKeyState {
    taken,
    refused, ///< used by another program
    away,    ///< the launcher quits with its window, releasing the key
};

/// The settings sheet, for QML. Rows come from the table of settings; changes apply immediately.
class SettingsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {title, note, rows}. A row is {key, kind, title, text, value, low, high, step, choices, action}
    /// with a kind of "slider", "switch", "choice", "field", "action" or "note"; choices are
    /// {title, isChosen}.
    Q_PROPERTY(QVariantList sections READ sections NOTIFY changed FINAL)
    /// Why the last change failed; empty if it succeeded.
    Q_PROPERTY(QString issue READ issue NOTIFY changed FINAL)

public:
    SettingsPanel(LauncherViewModel& viewModel, Machine& machine);

    const QVariantList& sections() const { return _sections; }
    const QString& issue() const { return _issue; }
    void setLoginItem(LoginItem item) { _loginItem = std::move(item); }
    void setHotKeyState(std::function<HotKeyState()> state) { _hotKeyState = std::move(state); }

    /// Previews a grid setting without storing it.
    Q_INVOKABLE void tryOut(const QString& key, double value);
    /// Stores a setting.
    Q_INVOKABLE void set(const QString& key, const QVariant& value);
    Q_INVOKABLE void choose(const QString& key, int index);
    /// Restores the default.
    Q_INVOKABLE void reset(const QString& key) { store(key, QJsonValue()); }
    /// Performs the action of a row's button.
    Q_INVOKABLE void act(const QString& key);
    /// While shown, it follows changes of the settings.
    void setShown(bool isShown);

Q_SIGNALS:
    void changed();
    void updatesRequested();

private:
    QVariantMap row(const QString& key, const QString& title) const;
    QVariantMap section(const QString& title, const QVariantList& rows, const QString& note = {}) const;
    QVariantMap grid() const;
    QVariantMap folders() const;
    QVariantMap opening() const;
    QVariantMap privacy() const;
    void store(const QString& key, const QJsonValue& value);
    void setFolders(const QStringList& folders);
    QStringList additionalFolders() const;
    void askToForgetUsage();
    void tell(const QString& issue);
    void show();

    LauncherViewModel& _viewModel;
    Machine& _machine;
    LoginItem _loginItem;
    std::function<HotKeyState()> _hotKeyState = [] { return HotKeyState::taken; };
    QString _helper; ///< state of the removal helper
    QString _issue;
    std::optional<std::pair<QString, double>> _tried; ///< the grid shows it, but it is not stored
    QVariantList _sections;
    std::vector<Subscription> _shown; ///< connected while shown
};

} // namespace tessellar
