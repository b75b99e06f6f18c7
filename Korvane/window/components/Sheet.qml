import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Templates as T
import Korvane.Style
import Korvane.Window
import Korvane.Theme

// A modal sheet in the middle of the window. With `action` it is a question with Cancel, which has
// the focus, and the action; what is put inside it stands between its text and its buttons.
T.Dialog {
    id: sheet
    property string text
    property string iconName
    property string action
    property bool actionEnabled: true
    property string cancelTitle: qsTr("Cancel")
    /// What the action does cannot be undone: its button is red and never the one that Enter presses.
    property bool danger: false
    default property alias body: bodyColumn.data

    parent: Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2.4) : 0
    width: Math.min(Math.round(480 * Math.max(1, Math.min(1.25, Theme.scale))), parent ? parent.width - 64 : 480)
    implicitHeight: contentHeight + topPadding + bottomPadding
    height: Math.min(implicitHeight, parent ? parent.height - 48 : implicitHeight)
    padding: Theme.s5
    modal: true
    dim: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    onOpened: cancelButton.forceActiveFocus(Qt.PopupFocusReason)
    background: Rectangle {
        color: Theme.raised
        radius: 14
        border.color: Theme.dark ? Theme.borderStrong : Theme.border
    }
    T.Overlay.modal: Rectangle { color: Theme.scrim }
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick } }

    contentItem: ColumnLayout {
        spacing: Theme.s3
        RowLayout {
            spacing: Theme.s4
            visible: sheet.title !== ""
            Rectangle {
                visible: sheet.iconName !== ""
                implicitWidth: 44
                implicitHeight: 44
                radius: 12
                color: sheet.danger ? Theme.riskFill[2] : Theme.selected
                Layout.alignment: Qt.AlignTop
                Icon {
                    anchors.centerIn: parent
                    name: sheet.iconName
                    size: 24
                    colour: sheet.danger ? Theme.riskInk[2] : Theme.accentText
                }
            }
            ColumnLayout {
                spacing: 4
                Label {
                    text: sheet.title
                    kind: "subtitle"
                    font.pixelSize: Theme.subtitle + 2
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                Label {
                    visible: text !== ""
                    text: sheet.text
                    color: Theme.textMuted
                    wrapMode: Text.Wrap
                    lineHeight: 1.2
                    Layout.fillWidth: true
                }
            }
        }
        ColumnLayout {
            id: bodyColumn
            spacing: Theme.s3
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: children.length > 0
        }
        RowLayout {
            visible: sheet.action !== "" || sheet.cancelTitle !== ""
            Layout.topMargin: Theme.s2
            spacing: Theme.s2
            Item { Layout.fillWidth: true }
            Button {
                id: cancelButton
                objectName: "cancelButton"
                visible: sheet.cancelTitle !== ""
                text: sheet.cancelTitle
                onClicked: sheet.reject()
            }
            Button {
                objectName: "confirmButton"
                visible: sheet.action !== ""
                enabled: sheet.actionEnabled
                text: sheet.action
                highlighted: true
                danger: sheet.danger
                onClicked: sheet.accept()
            }
        }
    }
}
