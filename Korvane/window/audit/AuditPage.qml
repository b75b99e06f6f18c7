import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// The log: whether it holds, what was reclaimed, and every operation.
Page {
    id: page
    readonly property AuditModel audit: WindowContext.audit
    readonly property var words: audit.words
    readonly property var records: audit
    function refresh() { audit.refresh() }
    function find() { search.forceActiveFocus(Qt.ShortcutFocusReason); search.selectAll() }
    Component.onCompleted: audit.refresh()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.s5
        spacing: Theme.s3
        PageHeader {
            Layout.fillWidth: true
            Layout.bottomMargin: Theme.s1
            title: page.tool.title
            blurb: page.tool.blurb
            Button {
                objectName: "folderButton"
                text: qsTr("Open log folder")
                icon.name: "folder"
                enabled: page.audit.state !== AuditModel.Loading && page.audit.state !== AuditModel.Empty
                onClicked: page.audit.openFolder()
                Accessible.description: page.words.folderHelp
                ToolTip.visible: hovered
                ToolTip.delay: 500
                ToolTip.text: page.words.folderHelp
            }
            Button {
                objectName: "exportButton"
                text: qsTr("Export…")
                icon.name: "gift"
                enabled: page.audit.canExport
                onClicked: {
                    exporting.active = true
                    exporting.dialog.show()
                }
                Accessible.description: page.words.exportHelp
                ToolTip.visible: hovered
                ToolTip.delay: 500
                ToolTip.text: page.words.exportHelp
            }
        }
        AuditChainCard {
            Layout.fillWidth: true
            audit: page.audit
            onAcknowledgeWanted: acknowledging.open()
        }
        RestoreBanner {
            Layout.fillWidth: true
            run: page.audit.run
        }
        Rectangle {
            visible: page.audit.problem !== ""
            Layout.fillWidth: true
            implicitHeight: problem.implicitHeight + 2 * Theme.s2
            radius: Theme.radiusLarge
            color: Theme.riskFill[2]
            Accessible.role: Accessible.AlertMessage
            Accessible.name: page.audit.problem
            RowLayout {
                id: problem
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: Theme.s4; rightMargin: Theme.s2 }
                spacing: Theme.s3
                Icon { name: "warning"; colour: Theme.riskInk[2] }
                Label { Layout.fillWidth: true; text: page.audit.problem; color: Theme.riskInk[2]; wrapMode: Text.Wrap }
                Button {
                    text: qsTr("Dismiss")
                    icon.name: "close"
                    display: AbstractButton.IconOnly
                    flat: true
                    onClicked: page.audit.dismissProblem()
                    ToolTip.visible: hovered
                    ToolTip.text: text
                }
            }
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.s3
            SearchField {
                id: search
                objectName: "auditSearch"
                Layout.fillWidth: true
                placeholderText: page.words.searchPrompt
                onTextEdited: {
                    place.searched = true
                    page.audit.query = text
                }
                Component.onCompleted: text = page.audit.query
                Keys.onEscapePressed: event => {
                    event.accepted = text !== ""
                    place.searched = true
                    clear()
                    page.audit.query = ""
                }
            }
            ComboBox {
                objectName: "auditModule"
                Layout.preferredWidth: Math.round(160 * Theme.scale)
                model: page.audit.modules
                currentIndex: page.audit.module
                onActivated: index => {
                    place.searched = true
                    page.audit.module = index
                }
                onModelChanged: currentIndex = Qt.binding(() => page.audit.module)
                Accessible.name: qsTr("Module")
            }
            Label { text: page.audit.countText; kind: "small" }
        }
        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Notice {
                anchors.centerIn: parent
                width: Math.min(460, parent.width - 2 * Theme.s5)
                visible: page.audit.state === AuditModel.Loading || page.audit.state === AuditModel.Empty
                busy: page.audit.state === AuditModel.Loading
                iconName: "audit"
                title: busy ? page.words.reading : page.words.emptyTitle
                text: busy ? "" : page.words.emptyExplanation
            }
            ListView {
                id: list
                objectName: "auditList"
                anchors { fill: parent; margins: 1; topMargin: Theme.s2; bottomMargin: Theme.s2 }
                visible: page.audit.state === AuditModel.Listed || page.audit.state === AuditModel.NoMatch
                clip: true
                focus: true
                reuseItems: true
                activeFocusOnTab: true
                model: page.audit
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Operations")
                Keys.onPressed: event => {
                    const row = list.currentItem as AuditRow
                    if (row === null || !row.foldable)
                        return
                    const opens = event.key === Qt.Key_Right, closes = event.key === Qt.Key_Left
                    const toggles = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter
                    if (opens || closes || (toggles && event.modifiers === Qt.NoModifier)) {
                        page.audit.setOpen(row.index, opens || (toggles && !row.open))
                        event.accepted = true
                    }
                }
                header: AuditChart {
                    width: list.width
                    chart: page.audit.chart
                    words: page.words
                }
                footer: Item {
                    width: list.width
                    height: visible ? none.implicitHeight + 2 * Theme.s6 : 0
                    visible: page.audit.state === AuditModel.NoMatch
                    Notice {
                        id: none
                        anchors.centerIn: parent
                        width: Math.min(460, parent.width - 2 * Theme.s5)
                        iconName: "search"
                        title: page.words.noMatchTitle
                        text: page.words.noMatchExplanation
                    }
                }
                delegate: AuditRow {
                    owner: list
                    busy: page.audit.run.running
                    putBackHelp: page.words.restoreHelp
                    onOpenWanted: open => page.audit.setOpen(index, open)
                    onPutBackWanted: page.audit.putBack(index)
                }
            }
        }
    }

    // A new reading keeps the place in the list; a new search begins at its first row.
    Connections {
        id: place
        target: page.records
        property double before: 0
        property bool searched: false
        function onModelAboutToBeReset() { before = list.contentY }
        function onModelReset() {
            const last = list.originY + list.contentHeight - list.height
            list.contentY = Math.max(list.originY, Math.min(before, searched ? 0 : last))
            searched = false
        }
        function onReplacementAsked(file, question) {
            replacing.file = file
            replacing.text = question
            replacing.open()
        }
    }

    Loader {
        id: exporting
        readonly property var dialog: item
        active: false
        function make() { setSource(Qt.resolvedUrl("AuditExportDialog.qml"), { audit: page.audit }) }
        onActiveChanged: if (active && item === null) make()
    }
    Sheet {
        id: replacing
        objectName: "replaceSheet"
        property url file
        title: qsTr("Replace the file?")
        iconName: "warning"
        danger: true
        action: qsTr("Replace")
        onAccepted: page.audit.exportTo(file, true)
    }
    Sheet {
        id: acknowledging
        objectName: "acknowledgeSheet"
        title: page.words.acknowledgeTitle
        text: page.words.acknowledgeExplanation
        iconName: "shield"
        action: qsTr("Acknowledge")
        actionEnabled: reason.text.trim() !== ""
        onAboutToShow: reason.clear()
        onAccepted: page.audit.chain.acknowledge(reason.text)
        TextField {
            id: reason
            objectName: "acknowledgeReason"
            Layout.fillWidth: true
            placeholderText: qsTr("What happened")
            maximumLength: 500
            onAccepted: if (acknowledging.actionEnabled) acknowledging.accept()
        }
        Label {
            Layout.fillWidth: true
            text: page.words.acknowledgeConsequence
            kind: "small"
            wrapMode: Text.Wrap
            lineHeight: 1.2
        }
    }
}
