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

    // Where there is nothing to show yet.
    ColumnLayout {
        visible: page.isIdle
        anchors.centerIn: parent
        width: Math.min(parent.width - 80, Math.round(480 * Math.max(1, Theme.scale)))
        spacing: 0
        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: 104
            implicitHeight: 104
            radius: 30
            color: Theme.selected
            Icon { anchors.centerIn: parent; name: page.tool.iconName; size: 52; colour: Theme.accentText }
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s4
            text: page.tool.title
            kind: "title"
            font.pixelSize: Theme.title + 6
            Accessible.role: Accessible.Heading
        }
        Label {
            Layout.fillWidth: true
            Layout.topMargin: Theme.s2
            text: page.tool.blurb
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: Theme.textMuted
            font.pixelSize: Theme.subtitle - 1
        }
        Button {
            objectName: "measureHomeButton"
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s5
            implicitHeight: Math.max(42, Theme.controlHeight + 8)
            horizontalPadding: 24
            focus: true
            highlighted: true
            text: qsTr("Measure my home folder")
            icon.name: "home"
            onClicked: page.usage.openHome()
        }
        Button {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s2
            flat: true
            text: qsTr("Choose folder…")
            onClicked: page.choose()
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s2
            text: qsTr("You can also drop a folder here. Nothing is changed.")
            kind: "small"
        }
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
            Item {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumWidth: 200
                TreemapItem {
                    id: map
                    objectName: "treemap"
                    anchors.fill: parent
                    activeFocusOnTab: true
                    model: page.usage
                    colours: page.colours
                    base: Theme.mapBase
                    family: Theme.family
                    textSize: Theme.caption
                    onOpened: row => page.usage.enter(row)
                    onMenuRequested: row => page.showMenu(row)
                    onCurrentChanged: list.currentIndex = current
                    Keys.onLeftPressed: move(-1, 0)
                    Keys.onRightPressed: move(1, 0)
                    Keys.onUpPressed: move(0, -1)
                    Keys.onDownPressed: move(0, 1)
                    Keys.onReturnPressed: page.usage.enter(current)
                    Keys.onEnterPressed: page.usage.enter(current)
                    Keys.onMenuPressed: page.showMenu(current)
                    Keys.onPressed: event => page.leave(event)
                    Accessible.role: Accessible.Graphic
                    Accessible.focusable: true
                    Accessible.name: qsTr("Map of %1").arg(page.usage.folderPath)
                    Accessible.description: footer.path !== "" ? footer.path + ", " + footer.figures
                        : qsTr("The arrow keys move between entries, Enter opens a folder, Backspace goes up. The list beside it has the same entries.")
                }
                Rectangle {
                    visible: width > 0
                    x: map.hoveredArea.x
                    y: map.hoveredArea.y
                    width: map.hoveredArea.width
                    height: map.hoveredArea.height
                    color: "#30FFFFFF"
                    border.color: Theme.text
                }
                Rectangle {
                    visible: map.currentArea.width > 0
                    x: map.currentArea.x - 1
                    y: map.currentArea.y - 1
                    width: map.currentArea.width + 2
                    height: map.currentArea.height + 2
                    color: "transparent"
                    border.color: Theme.text
                    border.width: map.activeFocus ? 3 : 2
                }
                Rectangle {
                    visible: map.activeFocus && map.current < 0
                    anchors.fill: parent
                    anchors.margins: -3
                    color: "transparent"
                    border.color: Theme.accent
                    border.width: 2
                    radius: 3
                }
                Label {
                    anchors.centerIn: parent
                    visible: list.count === 0
                    text: qsTr("Nothing is in this folder.")
                    color: Theme.textMuted
                }
            }
            Card {
                Layout.preferredWidth: Math.round(248 * Math.max(1, Math.min(1.3, Theme.scale)))
                Layout.fillHeight: true
                ListView {
                    id: list
                    objectName: "usageList"
                    anchors.fill: parent
                    anchors.margins: 6
                    clip: true
                    reuseItems: true
                    activeFocusOnTab: true
                    model: page.usage
                    currentIndex: -1
                    highlightMoveDuration: 0
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}
                    Accessible.role: Accessible.List
                    Accessible.name: qsTr("Entries, largest first")
                    onCurrentIndexChanged: if (activeFocus) map.current = currentIndex
                    onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0
                    Keys.onReturnPressed: page.usage.enter(currentIndex)
                    Keys.onEnterPressed: page.usage.enter(currentIndex)
                    Keys.onMenuPressed: page.showMenu(currentIndex)
                    Keys.onPressed: event => page.leave(event)
                    delegate: Item {
                        id: row
                        required property int index
                        required property string name
                        required property string sizeText
                        required property string shareText
                        required property real bar
                        required property int kind
                        required property string iconName
                        required property string spoken
                        readonly property color colour: page.colours[kind]
                        width: list.width
                        height: Math.round(46 * Math.max(1, Theme.scale))
                        Accessible.role: Accessible.ListItem
                        Accessible.name: spoken
                        Accessible.selected: ListView.isCurrentItem
                        Rectangle {
                            anchors.fill: parent
                            anchors.rightMargin: 8
                            radius: Theme.radius
                            color: row.ListView.isCurrentItem ? Theme.selected
                                 : map.hovered === row.index ? Theme.hover : "transparent"
                            border.width: row.ListView.isCurrentItem && list.activeFocus ? 2 : 0
                            border.color: Theme.accent
                        }
                        Icon {
                            id: icon
                            anchors { left: parent.left; leftMargin: 8; top: parent.top; topMargin: 8 }
                            name: row.iconName
                            size: 16
                            colour: row.colour
                        }
                        Label {
                            id: nameLabel
                            anchors { left: icon.right; leftMargin: 8; right: sizeLabel.left; rightMargin: 8; top: parent.top; topMargin: 6 }
                            text: row.name
                            elide: Text.ElideMiddle
                            Accessible.ignored: true
                        }
                        Label {
                            id: sizeLabel
                            anchors { right: parent.right; rightMargin: 16; baseline: nameLabel.baseline }
                            text: row.sizeText
                            font.weight: Font.Medium
                            Accessible.ignored: true
                        }
                        Rectangle {
                            id: track
                            anchors { left: nameLabel.left; right: shareLabel.left; rightMargin: 8; verticalCenter: shareLabel.verticalCenter }
                            height: 4
                            radius: 2
                            color: Theme.track
                            Rectangle { anchors.left: parent.left; width: Math.round(parent.width * row.bar); height: 4; radius: 2; color: row.colour }
                        }
                        Label {
                            id: shareLabel
                            anchors { right: sizeLabel.right; bottom: parent.bottom; bottomMargin: 5 }
                            text: row.shareText
                            kind: "caption"
                            width: Math.max(implicitWidth, 42 * Theme.scale)
                            horizontalAlignment: Text.AlignRight
                            Accessible.ignored: true
                        }
                        HoverHandler {
                            id: hover
                            onHoveredChanged: {
                                if (hovered)
                                    map.hovered = row.index
                                else if (map.hovered === row.index)
                                    map.hovered = -1
                            }
                        }
                        TapHandler {
                            acceptedButtons: Qt.LeftButton | Qt.RightButton
                            onTapped: (point, button) => {
                                list.forceActiveFocus(Qt.MouseFocusReason)
                                list.currentIndex = row.index
                                if (button === Qt.RightButton)
                                    page.showMenu(row.index)
                            }
                            onDoubleTapped: (point, button) => { if (button === Qt.LeftButton) page.usage.enter(row.index) }
                        }
                        ToolTip.visible: hover.hovered && nameLabel.truncated
                        ToolTip.delay: 500
                        ToolTip.text: row.name
                    }
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
        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: page.usage.state !== DiskUsageModel.Shown
            ColumnLayout {
                id: waiting
                readonly property bool isMeasuring: page.usage.state === DiskUsageModel.Measuring
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
                    Accessible.name: page.usage.message
                }
                Icon { Layout.alignment: Qt.AlignHCenter; visible: !waiting.isMeasuring; name: "warning"; size: 40; colour: Theme.riskInk[2] }
                Label {
                    objectName: "usageMessage"
                    Layout.fillWidth: true
                    text: page.usage.message
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                }
                Button {
                    Layout.alignment: Qt.AlignHCenter
                    text: waiting.isMeasuring ? qsTr("Stop") : qsTr("Try again")
                    icon.name: waiting.isMeasuring ? "stop" : "restore"
                    onClicked: {
                        if (waiting.isMeasuring)
                            page.usage.stop()
                        else
                            page.usage.goTo(page.usage.crumbs.length - 1)
                    }
                }
            }
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
