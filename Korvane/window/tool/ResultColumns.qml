import QtQuick
import Korvane.Theme

// Where the columns of the results begin: one place for the heads and every row.
QtObject {
    required property double width
    readonly property real scale: Math.max(1, Theme.scale)
    readonly property int groupText: 104
    readonly property int itemText: 132
    readonly property int sizeWidth: Math.round(96 * scale)
    readonly property int dateWidth: Math.round(100 * scale)
    readonly property int riskWidth: Math.round(84 * scale)
    readonly property int size: width - 24 - sizeWidth
    readonly property int date: size - 12 - dateWidth
    readonly property int risk: date - 12 - riskWidth
}
