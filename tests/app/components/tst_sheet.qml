import QtQuick
import QtTest
import Tessellar

// A sheet with more parts than it has room for.
Item {
    id: root

    property var heard: []

    function hear(what) {
        heard = heard.concat([what]);
    }

    width: 320
    height: 240

    Sheet {
        id: sheet

        anchors.fill: parent
        title: "A title that is long enough for a second line in a window as narrow as this one"
        onClosed: root.hear("closed")

        FieldBox {
            id: field

            width: sheet.bodyWidth
            value: ""
            label: "Word"
        }

        Repeater {
            id: boxes

            model: 12

            CheckMark {
                required property int index

                width: sheet.bodyWidth
                text: "Box " + index
                isChecked: false
            }
        }

        foot: CheckMark {
            id: foot

            text: "At the foot of the buttons"
            isChecked: false
        }

        buttons: [
            PushButton {
                id: other

                text: "Something Else…"
                onClicked: root.hear("other")
            },
            PushButton {
                id: cancel

                text: "Cancel"
                onClicked: root.hear("cancel")
            },
            PushButton {
                id: accept

                text: "Accept"
                isDefault: true
                onClicked: root.hear("accept")
            }
        ]
    }

    TestCase {
        name: "Sheet"
        when: windowShown

        function init() {
            root.heard = [];
            accept.enabled = true;
            root.width = 320;
            root.height = 240;
            field.input.forceActiveFocus();
        }

        function cleanupTestCase() {
            Theme.appearance = "system";
        }

        function rectOf(item) {
            return item.mapToItem(root, 0, 0, item.width, item.height);
        }

        function isWithin(inner, outer) {
            return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width
                && inner.y + inner.height <= outer.y + outer.height;
        }

        function test_itsButtonsStayAndItsPartsScroll_data() {
            return [{ tag: "smallest", width: 320, height: 240 }, { tag: "flat", width: 1280, height: 240 },
                    { tag: "tall", width: 320, height: 1000 }, { tag: "large", width: 2560, height: 1440 }];
        }

        function test_itsButtonsStayAndItsPartsScroll(data) {
            root.width = data.width;
            root.height = data.height;
            const card = findChild(sheet, "sheetCard");
            const whole = Qt.rect(0, 0, root.width, root.height);
            waitForRendering(sheet);
            verify(isWithin(rectOf(card), whole));
            compare(card.Accessible.role, Accessible.Dialog);
            compare(card.Accessible.name, sheet.title);
            for (const button of [other, cancel, accept, foot])
                verify(isWithin(rectOf(button), rectOf(card)), button.text);
            // Whatever has the keyboard is seen between the title and the buttons.
            const top = Math.min(...[other, cancel, accept, foot].map(button => rectOf(button).y));
            for (let i = 0; i < 12; ++i) {
                keyClick(Qt.Key_Tab);
                compare(Window.window.activeFocusItem, boxes.itemAt(i));
                const seen = rectOf(boxes.itemAt(i));
                verify(seen.y >= rectOf(card).y && seen.y + seen.height <= top, "box " + i);
            }
            field.input.forceActiveFocus();
            verify(rectOf(field).y >= rectOf(card).y, "and back");
        }

        function test_returnPressesTheDefaultUnlessAnotherButtonHasTheKeyboard() {
            keyClick(Qt.Key_Return);
            boxes.itemAt(0).forceActiveFocus();
            keyClick(Qt.Key_Enter);
            compare(root.heard, ["accept", "accept"]);
            cancel.forceActiveFocus();
            keyClick(Qt.Key_Return);
            compare(root.heard, ["accept", "accept", "cancel"]);
            root.heard = [];
            accept.enabled = false;
            field.input.forceActiveFocus();
            keyClick(Qt.Key_Return);
            compare(root.heard, []);
        }

        function test_aClickBesideItClosesIt() {
            root.width = 1000;
            root.height = 700;
            waitForRendering(sheet);
            mouseClick(root, 500, 350);
            compare(root.heard, []);
            mouseClick(root, 5, 5);
            compare(root.heard, ["closed"]);
        }

        function test_itsTextCanBeRead_data() {
            return [{ tag: "light" }, { tag: "dark" }];
        }

        function test_itsTextCanBeRead(data) {
            const over = (color, ground) => Qt.rgba(color.r * color.a + ground.r * (1 - color.a),
                                                    color.g * color.a + ground.g * (1 - color.a),
                                                    color.b * color.a + ground.b * (1 - color.a), 1);
            const linear = part => part <= 0.03928 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4);
            const light = color => 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
            const contrast = (color, ground) => {
                const both = [light(over(color, ground)), light(ground)].sort((a, b) => b - a);
                return (both[0] + 0.05) / (both[1] + 0.05);
            };
            Theme.appearance = data.tag;
            const rows = [[["text", "textSoft", "textDim", "textFaint", "textHint", "dangerText", "warningText"],
                           ["panel", "well"]],
                          [["accentText"], ["accent", "accentPressed", "danger", "dangerPressed"]],
                          [["backdropText", "backdropTextDim", "backdropTextFaint", "matched"], ["folderPanel"]]];
            for (const [texts, grounds] of rows)
                for (const text of texts)
                    for (const ground of grounds)
                        verify(contrast(Theme[text], Theme[ground]) >= 4.5, text + " on " + ground);
        }
    }
}
