import QtQuick
import Korvane.Theme

// Where the columns of the results begin: one place for the heads and every row.
QtObject {
    required property double width
    readonly property real scale: Math.max(1, Theme.scale)
    readonly property int groupText: 104
    readonly property int itemText: 132
    readonly property int sizeWidth: Math.round(88 * scale)
    /// Without room for everything the date goes first: the details have it.
    readonly property bool hasDate: width > 620 * scale
    readonly property int dateWidth: hasDate ? Math.round(100 * scale) : 0
    readonly property int riskWidth: Math.round(84 * scale)
    readonly property int size: width - 24 - sizeWidth
    readonly property int date: hasDate ? size - 12 - dateWidth : size
    readonly property int risk: date - 12 - riskWidth
}
