import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// A way into a screen: icon, title and a line or two about what waits there.
AbstractButton {
    id: entry
    property string iconName
    property string detail
    /// The one that is to be taken first.
    property bool leads: false
    readonly property color ink: leads ? Theme.accentInk : Theme.text
    implicitHeight: Math.max(76, content.implicitHeight + 2 * Theme.s4)
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: detail
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: Theme.radiusLarge
        color: entry.leads ? (entry.down ? Theme.accentPressed : entry.hovered ? Theme.accentHover : Theme.accent)
                           : (entry.down ? Theme.pressed : entry.hovered ? Theme.hover : Theme.surface)
        border.width: entry.leads ? 0 : 1
        border.color: Theme.border
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: Theme.radiusLarge + 3
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
            visible: entry.visualFocus
        }
    }
    RowLayout {
        id: content
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: Theme.s4; rightMargin: Theme.s3 }
        spacing: Theme.s3
        Icon { name: entry.iconName; size: 24; colour: entry.leads ? Theme.accentInk : Theme.accentText }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            Label {
                Layout.fillWidth: true
                text: entry.text
                kind: "subtitle"
                color: entry.ink
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Label {
                Layout.fillWidth: true
                text: entry.detail
                kind: "small"
                color: entry.leads ? Theme.accentInk : Theme.textMuted
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
        Icon { name: "chevron-right"; size: 16; colour: entry.leads ? Theme.accentInk : Theme.textFaint; mirror: entry.mirrored }
    }
}
