import QtQuick
import QtTest
import Tessellar

// What buttons, boxes, fields and lists do for a hand, for the keyboard and for a screen reader.
Item {
    id: root

    property var heard: []
    property bool isOn: false
    property bool follows: true // the switch and the box; a machine may refuse
    property int step: 1

    function hear(what) {
        heard = heard.concat([what]);
    }

    width: 400
    height: 500

    Column {
        id: controls

        spacing: 4

        PushButton {
            id: button

            text: "Go"
            onClicked: root.hear("button")
        }

        PushButton {
            id: away

            text: "Away"
            enabled: false
            onClicked: root.hear("away")
        }

        CheckMark {
            id: check

            text: "Box"
            isChecked: root.isOn
            onClicked: root.isOn = root.follows !== root.isOn
        }

        Switch {
            id: toggle

            label: "Toggle"
            isOn: root.isOn
            onToggled: root.isOn = root.follows !== root.isOn
        }

        FieldBox {
            id: field

            label: "Word"
            value: "one"
            onEdited: text => root.hear(text)
        }

        SegmentedButton {
            id: choices

            choices: [0, 1, 2].map(i => ({ title: "Choice " + i, isChosen: i === root.step }))
            onChosen: index => root.step = index
            onStepped: by => root.step = Math.max(0, Math.min(2, root.step + by))
        }

        PopUpButton {
            id: popUp

            label: "Kind"
            text: "Big"
            onOpened: root.hear("menu")
        }

        Slider {
            id: slider

            label: "Size"
            from: 0
            to: 10
            stepSize: 1
            current: 5
            onChosen: value => root.hear(value)
        }

        RoundButton {
            id: round

            sign: "+"
            label: "More"
            onClicked: root.hear("round")
        }

        ItemList {
            id: list

            width: 200
            height: 100
            model: 40
            delegate: ListRow {
                title: "Row " + index
                action: "Do"
                onActed: root.hear("row " + index)
            }
        }
    }

    TestCase {
        name: "Controls"
        when: windowShown

        function init() {
            root.heard = [];
            root.isOn = false;
            root.follows = true;
            root.step = 1;
            list.currentIndex = 0;
            list.positionViewAtBeginning();
            slider.value = 5;
            button.forceActiveFocus();
        }

        function controlWith(item) {
            return [button, check, toggle, field, choices, popUp, slider, round].find(control => {
                for (let part = item; part; part = part.parent)
                    if (part === control)
                        return true;
                return false;
            });
        }

        function test_tabGoesInOrderThroughWhatCanBeUsed() {
            const order = [check, toggle, field, choices, popUp, slider, round];
            for (const control of order) {
                keyClick(Qt.Key_Tab);
                compare(controlWith(Window.window.activeFocusItem), control);
            }
            keyClick(Qt.Key_Backtab);
            compare(controlWith(Window.window.activeFocusItem), slider);
        }

        function test_keysDoWhatAClickDoes() {
            for (const key of [Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space])
                keyClick(key);
            compare(root.heard, ["button", "button", "button"]);
            check.forceActiveFocus();
            keyClick(Qt.Key_Space);
            verify(root.isOn && check.checked && toggle.checked);
            toggle.forceActiveFocus();
            keyClick(Qt.Key_Space);
            verify(!root.isOn && !toggle.checked);
            choices.forceActiveFocus();
            keyClick(Qt.Key_Right);
            compare(root.step, 2);
            keyClick(Qt.Key_Left);
            compare(root.step, 1);
            root.heard = [];
            popUp.forceActiveFocus();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Space);
            round.forceActiveFocus();
            keyClick(Qt.Key_Return);
            slider.forceActiveFocus();
            keyClick(Qt.Key_Right);
            compare(root.heard, ["menu", "menu", "round", 6]);
        }

        function test_whatIsShownIsWhatIs() {
            root.follows = false;
            mouseClick(toggle);
            mouseClick(check, 5, 5);
            verify(!toggle.checked && !check.checked, "the machine refused");
            root.follows = true;
            mouseClick(toggle);
            verify(toggle.checked && check.isChecked);
        }

        function test_disabledIsSeenAndDoesNothing() {
            verify(away.opacity < 1);
            mouseClick(away);
            away.forceActiveFocus();
            keyClick(Qt.Key_Return);
            verify(root.heard.indexOf("away") < 0);
        }

        function test_aFieldIsNotChangedUnderTheHands() {
            mouseClick(field);
            compare(field.input.selectedText, "one");
            keyClick(Qt.Key_T);
            keyClick(Qt.Key_W);
            compare(root.heard, ["t", "tw"]);
            field.value = "two";
            compare(field.input.text, "two", "nobody types at this moment");
            keyClick(Qt.Key_X);
            button.forceActiveFocus();
            compare(field.input.text, "two", "what was not taken is not shown");
            field.value = "one";
        }

        function test_aListIsWalkedByKeys() {
            list.forceActiveFocus();
            for (const [key, index] of [[Qt.Key_End, 39], [Qt.Key_Home, 0], [Qt.Key_Down, 1]]) {
                keyClick(key);
                compare(list.currentIndex, index);
            }
            keyClick(Qt.Key_PageDown);
            const page = list.currentIndex;
            verify(page > 1 && page < 10);
            keyClick(Qt.Key_PageUp);
            verify(list.currentIndex < page);
            const last = list.height - 1;
            keyClick(Qt.Key_End);
            tryVerify(() => list.itemAt(5, list.contentY + last) !== null);
        }

        function test_aScreenReaderHearsWhatItIs() {
            for (const [item, role, name] of [[button, Accessible.Button, "Go"], [check, Accessible.CheckBox, "Box"],
                                              [toggle, Accessible.CheckBox, "Toggle"],
                                              [field.input, field.input.Accessible.role, "Word"], // Qt tells its role
                                              [popUp, Accessible.ButtonMenu, "Kind"],
                                              [slider, Accessible.Slider, "Size"], [round, Accessible.Button, "More"],
                                              [list.itemAtIndex(0), Accessible.ListItem, "Row 0"]]) {
                compare(item.Accessible.role, role, name);
                compare(item.Accessible.name, name);
            }
        }
    }
}
