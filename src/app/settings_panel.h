#pragma once

#include "launcher/launcher_view_model.h"
#include "launcher/setting_table.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tessellar {

/// Whether the launcher starts when its user logs in, as the system says. Empty where it cannot be
/// asked for.
struct LoginItem {
    std::function<bool()> isOn;
    std::function<std::expected<void, QString>(bool)> set;
};

/// What has become of the keys that show the launcher from anywhere.
enum class HotKeyState {
    taken,
    refused, ///< they are another program's
    away,    ///< this launcher ends with its window, and its keys with it
};

/// The sheet about settings in QML's terms. Rows are of the one table; what is changed holds at once.
class SettingsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {title, note, rows}. A row is {key, kind, title, text, value, low, high, step, choices, action}
    /// with a kind of "slider", "switch", "choice", "field", "action" or "note"; choices are
    /// {title, isChosen}.
    Q_PROPERTY(QVariantList sections READ sections NOTIFY changed)
    /// Why the last change was not made; empty where it was.
    Q_PROPERTY(QString issue READ issue NOTIFY changed)

public:
    SettingsPanel(LauncherViewModel& viewModel, Machine& machine);

    const QVariantList& sections() const { return _sections; }
    const QString& issue() const { return _issue; }
    void setLoginItem(LoginItem item) { _loginItem = std::move(item); }
    void setHotKeyState(std::function<HotKeyState()> state) { _hotKeyState = std::move(state); }

    /// Shows the grid with a value that is not stored yet.
    Q_INVOKABLE void tryOut(const QString& key, double value);
    /// Stores it.
    Q_INVOKABLE void set(const QString& key, const QVariant& value);
    Q_INVOKABLE void choose(const QString& key, int index);
    /// Back to what is usual.
    Q_INVOKABLE void reset(const QString& key) { store(key, QJsonValue()); }
    /// What the button of a row does.
    Q_INVOKABLE void act(const QString& key);
    /// While it is shown, it follows what is set.
    void setShown(bool isShown);

Q_SIGNALS:
    void changed();
    void updatesWanted();

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
    QString _helper; ///< what is known of the removal helper
    QString _issue;
    QVariantList _sections;
    std::vector<Subscription> _shown; ///< while it is
};

} // namespace tessellar
