import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// An operation, or one of its items. Placed by hand: layouts would cost most while scrolling.
Item {
    id: row
    required property int index
    required property bool isOperation
    required property string title
    required property string subtitle
    required property string countText
    required property string sizeText
    required property string iconName
    required property bool open
    required property bool restorable
    required property string path
    required property string spoken
    property ListView owner
    property bool busy: false
    property string actionText
    property string actionHelp
    signal openWanted(bool open)
    signal restoreWanted()
    readonly property bool current: ListView.isCurrentItem
    readonly property bool active: current && owner.activeFocus
    readonly property bool narrow: width < 480 * Theme.scale

    width: owner ? owner.width : 0
    height: Theme.rowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.focusable: true
    Accessible.selected: current
    Accessible.onPressAction: if (isOperation) row.openWanted(!open)

    Rectangle {
        anchors.fill: parent
        color: row.active ? Theme.selected : hover.hovered ? Theme.hover : row.isOperation ? Theme.groupRow : Theme.surface
    }
    Rectangle { width: 3; height: parent.height; color: Theme.accent; visible: row.active }
    Rectangle { y: parent.height - 1; width: parent.width; height: 1; color: Theme.border; opacity: 0.7 }
    HoverHandler { id: hover }
    TapHandler {
        onTapped: {
            row.owner.currentIndex = row.index
            row.owner.forceActiveFocus(Qt.MouseFocusReason)
            if (row.isOperation)
                row.openWanted(!row.open)
        }
    }

    Icon {
        id: arrow
        anchors { left: parent.left; leftMargin: 14; verticalCenter: parent.verticalCenter }
        visible: row.isOperation
        name: row.open ? "chevron-down" : "chevron-right"
        size: 16
    }
    Icon {
        id: sign
        anchors { left: parent.left; leftMargin: row.isOperation ? 42 : 66; verticalCenter: parent.verticalCenter }
        name: row.iconName
        size: row.isOperation ? 20 : 18
        colour: row.isOperation ? Theme.accentText : Theme.textFaint
    }
    Column {
        anchors { left: sign.right; leftMargin: Theme.s3; right: figures.left; rightMargin: Theme.s3; verticalCenter: parent.verticalCenter }
        spacing: 1
        Label { width: parent.width; text: row.title; elide: Text.ElideMiddle; font.weight: row.isOperation ? Font.DemiBold : Font.Normal; Accessible.ignored: true }
        Label { width: parent.width; text: row.subtitle; kind: "small"; elide: Text.ElideMiddle; Accessible.ignored: true }
    }
    Column {
        id: figures
        anchors { right: action.left; rightMargin: Theme.s3; verticalCenter: parent.verticalCenter }
        spacing: 1
        Label { anchors.right: parent.right; text: row.countText; kind: row.isOperation ? "body" : "small"; Accessible.ignored: true }
        Label { anchors.right: parent.right; visible: text !== ""; text: row.sizeText; kind: "small"; Accessible.ignored: true }
    }
    Button {
        id: action
        objectName: "restoreButton"
        anchors { right: parent.right; rightMargin: 18; verticalCenter: parent.verticalCenter }
        visible: row.restorable
        enabled: !row.busy
        flat: !row.isOperation
        text: row.actionText
        icon.name: row.narrow ? "restore" : ""
        display: row.narrow ? AbstractButton.IconOnly : AbstractButton.TextOnly
        focusPolicy: row.current ? Qt.StrongFocus : Qt.ClickFocus
        onClicked: row.restoreWanted()
        Accessible.name: qsTr("%1: %2").arg(text).arg(row.spoken)
        Accessible.description: row.actionHelp
        ToolTip.visible: hovered
        ToolTip.delay: 500
        ToolTip.text: row.narrow ? qsTr("%1: %2").arg(row.actionText).arg(row.actionHelp) : row.actionHelp
    }
    ToolTip.visible: hover.hovered && !action.hovered && row.path !== ""
    ToolTip.delay: 700
    ToolTip.text: row.path
}
