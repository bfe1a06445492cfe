#pragma once

#include "app/menu_model.h"
#include "icons/icon_loader.h"
#include "launcher/arrangement_shelf.h"
#include "launcher/launcher_view_model.h"
#include "platform/lifetime.h"
#include "platform/machine.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet of the saved arrangements in QML's terms. It has one field, for whatever is to be typed:
/// the name of a new one unless something else was asked for.
class ArrangementsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {id, title, text, columns, rows, tiles: {kind, appKeys, symbolName}, isReadable}, newest first.
    Q_PROPERTY(QVariantList arrangements READ arrangements NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)   ///< in place of a list
    Q_PROPERTY(QString modeText READ modeText NOTIFY changed) ///< whose arrangements these are
    // The field.
    Q_PROPERTY(QString task READ task NOTIFY taskChanged) ///< "save", "rename", "export", "import"
    Q_PROPERTY(QString prompt READ prompt NOTIFY taskChanged)
    Q_PROPERTY(QString suggestion READ suggestion NOTIFY taskChanged) ///< what it holds at first
    Q_PROPERTY(QString accept READ accept NOTIFY taskChanged)         ///< of its button
    Q_PROPERTY(QString issue READ issue NOTIFY issueChanged)  ///< why what was asked for was not done
    Q_PROPERTY(QString undoText READ undoText NOTIFY changed) ///< empty where there is nothing
    Q_PROPERTY(tessellar::MenuModel* menu READ menu CONSTANT)

public:
    ArrangementsPanel(LauncherViewModel& viewModel, const Machine& machine);

    const QVariantList& arrangements() const { return _rows; }
    QString summary() const;
    QString modeText() const;
    QString task() const { return _task; }
    QString prompt() const;
    QString suggestion() const;
    QString accept() const;
    QString issue() const { return _issue; }
    QString undoText() const;
    MenuModel* menu() { return &_menu; }

    void open();
    /// The icons in the pictures.
    QList<IconWish> icons() const;
    /// Asks first.
    Q_INVOKABLE void restore(const QString& id);
    /// What else can be done with an arrangement, below a point of the window.
    Q_INVOKABLE void openMenu(const QString& id, QPointF point);
    Q_INVOKABLE void importFile() { begin(QStringLiteral("import")); }
    /// Does what the field is for, with what was typed.
    Q_INVOKABLE void finish(const QString& text);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// False where the field is for a new name anyhow.
    bool endTask();
    void refresh();

Q_SIGNALS:
    void changed();
    void taskChanged();
    void issueChanged();

private:
    struct File {
        const FileSystem* files = nullptr;
        QString path;
    };

    ArrangementShelf& shelf() const { return _viewModel.arrangements(); }
    void show(const QList<ListedArrangement>& all);
    void begin(const QString& task, const QUuid& id = {});
    void choose(const QString& entry);
    void ask(const QString& title, const QString& text, const QString& accept, bool isDestructive,
             std::function<void()> work);
    ArrangementShelf::Done reporting();
    void setIssue(const QString& issue);
    QString nameOf(const QUuid& id) const;
    std::optional<File> file(const QString& text) const;

    LauncherViewModel& _viewModel;
    const Machine& _machine;
    QList<ListedArrangement> _all;
    QVariantList _rows;
    bool _isLooking = false;
    QString _task = QStringLiteral("save");
    QUuid _subject; ///< that the field or the menu is about
    QString _issue;
    MenuModel _menu;
    Lifetime _lifetime;
};

} // namespace tessellar
