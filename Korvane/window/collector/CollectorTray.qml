import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Style
import Korvane.Window
import Korvane.Theme

// At the edge of the window: a narrow tab, or a panel when open. What is put here waits for a
// decision; nothing happens to it until then.
Rectangle {
    id: tray
    property bool open: false
    readonly property CollectorModel model: WindowContext.collector
    implicitWidth: open ? Math.round(276 * Math.max(1, Math.min(1.25, Theme.scale))) : 52
    color: Theme.sidebar
    clip: true
    Behavior on implicitWidth { NumberAnimation { duration: Theme.calm; easing.type: Easing.OutCubic } }

    Connections {
        target: tray.model // qmllint disable type
        function onFinished() { outcome.open() }
        function onChanged() {
            if (tray.model.count > tray.lastCount)
                tray.open = true
            tray.lastCount = tray.model.count
        }
    }
    property int lastCount: 0

    Rectangle { width: 1; height: parent.height; color: Theme.border }
    Column {
        visible: !tray.open
        anchors.horizontalCenter: parent.horizontalCenter
        y: 16
        spacing: 6
        Button {
            objectName: "collectorToggle"
            anchors.horizontalCenter: parent.horizontalCenter
            display: AbstractButton.IconOnly
            icon.name: "collector"
            flat: true
            text: tray.model.name
            onClicked: tray.open = true
            ToolTip.visible: hovered
            ToolTip.delay: 400
            ToolTip.text: qsTr("Collector: gather items from all tools and decide once (Ctrl+B)")
        }
        Rectangle {
            visible: tray.model.count > 0
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.max(22, number.implicitWidth + 10)
            height: number.implicitHeight + 4
            radius: height / 2
            color: Theme.accent
            Label {
                id: number
                anchors.centerIn: parent
                text: tray.model.countText
                kind: "caption"
                color: Theme.accentInk
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
    }
    ColumnLayout {
        visible: tray.open
        anchors.fill: parent
        anchors.margins: Theme.s4
        spacing: Theme.s3
        RowLayout {
            Icon { name: "collector"; size: 20; colour: Theme.accentText }
            Label { text: qsTr("Collector"); kind: "subtitle"; Layout.fillWidth: true; Accessible.role: Accessible.Heading }
            Button { display: AbstractButton.IconOnly; flat: true; icon.name: "close"; text: qsTr("Close the Collector"); onClicked: tray.open = false }
        }
        Label {
            Layout.fillWidth: true
            text: tray.model.count === 0 ? qsTr("Press Collect in any tool to gather items here. Nothing happens to them until you decide.")
                                         : tray.model.summary
            wrapMode: Text.Wrap
            kind: "small"
            lineHeight: 1.25
        }
        ListView {
            id: list
            objectName: "collectorList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            model: tray.model
            spacing: Theme.s2
            clip: true
            reuseItems: true
            activeFocusOnTab: count > 0
            boundsBehavior: Flickable.StopAtBounds
            Keys.onDeletePressed: tray.model.removeRow(currentIndex)
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Collected items")
            ScrollBar.vertical: ScrollBar {}
            delegate: Card {
                id: card
                required property int index
                required property string title
                required property string path
                required property string sizeText
                width: list.width
                height: texts.implicitHeight + 18
                border.color: ListView.isCurrentItem && list.activeFocus ? Theme.accent : Theme.border
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("%1, %2").arg(title).arg(sizeText)
                HoverHandler { id: hover }
                ToolTip.visible: hover.hovered
                ToolTip.delay: 600
                ToolTip.text: path
                Column {
                    id: texts
                    anchors { left: parent.left; leftMargin: 12; right: remove.left; verticalCenter: parent.verticalCenter }
                    spacing: 2
                    Label { width: parent.width; text: card.title; font.weight: Font.Medium; elide: Text.ElideMiddle; Accessible.ignored: true }
                    Label { width: parent.width; text: card.sizeText; kind: "small"; Accessible.ignored: true }
                }
                Button {
                    id: remove
                    anchors { right: parent.right; rightMargin: 4; verticalCenter: parent.verticalCenter }
                    display: AbstractButton.IconOnly
                    flat: true
                    icon.name: "close"
                    text: qsTr("%1: %2").arg(tray.model.removeTitle).arg(card.title)
                    enabled: !tray.model.isDeleting
                    onClicked: tray.model.removeRow(card.index)
                    ToolTip.visible: hovered
                    ToolTip.delay: 500
                    ToolTip.text: tray.model.removeTitle
                }
            }
        }
        ProgressBar {
            visible: tray.model.isDeleting
            Layout.fillWidth: true
            value: tray.model.fraction
            Accessible.name: qsTr("Removing the collected items")
        }
        Label { visible: tray.model.count > 0; text: tray.model.totalText; kind: "title" }
        Button {
            objectName: "collectorDeleteButton"
            visible: tray.model.count > 0
            Layout.fillWidth: true
            highlighted: true
            danger: confirmation.danger
            icon.name: "bin"
            enabled: !tray.model.isDeleting
            text: tray.model.deleteTitle
            onClicked: confirmation.ask(tray.model.prepare())
        }
        Button {
            visible: tray.model.isDeleting
            Layout.fillWidth: true
            text: qsTr("Stop")
            icon.name: "stop"
            onClicked: tray.model.stop()
        }
        Button {
            visible: tray.model.count > 0 && !tray.model.isDeleting
            Layout.fillWidth: true
            flat: true
            text: qsTr("Empty the Collector")
            onClicked: tray.model.clear()
            ToolTip.visible: hovered
            ToolTip.delay: 500
            ToolTip.text: tray.model.clearTitle
        }
    }
    ConfirmSheet {
        id: confirmation
        onAccepted: tray.model.confirm()
    }
    Sheet {
        id: outcome
        objectName: "collectorOutcome"
        cancelTitle: ""
        OutcomeView {
            Layout.fillWidth: true
            Layout.preferredHeight: 420
            compact: true
            canRetry: false
            outcome: tray.model.outcome
            onDone: outcome.close()
        }
    }
}
