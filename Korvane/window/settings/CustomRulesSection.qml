import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// The user's own places: the list, a form for one more, and the ready set for this system.
SectionCard {
    id: section
    readonly property CustomRulesModel rules: WindowContext.customRules
    readonly property bool isWide: width >= 560 * Math.max(1, Theme.scale)
    title: qsTr("Custom rules")

    function addRule() {
        rules.add(nameField.text, pathField.text, riskBox.currentIndex, noteField.text,
                  ageField.text === "" ? 0 : parseInt(ageField.text), childrenBox.checked)
    }

    Connections {
        target: section.rules // qmllint disable type
        function onAdded() {
            nameField.clear()
            pathField.clear()
            noteField.clear()
            ageField.clear()
            childrenBox.checked = false
        }
    }

    Label {
        Layout.fillWidth: true
        text: qsTr("Places of your own that the tool Custom Rules looks at. A path begins with \"/\" or \"~/\"; \"*\" stands for any text within one name. Nothing is removed without your asking.")
        color: Theme.textMuted
        wrapMode: Text.Wrap
    }
    Note {
        Layout.fillWidth: true
        visible: section.rules.failure !== ""
        isFailure: true
        canBeDismissed: false
        title: qsTr("The file of your rules could not be used")
        text: section.rules.failure
    }
    Note {
        objectName: "ruleNotice"
        Layout.fillWidth: true
        visible: section.rules.notice !== ""
        text: section.rules.notice
        onDismissed: section.rules.dismissAnswer()
    }

    ListView {
        id: list
        objectName: "rulesList"
        Layout.fillWidth: true
        implicitHeight: Math.min(contentHeight, 5 * (Theme.rowHeight + 8))
        visible: count > 0
        clip: true
        reuseItems: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        currentIndex: -1
        model: section.rules
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}
        Accessible.role: Accessible.List
        Accessible.name: section.title
        onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0

        delegate: Item {
            id: rule
            required property int index
            required property string ruleID
            required property string pathText
            required property string detail
            required property int risk
            required property string spoken
            readonly property bool isCurrent: ListView.isCurrentItem
            width: list.width
            height: Theme.rowHeight + 8
            Accessible.role: Accessible.ListItem
            Accessible.name: spoken
            Accessible.focusable: true
            HoverHandler { id: hover }
            Rectangle {
                anchors.fill: parent
                anchors.margins: 2
                radius: Theme.radius
                color: hover.hovered ? Theme.hover : "transparent"
                border.width: rule.isCurrent && list.activeFocus ? 2 : 0
                border.color: Theme.accent
            }
            Column {
                anchors { left: parent.left; leftMargin: Theme.s2; right: badge.left; rightMargin: Theme.s3; verticalCenter: parent.verticalCenter }
                Label {
                    width: parent.width
                    text: rule.pathText
                    elide: Text.ElideMiddle
                    Accessible.ignored: true
                    HoverHandler { id: pathHover }
                    ToolTip.visible: pathHover.hovered && truncated
                    ToolTip.text: rule.pathText
                }
                Label {
                    width: parent.width
                    text: rule.detail
                    kind: "small"
                    elide: Text.ElideRight
                    Accessible.ignored: true
                    HoverHandler { id: detailHover }
                    ToolTip.visible: detailHover.hovered && truncated
                    ToolTip.text: text
                }
            }
            RiskBadge {
                id: badge
                anchors { right: removeButton.left; rightMargin: Theme.s2; verticalCenter: parent.verticalCenter }
                risk: rule.risk
                Accessible.ignored: true
            }
            Button {
                id: removeButton
                anchors { right: parent.right; rightMargin: Theme.s2; verticalCenter: parent.verticalCenter }
                flat: true
                text: qsTr("Remove")
                enabled: !section.rules.isBusy
                Accessible.name: qsTr("Remove the rule for %1").arg(rule.pathText)
                onClicked: confirmation.ask(rule.ruleID, rule.pathText)
            }
        }
    }

    GridLayout {
        Layout.fillWidth: true
        columns: section.isWide ? 2 : 1
        columnSpacing: Theme.s2
        rowSpacing: Theme.s2
        TextField {
            id: pathField
            objectName: "rulePath"
            Layout.fillWidth: true
            placeholderText: qsTr("Path, for example ~/.cache/build-*")
            onAccepted: section.addRule()
        }
        TextField {
            id: nameField
            Layout.fillWidth: true
            placeholderText: qsTr("Name of the group (optional)")
            onAccepted: section.addRule()
        }
        TextField {
            id: noteField
            Layout.fillWidth: true
            Layout.columnSpan: section.isWide ? 2 : 1
            placeholderText: qsTr("Why it is safe to remove (optional)")
            onAccepted: section.addRule()
        }
        ComboBox {
            id: riskBox
            Layout.fillWidth: true
            model: section.rules.risks
            currentIndex: 1
            Accessible.name: qsTr("Risk")
        }
        TextField {
            id: ageField
            Layout.fillWidth: true
            placeholderText: qsTr("Unchanged for so many days (optional)")
            inputMethodHints: Qt.ImhDigitsOnly
            validator: IntValidator { bottom: 0; top: 36500 }
            onAccepted: section.addRule()
        }
        CheckBox {
            id: childrenBox
            Layout.columnSpan: section.isWide ? 2 : 1
            text: qsTr("Each thing directly in the folder is an item of its own")
        }
    }
    Label {
        objectName: "ruleProblem"
        visible: section.rules.problem !== ""
        Layout.fillWidth: true
        text: section.rules.problem
        color: Theme.riskInk[2]
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.s2
        Button {
            objectName: "addRule"
            text: qsTr("Add the rule")
            icon.name: "plus"
            enabled: !section.rules.isBusy
            onClicked: section.addRule()
        }
        Button {
            text: qsTr("Add the rules for Linux")
            flat: true
            enabled: !section.rules.isBusy
            onClicked: section.rules.addPreset()
        }
    }

    Sheet {
        id: confirmation
        property string ruleID
        function ask(id: string, path: string) {
            ruleID = id
            text = qsTr("%1 is no longer looked at. No files are removed.").arg(path)
            open()
        }
        title: qsTr("Remove this rule?")
        iconName: "rules"
        action: qsTr("Remove")
        onAccepted: section.rules.remove(ruleID)
    }
}
