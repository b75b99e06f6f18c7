import QtQuick
import QtQuick.Templates as T
import Korvane.Theme

// `highlighted` is the one main action of a view; `flat` is for quiet ones; `danger` for what cannot
// be undone.
T.Button {
    id: control
    property bool danger: false
    readonly property color ink: !enabled && !highlighted ? Theme.textFaint
        : highlighted ? (danger ? Theme.dangerInk : Theme.accentInk)
        : flat ? Theme.accentText : Theme.text
    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, display === T.AbstractButton.IconOnly ? Theme.controlHeight : 72)
    implicitHeight: Theme.controlHeight
    horizontalPadding: display === T.AbstractButton.IconOnly ? 7 : 14
    spacing: 7
    font.family: Theme.family
    font.pixelSize: Theme.body
    font.weight: highlighted ? Font.DemiBold : Font.Medium
    hoverEnabled: true
    opacity: enabled ? 1 : 0.55
    Accessible.name: text.replace("&", "")
    // Qt Quick buttons answer to Space only; every desktop also lets Enter press the focused one.
    Keys.onReturnPressed: e => { if (e.modifiers === Qt.NoModifier) control.clicked(); else e.accepted = false }
    Keys.onEnterPressed: e => { if ((e.modifiers & ~Qt.KeypadModifier) === Qt.NoModifier) control.clicked(); else e.accepted = false }

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight
        Row {
            id: row
            anchors.centerIn: parent
            spacing: control.spacing
            Icon {
                visible: control.icon.name !== ""
                name: control.icon.name
                colour: control.ink
                size: 16
                anchors.verticalCenter: parent.verticalCenter
            }
            Text {
                textFormat: Text.PlainText
                visible: control.display !== T.AbstractButton.IconOnly && control.text !== ""
                text: control.text
                font: control.font
                color: control.ink
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }
    background: Rectangle {
        radius: Theme.radius
        color: control.highlighted
               ? (control.danger
                  ? (control.down ? Theme.dangerPressed : control.hovered ? Theme.dangerHover : Theme.danger)
                  : (control.down ? Theme.accentPressed : control.hovered ? Theme.accentHover : Theme.accent))
               : control.flat
                 ? (control.down ? Theme.pressed : control.hovered ? Theme.hover : "transparent")
                 : (control.down ? Theme.pressed : control.hovered ? Theme.hover : Theme.raised)
        border.width: control.flat || control.highlighted ? 0 : 1
        border.color: Theme.borderStrong
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: Theme.radius + 3
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
            visible: control.visualFocus
        }
    }
}
