import QtQuick
import QtQuick.Templates as T
import Korvane.Window
import Korvane.Theme

T.AbstractButton {
    id: head
    required property ResultModel model
    required property int order
    property bool alignRight: false
    readonly property bool active: model.order === order
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    onClicked: model.sortBy(order)
    Keys.onReturnPressed: clicked()
    Accessible.role: Accessible.Button
    Accessible.name: !active ? qsTr("Sort by %1").arg(text)
                             : model.descending ? qsTr("%1, sorted, largest first").arg(text)
                                                : qsTr("%1, sorted, smallest first").arg(text)
    contentItem: Item {
        Row {
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: head.alignRight ? parent.right : undefined
            spacing: 3
            Icon {
                visible: head.active && head.alignRight
                name: head.model.descending ? "chevron-down" : "chevron-up"
                size: 14
                colour: Theme.text
                anchors.verticalCenter: parent.verticalCenter
            }
            Label {
                text: head.text
                kind: "small"
                color: head.active || head.hovered ? Theme.text : Theme.textMuted
                font.weight: head.active ? Font.DemiBold : Font.Medium
                Accessible.ignored: true
            }
            Icon {
                visible: head.active && !head.alignRight
                name: head.model.descending ? "chevron-down" : "chevron-up"
                size: 14
                colour: Theme.text
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }
    background: Rectangle {
        radius: 4
        color: "transparent"
        border.width: head.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
}
