#pragma once

#include "app/menu_model.h"
#include "icons/icon_loader.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_view_model.h"
#include "platform/lifetime.h"
#include "platform/machine.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet of saved arrangements, for QML. Its one text field serves every task; by default the name
/// of a new arrangement.
class ArrangementsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {id, title, text, columns, rows, tiles: {kind, appKeys, symbolName}, isReadable}, newest first.
    Q_PROPERTY(QVariantList arrangements READ arrangements NOTIFY changed FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY changed FINAL)   ///< shown instead of an empty list
    Q_PROPERTY(QString modeText READ modeText NOTIFY changed FINAL) ///< the mode of these arrangements
    // The text field.
    Q_PROPERTY(
        QString task READ task NOTIFY taskChanged FINAL) ///< "save", "rename", "export", "import"
    Q_PROPERTY(QString prompt READ prompt NOTIFY taskChanged FINAL)
    Q_PROPERTY(QString suggestion READ suggestion NOTIFY taskChanged FINAL) ///< initial contents
    Q_PROPERTY(QString accept READ accept NOTIFY taskChanged FINAL)         ///< label of its button
    Q_PROPERTY(QString issue READ issue NOTIFY issueChanged FINAL) ///< why the last request failed
    Q_PROPERTY(
        QString undoText READ undoText NOTIFY changed FINAL) ///< empty if there is nothing to undo
    Q_PROPERTY(tessellar::MenuModel* menu READ menu CONSTANT FINAL)

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
    /// The icons shown in the thumbnails.
    QList<IconRequest> icons() const;
    /// Asks for confirmation.
    Q_INVOKABLE void restore(const QString& id);
    /// Opens the menu of an arrangement below a point of the window.
    Q_INVOKABLE void openMenu(const QString& id, QPointF point);
    Q_INVOKABLE void importFile() { begin(QStringLiteral("import")); }
    /// Performs the field's task with the text entered.
    Q_INVOKABLE void finish(const QString& text);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// Returns to the default task; false if it is current already.
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

    LauncherArrangements& saved() const { return _viewModel.arrangements(); }
    void show(const QList<ListedArrangement>& all);
    void begin(const QString& task, const QUuid& id = {});
    void choose(const QString& entry);
    void ask(const QString& title, const QString& text, const QString& accept, bool isDestructive,
             std::function<void()> work);
    /// `task` is the field's, or empty.
    LauncherArrangements::Done reporting(const QString& task = {});
    void setIssue(const QString& issue);
    QString nameOf(const QUuid& id) const;
    std::optional<File> file(const QString& text) const;

    LauncherViewModel& _viewModel;
    const Machine& _machine;
    QList<ListedArrangement> _all;
    QVariantList _rows;
    bool _isLoading = false;
    QString _task = QStringLiteral("save");
    QUuid _subject; ///< of the field's task or the menu
    QString _issue;
    MenuModel _menu;
    Lifetime _lifetime;
};

} // namespace tessellar
