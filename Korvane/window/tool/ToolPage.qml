import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// A tool that scans: its header and the view of the state that it is in.
Page {
    id: page
    readonly property ToolModel model: WindowContext.tool(tool.pageID)
    property bool scansNext: false
    function refresh() {
        if (model.phase === ToolModel.Cleaning)
            busySheet.open()
        else if (model.phase === ToolModel.Results || model.phase === ToolModel.Finished
                || model.phase === ToolModel.Failed || model.canScan)
            model.scan()
    }
    function find() { states.find() }
    function act() { states.act() }

    DropArea {
        id: drop
        anchors.fill: parent
        enabled: page.model.needs === "folder"
        keys: ["text/uri-list"]
        onDropped: event => {
            if (event.hasUrls) {
                page.model.setFolder(event.urls[0])
                if (page.model.canScan)
                    page.model.scan()
            }
        }
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        PageHeader {
            Layout.fillWidth: true
            Layout.margins: Theme.s5
            Layout.bottomMargin: Theme.s4
            title: page.tool.title
            blurb: page.model.subject !== "" ? qsTr("In %1").arg(page.model.subject) : page.tool.blurb
            visible: page.model.phase !== ToolModel.Idle
            Button {
                visible: page.model.needs === "folder" && page.model.phase !== ToolModel.Scanning
                         && page.model.phase !== ToolModel.Cleaning
                text: qsTr("Choose folder…")
                icon.name: "folder"
                onClicked: folderDialog.open()
            }
            Button {
                visible: page.model.phase === ToolModel.Results
                text: qsTr("Scan again")
                icon.name: "restore"
                onClicked: page.model.scan()
            }
        }
        ToolStates {
            id: states
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            tool: page.tool
            model: page.model
            onChooseFolder: folderDialog.open()
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 16
        radius: 14
        color: "transparent"
        border.width: 2
        border.color: Theme.accent
        visible: drop.containsDrag
    }
    Sheet {
        id: busySheet
        title: qsTr("Korvane is still removing items")
        text: qsTr("Stop before the next item and scan again? Anything already removed stays removed, and is in the log.")
        action: qsTr("Stop and scan again")
        onAccepted: {
            page.scansNext = true
            page.model.stop()
        }
    }
    Connections {
        target: page.model
        function onPhaseChanged() {
            if (page.scansNext && page.model.phase === ToolModel.Finished) {
                page.scansNext = false
                page.model.scan()
            }
        }
    }
    FolderDialog {
        id: folderDialog
        title: qsTr("Choose a folder to look at")
        currentFolder: page.model.folder
        onAccepted: {
            page.model.setFolder(selectedFolder)
            page.model.scan()
        }
    }
}
