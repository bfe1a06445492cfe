import QtQuick
import Tessellar

// A message or question that the user must answer before continuing.
Sheet {
    id: box

    required property LauncherController launcher
    readonly property AlertPanel alert: launcher.alert
    readonly property bool isQuestion: alert.accept !== ""

    title: alert.title
    message: alert.text
    role: Accessible.AlertMessage
    wanted: 440
    headingFont: Theme.alertFont
    // Its keys work even if something below has the focus.
    takesKeyboard: false
    Component.onCompleted: AccessibleFocus.moveTo(card)
    onTitleChanged: AccessibleFocus.moveTo(card)

    // The default button; also announced when it changes.
    readonly property Item answer: alert.isAcceptDefault ? accepting : declining
    onAnswerChanged: if (alert.isOpen) AccessibleFocus.moveTo(answer)

    WordsText {
        width: box.bodyWidth
        text: box.alert.text
        color: Theme.textSoft
        lineHeight: 1.2
    }

    buttons: [
        PushButton {
            id: declining

            objectName: "cancelButton"
            visible: box.isQuestion
            text: box.alert.decline
            isDefault: box.isQuestion && !box.alert.isAcceptDefault
            onClicked: box.alert.answer(false)
        },
        PushButton {
            id: accepting

            objectName: "acceptButton"
            text: box.isQuestion ? box.alert.accept : qsTr("OK")
            isDefault: box.alert.isAcceptDefault
            isDestructive: box.alert.isDestructive
            onClicked: box.alert.answer(true)
        }
    ]
}
