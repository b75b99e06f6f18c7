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
        FocusScope {
            id: list
            objectName: "navigationList"
            property int currentIndex: -1
            readonly property int count: rows.count
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Screens")
            function reveal() {
                const item = rows.itemAt(currentIndex)
                if (item)
                    flick.contentY = Math.max(0, Math.min(flick.contentHeight - height,
                        Math.min(item.y, Math.max(flick.contentY, item.y + item.height + 12 - height))))
            }
            onCurrentIndexChanged: {
                reveal()
                bar.activated()
            }
            onHeightChanged: reveal()
            Keys.onPressed: event => {
                event.accepted = true
                switch (event.key) {
                case Qt.Key_Down: currentIndex = Math.min(count - 1, currentIndex + 1); break
                case Qt.Key_Up: currentIndex = Math.max(0, currentIndex - 1); break
                case Qt.Key_Home: currentIndex = 0; break
                case Qt.Key_End: currentIndex = count - 1; break
                default: event.accepted = false
                }
            }
            // All rows at once in a column: a list view guesses where rows of other heights are.
            Flickable {
                id: flick
                anchors.fill: parent
                clip: true
                contentHeight: column.implicitHeight + 12
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}
                Column {
                    id: column
                    width: flick.width
                    topPadding: 2
                    Repeater {
                        id: rows
                        model: WindowContext.navigation
                        Column {
                            id: place
                            required property int index
                            required property string title
                            required property string iconName
                            required property string heading
                            required property string badge
                            readonly property bool current: list.currentIndex === index
                            width: column.width
                            Item {
                                visible: place.heading !== ""
                                width: parent.width
                                height: Theme.controlHeight
                                Label {
                                    anchors { left: parent.left; leftMargin: 20; bottom: parent.bottom; bottomMargin: 6 }
                                    text: place.heading
                                    kind: "caption"
                                    color: Theme.textFaint
                                    font.weight: Font.DemiBold
                                    Accessible.role: Accessible.Heading
                                }
                            }
                            SidebarRow {
                                width: parent.width
                                title: place.title
                                iconName: place.iconName
                                badge: place.badge
                                current: place.current
                                // The keys belong to the list; the focus tells a screen reader where it is.
                                focus: place.current
                                marked: place.current && list.activeFocus
                                onClicked: {
                                    list.currentIndex = place.index
                                    list.forceActiveFocus(Qt.MouseFocusReason)
                                }
                            }
                        }
                    }
                }
            }
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
