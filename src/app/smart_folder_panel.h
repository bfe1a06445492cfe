#pragma once

#include "app/day_picker.h"
#include "app/menu_model.h"
#include "launcher/launcher_view_model.h"
#include "launcher/smart_folder_editing.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet for editing a smart folder's rules, for QML.
class SmartFolderPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QString symbolName READ symbolName WRITE setSymbolName NOTIFY changed) ///< may be empty
    Q_PROPERTY(QVariantList symbols READ symbols NOTIFY changed) ///< {name, isChosen, isDrawn}
    Q_PROPERTY(QString matchMode READ matchMode NOTIFY changed)
    /// {field, predicate, joint, operands: {kind, text, needsInput, hasSuggestions}}; `joint` is the
    /// text between operands.
    Q_PROPERTY(QVariantList rules READ rules NOTIFY changed)
    Q_PROPERTY(QString sortField READ sortField NOTIFY changed)
    Q_PROPERTY(QString sortDirection READ sortDirection NOTIFY changed)
    Q_PROPERTY(bool hasLimit READ hasLimit WRITE setHasLimit NOTIFY changed)
    Q_PROPERTY(QString limitText READ limitText NOTIFY changed)
    Q_PROPERTY(bool isChanged READ isChanged NOTIFY changed)
    /// Why it cannot be saved; empty if it can.
    Q_PROPERTY(QString issue READ issue NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)      ///< the number of matches
    Q_PROPERTY(QVariantList matches READ matches NOTIFY changed) ///< the first ones, as {appKey, name}
    Q_PROPERTY(QStringList matchKeys READ matchKeys NOTIFY changed)
    Q_PROPERTY(QString notice READ notice NOTIFY changed)
    /// The menu of the last button pressed.
    Q_PROPERTY(tessellar::MenuModel* choices READ choices CONSTANT)
    Q_PROPERTY(tessellar::DayPicker* days READ days CONSTANT)

public:
    explicit SmartFolderPanel(LauncherViewModel& viewModel);

    bool isOpen() const { return editing().draft().has_value(); }
    QString title() const;
    QString name() const;
    void setName(const QString& name);
    QString symbolName() const;
    void setSymbolName(const QString& name);
    QVariantList symbols() const;
    QString matchMode() const;
    const QVariantList& rules() const { return _rules; }
    QString sortField() const;
    QString sortDirection() const;
    bool hasLimit() const;
    void setHasLimit(bool hasLimit);
    QString limitText() const;
    bool isChanged() const { return editing().isChanged(); }
    QString issue() const { return editing().issue(); }
    QString summary() const;
    const QVariantList& matches() const { return _matches; }
    QStringList matchKeys() const;
    QString notice() const { return editing().notice(); }
    MenuModel* choices() { return &_choices; }
    DayPicker* days() { return &_days; }

    /// Opens a button's menu below a point of the window: "matchMode", "sortField", "sortDirection";
    /// for a rule "field", "predicate", "operand", "suggestion".
    Q_INVOKABLE void openChoices(const QString& button, QPointF point, int rule = -1, int operand = -1);
    Q_INVOKABLE void type(int rule, int operand, const QString& text);
    Q_INVOKABLE void typeLimit(const QString& text);
    /// Changes a number or day by `by`; the limit if no rule is given.
    Q_INVOKABLE void step(int by, int rule = -1, int operand = -1);
    /// Opens the day picker for an operand below a point of the window.
    Q_INVOKABLE void openDays(QPointF point, int rule, int operand);
    Q_INVOKABLE void insertRule(int place) { editing().insertRule(place); }
    Q_INVOKABLE void removeRule(int rule);
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();
    /// Asks first if changes would be lost.
    void leave();
    void closePopups();
    void refresh();

Q_SIGNALS:
    void changed();

private:
    /// The button whose menu is open.
    struct Button {
        QString name;
        QPointF point;
        int rule = -1;
        int operand = -1;
    };

    SmartFolderEditing& editing() const { return _viewModel.smartFolderEditing(); }
    void change(const std::function<void(SmartFolderDraft&)>& change) { editing().change(change); }
    QList<SmartFolderOption> words(const Button& button) const;
    void choose(const QString& word);
    bool staysOpen() const;
    void openMenu(int current);

    LauncherViewModel& _viewModel;
    MenuModel _choices;
    DayPicker _days;
    Button _button;
    QVariantList _rules;
    QVariantList _matches;
};

} // namespace tessellar
