import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Page {
    id: page
    readonly property BinModel bins: WindowContext.bins
    readonly property bool isEmptying: bins.state === BinModel.Emptying
    readonly property bool isEmpty: list.count === 0 && bins.state === BinModel.Ready
    function refresh() { bins.refresh() }
    function act() { ask(bins.prepareAll()) }
    function ask(question: var) {
        if (question.title === undefined || WindowContext.isCleaning)
            return
        sheet.question = question
        sheet.open()
    }
    Component.onCompleted: bins.refresh()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.s5
        spacing: Theme.s4
        PageHeader {
            Layout.fillWidth: true
            title: page.tool.title
            blurb: page.tool.blurb
            Button {
                display: AbstractButton.IconOnly
                icon.name: "restore"
                text: qsTr("Look again")
                enabled: !page.isEmptying
                onClicked: page.bins.refresh()
                ToolTip.visible: hovered
                ToolTip.text: text
            }
        }
        // The last emptying.
        Card {
            id: account
            Layout.fillWidth: true
            visible: page.bins.hasOutcome
            implicitHeight: accountColumn.implicitHeight + 2 * Theme.s4
            readonly property bool isClean: page.bins.outcome.failedCount === 0 && page.bins.auditFailure === ""
            ColumnLayout {
                id: accountColumn
                anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.s4 }
                spacing: Theme.s2
                RowLayout {
                    spacing: Theme.s3
                    Icon {
                        name: account.isClean ? "check" : "warning"
                        size: 20
                        colour: account.isClean ? Theme.riskInk[0] : Theme.riskInk[1]
                    }
                    Label {
                        objectName: "binOutcome"
                        Layout.fillWidth: true
                        text: page.bins.outcomeText
                        kind: "subtitle"
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.AlertMessage
                    }
                    Button { text: qsTr("Audit Log"); flat: true; onClicked: WindowContext.pageRequested("audit") }
                    Button {
                        display: AbstractButton.IconOnly
                        flat: true
                        icon.name: "close"
                        text: qsTr("Dismiss")
                        onClicked: page.bins.dismissOutcome()
                    }
                }
                Label {
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: page.bins.auditFailure
                    wrapMode: Text.Wrap
                    color: Theme.riskInk[2]
                }
                ListView {
                    id: failures
                    objectName: "binFailures"
                    Layout.fillWidth: true
                    Layout.preferredHeight: Math.min(contentHeight, Math.round(page.height / 3))
                    visible: count > 0
                    clip: true
                    reuseItems: true
                    activeFocusOnTab: count > 0
                    model: page.bins.outcome
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}
                    Accessible.role: Accessible.List
                    Accessible.name: qsTr("What was not removed")
                    delegate: Item {
                        id: failure
                        required property string path
                        required property string sentence
                        required property string guidance
                        required property string spoken
                        width: failures.width
                        height: failureTexts.implicitHeight + 14
                        Accessible.role: Accessible.ListItem
                        Accessible.name: spoken
                        Accessible.description: guidance
                        Rectangle { width: parent.width; height: 1; color: Theme.border }
                        Column {
                            id: failureTexts
                            y: 7
                            width: parent.width - 14
                            spacing: 1
                            Label { width: parent.width; text: failure.path; elide: Text.ElideMiddle; Accessible.ignored: true }
                            Label { width: parent.width; text: failure.sentence; kind: "small"; wrapMode: Text.Wrap; color: Theme.riskInk[2]; Accessible.ignored: true }
                            Label { width: parent.width; visible: text !== ""; text: failure.guidance; kind: "small"; wrapMode: Text.Wrap; Accessible.ignored: true }
                        }
                    }
                }
            }
        }
        RowLayout {
            Layout.fillWidth: true
            visible: list.count > 0
            spacing: Theme.s3
            Label { objectName: "binTotal"; text: page.bins.totalText; kind: "display"; font.pixelSize: Theme.display - 8 }
            Label {
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignBottom
                Layout.bottomMargin: 5
                text: page.bins.countText
                color: Theme.textMuted
                elide: Text.ElideRight
            }
            Button {
                objectName: "emptyAllButton"
                visible: list.count > 1
                enabled: !WindowContext.isCleaning
                text: qsTr("Empty all…")
                icon.name: "bin"
                onClicked: page.ask(page.bins.prepareAll())
            }
        }
        Card {
            Layout.fillWidth: true
            visible: page.isEmptying
            implicitHeight: progress.implicitHeight + 2 * Theme.s4
            RowLayout {
                id: progress
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: Theme.s4 }
                spacing: Theme.s4
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: Theme.s2
                    Label { text: qsTr("Emptying…"); font.weight: Font.Medium }
                    ProgressBar {
                        Layout.fillWidth: true
                        indeterminate: page.isEmptying
                        Accessible.name: qsTr("Emptying the Bin")
                    }
                }
                Button { objectName: "stopEmptying"; text: qsTr("Stop"); icon.name: "stop"; onClicked: page.bins.stop() }
            }
        }
        ListView {
            id: list
            objectName: "binList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: count > 0
            clip: true
            reuseItems: true
            focus: true
            activeFocusOnTab: true
            spacing: Theme.s3
            model: page.bins
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Bins")
            delegate: Card {
                id: bin
                required property int index
                required property string title
                required property string path
                required property string url
                required property string iconName
                required property string sizeText
                required property string countText
                required property string note
                required property string spoken
                width: list.width
                height: Math.max(texts.implicitHeight, figures.implicitHeight, button.height) + 2 * Theme.s4
                Accessible.role: Accessible.ListItem
                Accessible.name: spoken
                Accessible.description: note
                border.color: ListView.isCurrentItem && list.activeFocus ? Theme.accent : Theme.border
                border.width: ListView.isCurrentItem && list.activeFocus ? 2 : 1
                Keys.onReturnPressed: page.ask(page.bins.prepare(index))
                Keys.onEnterPressed: page.ask(page.bins.prepare(index))
                Rectangle {
                    id: sign
                    anchors { left: parent.left; leftMargin: Theme.s4; verticalCenter: parent.verticalCenter }
                    width: 44
                    height: 44
                    radius: 12
                    color: Theme.selected
                    Icon { anchors.centerIn: parent; name: bin.iconName; size: 24; colour: Theme.accentText }
                }
                Column {
                    id: texts
                    anchors { left: sign.right; leftMargin: Theme.s4; right: figures.left; rightMargin: Theme.s4; verticalCenter: parent.verticalCenter }
                    spacing: 2
                    Label { width: parent.width; text: bin.title; kind: "subtitle"; elide: Text.ElideMiddle; Accessible.ignored: true }
                    Label {
                        id: pathLabel
                        width: parent.width
                        text: bin.path
                        kind: "small"
                        elide: Text.ElideMiddle
                        Accessible.ignored: true
                        HoverHandler { id: hover }
                        ToolTip.visible: hover.hovered && pathLabel.truncated
                        ToolTip.text: bin.path
                    }
                    Label { width: parent.width; visible: text !== ""; text: bin.note; kind: "small"; wrapMode: Text.Wrap; color: Theme.riskInk[1]; Accessible.ignored: true }
                }
                Column {
                    id: figures
                    anchors { right: reveal.left; rightMargin: Theme.s3; verticalCenter: parent.verticalCenter }
                    Label { anchors.right: parent.right; text: bin.sizeText; kind: "subtitle"; Accessible.ignored: true }
                    Label { anchors.right: parent.right; text: bin.countText; kind: "small"; visible: text !== ""; Accessible.ignored: true }
                }
                Button {
                    id: reveal
                    anchors { right: button.left; rightMargin: Theme.s1; verticalCenter: parent.verticalCenter }
                    display: AbstractButton.IconOnly
                    flat: true
                    icon.name: "reveal"
                    text: qsTr("Show in file manager")
                    onClicked: WindowContext.reveal(bin.url)
                    ToolTip.visible: hovered
                    ToolTip.text: text
                }
                Button {
                    id: button
                    objectName: "emptyButton"
                    anchors { right: parent.right; rightMargin: Theme.s4; verticalCenter: parent.verticalCenter }
                    enabled: !WindowContext.isCleaning
                    text: qsTr("Empty…")
                    Accessible.name: qsTr("Empty the Bin of %1").arg(bin.title)
                    onClicked: page.ask(page.bins.prepare(bin.index))
                }
            }
            footer: Item {
                width: list.width
                height: hint.implicitHeight + Theme.s4
                Label {
                    id: hint
                    y: Theme.s3
                    width: parent.width
                    text: qsTr("What waits here can still be put back, in the Restore Centre or your file manager. Once a Bin is emptied, nothing in it can be.")
                    kind: "small"
                    wrapMode: Text.Wrap
                }
            }
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: list.count === 0
            // Placed by hand: a layout keeps the places of what was hidden when it first appeared.
            Column {
                anchors.centerIn: parent
                anchors.verticalCenterOffset: -Theme.s5
                width: parent.width - 40
                spacing: Theme.s2
                Icon { anchors.horizontalCenter: parent.horizontalCenter; name: "bin"; size: 52; colour: Theme.textFaint; visible: page.isEmpty }
                Label {
                    objectName: "binMessage"
                    width: parent.width
                    text: page.isEmpty ? qsTr("All Bins are empty.") : page.isEmptying ? "" : qsTr("Measuring Bin folders…")
                    kind: page.isEmpty ? "subtitle" : "body"
                    color: page.isEmpty ? Theme.text : Theme.textMuted
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                }
                Label {
                    width: parent.width
                    visible: page.isEmpty
                    text: qsTr("What you move to the Bin waits here until you empty it.")
                    color: Theme.textMuted
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                }
            }
        }
    }
    Sheet {
        id: sheet
        objectName: "emptySheet"
        property var question: ({})
        title: question.title ?? ""
        text: question.text ?? ""
        iconName: "warning"
        danger: true
        action: question.action ?? ""
        onAccepted: page.bins.confirm()
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: warning.implicitHeight + 20
            radius: Theme.radius
            color: Theme.riskFill[2]
            RowLayout {
                id: warning
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 12 }
                spacing: 10
                Icon { name: "restore"; size: 18; colour: Theme.riskInk[2] }
                Label {
                    Layout.fillWidth: true
                    color: Theme.riskInk[2]
                    wrapMode: Text.Wrap
                    text: qsTr("The Restore Centre cannot bring it back.")
                }
            }
        }
        RowLayout {
            visible: (sheet.question.kept ?? "") !== ""
            spacing: 10
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            Icon { name: "shield"; size: 18; colour: Theme.accentText }
            Label { Layout.fillWidth: true; text: sheet.question.kept ?? ""; wrapMode: Text.Wrap }
        }
    }
}
