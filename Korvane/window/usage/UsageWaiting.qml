import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// While a folder is measured, and when it could not be.
Card {
    id: card
    required property DiskUsageModel usage
    ColumnLayout {
        id: waiting
        readonly property bool isMeasuring: card.usage.state === DiskUsageModel.Measuring
        // What is known already comes at once: it would only flicker.
        visible: !isMeasuring || patience.isOver
        anchors.centerIn: parent
        width: Math.min(parent.width - 64, 560)
        spacing: Theme.s4
        onIsMeasuringChanged: patience.begin()
        Timer {
            id: patience
            property bool isOver: false
            interval: 150
            running: true
            function begin() { isOver = false; restart() }
            onTriggered: isOver = true
        }
        ProgressRing {
            Layout.alignment: Qt.AlignHCenter
            visible: waiting.isMeasuring
            implicitWidth: 72
            implicitHeight: 72
            value: 0
            busy: waiting.isMeasuring
            still: Theme.calm === 0
            thickness: 7
            colour: Theme.accent
            track: Theme.track
            Accessible.role: Accessible.ProgressBar
            Accessible.name: card.usage.message
        }
        Icon { Layout.alignment: Qt.AlignHCenter; visible: !waiting.isMeasuring; name: "warning"; size: 40; colour: Theme.riskInk[2] }
        Label {
            objectName: "usageMessage"
            Layout.fillWidth: true
            text: card.usage.message
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
        }
        Button {
            Layout.alignment: Qt.AlignHCenter
            text: waiting.isMeasuring ? qsTr("Stop") : qsTr("Try again")
            icon.name: waiting.isMeasuring ? "stop" : "restore"
            onClicked: {
                if (waiting.isMeasuring)
                    card.usage.stop()
                else
                    card.usage.goTo(card.usage.crumbs.length - 1)
            }
        }
    }
}
