import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Page {
    id: page
    readonly property DiskUsageModel usage: WindowContext.usage
    readonly property bool isIdle: usage.state === DiskUsageModel.Idle
    // Folders, then the kinds of files: what belongs together looks alike, and all differ in lightness.
    readonly property var colours: [Theme.series[0], Qt.darker(Theme.series[2], 1.35), Theme.series[2],
        Theme.series[4], Qt.lighter(Theme.series[4], 1.25), Theme.series[3], Theme.series[1],
        Theme.series[5], Theme.textFaint]
    function refresh() { usage.refresh() }
    function choose() { folderDialog.open() }
    function showMenu(row: int) {
        if (row < 0)
            return
        menu.entry = usage.entry(row)
        menu.row = row
        menu.popup()
    }

    DropArea {
        id: drop
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: event => {
            if (event.hasUrls)
                page.usage.openFolder(event.urls[0])
        }
    }
    FolderDialog {
        id: folderDialog
        title: qsTr("Choose a folder to measure")
        onAccepted: page.usage.openFolder(selectedFolder)
    }
    Menu {
        id: menu
        property int row: -1
        property var entry: ({})
        MenuItem {
            text: qsTr("Open folder")
            icon.name: "folder"
            enabled: menu.entry.isFolder ?? false
            onTriggered: page.usage.enter(menu.row)
        }
        MenuItem {
            text: qsTr("Show in file manager")
            icon.name: "reveal"
            onTriggered: WindowContext.reveal(menu.entry.url)
        }
        MenuItem {
            text: qsTr("Copy path")
            icon.name: "copy"
            onTriggered: WindowContext.copyText(menu.entry.plainPath)
        }
    }

    UsageStart {
        visible: page.isIdle
        anchors.centerIn: parent
        width: Math.min(parent.width - 80, Math.round(480 * Math.max(1, Theme.scale)))
        usage: page.usage
        tool: page.tool
        onFolderWanted: page.choose()
    }

    ColumnLayout {
        visible: !page.isIdle
        anchors.fill: parent
        anchors.margins: Theme.s5
        spacing: Theme.s3
        PageHeader {
            Layout.fillWidth: true
            title: page.tool.title
            blurb: page.tool.blurb
            Button { text: qsTr("Choose folder…"); icon.name: "folder"; onClicked: page.choose() }
            Button {
                text: qsTr("Measure again")
                icon.name: "restore"
                enabled: page.usage.state !== DiskUsageModel.Measuring
                onClicked: page.usage.refresh()
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s1
            Button {
                display: AbstractButton.IconOnly
                flat: true
                icon.name: "up"
                text: qsTr("Up one folder")
                enabled: page.usage.canGoUp
                onClicked: page.usage.goUp()
                ToolTip.visible: hovered
                ToolTip.text: text
            }
            Crumbs {
                id: crumbs
                objectName: "crumbs"
                Layout.fillWidth: true
                names: page.usage.crumbs
                onChosen: index => page.usage.goTo(index)
            }
            Label {
                objectName: "usageSummary"
                text: page.usage.summary
                kind: "muted"
            }
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: page.usage.state === DiskUsageModel.Shown
            spacing: Theme.s4
            UsageMap {
                id: map
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumWidth: 200
                usage: page.usage
                colours: page.colours
                empty: list.count === 0
                spoken: footer.path !== "" ? footer.path + ", " + footer.figures : ""
                onCurrentChanged: list.currentIndex = current
                onMenuWanted: row => page.showMenu(row)
                onLeaveWanted: event => page.leave(event)
            }
            Card {
                Layout.preferredWidth: Math.round(248 * Math.max(1, Math.min(1.3, Theme.scale)))
                Layout.fillHeight: true
                UsageList {
                    id: list
                    objectName: "usageList"
                    anchors.fill: parent
                    anchors.margins: 6
                    usage: page.usage
                    colours: page.colours
                    hovered: map.hovered
                    onCurrentIndexChanged: if (activeFocus) map.current = currentIndex
                    onHoverChanged: row => map.hovered = row
                    onMenuWanted: row => page.showMenu(row)
                    onLeaveWanted: event => page.leave(event)
                }
            }
        }
        Flow {
            Layout.fillWidth: true
            visible: page.usage.state === DiskUsageModel.Shown && page.height > 520 * Theme.scale
            spacing: Theme.s3
            Repeater {
                model: page.usage.legend
                Row {
                    id: legendEntry
                    required property var modelData
                    spacing: 6
                    Rectangle { width: 10; height: 10; radius: 3; color: page.colours[legendEntry.modelData.kind]; anchors.verticalCenter: parent.verticalCenter }
                    Label { text: legendEntry.modelData.title; kind: "small" }
                    Label { text: legendEntry.modelData.text; kind: "small"; color: Theme.text; font.weight: Font.Medium }
                }
            }
        }
        RowLayout {
            id: footer
            objectName: "usageFooter"
            // What is pointed at, else what is current.
            readonly property int row: map.hovered >= 0 ? map.hovered : map.current
            readonly property var entry: page.usage.entry(row)
            readonly property var current: page.usage.entry(map.current)
            readonly property string path: entry.path ?? ""
            readonly property string figures: entry.figures ?? ""
            Layout.fillWidth: true
            visible: page.usage.state === DiskUsageModel.Shown
            spacing: Theme.s2
            Label {
                Layout.fillWidth: true
                text: footer.path !== "" ? footer.path : qsTr("Point at an entry to see where it is. Double-click a folder to look inside.")
                kind: footer.path !== "" ? "body" : "small"
                elide: Text.ElideMiddle
                HoverHandler { id: pathHover }
                ToolTip.visible: pathHover.hovered && truncated
                ToolTip.text: footer.path
            }
            Label { text: footer.figures; kind: "muted"; visible: text !== "" }
            Button {
                display: AbstractButton.IconOnly
                flat: true
                enabled: map.current >= 0
                icon.name: "reveal"
                text: qsTr("Show in file manager")
                onClicked: WindowContext.reveal(footer.current.url)
                ToolTip.visible: hovered
                ToolTip.text: text
            }
            Button {
                display: AbstractButton.IconOnly
                flat: true
                enabled: map.current >= 0
                icon.name: "copy"
                text: qsTr("Copy path")
                onClicked: WindowContext.copyText(footer.current.plainPath)
                ToolTip.visible: hovered
                ToolTip.text: text
            }
        }
        UsageWaiting {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: page.usage.state !== DiskUsageModel.Shown
            usage: page.usage
        }
    }
    function leave(event: var) {
        const isUp = event.key === Qt.Key_Backspace || event.key === Qt.Key_Escape
        if (isUp && usage.canGoUp) {
            usage.goUp()
            event.accepted = true
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
}
