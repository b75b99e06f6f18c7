import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

FocusScope {
    id: view
    required property ToolModel model
    Keys.onEscapePressed: model.stop()
    Card {
        anchors.fill: parent
        anchors.margins: Theme.s5
        anchors.topMargin: 0
        ColumnLayout {
            anchors.centerIn: parent
            width: Math.min(parent.width - 64, 520)
            spacing: 0
            Label {
                Layout.alignment: Qt.AlignHCenter
                text: view.model.cleaningTitle
                kind: "title"
                Accessible.role: Accessible.Heading
            }
            ProgressBar {
                Layout.fillWidth: true
                Layout.topMargin: Theme.s5
                value: view.model.fraction
                Accessible.name: qsTr("Removing %1").arg(view.model.progressText)
            }
            Label {
                Layout.fillWidth: true
                Layout.topMargin: Theme.s2
                text: view.model.message
                kind: "small"
                horizontalAlignment: Text.AlignHCenter
            }
            Button {
                objectName: "stopButton"
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s5
                text: qsTr("Stop")
                icon.name: "stop"
                focus: true
                onClicked: view.model.stop()
            }
            Label {
                Layout.fillWidth: true
                Layout.topMargin: Theme.s3
                text: qsTr("Stop before the next item. Anything already removed stays removed.")
                kind: "small"
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }
        }
    }
}
