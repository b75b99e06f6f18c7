import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// Follows an update through its phases. Opens by itself when there is something to see.
Sheet {
    id: sheet
    objectName: "updateSheet"
    readonly property UpdateModel updates: WindowContext.updates
    readonly property int phase: updates.phase
    function start() { updates.check(true) }
    function leave() {
        if (updates.canCancel)
            updates.cancel()
        else if (!updates.isWorking)
            updates.dismiss()
    }

    title: updates.title
    text: updates.detail
    iconName: phase === UpdateModel.Failed ? "warning"
            : phase === UpdateModel.UpToDate ? "check"
            : phase === UpdateModel.NeedsManualInstall ? "info" : "downloads"
    // Its own buttons: they change with the phase, and only some of them close the sheet.
    cancelTitle: ""
    closePolicy: updates.canCancel || !updates.isWorking && phase !== UpdateModel.Relaunching
                 ? Popup.CloseOnEscape : Popup.NoAutoClose
    onOpened: closeButton.forceActiveFocus(Qt.PopupFocusReason)
    onRejected: leave()
    onPhaseChanged: if (opened) closeButton.forceActiveFocus(Qt.PopupFocusReason)

    Connections {
        target: sheet.updates
        function onChanged() {
            if (sheet.updates.isShown)
                sheet.open()
            else
                sheet.close()
        }
        function onQuitRequested() { Qt.quit() }
    }

    Rectangle {
        visible: sheet.updates.notes.length > 0
        Layout.fillWidth: true
        Layout.fillHeight: true
        implicitHeight: notes.implicitHeight + 24
        radius: Theme.radius
        color: Theme.dark ? Theme.surface : Theme.window
        border.color: Theme.border
        Flickable {
            id: flickable
            anchors.fill: parent
            anchors.margins: 12
            clip: true
            contentWidth: width
            contentHeight: notes.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            Column {
                id: notes
                width: flickable.width
                spacing: 6
                Repeater {
                    model: sheet.updates.notes
                    Item {
                        required property string modelData
                        width: notes.width
                        height: line.implicitHeight
                        Icon { anchors { left: parent.left; top: parent.top; topMargin: 2 } name: "check"; size: 15; colour: Theme.accentText }
                        Label {
                            id: line
                            anchors { left: parent.left; right: parent.right; leftMargin: 23 }
                            text: parent.modelData
                            wrapMode: Text.Wrap
                        }
                    }
                }
            }
        }
    }
    RowLayout {
        visible: sheet.updates.isWorking
        Layout.fillWidth: true
        spacing: Theme.s3
        ProgressBar {
            Layout.fillWidth: true
            indeterminate: sheet.phase !== UpdateModel.Downloading || sheet.updates.fraction <= 0
            value: sheet.updates.fraction
            Accessible.name: sheet.updates.title
        }
        Label {
            visible: sheet.phase === UpdateModel.Downloading
            text: sheet.updates.fractionText
            kind: "small"
        }
    }
    Label {
        visible: sheet.phase === UpdateModel.Available && WindowContext.isCleaning
        Layout.fillWidth: true
        text: qsTr("Items are being removed at the moment. Install when that is done.")
        color: Theme.textMuted
        wrapMode: Text.Wrap
    }
    RowLayout {
        Layout.topMargin: Theme.s2
        spacing: Theme.s2
        Item { Layout.fillWidth: true }
        Button {
            id: closeButton
            objectName: "updateClose"
            visible: sheet.updates.canCancel || !sheet.updates.isWorking && sheet.phase !== UpdateModel.Relaunching
            text: sheet.updates.canCancel ? qsTr("Cancel")
                : sheet.phase === UpdateModel.Available ? qsTr("Later") : qsTr("Close")
            onClicked: sheet.reject()
        }
        Button {
            visible: sheet.phase === UpdateModel.NeedsManualInstall
            text: qsTr("Show the disk image")
            highlighted: true
            onClicked: WindowContext.reveal(sheet.updates.location)
        }
        Button {
            objectName: "updateInstall"
            visible: sheet.phase === UpdateModel.Available
            enabled: !WindowContext.isCleaning
            text: qsTr("Install and Restart")
            highlighted: true
            onClicked: sheet.updates.install()
        }
    }
}
