import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

FocusScope {
    id: view
    required property ToolModel model
    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 80, 480)
        spacing: Theme.s3
        Icon { Layout.alignment: Qt.AlignHCenter; name: "warning"; size: 48; colour: Theme.riskInk[2] }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("The scan could not be done")
            kind: "subtitle"
            Accessible.role: Accessible.Heading
        }
        Label {
            objectName: "failureLabel"
            Layout.fillWidth: true
            text: view.model.failure
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: Theme.textMuted
        }
        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s2
            spacing: Theme.s2
            Button { text: qsTr("Back"); onClicked: view.model.reset() }
            Button { text: qsTr("Try again"); highlighted: true; focus: true; onClicked: view.model.scan() }
        }
    }
}
