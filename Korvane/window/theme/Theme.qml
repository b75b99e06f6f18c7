pragma Singleton
import QtQuick
import Korvane.Theme

// Design tokens. Everything on screen takes its colours, sizes and motion from here.
QtObject {
    id: theme
    readonly property bool dark: Appearance.dark

    // surfaces
    readonly property color window: dark ? "#15181D" : "#F5F6F8"
    readonly property color sidebar: dark ? "#101317" : "#EBEDF1"
    readonly property color sidebarHover: dark ? "#1C2027" : "#E0E4EA"
    readonly property color surface: dark ? "#1C2027" : "#FFFFFF"
    readonly property color raised: dark ? "#242933" : "#FFFFFF"
    readonly property color hover: dark ? "#252A34" : "#F0F2F6"
    readonly property color pressed: dark ? "#2D333F" : "#E4E8EE"
    readonly property color selected: dark ? "#173536" : "#DFF1F0"
    readonly property color groupRow: dark ? "#20252D" : "#F7F8FA"
    readonly property color border: dark ? "#2B313B" : "#DEE2E8"
    readonly property color borderStrong: dark ? "#485162" : "#B9C1CD"
    readonly property color scrim: dark ? "#A0000000" : "#66101820"

    readonly property color track: dark ? "#2D333F" : "#E2E6EC"

    // text
    readonly property color text: dark ? "#E8EBF0" : "#1A1F29"
    readonly property color textMuted: dark ? "#A5AFBF" : "#586273"
    readonly property color textFaint: dark ? "#8E9AAC" : "#5A6474"

    // accent
    readonly property color accent: dark ? "#3DBDB2" : "#0E7C7B"
    readonly property color accentHover: dark ? "#56CEC4" : "#0B6C6B"
    readonly property color accentPressed: dark ? "#2FA59B" : "#095857"
    readonly property color accentText: dark ? "#4FCBC0" : "#0B6C6B"
    readonly property color accentInk: dark ? "#04201E" : "#FFFFFF"

    // what cannot be undone
    readonly property color danger: dark ? "#E5675C" : "#B3261E"
    readonly property color dangerHover: dark ? "#EE8178" : "#9A1F18"
    readonly property color dangerPressed: dark ? "#DA5F54" : "#7F1812"
    readonly property color dangerInk: dark ? "#2A0806" : "#FFFFFF"

    // risk: colour, background, word and sign together, never colour alone
    readonly property var riskInk: dark ? ["#74D4A2", "#EDB95E", "#F28B82"] : ["#1B7145", "#8A5200", "#B3261E"]
    readonly property var riskFill: dark ? ["#15301F", "#35280F", "#3A1A18"] : ["#E1F3E8", "#FCEFD4", "#FBE3E1"]
    readonly property var riskWord: [qsTr("Low"), qsTr("Medium"), qsTr("High")]
    readonly property var riskIcon: ["check", "eye", "warning"]

    // categories (told apart by colour-blind people too: they differ in lightness)
    readonly property var series: dark
        ? ["#3DBDB2", "#6C9BE8", "#E6A84A", "#B58BE0", "#E27F6E", "#8FB860"]
        : ["#15918C", "#4C7FD6", "#E0992F", "#9A6BCB", "#D4604E", "#7BA348"]
    readonly property color mapBase: dark ? "#15181D" : "#F5F6F8"
    readonly property color mapFrame: dark ? "#2A303A" : "#E3E7EC"

    // metrics: a 4 px grid
    readonly property int s1: 4
    readonly property int s2: 8
    readonly property int s3: 12
    readonly property int s4: 16
    readonly property int s5: 24
    readonly property int s6: 32
    readonly property int s7: 48
    readonly property int radius: 6
    readonly property int radiusLarge: 10
    readonly property int controlHeight: Math.round(32 * Math.max(1, Appearance.scale))
    readonly property int rowHeight: Math.round(48 * Math.max(1, Appearance.scale))

    // type
    readonly property real scale: Appearance.scale
    readonly property string family: Appearance.family
    readonly property int caption: Math.round(11 * Appearance.scale)
    readonly property int small: Math.round(12 * Appearance.scale)
    readonly property int body: Math.round(13 * Appearance.scale)
    readonly property int subtitle: Math.round(15 * Appearance.scale)
    readonly property int title: Math.round(20 * Appearance.scale)
    readonly property int display: Math.round(38 * Appearance.scale)

    // motion: none when asked for, or when every frame is painted by the CPU
    readonly property int quick: Appearance.reduceMotion ? 0 : 110
    readonly property int calm: Appearance.reduceMotion ? 0 : 180
}
