#pragma once

#include "app/smart_folder_popups.h"
#include "launcher/launcher_view_model.h"
#include "launcher/smart_folder_editing.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// What a smart folder being edited contains, for QML.
struct SmartFolderPreview {
    Q_GADGET
    QML_VALUE_TYPE(smartFolderPreview)
    Q_PROPERTY(QString summary MEMBER summary FINAL)
    Q_PROPERTY(QString notice MEMBER notice FINAL)
    Q_PROPERTY(QStringList icons MEMBER icons FINAL)
    Q_PROPERTY(QVariantList matches MEMBER matches FINAL)

public:
    QString summary; ///< the number of matches
    QString notice;
    QStringList icons;    ///< of the folder's own icon, as app keys
    QVariantList matches; ///< the first ones, as {appKey, name}
};

/// The sheet for editing a smart folder's rules, for QML.
class SmartFolderPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed FINAL)
    Q_PROPERTY(
        QString symbolName READ symbolName WRITE setSymbolName NOTIFY changed FINAL) ///< may be empty
    Q_PROPERTY(QVariantList symbols READ symbols NOTIFY changed FINAL) ///< {name, isChosen, isDrawn}
    Q_PROPERTY(QString matchMode READ matchMode NOTIFY changed FINAL)
    /// {field, predicate, joint, operands: {kind, text, needsInput, hasSuggestions}}; `joint` is the
    /// text between operands.
    Q_PROPERTY(QVariantList rules READ rules NOTIFY changed FINAL)
    Q_PROPERTY(QString sortField READ sortField NOTIFY changed FINAL)
    Q_PROPERTY(QString sortDirection READ sortDirection NOTIFY changed FINAL)
    Q_PROPERTY(bool hasLimit READ hasLimit WRITE setHasLimit NOTIFY changed FINAL)
    Q_PROPERTY(QString limitText READ limitText NOTIFY changed FINAL)
    Q_PROPERTY(bool isChanged READ isChanged NOTIFY changed FINAL)
    /// Why it cannot be saved; empty if it can.
    Q_PROPERTY(QString issue READ issue NOTIFY changed FINAL)
    Q_PROPERTY(tessellar::SmartFolderPreview preview READ preview NOTIFY changed FINAL)
    Q_PROPERTY(tessellar::SmartFolderPopups* popups READ popups CONSTANT FINAL)

public:
    explicit SmartFolderPanel(LauncherViewModel& viewModel);

    bool isOpen() const { return editing().draft().has_value(); }
    QString title() const;
    QString name() const;
    void setName(const QString& name);
    QString symbolName() const;
    void setSymbolName(const QString& name);
    QVariantList symbols() const;
    QString matchMode() const { return chosen(SmartFolderMenu::Kind::matchMode); }
    const QVariantList& rules() const { return _rules; }
    QString sortField() const { return chosen(SmartFolderMenu::Kind::sortField); }
    QString sortDirection() const { return chosen(SmartFolderMenu::Kind::sortDirection); }
    bool hasLimit() const;
    void setHasLimit(bool hasLimit);
    QString limitText() const;
    bool isChanged() const { return editing().isChanged(); }
    QString issue() const { return editing().issue(); }
    const SmartFolderPreview& preview() const { return _preview; }
    SmartFolderPopups* popups() { return &_popups; }

    Q_INVOKABLE void type(int rule, int operand, const QString& text);
    Q_INVOKABLE void typeLimit(const QString& text);
    /// Changes a number or day by `by`; the limit if no rule is given.
    Q_INVOKABLE void step(int by, int rule = -1, int operand = -1);
    Q_INVOKABLE void insertRule(int place) { editing().insertRule(place); }
    Q_INVOKABLE void removeRule(int rule);
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();
    /// Asks first if changes would be lost.
    void leave();
    void refresh();

Q_SIGNALS:
    void changed();

private:
    SmartFolderEditing& editing() const { return _viewModel.smartFolderEditing(); }
    void change(const std::function<void(SmartFolderDraft&)>& change) { editing().change(change); }
    QString chosen(SmartFolderMenu::Kind menu) const;

    LauncherViewModel& _viewModel;
    SmartFolderPopups _popups;
    QVariantList _rules;
    SmartFolderPreview _preview;
};

} // namespace tessellar
