import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// A strip that says how something went; red for what failed. It can offer one thing to do.
Rectangle {
    id: note
    property string title
    property string text
    property bool isFailure: false
    property string action
    property bool canBeDismissed: true
    signal acted()
    signal dismissed()
    readonly property color ink: isFailure ? Theme.riskInk[2] : Theme.text
    implicitHeight: row.implicitHeight + 16
    radius: Theme.radius
    color: isFailure ? Theme.riskFill[2] : Theme.selected
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title === "" ? text : title + ". " + text
    RowLayout {
        id: row
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: Theme.s3; rightMargin: Theme.s2 }
        spacing: Theme.s2
        Icon { name: note.isFailure ? "warning" : "info"; size: 18; colour: note.isFailure ? note.ink : Theme.accentText }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            Label {
                visible: text !== ""
                Layout.fillWidth: true
                text: note.title
                color: note.ink
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            Label {
                Layout.fillWidth: true
                text: note.text
                color: note.ink
                wrapMode: Text.Wrap
            }
        }
        Button {
            objectName: "noteAction"
            visible: note.action !== ""
            text: note.action
            onClicked: note.acted()
        }
        Button {
            visible: note.canBeDismissed
            display: AbstractButton.IconOnly
            flat: true
            icon.name: "close"
            text: qsTr("Dismiss")
            onClicked: note.dismissed()
        }
    }
}
