import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Style
import Korvane.Window
import Korvane.Theme

FocusScope {
    id: view
    required property ToolModel model
    readonly property ResultModel results: model.results
    signal ask()
    function find() { search.forceActiveFocus(Qt.ShortcutFocusReason) }

    ResultColumns { id: layout; width: view.width }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        ColumnLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.s5
            Layout.rightMargin: Theme.s5
            Layout.bottomMargin: Theme.s4
            spacing: Theme.s3
            RowLayout {
                spacing: Theme.s2
                Label {
                    objectName: "totalLabel"
                    text: view.results.totalText
                    kind: "display"
                    font.pixelSize: Theme.display - 8
                }
                ColumnLayout {
                    spacing: 0
                    Layout.alignment: Qt.AlignBottom
                    Layout.bottomMargin: 4
                    Layout.fillWidth: true
                    Label { text: view.results.countText; color: Theme.textMuted; elide: Text.ElideRight; Layout.fillWidth: true }
                    Label {
                        visible: text !== ""
                        text: view.model.isPartial ? qsTr("The scan was stopped; this is what it had found.") : view.results.changeText
                        kind: "small"
                        elide: Text.ElideRight
                        Layout.fillWidth: true
                    }
                }
                ComboBox {
                    visible: view.results.holdsDuplicates
                    Layout.fillWidth: true
                    Layout.minimumWidth: 96
                    Layout.maximumWidth: Math.round(190 * layout.scale)
                    model: [qsTr("Most to gain first"), qsTr("By name"), qsTr("Most copies first")]
                    currentIndex: view.results.groupOrder
                    onActivated: index => view.results.groupOrder = index
                    Accessible.name: qsTr("Order of the groups")
                }
                SearchField {
                    id: search
                    objectName: "searchField"
                    Layout.fillWidth: true
                    Layout.minimumWidth: 96
                    Layout.maximumWidth: 240
                    placeholderText: qsTr("Search names and folders")
                    onTextChanged: view.results.filter = text
                    Keys.onEscapePressed: {
                        text = ""
                        list.forceActiveFocus()
                    }
                    Keys.onDownPressed: list.forceActiveFocus()
                }
            }
            StackedBar {
                visible: view.results.breakdown.length > 1 && view.height > 420 * layout.scale
                Layout.fillWidth: true
                parts: view.results.breakdown
            }
        }
        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.border }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: Theme.controlHeight
            color: Theme.surface
            LayoutMirroring.enabled: false
            LayoutMirroring.childrenInherit: true
            ColumnHead { x: layout.groupText; width: layout.risk - x - 12; height: parent.height; text: qsTr("Name"); order: ResultModel.ByName; model: view.results }
            ColumnHead { x: layout.risk; width: layout.riskWidth; height: parent.height; text: qsTr("Risk"); order: ResultModel.ByRisk; model: view.results }
            ColumnHead { visible: layout.hasDate; x: layout.date; width: layout.dateWidth; height: parent.height; text: qsTr("Changed"); order: ResultModel.ByDate; model: view.results; alignRight: true }
            ColumnHead { x: layout.size; width: layout.sizeWidth; height: parent.height; text: qsTr("Size"); order: ResultModel.BySize; model: view.results; alignRight: true }
        }
        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.border }
        ListView {
            id: list
            objectName: "resultList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            focus: true
            activeFocusOnTab: true
            model: view.results
            reuseItems: true
            cacheBuffer: 240
            currentIndex: 0
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            highlightResizeDuration: 0
            keyNavigationEnabled: true
            pixelAligned: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Results")
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AlwaysOn }
            delegate: ResultDelegate {
                owner: list
                columns: layout
                onToggled: index => view.results.toggle(index)
                onMenuWanted: index => list.showMenu(index)
                onDetailsWanted: index => list.showDetails(index)
            }
            function showMenu(index: int) {
                currentIndex = index
                if (!view.results.isGroup(index)) {
                    menu.item = view.results.details(index)
                    menu.popup()
                }
            }
            function showDetails(index: int) {
                if (!view.results.isGroup(index))
                    details.show(view.results.details(index))
            }
            function turnPage(direction: int) {
                const rows = Math.max(1, Math.floor(height / Theme.rowHeight) - 1)
                currentIndex = Math.max(0, Math.min(count - 1, currentIndex + direction * rows))
            }
            Keys.onPressed: event => {
                event.accepted = true
                switch (event.key) {
                case Qt.Key_Space: view.results.toggle(currentIndex); break
                case Qt.Key_Right: view.results.setOpen(currentIndex, true); break
                case Qt.Key_Left:
                    currentIndex = view.results.groupRow(currentIndex)
                    view.results.setOpen(currentIndex, false)
                    break
                case Qt.Key_Home: currentIndex = 0; break
                case Qt.Key_End: currentIndex = count - 1; break
                case Qt.Key_PageDown: turnPage(1); break
                case Qt.Key_PageUp: turnPage(-1); break
                case Qt.Key_Delete: view.ask(); break
                case Qt.Key_A:
                    if (event.modifiers & Qt.ControlModifier)
                        view.results.selectShown()
                    else
                        event.accepted = false
                    break
                case Qt.Key_Return: case Qt.Key_Enter:
                    if (event.modifiers & Qt.ControlModifier)
                        event.accepted = false
                    else if (view.results.isGroup(currentIndex))
                        view.results.toggleOpen(currentIndex)
                    else
                        showDetails(currentIndex)
                    break
                case Qt.Key_Menu: showMenu(currentIndex); break
                default: event.accepted = false
                }
            }
            ColumnLayout {
                anchors.centerIn: parent
                visible: list.count === 0
                width: Math.min(list.width - 48, 480)
                spacing: Theme.s2
                Icon { Layout.alignment: Qt.AlignHCenter; name: view.results.filter !== "" ? "search" : "check"; size: 40; colour: Theme.accentText }
                Label {
                    objectName: "emptyLabel"
                    Layout.fillWidth: true
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    text: view.results.filter !== "" ? qsTr("Nothing matches “%1”").arg(view.results.filter)
                        : view.model.toolID === "similar-images" ? qsTr("No near-duplicate images were found in the chosen folder.")
                        : qsTr("There is nothing to clean here.")
                    color: Theme.textMuted
                }
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: Math.max(64, footer.implicitHeight + 20)
            color: Theme.surface
            Rectangle { width: parent.width; height: 1; color: Theme.border }
            RowLayout {
                id: footer
                anchors { fill: parent; leftMargin: Theme.s5; rightMargin: Theme.s5 }
                spacing: Theme.s2
                ColumnLayout {
                    spacing: 1
                    Layout.fillWidth: true
                    Label {
                        objectName: "selectionLabel"
                        text: view.results.selectedText
                        font.weight: Font.DemiBold
                        font.pixelSize: Theme.subtitle - 1
                        elide: Text.ElideRight
                        Layout.fillWidth: true
                    }
                    Label {
                        text: view.results.selectionDetail
                        kind: "small"
                        color: [Theme.textMuted, Theme.riskInk[1], Theme.riskInk[2]][view.results.selectionWarning]
                        elide: Text.ElideRight
                        Layout.fillWidth: true
                    }
                }
                Button { text: qsTr("Select safe"); flat: true; visible: view.width > 660 * layout.scale; onClicked: view.results.selectSafe() }
                Button { objectName: "selectNoneButton"; text: qsTr("Select none"); flat: true; onClicked: view.results.selectNone() }
                Button {
                    objectName: "collectButton"
                    text: qsTr("Collect")
                    icon.name: "collector"
                    display: view.width > 560 * layout.scale ? AbstractButton.TextBesideIcon : AbstractButton.IconOnly
                    enabled: view.results.selectedCount > 0
                    onClicked: WindowContext.collector.stageSelection(view.model)
                    ToolTip.visible: hovered
                    ToolTip.delay: 500
                    ToolTip.text: qsTr("Put what is ticked in the Collector and decide later")
                }
                Button {
                    objectName: "cleanButton"
                    text: qsTr("%1…").arg(view.model.actionTitle)
                    icon.name: "bin"
                    highlighted: true
                    danger: view.model.isPermanent
                    enabled: view.results.selectedCount > 0
                    onClicked: view.ask()
                }
            }
        }
    }
    Menu {
        id: menu
        property var item: ({})
        MenuItem { text: qsTr("Why is this listed?"); icon.name: "info"; onTriggered: list.showDetails(list.currentIndex) }
        MenuItem { text: qsTr("Show in the file manager"); icon.name: "reveal"; onTriggered: WindowContext.reveal(menu.item.url) }
        MenuItem { text: qsTr("Copy the path"); icon.name: "copy"; onTriggered: WindowContext.copyText(menu.item.copyPath) }
        MenuItem { text: qsTr("Add to the Collector"); icon.name: "collector"; onTriggered: WindowContext.collector.stageRow(view.model, list.currentIndex) }
        MenuItem { text: qsTr("Keep this copy"); icon.name: "check"; enabled: view.results.holdsDuplicates; onTriggered: view.results.keep(list.currentIndex) }
        MenuItem { text: qsTr("Protect this path"); icon.name: "shield"; onTriggered: view.model.protect(list.currentIndex) }
    }
    DetailsSheet {
        id: details
        model: view.model
    }
}
