import QtQuick
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// One setting: its name, what it means, and its control at the end; below both where it is narrow.
Item {
    id: line
    property string text
    property string hint
    property bool isDanger: false
    /// Whether the control goes below the words.
    property bool isStacked: width < 420 * Math.max(1, Theme.scale)
    default property alias control: slot.data
    Layout.fillWidth: true
    implicitHeight: isStacked ? words.height + Theme.s2 + slot.height : Math.max(words.height, slot.height)
    Column {
        id: words
        anchors.left: parent.left
        y: line.isStacked ? 0 : Math.round((line.height - height) / 2)
        width: line.isStacked ? line.width : line.width - slot.width - Theme.s4
        spacing: 2
        Label {
            width: parent.width
            text: line.text
            wrapMode: Text.Wrap
            font.weight: Font.Medium
        }
        Label {
            visible: text !== ""
            width: parent.width
            text: line.hint
            kind: "small"
            wrapMode: Text.Wrap
            color: line.isDanger ? Theme.riskInk[2] : Theme.textMuted
        }
    }
    Row {
        id: slot
        x: line.isStacked === line.LayoutMirroring.enabled ? line.width - width : 0
        y: line.isStacked ? words.height + Theme.s2 : Math.round((line.height - height) / 2)
        spacing: Theme.s2
    }
}
