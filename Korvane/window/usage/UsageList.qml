import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// The entries of a folder, largest first.
ListView {
    id: list
    required property DiskUsageModel usage
    required property var colours
    /// The row that is pointed at, here or elsewhere; -1 for none.
    required property int hovered
    signal hoverChanged(row: int)
    signal menuWanted(row: int)
    signal leaveWanted(event: var)
    clip: true
    reuseItems: true
    activeFocusOnTab: true
    model: list.usage
    currentIndex: -1
    highlightMoveDuration: 0
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ScrollBar {}
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Entries, largest first")
    onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0
    Keys.onReturnPressed: list.usage.enter(currentIndex)
    Keys.onEnterPressed: list.usage.enter(currentIndex)
    Keys.onMenuPressed: list.menuWanted(currentIndex)
    Keys.onPressed: event => list.leaveWanted(event)
    delegate: Item {
        id: row
        required property int index
        required property string name
        required property string sizeText
        required property string shareText
        required property real bar
        required property int kind
        required property string iconName
        required property string spoken
        readonly property color colour: list.colours[kind]
        width: list.width
        height: Math.round(46 * Math.max(1, Theme.scale))
        Accessible.role: Accessible.ListItem
        Accessible.name: spoken
        Accessible.selected: ListView.isCurrentItem
        Rectangle {
            anchors.fill: parent
            anchors.rightMargin: 8
            radius: Theme.radius
            color: row.ListView.isCurrentItem ? Theme.selected
                 : list.hovered === row.index ? Theme.hover : "transparent"
            border.width: row.ListView.isCurrentItem && list.activeFocus ? 2 : 0
            border.color: Theme.accent
        }
        Icon {
            id: icon
            anchors { left: parent.left; leftMargin: 8; top: parent.top; topMargin: 8 }
            name: row.iconName
            size: 16
            colour: row.colour
        }
        Label {
            id: nameLabel
            anchors { left: icon.right; leftMargin: 8; right: sizeLabel.left; rightMargin: 8; top: parent.top; topMargin: 6 }
            text: row.name
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            id: sizeLabel
            anchors { right: parent.right; rightMargin: 16; baseline: nameLabel.baseline }
            text: row.sizeText
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        Rectangle {
            id: track
            anchors { left: nameLabel.left; right: shareLabel.left; rightMargin: 8; verticalCenter: shareLabel.verticalCenter }
            height: 4
            radius: 2
            color: Theme.track
            Rectangle { anchors.left: parent.left; width: Math.round(parent.width * row.bar); height: 4; radius: 2; color: row.colour }
        }
        Label {
            id: shareLabel
            anchors { right: sizeLabel.right; bottom: parent.bottom; bottomMargin: 5 }
            text: row.shareText
            kind: "caption"
            width: Math.max(implicitWidth, 42 * Theme.scale)
            horizontalAlignment: Text.AlignRight
            Accessible.ignored: true
        }
        HoverHandler {
            id: hover
            onHoveredChanged: {
                if (hovered)
                    list.hoverChanged(row.index)
                else if (list.hovered === row.index)
                    list.hoverChanged(-1)
            }
        }
        TapHandler {
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onTapped: (point, button) => {
                list.forceActiveFocus(Qt.MouseFocusReason)
                list.currentIndex = row.index
                if (button === Qt.RightButton)
                    list.menuWanted(row.index)
            }
            onDoubleTapped: (point, button) => { if (button === Qt.LeftButton) list.usage.enter(row.index) }
        }
        ToolTip.visible: hover.hovered && nameLabel.truncated
        ToolTip.delay: 500
        ToolTip.text: row.name
    }
}
