import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// What can be put back from the Bin, operation by operation.
Page {
    id: page
    readonly property RestoreModel restore: WindowContext.restore
    readonly property var records: restore
    function refresh() { restore.refresh() }
    Component.onCompleted: restore.refresh()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.s5
        spacing: Theme.s4
        PageHeader {
            Layout.fillWidth: true
            title: page.tool.title
            blurb: page.tool.blurb
            Button {
                text: qsTr("Refresh")
                icon.name: "restore"
                enabled: page.restore.state !== RestoreModel.Checking
                onClicked: page.refresh()
            }
        }
        RestoreBanner {
            Layout.fillWidth: true
            run: page.restore.run
        }
        Label {
            visible: page.restore.state === RestoreModel.Listed
            text: page.restore.summary
            kind: "subtitle"
        }
        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Notice {
                anchors.centerIn: parent
                width: Math.min(460, parent.width - 2 * Theme.s5)
                visible: page.restore.state !== RestoreModel.Listed
                busy: page.restore.state === RestoreModel.Checking
                iconName: "restore"
                title: busy ? page.restore.checkingText : page.restore.emptyTitle
                text: busy ? "" : page.restore.emptyText
            }
            ListView {
                id: list
                objectName: "restoreList"
                anchors { fill: parent; margins: 1; topMargin: Theme.s2; bottomMargin: Theme.s2 }
                visible: page.restore.state === RestoreModel.Listed
                clip: true
                focus: true
                reuseItems: true
                activeFocusOnTab: true
                model: page.restore
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Operations that can be undone")
                Keys.onPressed: event => {
                    const row = list.currentItem as RestoreRow
                    if (row === null)
                        return
                    const opens = event.key === Qt.Key_Right, closes = event.key === Qt.Key_Left
                    const toggles = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter
                    if (opens || closes || (toggles && event.modifiers === Qt.NoModifier)) {
                        page.restore.setOpen(row.index, opens || (toggles && !row.open))
                        event.accepted = true
                    }
                }
                delegate: RestoreRow {
                    owner: list
                    busy: page.restore.run.running
                    actionText: isOperation ? page.restore.restoreText : qsTr("Put back")
                    actionHelp: page.restore.restoreHelp
                    onOpenWanted: open => page.restore.setOpen(index, open)
                    onRestoreWanted: page.restore.restore(index)
                }
            }
        }
    }
    // A new reading keeps the place in the list.
    Connections {
        target: page.records
        property double place: 0
        function onModelAboutToBeReset() { place = list.contentY }
        function onModelReset() { list.contentY = Math.max(0, Math.min(place, list.contentHeight - list.height)) }
    }
}
