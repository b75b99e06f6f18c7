import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// How putting back goes and went: a sentence, and each item that did not come back with its reason.
Rectangle {
    id: banner
    required property RestoreRun run
    readonly property color ink: run.running ? Theme.text : run.failed ? Theme.riskInk[1] : Theme.riskInk[0]
    visible: run.message !== ""
    implicitHeight: column.implicitHeight + 2 * Theme.s3
    radius: Theme.radiusLarge
    color: run.running ? Theme.surface : run.failed ? Theme.riskFill[1] : Theme.riskFill[0]
    border.width: run.running ? 1 : 0
    border.color: Theme.border
    Accessible.role: Accessible.AlertMessage
    Accessible.name: run.message

    ColumnLayout {
        id: column
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.s3; leftMargin: Theme.s4 }
        spacing: Theme.s2
        RowLayout {
            spacing: Theme.s3
            Icon {
                name: banner.run.running ? "restore" : banner.run.failed ? "warning" : "check"
                colour: banner.ink
            }
            Label {
                objectName: "restoreMessage"
                Layout.fillWidth: true
                text: banner.run.message
                color: banner.ink
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            ProgressBar {
                visible: banner.run.running
                indeterminate: true
                Layout.preferredWidth: 160
                Accessible.name: banner.run.message
            }
            Button {
                visible: !banner.run.running
                text: qsTr("Dismiss")
                icon.name: "close"
                display: AbstractButton.IconOnly
                flat: true
                onClicked: banner.run.dismiss()
                ToolTip.visible: hovered
                ToolTip.text: text
            }
        }
        ListView {
            id: failures
            objectName: "restoreFailures"
            visible: count > 0
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(count, 4) * rowHeight
            readonly property int rowHeight: Math.round(Theme.rowHeight * 0.9)
            clip: true
            reuseItems: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            model: banner.run
            ScrollBar.vertical: ScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("What did not come back")
            delegate: Item {
                id: failure
                required property string path
                required property string problem
                required property string spoken
                readonly property bool current: ListView.isCurrentItem && failures.activeFocus
                width: failures.width
                height: failures.rowHeight
                Accessible.role: Accessible.ListItem
                Accessible.name: spoken
                Rectangle { anchors.fill: parent; radius: Theme.radius; color: "transparent"; border.width: failure.current ? 2 : 0; border.color: Theme.accent }
                Column {
                    x: 8
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - 24
                    Label { width: parent.width; text: failure.path; elide: Text.ElideMiddle; Accessible.ignored: true }
                    Label { width: parent.width; text: failure.problem; kind: "small"; color: banner.ink; elide: Text.ElideRight; Accessible.ignored: true }
                }
                HoverHandler { id: hover }
                ToolTip.visible: hover.hovered
                ToolTip.delay: 600
                ToolTip.text: failure.spoken
            }
        }
    }
}
