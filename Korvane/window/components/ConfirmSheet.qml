import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// Asks before anything is removed: how many, how much, in which way, and what that means.
Sheet {
    id: sheet
    objectName: "confirmSheet"
    property var question: ({})
    function ask(question: var) {
        sheet.question = question
        open()
    }
    title: question.question ?? ""
    text: question.consequence ?? ""
    iconName: danger ? "warning" : "bin"
    danger: question.permanent ?? false
    action: question.action ?? ""

    // A plain Row: a Repeater right inside a layout reads freed items in Qt 6.4.
    Row {
        id: figures
        Layout.fillWidth: true
        spacing: Theme.s3
        Repeater {
            model: [{ value: sheet.question.count ?? "", name: qsTr("items") },
                    { value: sheet.question.size ?? "", name: qsTr("in size") }]
            Rectangle {
                id: figure
                required property var modelData
                width: (figures.width - figures.spacing) / 2
                height: column.implicitHeight + 20
                radius: Theme.radius
                color: Theme.dark ? Theme.hover : Theme.window
                Column {
                    id: column
                    anchors.centerIn: parent
                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: figure.modelData.value
                        kind: "subtitle"
                    }
                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: figure.modelData.name
                        kind: "small"
                    }
                }
            }
        }
    }
    Rectangle {
        visible: (sheet.question.warning ?? "") !== "" || sheet.danger
        Layout.fillWidth: true
        implicitHeight: warning.implicitHeight + 20
        radius: Theme.radius
        color: Theme.riskFill[2]
        RowLayout {
            id: warning
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 12 }
            spacing: 10
            Icon { name: "warning"; size: 18; colour: Theme.riskInk[2] }
            Label {
                Layout.fillWidth: true
                color: Theme.riskInk[2]
                wrapMode: Text.Wrap
                text: [sheet.danger ? qsTr("Nothing goes to the Bin. The Restore Centre cannot bring it back.") : "",
                       sheet.question.warning ?? ""].filter(part => part !== "").join("\n")
            }
        }
    }
}
