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
            width: Math.min(parent.width - 64, 560)
            spacing: 0
            Item {
                Layout.alignment: Qt.AlignHCenter
                implicitWidth: 176
                implicitHeight: 176
                ProgressRing {
                    anchors.fill: parent
                    value: Math.max(0, view.model.fraction)
                    busy: view.model.fraction < 0
                    still: Theme.calm === 0
                    thickness: 10
                    colour: Theme.accent
                    track: Theme.track
                    Accessible.role: Accessible.ProgressBar
                    Accessible.name: qsTr("Scanning %1").arg(view.model.progressText)
                }
                Label {
                    anchors.centerIn: parent
                    text: view.model.progressText
                    kind: "display"
                    font.pixelSize: Theme.display - 8
                    Accessible.ignored: true
                }
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s5
                text: qsTr("Scanning…")
                kind: "subtitle"
            }
            Label {
                objectName: "scanMessage"
                Layout.fillWidth: true
                Layout.topMargin: Theme.s1
                text: view.model.message
                kind: "small"
                elide: Text.ElideMiddle
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
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s3
                text: qsTr("A scan only reads. Nothing is changed.")
                kind: "small"
            }
        }
    }
}
