import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// A day, an operation or an affected path. Placed by hand: layouts would cost most while scrolling.
Item {
    id: row
    required property int index
    required property int kind
    required property string title
    required property string subtitle
    required property string when
    required property string sizeText
    required property string iconName
    required property bool foldable
    required property bool open
    required property string foldText
    required property bool canPutBack
    required property string path
    required property string spoken
    property ListView owner
    property bool busy: false
    property string putBackHelp
    signal openWanted(bool open)
    signal putBackWanted()
    readonly property bool isDay: kind === AuditModel.Day
    readonly property bool isOperation: kind === AuditModel.Operation
    readonly property bool isPath: kind === AuditModel.AffectedPath
    readonly property bool current: ListView.isCurrentItem
    readonly property bool active: current && owner.activeFocus

    width: owner ? owner.width : 0
    height: Theme.rowHeight
    Accessible.role: isDay ? Accessible.Heading : Accessible.ListItem
    Accessible.name: spoken
    Accessible.description: foldable ? foldText : ""
    Accessible.focusable: true
    Accessible.selected: current
    Accessible.onPressAction: if (foldable) row.openWanted(!open)

    Rectangle {
        anchors.fill: parent
        color: row.active ? Theme.selected : hover.hovered && !row.isDay ? Theme.hover : row.isPath ? Theme.groupRow : Theme.surface
    }
    Rectangle { width: 3; height: parent.height; color: Theme.accent; visible: row.active }
    Rectangle { y: parent.height - 1; width: parent.width; height: 1; color: Theme.border; opacity: 0.7 }
    HoverHandler { id: hover }
    TapHandler {
        onTapped: {
            row.owner.currentIndex = row.index
            row.owner.forceActiveFocus(Qt.MouseFocusReason)
            if (row.foldable)
                row.openWanted(!row.open)
        }
    }

    Label {
        visible: row.isDay
        anchors { left: parent.left; leftMargin: 18; right: parent.right; rightMargin: 18; bottom: parent.bottom; bottomMargin: 9 }
        text: row.title
        color: Theme.textMuted
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Icon {
        anchors { left: parent.left; leftMargin: 14; verticalCenter: parent.verticalCenter }
        visible: row.foldable
        name: row.open ? "chevron-down" : "chevron-right"
        size: 16
    }
    Label {
        id: time
        visible: row.isOperation
        anchors { left: parent.left; leftMargin: 40; verticalCenter: parent.verticalCenter }
        width: Math.ceil(Theme.small * 3.4)
        text: row.when
        kind: "small"
        Accessible.ignored: true
    }
    Icon {
        id: sign
        visible: !row.isDay
        anchors { left: time.right; leftMargin: row.isPath ? 32 : 4; verticalCenter: parent.verticalCenter }
        name: row.iconName
        size: row.isOperation ? 20 : 16
        colour: row.isOperation ? Theme.accentText : Theme.textFaint
    }
    Column {
        visible: !row.isDay
        anchors { left: sign.right; leftMargin: Theme.s3; right: row.isPath ? parent.right : amount.left; rightMargin: row.isPath ? 18 : Theme.s3; verticalCenter: parent.verticalCenter }
        spacing: 1
        Label { width: parent.width; text: row.title; elide: Text.ElideMiddle; font.weight: row.isOperation ? Font.Medium : Font.Normal; Accessible.ignored: true }
        Label { width: parent.width; text: row.subtitle; kind: "small"; elide: row.isPath ? Text.ElideMiddle : Text.ElideRight; Accessible.ignored: true }
    }
    Label {
        id: amount
        visible: row.isOperation
        anchors { right: action.left; rightMargin: Theme.s2; verticalCenter: parent.verticalCenter }
        text: row.sizeText
        font.weight: Font.Medium
        Accessible.ignored: true
    }
    Button {
        id: action
        objectName: "putBackButton"
        // Keeps its place in every row, so that the amounts stand in one column.
        anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
        opacity: row.canPutBack ? (enabled ? 1 : 0.55) : 0
        enabled: row.canPutBack && !row.busy
        flat: true
        text: qsTr("Put back")
        focusPolicy: row.current && row.canPutBack ? Qt.StrongFocus : Qt.ClickFocus
        onClicked: row.putBackWanted()
        Accessible.ignored: !row.canPutBack
        Accessible.name: qsTr("%1: %2").arg(text).arg(row.spoken)
        Accessible.description: row.putBackHelp
        ToolTip.visible: hovered
        ToolTip.delay: 500
        ToolTip.text: row.putBackHelp
    }
    ToolTip.visible: hover.hovered && !action.hovered && ToolTip.text !== ""
    ToolTip.delay: 700
    ToolTip.text: isPath ? path : isOperation && foldable ? foldText : ""
}
