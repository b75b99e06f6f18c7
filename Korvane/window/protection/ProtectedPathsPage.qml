import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Page {
    id: page
    readonly property ProtectedPathsModel paths: WindowContext.protection
    readonly property bool isWide: width >= 680 * Math.max(1, Theme.scale)
    function find() { pathField.forceActiveFocus(Qt.ShortcutFocusReason) }
    function act() { page.addTyped() }
    function addTyped() { paths.add(pathField.text, noteField.text) }
    function removeCurrent() {
        if (list.currentIndex >= 0)
            paths.remove(list.currentIndex)
    }

    Connections {
        target: page.paths // qmllint disable type
        function onAdded() {
            pathField.clear()
            noteField.clear()
        }
    }
    FolderDialog {
        id: folderDialog
        title: qsTr("Choose a folder to protect")
        onAccepted: page.paths.addURLs([selectedFolder], noteField.text)
    }
    FileDialog {
        id: fileDialog
        title: qsTr("Choose files to protect")
        fileMode: FileDialog.OpenFiles
        onAccepted: page.paths.addURLs(selectedFiles, noteField.text)
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.s5
        spacing: Theme.s4

        PageHeader {
            Layout.fillWidth: true
            title: page.tool.title
            blurb: qsTr("Nothing on this list, and nothing inside it, is ever removed: by no tool, not by emptying the Bin, and not with administrator rights.")
        }

        Card {
            Layout.fillWidth: true
            implicitHeight: form.implicitHeight + 2 * Theme.s3
            GridLayout {
                id: form
                anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.s3 }
                columns: page.isWide ? 3 : 1
                columnSpacing: Theme.s2
                rowSpacing: Theme.s2
                TextField {
                    id: pathField
                    objectName: "pathField"
                    Layout.fillWidth: true
                    Layout.preferredWidth: 3
                    focus: true
                    placeholderText: qsTr("Path, for example ~/Pictures")
                    onAccepted: page.addTyped()
                }
                TextField {
                    id: noteField
                    objectName: "noteField"
                    Layout.fillWidth: true
                    Layout.preferredWidth: 2
                    placeholderText: qsTr("Note (optional)")
                    onAccepted: page.addTyped()
                }
                RowLayout {
                    Layout.fillWidth: false
                    Layout.alignment: Qt.AlignRight
                    spacing: Theme.s2
                    Button {
                        display: AbstractButton.IconOnly
                        icon.name: "folder"
                        text: qsTr("Choose a folder…")
                        onClicked: folderDialog.open()
                        ToolTip.visible: hovered || visualFocus
                        ToolTip.text: text
                    }
                    Button {
                        display: AbstractButton.IconOnly
                        icon.name: "file"
                        text: qsTr("Choose files…")
                        onClicked: fileDialog.open()
                        ToolTip.visible: hovered || visualFocus
                        ToolTip.text: text
                    }
                    Button {
                        objectName: "protectButton"
                        text: qsTr("Protect")
                        highlighted: true
                        enabled: !page.paths.isBusy
                        onClicked: page.addTyped()
                    }
                }
            }
        }

        Note {
            objectName: "failureNote"
            Layout.fillWidth: true
            visible: page.paths.failure !== ""
            isFailure: true
            title: page.paths.failureTitle
            text: page.paths.failure
            onDismissed: page.paths.dismissAnswer()
        }
        Note {
            Layout.fillWidth: true
            visible: page.paths.problem !== ""
            text: page.paths.problem
            onDismissed: page.paths.dismissAnswer()
        }
        Note {
            objectName: "removalNote"
            Layout.fillWidth: true
            visible: page.paths.removal !== ""
            text: page.paths.removal
            action: qsTr("Undo")
            onActed: page.paths.undoRemoval()
            onDismissed: page.paths.dismissAnswer()
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            border.color: drop.containsDrag ? Theme.accent : Theme.border
            border.width: drop.containsDrag ? 2 : 1

            DropArea {
                id: drop
                anchors.fill: parent
                keys: ["text/uri-list"]
                onDropped: event => {
                    page.paths.addURLs(event.urls, noteField.text)
                    event.accept(Qt.LinkAction)
                }
            }
            ListView {
                id: list
                objectName: "protectedList"
                anchors.fill: parent
                anchors.margins: 1
                clip: true
                activeFocusOnTab: true
                reuseItems: true
                model: page.paths
                currentIndex: -1
                keyNavigationEnabled: true
                highlightMoveDuration: 0
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Protected paths")
                onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0
                Keys.onDeletePressed: page.removeCurrent()

                delegate: Item {
                    id: row
                    required property int index
                    required property string pathText
                    required property string note
                    required property bool isMissing
                    required property string iconName
                    required property string spoken
                    readonly property bool isCurrent: ListView.isCurrentItem
                    width: list.width
                    height: Theme.rowHeight + 6
                    Accessible.role: Accessible.ListItem
                    Accessible.name: spoken
                    Accessible.focusable: true
                    Accessible.selected: isCurrent

                    HoverHandler { id: hover }
                    TapHandler {
                        onTapped: {
                            list.currentIndex = row.index
                            list.forceActiveFocus(Qt.MouseFocusReason)
                        }
                    }
                    Rectangle {
                        anchors.fill: parent
                        anchors.margins: 3
                        radius: Theme.radius
                        color: hover.hovered ? Theme.hover : "transparent"
                        border.width: row.isCurrent && list.activeFocus ? 2 : 0
                        border.color: Theme.accent
                    }
                    Icon {
                        id: icon
                        anchors { left: parent.left; leftMargin: Theme.s4; verticalCenter: parent.verticalCenter }
                        name: row.iconName
                        size: 20
                        colour: row.isMissing ? Theme.riskInk[1] : Theme.accentText
                    }
                    Column {
                        anchors { left: icon.right; leftMargin: Theme.s3; right: removeButton.left; rightMargin: Theme.s3; verticalCenter: parent.verticalCenter }
                        spacing: 1
                        Label {
                            width: parent.width
                            text: row.pathText
                            elide: Text.ElideMiddle
                            font.weight: Font.Medium
                            Accessible.ignored: true
                            HoverHandler { id: pathHover }
                            ToolTip.visible: pathHover.hovered && truncated
                            ToolTip.text: row.pathText
                        }
                        Row {
                            width: parent.width
                            spacing: Theme.s2
                            visible: row.isMissing || row.note !== ""
                            Label {
                                id: missing
                                visible: row.isMissing
                                text: qsTr("Nothing is there at the moment")
                                kind: "small"
                                color: Theme.riskInk[1]
                                Accessible.ignored: true
                            }
                            Label {
                                width: parent.width - (missing.visible ? missing.width + parent.spacing : 0)
                                text: row.note
                                kind: "small"
                                elide: Text.ElideRight
                                Accessible.ignored: true
                                HoverHandler { id: noteHover }
                                ToolTip.visible: noteHover.hovered && truncated
                                ToolTip.text: row.note
                            }
                        }
                    }
                    Button {
                        id: removeButton
                        anchors { right: parent.right; rightMargin: Theme.s4; verticalCenter: parent.verticalCenter }
                        flat: true
                        text: qsTr("Remove")
                        enabled: !page.paths.isBusy
                        Accessible.name: qsTr("Stop protecting %1").arg(row.pathText)
                        onClicked: page.paths.remove(row.index)
                    }
                    Rectangle {
                        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: Theme.s4; rightMargin: Theme.s4 }
                        height: 1
                        color: Theme.border
                        visible: row.index < list.count - 1
                    }
                }
            }
            ColumnLayout {
                anchors.centerIn: parent
                width: Math.min(380 * Math.max(1, Theme.scale), parent.width - 2 * Theme.s5)
                visible: page.paths.isLoaded && page.paths.count === 0
                spacing: Theme.s2
                Icon { Layout.alignment: Qt.AlignHCenter; name: "shield"; size: 40; colour: Theme.textFaint }
                Label {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    text: qsTr("Nothing is protected yet")
                    kind: "subtitle"
                }
                Label {
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    text: qsTr("Type a path above, choose a folder or files, or drop them here.")
                    color: Theme.textMuted
                }
            }
        }
    }
}
