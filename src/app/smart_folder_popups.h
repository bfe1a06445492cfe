#pragma once

#include "app/day_picker.h"
#include "app/menu_model.h"
#include "launcher/smart_folder_editing.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The menus and the day picker of the sheet for editing a smart folder.
class SmartFolderPopups final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    /// The menu of the last button pressed.
    Q_PROPERTY(tessellar::MenuModel* choices READ choices CONSTANT FINAL)
    Q_PROPERTY(tessellar::DayPicker* days READ days CONSTANT FINAL)

public:
    explicit SmartFolderPopups(SmartFolderEditing& editing);

    MenuModel* choices() { return &_choices; }
    DayPicker* days() { return &_days; }

    /// Opens a button's menu below a point of the window: one of `SmartFolderMenu`, by its name, or
    /// "suggestion" for a typed operand.
    Q_INVOKABLE void openChoices(const QString& button, QPointF point, int rule = -1, int operand = -1);
    /// Opens the day picker for an operand below a point of the window.
    Q_INVOKABLE void openDays(QPointF point, int rule, int operand);
    void close();

private:
    /// The button whose menu is open.
    struct Button {
        std::optional<SmartFolderMenu::Kind> menu; ///< nullopt for suggestions
        QPointF point;
        int rule = -1;
        int operand = -1;
    };

    QList<SmartFolderOption> options() const;
    QList<SmartFolderOption> suggestions() const;
    void choose(const QString& word);
    bool staysOpen() const;
    void openMenu(qsizetype current);

    SmartFolderEditing& _editing;
    MenuModel _choices;
    DayPicker _days;
    Button _button;
};

} // namespace tessellar
