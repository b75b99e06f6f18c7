import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Rectangle {
    id: bar
    property alias currentIndex: list.currentIndex
    signal activated()
    color: Theme.sidebar

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        RowLayout {
            Layout.leftMargin: 18
            Layout.topMargin: 16
            Layout.bottomMargin: 6
            spacing: 10
            Image {
                source: "image://icon/korvane"
                sourceSize.width: 28
                sourceSize.height: 28
                Accessible.ignored: true
            }
            Label { text: "Korvane"; kind: "subtitle"; font.pixelSize: Theme.subtitle + 1 }
        }
        ListView {
            id: list
            objectName: "navigationList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            focus: true
            activeFocusOnTab: true
            model: WindowContext.navigation
            currentIndex: -1
            boundsBehavior: Flickable.StopAtBounds
            topMargin: 2
            bottomMargin: 10
            highlightMoveDuration: 0
            keyNavigationEnabled: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Screens")
            ScrollBar.vertical: ScrollBar {}
            section.property: "section"
            section.delegate: Item {
                id: head
                required property string section
                width: list.width
                height: section === "" ? 0 : Theme.controlHeight
                Label {
                    visible: head.section !== ""
                    anchors { left: parent.left; leftMargin: 20; bottom: parent.bottom; bottomMargin: 6 }
                    text: head.section
                    kind: "caption"
                    color: Theme.textFaint
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
            }
            delegate: ItemDelegate {
                id: item
                required property int index
                required property string title
                required property string iconName
                required property string badge
                readonly property bool current: ListView.isCurrentItem
                width: list.width
                height: Theme.controlHeight - 2
                padding: 0
                hoverEnabled: true
                focusPolicy: Qt.NoFocus
                onClicked: {
                    list.currentIndex = index
                    list.forceActiveFocus(Qt.MouseFocusReason)
                }
                Accessible.role: Accessible.ListItem
                Accessible.name: badge ? qsTr("%1, %2").arg(title).arg(badge) : title
                Accessible.selected: current
                Accessible.focusable: true
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
                    color: item.current ? Theme.selected
                                        : item.hovered ? Theme.sidebarHover : "transparent"
                    border.width: item.current && list.activeFocus ? 2 : 0
                    border.color: Theme.accent
                }
            }
            onCurrentIndexChanged: bar.activated()
        }
        DiskGauge {
            Layout.fillWidth: true
            Layout.margins: 16
            Layout.topMargin: 8
        }
    }
    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.border
    }
}
