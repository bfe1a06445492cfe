import QtQuick
import Tessellar

// The ways to arrange all installed applications, with previews of their pages.
Sheet {
    id: sheet

    required property LauncherController launcher
    readonly property ArrangingPanel panel: launcher.panels.arranging
    readonly property int chosen: panel.choices.findIndex(choice => choice.isChosen)

    objectName: "arrangingSheet"
    title: panel.isFirstRun ? qsTr("Welcome to Tessellar") : qsTr("Arrange Applications")
    wanted: 640
    scrollsByPages: false
    onClosed: launcher.sheets.close()
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_PageUp && event.key !== Qt.Key_PageDown)
            return;
        event.accepted = true;
        panel.turn(event.key === Qt.Key_PageUp ? -1 : 1);
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.isFirstRun ? qsTr("How should your applications be arranged?") : ""
    }

    SegmentedButton {
        id: ways

        objectName: "arrangingWays"
        width: sheet.bodyWidth
        height: implicitHeight
        choices: sheet.panel.choices
        onChosen: index => sheet.panel.choose(index)
        onStepped: by => sheet.panel.choose(Math.max(0, sheet.chosen + by))
        Component.onCompleted: forceActiveFocus()
    }

    Item {
        width: sheet.bodyWidth
        height: Math.min(Math.round(picture.width * 5 / 8), Math.max(96, sheet.room - ways.height - words.height - 90))

        PagePicture {
            id: picture

            anchors.horizontalCenter: parent.horizontalCenter
            width: parent.width - 2 * (back.width + 10)
            height: parent.height
            icons: sheet.launcher.icons
            isMirrored: Theme.isMirrored
            rows: sheet.panel.picture.rows
            columns: sheet.panel.picture.columns
            tiles: sheet.panel.picture.tiles
        }

        RoundButton {
            id: back

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            sign: Theme.isMirrored ? "right" : "left"
            label: qsTr("Previous Page")
            enabled: sheet.panel.page > 0
            onClicked: sheet.panel.turn(-1)
        }

        RoundButton {
            objectName: "arrangingNextPage"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            sign: Theme.isMirrored ? "left" : "right"
            label: qsTr("Next Page")
            enabled: sheet.panel.page + 1 < sheet.panel.pageCount
            onClicked: sheet.panel.turn(1)
        }
    }

    WordsText {
        width: sheet.bodyWidth
        horizontalAlignment: Text.AlignHCenter
        text: sheet.panel.pageText
        font.pixelSize: Theme.noteFont
    }

    WordsText {
        id: words

        objectName: "arrangingExplanation"
        width: sheet.bodyWidth
        text: sheet.panel.explanation
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.issue
        color: Theme.warningText
        font.pixelSize: Theme.noteFont
    }

    WordsText {
        width: sheet.bodyWidth
        text: sheet.panel.isFirstRun
              ? qsTr("You can come back to this with “Arrange Applications…” in the menu of the background.")
              : qsTr("A backup of the current arrangement is kept, and “Undo” restores it.")
        font.pixelSize: Theme.noteFont
    }

    buttons: [
        PushButton {
            text: sheet.panel.isFirstRun ? qsTr("Not Now") : qsTr("Cancel")
            onClicked: sheet.launcher.sheets.close()
        },
        PushButton {
            objectName: "arrangingTake"
            text: qsTr("Use This Arrangement")
            isDefault: true
            enabled: sheet.chosen >= 0
            onClicked: {
                sheet.launcher.sheets.close();
                sheet.panel.take();
            }
        }
    ]
}
