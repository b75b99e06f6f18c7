import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

Page {
    id: page
    readonly property CatalogueModel catalogue: WindowContext.catalogue
    /// The details stand beside the list where there is room, else on a sheet.
    readonly property bool hasSideCard: (Window.width || width) >= 1100 && width >= 760
    readonly property bool isNarrow: width < 700 * Math.max(1, Theme.scale)
    property var shown: ({})
    function find() { searchField.forceActiveFocus(Qt.ShortcutFocusReason) }
    function act() { if (!hasSideCard && list.currentIndex >= 0) sheet.open() }
    function showCurrent() { shown = catalogue.get(list.currentIndex) }

    Connections {
        target: page.catalogue // qmllint disable type
        function onFilterChanged() {
            list.currentIndex = page.catalogue.count > 0 ? 0 : -1
            list.positionViewAtBeginning()
            page.showCurrent()
        }
    }
    Component.onCompleted: {
        list.currentIndex = catalogue.count > 0 ? 0 : -1
        showCurrent()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.s5
        spacing: Theme.s4

        PageHeader { Layout.fillWidth: true; title: page.tool.title; blurb: page.tool.blurb }

        GridLayout {
            Layout.fillWidth: true
            columns: page.isNarrow ? 2 : 4
            columnSpacing: Theme.s2
            rowSpacing: Theme.s2
            SearchField {
                id: searchField
                objectName: "catalogueSearch"
                Layout.fillWidth: true
                Layout.columnSpan: page.isNarrow ? 2 : 1
                focus: true
                text: page.catalogue.query
                placeholderText: qsTr("Search names, paths and reasons")
                onTextEdited: page.catalogue.query = text
                Keys.onDownPressed: list.forceActiveFocus(Qt.TabFocusReason)
                Keys.onEscapePressed: e => {
                    e.accepted = page.catalogue.query !== ""
                    page.catalogue.query = ""
                }
            }
            ComboBox {
                Layout.fillWidth: page.isNarrow
                Layout.preferredWidth: 170 * Math.max(1, Theme.scale)
                model: page.catalogue.tools
                currentIndex: page.catalogue.toolIndex
                onActivated: i => page.catalogue.toolIndex = i
                Accessible.name: qsTr("Tool")
            }
            ComboBox {
                Layout.fillWidth: page.isNarrow
                Layout.preferredWidth: 140 * Math.max(1, Theme.scale)
                model: page.catalogue.risks
                currentIndex: page.catalogue.riskIndex
                onActivated: i => page.catalogue.riskIndex = i
                Accessible.name: qsTr("Risk")
            }
            Label {
                Layout.columnSpan: page.isNarrow ? 2 : 1
                Layout.leftMargin: Theme.s1
                text: page.catalogue.countText
                kind: "small"
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            Card {
                anchors {
                    left: parent.left; top: parent.top; bottom: parent.bottom
                    right: page.hasSideCard ? sideCard.left : parent.right
                    rightMargin: page.hasSideCard ? Theme.s4 : 0
                }
                ListView {
                    id: list
                    objectName: "catalogueList"
                    anchors.fill: parent
                    anchors.margins: 1
                    clip: true
                    activeFocusOnTab: true
                    reuseItems: true
                    model: page.catalogue
                    keyNavigationEnabled: true
                    highlightMoveDuration: 0
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}
                    Accessible.role: Accessible.List
                    Accessible.name: qsTr("Places of the catalogue")
                    onCurrentIndexChanged: page.showCurrent()
                    Keys.onPressed: e => {
                        const page_ = Math.max(1, Math.floor(height / Theme.rowHeight) - 1)
                        const target = e.key === Qt.Key_Home ? 0
                                     : e.key === Qt.Key_End ? count - 1
                                     : e.key === Qt.Key_PageUp ? Math.max(0, currentIndex - page_)
                                     : e.key === Qt.Key_PageDown ? Math.min(count - 1, currentIndex + page_) : -1
                        if (target >= 0) {
                            currentIndex = target
                            e.accepted = true
                        } else if (e.key === Qt.Key_Return || e.key === Qt.Key_Enter || e.key === Qt.Key_Space) {
                            e.accepted = e.modifiers === Qt.NoModifier
                            if (e.accepted)
                                page.act()
                        }
                    }

                    delegate: Item {
                        id: row
                        required property int index
                        required property string name
                        required property string pattern
                        required property int risk
                        required property string spoken
                        readonly property bool isCurrent: ListView.isCurrentItem
                        width: list.width
                        height: Theme.rowHeight
                        Accessible.role: Accessible.ListItem
                        Accessible.name: spoken
                        Accessible.focusable: true
                        Accessible.selected: isCurrent

                        HoverHandler { id: hover }
                        TapHandler {
                            onTapped: {
                                list.currentIndex = row.index
                                list.forceActiveFocus(Qt.MouseFocusReason)
                                page.act()
                            }
                        }
                        Rectangle {
                            anchors.fill: parent
                            anchors.margins: 3
                            radius: Theme.radius
                            color: row.isCurrent ? Theme.selected : hover.hovered ? Theme.hover : "transparent"
                            border.width: row.isCurrent && list.activeFocus ? 2 : 0
                            border.color: Theme.accent
                        }
                        Column {
                            anchors { left: parent.left; leftMargin: Theme.s4; right: badge.left; rightMargin: Theme.s3; verticalCenter: parent.verticalCenter }
                            Label {
                                width: parent.width
                                text: row.name
                                elide: Text.ElideRight
                                font.weight: Font.Medium
                                Accessible.ignored: true
                            }
                            Label {
                                width: parent.width
                                text: row.pattern
                                kind: "small"
                                elide: Text.ElideMiddle
                                Accessible.ignored: true
                                HoverHandler { id: patternHover }
                                ToolTip.visible: patternHover.hovered && truncated
                                ToolTip.text: row.pattern
                            }
                        }
                        RiskBadge {
                            id: badge
                            anchors { right: parent.right; rightMargin: Theme.s4; verticalCenter: parent.verticalCenter }
                            risk: row.risk
                            Accessible.ignored: true
                        }
                        Rectangle {
                            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; leftMargin: Theme.s4; rightMargin: Theme.s4 }
                            height: 1
                            color: Theme.border
                            opacity: 0.7
                        }
                    }
                }
                ColumnLayout {
                    anchors.centerIn: parent
                    width: Math.min(340 * Math.max(1, Theme.scale), parent.width - 2 * Theme.s5)
                    visible: page.catalogue.count === 0
                    spacing: Theme.s2
                    Label {
                        Layout.fillWidth: true
                        horizontalAlignment: Text.AlignHCenter
                        wrapMode: Text.Wrap
                        text: qsTr("No place matches")
                        kind: "subtitle"
                    }
                    Button {
                        Layout.alignment: Qt.AlignHCenter
                        text: qsTr("Show all places")
                        onClicked: page.catalogue.clearFilters()
                    }
                }
            }

            Card {
                id: sideCard
                visible: page.hasSideCard
                anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
                width: Math.round(parent.width * 0.42)
                Flickable {
                    id: side
                    anchors.fill: parent
                    anchors.margins: 1
                    clip: true
                    contentWidth: width
                    contentHeight: sideDetails.implicitHeight + 2 * Theme.s4
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}
                    CatalogueDetails {
                        id: sideDetails
                        x: Theme.s4
                        y: Theme.s4
                        width: side.width - 2 * Theme.s4
                        place: page.shown
                    }
                }
            }
        }
    }

    Sheet {
        id: sheet
        objectName: "catalogueSheet"
        cancelTitle: qsTr("Close")
        Flickable {
            Layout.fillWidth: true
            Layout.fillHeight: true
            implicitHeight: sheetDetails.implicitHeight
            clip: true
            contentWidth: width
            contentHeight: sheetDetails.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            CatalogueDetails {
                id: sheetDetails
                width: parent ? parent.width : 0
                place: page.shown
            }
        }
    }
}
