import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// First one of the installed applications is chosen, then the states of the tool follow.
Page {
    id: page
    readonly property ToolModel model: WindowContext.tool("uninstaller")
    readonly property ApplicationsModel applications: WindowContext.applications
    readonly property bool isChoosing: model.phase === ToolModel.Idle
    function refresh() {
        if (isChoosing)
            applications.refresh()
        else if (model.phase !== ToolModel.Cleaning && model.phase !== ToolModel.Scanning)
            model.scan()
    }
    function find() {
        if (isChoosing)
            search.forceActiveFocus(Qt.ShortcutFocusReason)
        else
            states.find()
    }
    function act() {
        if (isChoosing)
            choose(list.currentIndex)
        else
            states.act()
    }
    function choose(row: int) {
        if (applications.choose(row, model))
            model.scan()
    }
    Component.onCompleted: applications.refresh()

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        PageHeader {
            Layout.fillWidth: true
            Layout.margins: Theme.s5
            Layout.bottomMargin: Theme.s4
            title: page.tool.title
            blurb: page.isChoosing || page.model.subject === "" ? page.tool.blurb : page.model.subject
            Button {
                objectName: "chooseAnother"
                visible: !page.isChoosing
                enabled: page.model.phase !== ToolModel.Cleaning
                text: qsTr("Choose another application")
                icon.name: "uninstall"
                onClicked: {
                    page.model.stop()
                    page.model.reset()
                }
            }
        }
        ToolStates {
            id: states
            visible: !page.isChoosing
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: !page.isChoosing
            tool: page.tool
            model: page.model
        }
        ColumnLayout {
            visible: page.isChoosing
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Theme.s5
            Layout.rightMargin: Theme.s5
            Layout.bottomMargin: Theme.s5
            spacing: Theme.s3
            RowLayout {
                Layout.fillWidth: true
                spacing: Theme.s3
                SearchField {
                    id: search
                    objectName: "applicationSearch"
                    Layout.fillWidth: true
                    Layout.maximumWidth: 360
                    placeholderText: qsTr("Search names, identifiers and places")
                    text: page.applications.filter
                    onTextEdited: page.applications.filter = text
                    Keys.onEscapePressed: {
                        text = ""
                        page.applications.filter = ""
                        list.forceActiveFocus()
                    }
                    Keys.onDownPressed: list.forceActiveFocus()
                    Keys.onReturnPressed: if (list.count === 1) page.choose(0)
                }
                Item { Layout.fillWidth: true }
                Label { objectName: "applicationCount"; text: page.applications.countText; kind: "muted"; visible: list.count > 0 }
            }
            RowLayout {
                visible: !page.applications.isComplete
                spacing: Theme.s2
                Icon { name: "warning"; size: 16; colour: Theme.riskInk[1] }
                Label {
                    Layout.fillWidth: true
                    text: qsTr("Some places could not be read, so this list may not be complete.")
                    kind: "small"
                    color: Theme.riskInk[1]
                    wrapMode: Text.Wrap
                }
            }
            Card {
                Layout.fillWidth: true
                Layout.fillHeight: true
                ListView {
                    id: list
                    objectName: "applicationList"
                    anchors.fill: parent
                    anchors.margins: 6
                    clip: true
                    reuseItems: true
                    focus: true
                    activeFocusOnTab: true
                    model: page.applications
                    highlightMoveDuration: 0
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}
                    Accessible.role: Accessible.List
                    Accessible.name: qsTr("Installed applications")
                    Keys.onReturnPressed: page.choose(currentIndex)
                    Keys.onEnterPressed: page.choose(currentIndex)
                    delegate: Item {
                        id: row
                        required property int index
                        required property string name
                        required property string identifier
                        required property string place
                        required property string note
                        required property string spoken
                        readonly property bool isCurrent: ListView.isCurrentItem && list.activeFocus
                        width: list.width
                        height: Math.round(52 * Math.max(1, Theme.scale))
                        Accessible.role: Accessible.ListItem
                        Accessible.name: spoken
                        Accessible.description: row.note
                        Accessible.onPressAction: page.choose(index)
                        Rectangle {
                            anchors.fill: parent
                            anchors.rightMargin: 8
                            radius: Theme.radius
                            color: hover.hovered || row.isCurrent ? Theme.hover : "transparent"
                            border.width: row.isCurrent ? 2 : 0
                            border.color: Theme.accent
                        }
                        Icon {
                            id: icon
                            anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
                            name: "uninstall"
                            size: 20
                        }
                        Label {
                            id: nameLabel
                            anchors { left: icon.right; leftMargin: 12; top: parent.top; topMargin: 7; right: identifierLabel.left; rightMargin: 12 }
                            text: row.name
                            font.weight: Font.Medium
                            elide: Text.ElideRight
                            Accessible.ignored: true
                        }
                        Label {
                            id: placeLabel
                            anchors { left: nameLabel.left; right: noteLabel.visible ? noteLabel.left : parent.right; rightMargin: 20; bottom: parent.bottom; bottomMargin: 7 }
                            text: row.place
                            kind: "small"
                            elide: Text.ElideMiddle
                            Accessible.ignored: true
                        }
                        Label {
                            id: noteLabel
                            visible: text !== ""
                            anchors { right: parent.right; rightMargin: 20; baseline: placeLabel.baseline }
                            text: row.note
                            kind: "caption"
                            Accessible.ignored: true
                        }
                        Label {
                            id: identifierLabel
                            anchors { right: parent.right; rightMargin: 20; baseline: nameLabel.baseline }
                            width: Math.min(implicitWidth, row.width * 0.4)
                            text: row.identifier
                            kind: "small"
                            elide: Text.ElideMiddle
                            Accessible.ignored: true
                        }
                        HoverHandler { id: hover }
                        TapHandler {
                            onTapped: {
                                list.currentIndex = row.index
                                page.choose(row.index)
                            }
                        }
                        ToolTip.visible: hover.hovered && (placeLabel.truncated || nameLabel.truncated || identifierLabel.truncated)
                        ToolTip.delay: 500
                        ToolTip.text: row.name + "\n" + row.identifier + "\n" + row.place
                    }
                }
                Label {
                    anchors.centerIn: parent
                    width: parent.width - 48
                    visible: list.count === 0
                    text: page.applications.isLoading ? qsTr("Looking for installed applications…")
                        : page.applications.filter !== "" ? qsTr("No installed application matches.")
                        : qsTr("No installed application was found.")
                    color: Theme.textMuted
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                }
            }
            Label {
                Layout.fillWidth: true
                text: qsTr("Where only the data can be removed here, what installed the application also removes it.")
                kind: "small"
                wrapMode: Text.Wrap
            }
        }
    }
}
