import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Page {
    id: page
    readonly property DashboardModel dashboard: WindowContext.dashboard
    readonly property bool isWide: width >= 620 * Math.max(1, Theme.scale)
    function refresh() { dashboard.refresh() }
    function act() { WindowContext.pageRequested("smart-scan") }

    component Section: SectionCard {
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignTop
    }
    component Explanation: EntryCard {
        required property string target
        Layout.fillWidth: true
        onClicked: WindowContext.pageRequested(target)
    }

    Flickable {
        id: flickable
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * Theme.s5
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {}

        ColumnLayout {
            id: column
            x: Theme.s5
            y: Theme.s5
            width: flickable.width - 2 * Theme.s5
            spacing: Theme.s4

            PageHeader { Layout.fillWidth: true; title: page.tool.title; blurb: page.tool.blurb }

            Section {
                visible: page.dashboard.isFirstTime
                title: qsTr("How Korvane keeps your files safe")
                Explanation {
                    iconName: "catalogue"
                    text: qsTr("Only known places are proposed")
                    detail: qsTr("Each one says why it is safe to clean, and how hard it would be to get back. The catalogue lists them all.")
                    target: "catalogue"
                }
                Explanation {
                    iconName: "shield"
                    text: qsTr("What you protect is never touched")
                    detail: qsTr("Put a folder or a file on the list of protected paths, and no tool removes it, or anything inside it.")
                    target: "protected-paths"
                }
                Explanation {
                    iconName: "restore"
                    text: qsTr("What was moved to the Bin comes back")
                    detail: qsTr("The Restore Centre puts it where it was, for as long as the Bin is not emptied.")
                    target: "restore"
                }
            }

            GridLayout {
                Layout.fillWidth: true
                columns: page.isWide ? 3 : 1
                columnSpacing: Theme.s4
                rowSpacing: Theme.s3
                EntryCard {
                    objectName: "smartScanEntry"
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    leads: true
                    focus: true
                    iconName: "scan"
                    text: qsTr("Smart Scan")
                    detail: qsTr("Look for what can go")
                    onClicked: WindowContext.pageRequested("smart-scan")
                }
                EntryCard {
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    iconName: "restore"
                    text: qsTr("Restore Centre")
                    detail: qsTr("Put things back")
                    onClicked: WindowContext.pageRequested("restore")
                }
                EntryCard {
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    iconName: "audit"
                    text: qsTr("Audit Log")
                    detail: qsTr("See what was removed")
                    onClicked: WindowContext.pageRequested("audit")
                }
            }

            GridLayout {
                Layout.fillWidth: true
                columns: page.isWide ? 2 : 1
                columnSpacing: Theme.s4
                rowSpacing: Theme.s4
                Section {
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    title: qsTr("Disks")
                    Column {
                        Layout.fillWidth: true
                        spacing: Theme.s4
                        Repeater {
                            model: page.dashboard.disks
                            Column {
                                id: disk
                                required property var modelData
                                width: parent ? parent.width : 0
                                spacing: 6
                                Accessible.role: Accessible.StaticText
                                Accessible.name: qsTr("%1, %2 %3").arg(modelData.name).arg(modelData.freeText).arg(modelData.totalText)
                                Item {
                                    width: parent.width
                                    height: free.height
                                    Label {
                                        anchors { left: parent.left; right: free.left; rightMargin: Theme.s2; baseline: free.baseline }
                                        text: disk.modelData.name
                                        elide: Text.ElideRight
                                        font.weight: Font.Medium
                                        Accessible.ignored: true
                                        HoverHandler { id: hover }
                                        ToolTip.visible: hover.hovered
                                        ToolTip.text: disk.modelData.place
                                    }
                                    Label {
                                        id: free
                                        anchors { right: total.left; rightMargin: 5 }
                                        text: disk.modelData.freeText
                                        color: disk.modelData.isNearlyFull ? Theme.riskInk[2] : Theme.text
                                        Accessible.ignored: true
                                    }
                                    Label {
                                        id: total
                                        anchors { right: parent.right; baseline: free.baseline }
                                        text: disk.modelData.totalText
                                        kind: "muted"
                                        Accessible.ignored: true
                                    }
                                }
                                UsageBar {
                                    width: parent.width
                                    height: 8
                                    share: disk.modelData.usedShare
                                    warns: disk.modelData.isNearlyFull
                                }
                            }
                        }
                    }
                }
                Section {
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    title: page.dashboard.reclaimedLabel
                    Label {
                        text: page.dashboard.isLoaded ? page.dashboard.reclaimedText : "…"
                        kind: "display"
                        color: Theme.accentText
                        Accessible.name: page.dashboard.reclaimedText
                    }
                    RowLayout {
                        Layout.fillWidth: true
                        spacing: Theme.s2
                        Label { text: page.dashboard.operationsLabel; kind: "muted" }
                        Label { text: page.dashboard.operationsText; kind: "muted"; color: Theme.text; font.weight: Font.Medium }
                    }
                    ChainStatus { Layout.fillWidth: true; dashboard: page.dashboard }
                }
            }

            Section {
                visible: page.dashboard.scans.length > 0
                title: qsTr("Last scans")
                Column {
                    Layout.fillWidth: true
                    Repeater {
                        model: page.dashboard.scans
                        AbstractButton {
                            id: scan
                            required property var modelData
                            required property int index
                            width: parent ? parent.width : 0
                            height: Theme.controlHeight + 4
                            hoverEnabled: true
                            onClicked: WindowContext.pageRequested(modelData.toolID)
                            Keys.onReturnPressed: clicked()
                            Keys.onEnterPressed: clicked()
                            Accessible.role: Accessible.Button
                            Accessible.name: qsTr("%1, %2, %3").arg(modelData.name).arg(modelData.when).arg(modelData.found)
                            background: Rectangle {
                                radius: Theme.radius
                                color: scan.hovered ? Theme.hover : "transparent"
                                border.width: scan.visualFocus ? 2 : 0
                                border.color: Theme.accent
                            }
                            Label {
                                anchors { left: parent.left; leftMargin: Theme.s2; right: when.left; rightMargin: Theme.s2; verticalCenter: parent.verticalCenter }
                                text: scan.modelData.name
                                elide: Text.ElideRight
                                Accessible.ignored: true
                            }
                            Label {
                                id: when
                                anchors { left: parent.left; leftMargin: Math.round(parent.width * 0.34); verticalCenter: parent.verticalCenter }
                                text: scan.modelData.when
                                kind: "muted"
                                Accessible.ignored: true
                            }
                            Label {
                                anchors { left: when.right; leftMargin: Theme.s2; right: arrow.left; rightMargin: Theme.s2; verticalCenter: parent.verticalCenter }
                                text: scan.modelData.found
                                horizontalAlignment: Text.AlignRight
                                elide: Text.ElideRight
                                font.weight: Font.Medium
                                Accessible.ignored: true
                            }
                            Icon {
                                id: arrow
                                anchors { right: parent.right; rightMargin: Theme.s1; verticalCenter: parent.verticalCenter }
                                name: "chevron-right"
                                size: 14
                                colour: Theme.textFaint
                                mirror: scan.mirrored
                            }
                        }
                    }
                }
            }
        }
    }
}
