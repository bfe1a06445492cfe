pragma Singleton
import QtQuick

// The look of the window, in one place: colours, sizes and timing. No other QML file names a colour, a font size,
// a radius or a duration.
//
// Panels (sheets, menus, alerts and their contents) are light or dark, as the user or the system chooses. What is
// on the backdrop, which is dark, looks the same in both.
QtObject {
    id: theme

    // "light", "dark", or "system".
    property string appearance: "system"
    property bool reducesMotion: false
    property real textScale: 1
    // For right-to-left layouts.
    readonly property bool isMirrored: Qt.application.layoutDirection === Qt.RightToLeft

    readonly property SystemPalette system: SystemPalette {}
    // Qt's default if no desktop sets a colour: it expresses no preference.
    readonly property color untold: "#efefef"
    readonly property bool isLight: appearance === "light"
        || (appearance !== "dark" && system.window.hslLightness > 0.5 && !Qt.colorEqual(system.window, untold))

    // ---- on the backdrop

    readonly property color backdropText: "#f5ffffff"
    readonly property color backdropTextDim: "#ccffffff"
    readonly property color backdropTextFaint: "#b8ffffff"
    readonly property color backdropField: "#1fffffff"
    readonly property color backdropFieldTyped: "#2effffff"
    readonly property color backdropOutline: "#2bffffff"
    readonly property color backdropSign: "#ffffff"
    readonly property color backdropShade: "#66000000"
    readonly property color tileHovered: "#14ffffff"
    readonly property color tileSelected: "#26ffffff"
    readonly property color tileTarget: "#4dffffff"
    readonly property color tileRing: "#b3ffffff"
    readonly property color caret: "#d9ffffff"
    readonly property color glow: "#4dffffff"
    readonly property color glowEnd: "#00ffffff"
    readonly property color badge: "#d93a3f4b"
    readonly property color badgeOutline: "#40ffffff"
    readonly property color folderPanel: "#f52c3044"
    readonly property color folderOutline: "#30ffffff"
    readonly property color matched: "#ffd479"

    // ---- panels

    readonly property color panel: isLight ? "#fafbfbfd" : "#fa262a39"
    readonly property color panelOutline: isLight ? "#24000000" : "#38ffffff"
    readonly property color shade: isLight ? "#59000000" : "#80000000"
    readonly property color text: isLight ? "#1d1f27" : "#ffffff"
    readonly property color textSoft: isLight ? "#d91d1f27" : "#d9ffffff"
    readonly property color textDim: isLight ? "#b81d1f27" : "#b3ffffff"
    readonly property color textFaint: isLight ? "#a61d1f27" : "#99ffffff"
    readonly property color textHint: isLight ? "#a01d1f27" : "#8cffffff"
    readonly property color control: isLight ? "#14000000" : "#24ffffff"
    readonly property color controlHovered: isLight ? "#1f000000" : "#38ffffff"
    readonly property color controlPressed: isLight ? "#33000000" : "#4dffffff"
    readonly property color knob: "#ffffff"
    readonly property color well: isLight ? "#ffffff" : "#1b1e2a"
    readonly property color wellOutline: isLight ? "#38000000" : "#30ffffff"
    readonly property color sunken: isLight ? "#0d000000" : "#33000000"
    readonly property color boxOutline: isLight ? "#73000000" : "#80ffffff"
    readonly property color separator: isLight ? "#1f000000" : "#1fffffff"
    readonly property color rowHovered: isLight ? "#0a000000" : "#14ffffff"
    readonly property color rowCurrent: isLight ? "#12000000" : "#1fffffff"
    readonly property color accent: isLight ? "#2f66f0" : "#3a68ea"
    readonly property color accentPressed: isLight ? "#2556d6" : "#2f5bd6"
    readonly property color accentSoft: "#404f80ff"
    readonly property color accentText: "#ffffff"
    readonly property color focusRing: isLight ? "#0b3fc4" : "#ffffff"
    readonly property color defaultRing: isLight ? "#4d0b3fc4" : "#99ffffff"
    readonly property color danger: isLight ? "#d93a2f" : "#d4392f"
    readonly property color dangerPressed: "#c9362c"
    readonly property color dangerText: isLight ? "#b3261c" : "#ff9a91"
    readonly property color warning: isLight ? "#c77700" : "#ffb340"
    readonly property color warningText: isLight ? "#7d5200" : "#ffd479"
    readonly property color clear: "#00000000"

    // ---- text and sizes

    // Text fields must set it: unlike all other text, they do not inherit the application's.
    readonly property string family: Qt.application.font.family

    readonly property int tinyFont: Math.round(10 * textScale)
    readonly property int captionFont: Math.round(11 * textScale)
    readonly property int noteFont: Math.round(12 * textScale)
    readonly property int controlFont: Math.round(13 * textScale)
    readonly property int textFont: Math.round(14 * textScale)
    readonly property int titleFont: Math.round(15 * textScale)
    readonly property int alertFont: Math.round(17 * textScale)
    readonly property int headingFont: Math.round(19 * textScale)
    readonly property int bigFont: Math.round(22 * textScale)

    readonly property int controlHeight: Math.round(30 * textScale)
    readonly property int buttonHeight: Math.round(34 * textScale)
    readonly property int focusWidth: 2
    readonly property int edgeWidth: 36
    readonly property int fieldRadius: 7
    readonly property int controlRadius: 10
    readonly property int menuRadius: 12
    readonly property int tileRadius: 18
    readonly property int sheetRadius: 22
    readonly property int folderRadius: 30
    readonly property int largeIcon: 135 // from this size on, names and the controls around the tiles grow, too
    readonly property real unavailable: 0.4 // opacity of a disabled control

    // ---- motion

    // With reduced motion, movements are immediate; fades remain.
    readonly property int quickTime: reducesMotion ? 0 : 120
    readonly property int moveTime: reducesMotion ? 0 : 260
    readonly property int fadeTime: 180
    readonly property int busyTime: 700
    // A long press opens a menu. A button that is held steps repeatedly.
    readonly property int longPressDelay: 900
    readonly property int repeatDelay: 400
    readonly property int repeatTime: 60
    // What the first frame does not need is created this long after it: one thing at a time, the likeliest first.
    readonly property int neighboursDelay: 60
    readonly property int searchInputDelay: 80
    readonly property int resultsDelay: 200
    readonly property real glide: 16 // per second: how fast tiles approach their slots
    readonly property int curve: Easing.OutCubic
    readonly property int swing: Easing.InOutSine
}
