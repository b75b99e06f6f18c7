import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// The account of a cleanup: what went, what did not and why, and where it can be had back.
FocusScope {
    id: view
    required property OutcomeModel outcome
    property bool compact: false
    property bool canRetry: true
    signal retry()
    signal done()
    readonly property bool clean: outcome.failedCount === 0

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: view.compact ? 0 : Theme.s5
        spacing: Theme.s3
        Item { Layout.fillHeight: list.count === 0; visible: list.count === 0 && !view.compact }
        Rectangle {
            Layout.alignment: Qt.AlignHCenter
            visible: !view.compact
            implicitWidth: list.count === 0 ? 84 : 56
            implicitHeight: implicitWidth
            radius: width / 2
            color: view.clean ? Theme.riskFill[0] : Theme.riskFill[1]
            Icon {
                anchors.centerIn: parent
                name: view.clean ? "check" : "warning"
                size: parent.width / 2
                colour: view.clean ? Theme.riskInk[0] : Theme.riskInk[1]
            }
        }
        Label {
            objectName: "outcomeTitle"
            Layout.alignment: Qt.AlignHCenter
            text: view.outcome.title
            kind: "title"
            font.pixelSize: view.compact ? Theme.title : Theme.title + 8
            Accessible.role: Accessible.Heading
        }
        Label {
            Layout.fillWidth: true
            visible: text !== ""
            text: view.outcome.detail
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: Theme.textMuted
        }
        Label {
            Layout.fillWidth: true
            visible: text !== ""
            text: view.outcome.auditFailure
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: Theme.riskInk[2]
        }
        Row {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s1
            spacing: Theme.s3
            Repeater {
                model: [{ value: view.outcome.succeededText, name: qsTr("removed") },
                        { value: view.outcome.failedText, name: qsTr("not removed") },
                        { value: view.outcome.skippedText, name: qsTr("skipped") }]
                Rectangle {
                    id: figure
                    required property var modelData
                    width: Math.max(view.compact ? 96 : 140, figureName.implicitWidth + 24)
                    height: figureColumn.implicitHeight + 20
                    radius: Theme.radiusLarge
                    color: Theme.dark ? Theme.hover : Theme.window
                    Column {
                        id: figureColumn
                        anchors.centerIn: parent
                        Label { anchors.horizontalCenter: parent.horizontalCenter; text: figure.modelData.value; kind: "title" }
                        Label { id: figureName; anchors.horizontalCenter: parent.horizontalCenter; text: figure.modelData.name; kind: "small" }
                    }
                }
            }
        }
        ListView {
            id: list
            objectName: "outcomeList"
            visible: count > 0
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumHeight: view.compact ? 120 : 160
            clip: true
            reuseItems: true
            model: view.outcome
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("What was not removed")
            section.property: "group"
            section.delegate: Label {
                required property string section
                text: section
                kind: "small"
                font.weight: Font.DemiBold
                topPadding: 10
                bottomPadding: 4
            }
            delegate: Item {
                id: row
                required property string title
                required property string path
                required property string sentence
                required property string guidance
                required property bool failed
                required property string spoken
                width: list.width
                height: texts.implicitHeight + 14
                Accessible.role: Accessible.ListItem
                Accessible.name: spoken
                Accessible.description: guidance
                Rectangle { width: parent.width; height: 1; color: Theme.border; opacity: 0.7 }
                Icon {
                    x: 4
                    y: 9
                    name: row.failed ? "warning" : "info"
                    size: 16
                    colour: row.failed ? Theme.riskInk[2] : Theme.textMuted
                }
                Column {
                    id: texts
                    x: 30
                    y: 7
                    width: row.width - 46
                    spacing: 1
                    Label { width: parent.width; text: row.path; elide: Text.ElideMiddle; Accessible.ignored: true }
                    Label { width: parent.width; text: row.sentence; kind: "small"; wrapMode: Text.Wrap; color: row.failed ? Theme.riskInk[2] : Theme.textMuted; Accessible.ignored: true }
                    Label { width: parent.width; visible: text !== ""; text: row.guidance; kind: "small"; wrapMode: Text.Wrap; Accessible.ignored: true }
                }
            }
        }
        Flow {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.s2
            Layout.maximumWidth: parent.width
            spacing: Theme.s2
            Button {
                visible: view.canRetry && view.outcome.failedCount > 0
                text: qsTr("Try the rest again…")
                icon.name: "restore"
                onClicked: view.retry()
            }
            Button {
                visible: view.outcome.rightsCouldHelp
                text: qsTr("Remove with administrator rights…")
                icon.name: "shield"
                onClicked: WindowContext.privileged.prepare(view.outcome)
            }
            Button {
                visible: view.outcome.canRestore
                text: WindowContext.collector.restoreTitle
                icon.name: "undo"
                onClicked: { view.done(); WindowContext.pageRequested("restore") }
            }
            Button {
                text: qsTr("Audit Log")
                icon.name: "audit"
                onClicked: { view.done(); WindowContext.pageRequested("audit") }
            }
            Button {
                objectName: "doneButton"
                text: qsTr("Done")
                highlighted: true
                focus: true
                onClicked: view.done()
            }
        }
        Item { Layout.fillHeight: list.count === 0; visible: list.count === 0 && !view.compact }
    }
}
