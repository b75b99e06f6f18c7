import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// What a tool does and where it begins.
FocusScope {
    id: view
    required property var tool
    required property ToolModel model
    signal chooseFolder()
    readonly property bool wantsFolder: model.needs === "folder"
    Component.onCompleted: model.lookForPrevious()

    Flickable {
        anchors.fill: parent
        contentHeight: Math.max(height, column.implicitHeight + 64)
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {}

        ColumnLayout {
            id: column
            x: Math.round((view.width - width) / 2)
            y: Math.max(32, Math.round((view.height - implicitHeight) / 2) - 12)
            width: Math.min(view.width - 64, Math.round(560 * Math.max(1, Theme.scale)))
            spacing: 0
            Rectangle {
                Layout.alignment: Qt.AlignHCenter
                implicitWidth: view.model.scopes.length > 0 ? 72 : 104
                implicitHeight: implicitWidth
                radius: 30
                color: Theme.selected
                Icon {
                    anchors.centerIn: parent
                    name: view.tool.iconName
                    size: parent.width / 2
                    colour: Theme.accentText
                }
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s4
                text: view.tool.title
                kind: "title"
                font.pixelSize: Theme.title + 6
                Accessible.role: Accessible.Heading
            }
            Label {
                Layout.fillWidth: true
                Layout.topMargin: Theme.s2
                text: view.tool.blurb
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                lineHeight: 1.3
                color: Theme.textMuted
                font.pixelSize: Theme.subtitle - 1
            }
            Grid {
                id: scopes
                Layout.fillWidth: true
                Layout.topMargin: Theme.s5
                visible: view.model.scopes.length > 0
                columns: view.width > 620 ? 2 : 1
                spacing: Theme.s2
                Repeater {
                    model: view.model.scopes
                    Card {
                        id: scope
                        required property var modelData
                        width: Math.floor((scopes.width - (scopes.columns - 1) * scopes.spacing) / scopes.columns)
                        height: Math.max(58, texts.implicitHeight + 20)
                        color: hover.hovered ? Theme.hover : Theme.surface
                        HoverHandler { id: hover }
                        TapHandler { onTapped: view.model.setScope(scope.modelData.id, !scope.modelData.on) }
                        CheckBox {
                            id: box
                            anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
                            checked: scope.modelData.on
                            nextCheckState: () => {
                                view.model.setScope(scope.modelData.id, !scope.modelData.on)
                                return scope.modelData.on ? Qt.Checked : Qt.Unchecked
                            }
                            Accessible.name: scope.modelData.title
                            Accessible.description: scope.modelData.explanation
                        }
                        Column {
                            id: texts
                            anchors { left: box.right; leftMargin: 8; right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
                            spacing: 2
                            Label { width: parent.width; text: scope.modelData.title; font.weight: Font.Medium; wrapMode: Text.Wrap; Accessible.ignored: true }
                            Label { width: parent.width; text: scope.modelData.explanation; kind: "small"; wrapMode: Text.Wrap; Accessible.ignored: true }
                        }
                    }
                }
            }
            RowLayout {
                visible: view.wantsFolder
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s5
                Layout.maximumWidth: parent.width
                spacing: Theme.s2
                Icon { name: "folder"; size: 18; colour: Theme.accentText; visible: view.model.subject !== "" }
                Label {
                    text: view.model.subject !== "" ? view.model.subject : qsTr("Choose a folder, or drop one here.")
                    color: view.model.subject !== "" ? Theme.text : Theme.textMuted
                    elide: Text.ElideMiddle
                    Layout.fillWidth: true
                }
                // What comes next has the focus: without a folder there is nothing to scan.
                Button {
                    objectName: "chooseFolderButton"
                    focus: !view.model.canScan
                    text: qsTr("Choose folder…")
                    onClicked: view.chooseFolder()
                }
                Button { text: qsTr("Home folder"); flat: true; onClicked: view.model.useHomeFolder() }
            }
            Button {
                objectName: "scanButton"
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s5
                implicitHeight: Math.max(42, Theme.controlHeight + 8)
                implicitWidth: Math.max(180, implicitContentWidth + 48)
                focus: view.model.canScan
                highlighted: true
                enabled: view.model.canScan
                text: qsTr("Scan")
                icon.name: "search"
                onClicked: view.model.scan()
            }
            Button {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s2
                visible: view.model.hasPrevious
                flat: true
                text: qsTr("Show the last result")
                onClicked: view.model.showPrevious()
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s1
                text: qsTr("Nothing is removed until you have seen the list.")
                kind: "small"
            }
            Row {
                Layout.alignment: Qt.AlignHCenter
                Layout.topMargin: Theme.s5
                spacing: Theme.s5
                visible: view.height > column.implicitHeight - 40 && implicitWidth <= column.width
                Repeater {
                    model: [{ icon: "eye", text: qsTr("You review everything") },
                            { icon: "bin", text: qsTr("Moved to the Bin first") },
                            { icon: "undo", text: qsTr("Can be put back") }]
                    Row {
                        id: promise
                        required property var modelData
                        spacing: 6
                        Icon { name: promise.modelData.icon; size: 16; colour: Theme.accentText; anchors.verticalCenter: parent.verticalCenter }
                        Label { text: promise.modelData.text; kind: "small"; anchors.verticalCenter: parent.verticalCenter }
                    }
                }
            }
        }
    }
}
