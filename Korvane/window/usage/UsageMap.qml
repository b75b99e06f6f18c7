import QtQuick
import Korvane.Window
import Korvane.Theme

// The treemap, with what is pointed at and what is chosen drawn over it.
Item {
    id: view
    required property DiskUsageModel usage
    required property var colours
    /// What is pointed at and what is chosen, as rows; -1 for none.
    property alias hovered: map.hovered
    property alias current: map.current
    property bool empty: false
    /// What is told of the entry that is pointed at or chosen.
    property string spoken: ""
    signal menuWanted(row: int)
    signal leaveWanted(event: var)
    TreemapItem {
        id: map
        objectName: "treemap"
        anchors.fill: parent
        activeFocusOnTab: true
        model: view.usage
        colours: view.colours
        base: Theme.mapBase
        family: Theme.family
        textSize: Theme.caption
        onOpened: row => view.usage.enter(row)
        onMenuRequested: row => view.menuWanted(row)
        Keys.onLeftPressed: move(-1, 0)
        Keys.onRightPressed: move(1, 0)
        Keys.onUpPressed: move(0, -1)
        Keys.onDownPressed: move(0, 1)
        Keys.onReturnPressed: view.usage.enter(current)
        Keys.onEnterPressed: view.usage.enter(current)
        Keys.onMenuPressed: view.menuWanted(current)
        Keys.onPressed: event => view.leaveWanted(event)
        Accessible.role: Accessible.Graphic
        Accessible.focusable: true
        Accessible.name: qsTr("Map of %1").arg(view.usage.folderPath)
        Accessible.description: view.spoken !== "" ? view.spoken
            : qsTr("The arrow keys move between entries, Enter opens a folder, Backspace goes up. The list beside it has the same entries.")
    }
    Rectangle {
        visible: width > 0
        x: map.hoveredArea.x
        y: map.hoveredArea.y
        width: map.hoveredArea.width
        height: map.hoveredArea.height
        color: "#30FFFFFF"
        border.color: Theme.text
    }
    Rectangle {
        visible: map.currentArea.width > 0
        x: map.currentArea.x - 1
        y: map.currentArea.y - 1
        width: map.currentArea.width + 2
        height: map.currentArea.height + 2
        color: "transparent"
        border.color: Theme.text
        border.width: map.activeFocus ? 3 : 2
    }
    Rectangle {
        visible: map.activeFocus && map.current < 0
        anchors.fill: parent
        anchors.margins: -3
        color: "transparent"
        border.color: Theme.accent
        border.width: 2
        radius: 3
    }
    Label {
        anchors.centerIn: parent
        visible: view.empty
        text: qsTr("Nothing is in this folder.")
        color: Theme.textMuted
    }
}
