import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Page {
    id: page
    readonly property SettingsModel settings: WindowContext.settings
    readonly property DashboardModel dashboard: WindowContext.dashboard
    function refresh() {
        settings.refresh()
        dashboard.refresh()
        WindowContext.customRules.refresh()
    }
    // What another program changed meanwhile is seen.
    Component.onCompleted: settings.refresh()

    component Separator: Rectangle {
        Layout.fillWidth: true
        implicitHeight: 1
        color: Theme.border
    }
    component Figure: RowLayout {
        id: figure
        required property string name
        required property string value
        Layout.fillWidth: true
        Label { Layout.fillWidth: true; text: figure.name; wrapMode: Text.Wrap }
        Label { text: figure.value; font.weight: Font.DemiBold }
    }

    Flickable {
        id: flickable
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * Theme.s5
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.vertical: ScrollBar {}

        // What the keyboard comes to is brought into sight.
        readonly property Item focused: Window.activeFocusItem
        onFocusedChanged: {
            for (let item = focused; item; item = item.parent) {
                if (item === column) {
                    const top = focused.mapToItem(column, 0, 0).y
                    if (top < contentY)
                        contentY = Math.max(0, top - Theme.s4)
                    else if (top + focused.height + 2 * Theme.s5 > contentY + height)
                        contentY = Math.min(Math.max(0, contentHeight - height), top + focused.height + 2 * Theme.s5 - height)
                    return
                }
            }
        }

        ColumnLayout {
            id: column
            x: Theme.s5
            y: Theme.s5
            width: flickable.width - 2 * Theme.s5
            spacing: Theme.s4

            PageHeader { Layout.fillWidth: true; title: page.tool.title; blurb: page.tool.blurb }

            SectionCard {
                Layout.fillWidth: true
                title: qsTr("Removing")
                SettingLine {
                    text: qsTr("What happens to what you remove")
                    hint: page.settings.deletionConsequence
                    isDanger: page.settings.deletesPermanently
                    ComboBox {
                        objectName: "deletionBox"
                        width: 190 * Math.max(1, Theme.scale)
                        focus: true
                        model: [qsTr("Move to the Bin"), qsTr("Delete permanently")]
                        currentIndex: page.settings.deletesPermanently ? 1 : 0
                        Accessible.name: qsTr("What happens to what you remove")
                        onActivated: i => {
                            if (i === 1 && !page.settings.deletesPermanently)
                                permanentSheet.open()
                            else
                                page.settings.setDeletesPermanently(i === 1)
                            // The choice shown is the one in force.
                            currentIndex = Qt.binding(() => page.settings.deletesPermanently ? 1 : 0)
                        }
                    }
                }
                Rectangle {
                    objectName: "permanentWarning"
                    visible: page.settings.deletesPermanently
                    Layout.fillWidth: true
                    implicitHeight: warning.implicitHeight + 20
                    radius: Theme.radius
                    color: Theme.riskFill[2]
                    RowLayout {
                        id: warning
                        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 12 }
                        spacing: 10
                        Icon { name: "warning"; size: 18; colour: Theme.riskInk[2] }
                        Label {
                            Layout.fillWidth: true
                            text: qsTr("Every tool deletes at once. Nothing goes to the Bin, and the Restore Centre cannot bring it back.")
                            color: Theme.riskInk[2]
                            wrapMode: Text.Wrap
                        }
                    }
                }
                Note {
                    objectName: "deletionFailure"
                    Layout.fillWidth: true
                    visible: page.settings.deletionFailure !== ""
                    isFailure: true
                    canBeDismissed: false
                    title: qsTr("The choice could not be kept")
                    text: page.settings.deletionFailure
                }
            }

            SectionCard {
                Layout.fillWidth: true
                title: qsTr("Window")
                SettingLine {
                    text: qsTr("Appearance")
                    hint: qsTr("System follows what your desktop is set to.")
                    ComboBox {
                        objectName: "appearanceBox"
                        width: 190 * Math.max(1, Theme.scale)
                        model: [qsTr("System"), qsTr("Light"), qsTr("Dark")]
                        currentIndex: Appearance.mode
                        onActivated: i => Appearance.mode = i
                        Accessible.name: qsTr("Appearance")
                    }
                }
                Separator {}
                SettingLine {
                    text: qsTr("Drawn by")
                    hint: page.settings.needsRestart ? qsTr("Takes effect when Korvane is started again.")
                                                     : qsTr("The processor is quicker to start and needs less memory; the graphics card suits large screens.")
                    ComboBox {
                        objectName: "rendererBox"
                        width: 190 * Math.max(1, Theme.scale)
                        model: [qsTr("Processor"), qsTr("Graphics card")]
                        currentIndex: page.settings.usesGraphicsCard ? 1 : 0
                        onActivated: i => page.settings.usesGraphicsCard = i === 1
                        Accessible.name: qsTr("Drawn by")
                    }
                }
                Separator {}
                SettingLine {
                    text: qsTr("Tell me when a long scan ends")
                    hint: qsTr("Only while another window is in front.")
                    isStacked: false
                    Switch {
                        objectName: "notifySwitch"
                        checked: page.settings.notifies
                        onToggled: page.settings.notifies = checked
                        Accessible.name: qsTr("Tell me when a long scan ends")
                    }
                }
            }

            SectionCard {
                Layout.fillWidth: true
                title: qsTr("Audit log")
                Label {
                    Layout.fillWidth: true
                    text: page.settings.logExplanation
                    color: Theme.textMuted
                    wrapMode: Text.Wrap
                }
                Figure { name: page.dashboard.operationsLabel; value: page.dashboard.operationsText }
                Figure { name: page.dashboard.reclaimedLabel; value: page.dashboard.reclaimedText }
                ChainStatus { Layout.fillWidth: true; dashboard: page.dashboard }
                Flow {
                    Layout.fillWidth: true
                    spacing: Theme.s2
                    Button {
                        text: qsTr("Open the Audit Log")
                        icon.name: "audit"
                        onClicked: WindowContext.pageRequested("audit")
                    }
                    Button {
                        text: page.settings.revealLogs
                        icon.name: "reveal"
                        onClicked: WindowContext.reveal(page.settings.logFolder)
                    }
                }
            }

            SectionCard {
                Layout.fillWidth: true
                title: qsTr("Access")
                SettingLine {
                    text: page.settings.accessSummary
                    hint: page.settings.accessProblems.length > 0
                          ? qsTr("Korvane reads with your rights only. Where the system lets you, give your account the right to read these places.") : ""
                    Button {
                        text: qsTr("Try again")
                        enabled: !page.settings.isProbing
                        onClicked: page.settings.probe()
                    }
                }
                Column {
                    Layout.fillWidth: true
                    visible: page.settings.accessProblems.length > 0
                    spacing: Theme.s2
                    Repeater {
                        model: page.settings.accessProblems
                        Item {
                            id: problem
                            required property var modelData
                            width: parent ? parent.width : 0
                            height: words.height
                            Accessible.role: Accessible.ListItem
                            Accessible.name: qsTr("%1, %2: %3").arg(modelData.name).arg(modelData.path).arg(modelData.error)
                            Icon { id: sign; anchors { left: parent.left; top: parent.top; topMargin: 1 } name: "warning"; size: 16; colour: Theme.riskInk[1] }
                            Column {
                                id: words
                                anchors { left: sign.right; leftMargin: Theme.s2; right: parent.right }
                                Label { width: parent.width; text: qsTr("%1 – %2").arg(problem.modelData.name).arg(problem.modelData.error); wrapMode: Text.Wrap; Accessible.ignored: true }
                                Label { width: parent.width; text: problem.modelData.path; kind: "small"; wrapMode: Text.WrapAnywhere; Accessible.ignored: true }
                            }
                        }
                    }
                }
            }

            CustomRulesSection { Layout.fillWidth: true }

            SectionCard {
                Layout.fillWidth: true
                title: qsTr("Updates")
                SettingLine {
                    text: WindowContext.updates.version === "" ? qsTr("Korvane") : qsTr("Korvane %1").arg(WindowContext.updates.version)
                    hint: qsTr("Korvane asks for a newer version only when you do.")
                    Button {
                        objectName: "updateButton"
                        text: qsTr("Check for updates")
                        enabled: !WindowContext.updates.isWorking
                        onClicked: WindowContext.updateRequested()
                    }
                }
            }
        }
    }

    Sheet {
        id: permanentSheet
        objectName: "permanentSheet"
        title: qsTr("Delete permanently from now on?")
        text: qsTr("Whatever you remove, with any tool, is then gone at once. It does not go to the Bin, and the Restore Centre cannot bring it back.")
        iconName: "warning"
        danger: true
        action: qsTr("Delete permanently")
        onAccepted: page.settings.setDeletesPermanently(true)
    }
}
