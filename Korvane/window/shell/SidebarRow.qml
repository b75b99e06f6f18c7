import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

ItemDelegate {
    id: item
    required property string title
    required property string iconName
    required property string badge
    required property bool current
    /// Shown as the one that the keyboard acts on.
    required property bool marked
    height: Theme.controlHeight - 2
    padding: 0
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: badge ? qsTr("%1, %2").arg(title).arg(badge) : title
    Accessible.selected: current
    Accessible.focusable: true
    Accessible.onPressAction: item.clicked()
    contentItem: Item {
        Icon {
            anchors { left: parent.left; leftMargin: 20; verticalCenter: parent.verticalCenter }
            name: item.iconName
            size: 18
            colour: item.current ? Theme.accentText : Theme.textMuted
        }
        Label {
            anchors {
                left: parent.left; leftMargin: 48
                right: badgeLabel.visible ? badgeLabel.left : parent.right
                rightMargin: badgeLabel.visible ? 6 : 16
                verticalCenter: parent.verticalCenter
            }
            text: item.title
            elide: Text.ElideRight
            font.weight: item.current ? Font.DemiBold : Font.Normal
            Accessible.ignored: true
        }
        Label {
            id: badgeLabel
            visible: item.badge !== ""
            anchors { right: parent.right; rightMargin: 20; verticalCenter: parent.verticalCenter }
            text: item.badge
            kind: "caption"
            color: Theme.textFaint
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        radius: Theme.radius
        color: item.current ? Theme.selected : item.hovered ? Theme.sidebarHover : "transparent"
        border.width: item.marked ? 2 : 0
        border.color: Theme.accent
    }
}
