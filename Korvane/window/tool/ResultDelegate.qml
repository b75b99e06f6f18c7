import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// One row, a group or an item. Placed by hand: with 20 of these on screen and all of them bound anew
// while scrolling, layouts would be what costs most.
Item {
    id: row
    required property int index
    required property bool isGroup
    required property string title
    required property string subtitle
    required property string sizeText
    required property string dateText
    required property int risk
    required property string reason
    required property int ticked
    required property bool tickable
    required property bool open
    required property string iconName
    required property string count
    required property string mark
    required property string picture
    required property string spoken
    property ListView owner
    property ResultColumns columns
    signal toggled(int index)
    signal menuWanted(int index)
    signal detailsWanted(int index)
    readonly property bool current: ListView.isCurrentItem
    readonly property bool active: current && owner.activeFocus
    readonly property int textX: isGroup ? columns.groupText : columns.itemText

    width: owner ? owner.width : 0
    height: Theme.rowHeight
    // Placed by hand, as the heads above are.
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    Accessible.role: Accessible.ListItem
    Accessible.name: spoken
    Accessible.description: reason
    Accessible.checkable: tickable
    Accessible.checked: ticked === Qt.Checked
    Accessible.checkStateMixed: ticked === Qt.PartiallyChecked
    Accessible.selected: current
    Accessible.focusable: true
    Accessible.onToggleAction: row.toggled(row.index)
    Accessible.onPressAction: row.toggled(row.index)

    Rectangle {
        anchors.fill: parent
        color: row.active ? Theme.selected : mouse.containsMouse ? Theme.hover
             : row.isGroup ? Theme.groupRow : Theme.surface
    }
    Rectangle { width: 3; height: parent.height; color: Theme.accent; visible: row.active }
    Rectangle { y: parent.height - 1; width: parent.width; height: 1; color: Theme.border; opacity: 0.7 }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: event => {
            row.owner.currentIndex = row.index
            row.owner.forceActiveFocus(Qt.MouseFocusReason)
            if (event.button === Qt.RightButton)
                row.menuWanted(row.index)
            else if (row.isGroup)
                row.owner.model.toggleOpen(row.index)
        }
        onDoubleClicked: event => {
            if (!row.isGroup && event.button === Qt.LeftButton)
                row.detailsWanted(row.index)
        }
    }

    Icon {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: row.isGroup
        name: row.open ? "chevron-down" : "chevron-right"
        size: 16
    }
    CheckBox {
        x: row.isGroup ? 34 : 58
        width: 28
        height: parent.height
        enabled: row.tickable
        opacity: enabled ? 1 : 0.35
        tristate: false
        focusPolicy: Qt.NoFocus
        checkState: row.ticked
        nextCheckState: () => {
            row.toggled(row.index)
            return row.ticked
        }
        Accessible.ignored: true // the row is the check box for a screen reader
    }
    Icon {
        visible: thumbnail.status !== Image.Ready
        x: row.isGroup ? 70 : 94
        anchors.verticalCenter: parent.verticalCenter
        name: row.iconName
        size: row.isGroup ? 20 : 18
        colour: row.isGroup ? Theme.accentText : Theme.textFaint
    }
    Image {
        id: thumbnail
        x: row.isGroup ? 60 : 88
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 36
        source: row.picture
        sourceSize.width: 96
        sourceSize.height: 96
        fillMode: Image.PreserveAspectFit
        asynchronous: true
        Accessible.ignored: true
    }
    Text {
        id: titleText
        x: row.textX
        y: Math.round(row.height / 2 - implicitHeight) + 2
        width: Math.min(implicitWidth, Math.max(24, (row.isGroup ? row.columns.date : row.columns.risk) - x - 12 - (markBadge.visible ? markBadge.width + 8 : 0)))
        text: row.title
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        color: Theme.text
        font.family: Theme.family
        font.pixelSize: Theme.body
        font.weight: row.isGroup ? Font.DemiBold : Font.Normal
    }
    Rectangle {
        id: markBadge
        visible: row.mark !== ""
        x: titleText.x + titleText.width + 8
        y: titleText.y + Math.round((titleText.height - height) / 2)
        width: markText.implicitWidth + 12
        height: markText.implicitHeight + 2
        radius: height / 2
        color: Theme.dark ? Theme.pressed : Theme.hover
        border.color: Theme.border
        Text {
            textFormat: Text.PlainText
            id: markText
            anchors.centerIn: parent
            text: row.mark
            color: Theme.textMuted
            font.family: Theme.family
            font.pixelSize: Theme.caption
            font.weight: Font.Medium
        }
    }
    Text {
        x: row.textX
        y: Math.round(row.height / 2) + 3
        width: (row.isGroup ? row.columns.date : row.columns.risk) - x - 12
        text: row.subtitle
        textFormat: Text.PlainText
        elide: row.isGroup ? Text.ElideRight : Text.ElideMiddle
        color: Theme.textMuted
        font.family: Theme.family
        font.pixelSize: Theme.caption
    }
    RiskBadge {
        id: badge
        visible: !row.isGroup
        x: row.columns.risk
        anchors.verticalCenter: parent.verticalCenter
        risk: Math.max(0, row.risk)
        Accessible.ignored: true
        HoverHandler { id: badgeHover }
    }
    ToolTip.visible: badgeHover.hovered && !row.isGroup
    ToolTip.delay: 350
    ToolTip.text: row.reason
    Text {
        textFormat: Text.PlainText
        visible: row.columns.hasDate
        x: row.columns.date
        width: row.columns.dateWidth
        height: parent.height
        text: row.isGroup ? row.count : row.dateText
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignRight
        color: Theme.textMuted
        font.family: Theme.family
        font.pixelSize: Theme.small
    }
    Text {
        textFormat: Text.PlainText
        x: row.columns.size
        width: row.columns.sizeWidth
        height: parent.height
        text: row.sizeText
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignRight
        color: Theme.text
        font.family: Theme.family
        font.pixelSize: Theme.body
        font.weight: row.isGroup ? Font.DemiBold : Font.Medium
    }
}
