import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// Asks about a removal with administrator rights, with every path, and says how it ended.
Item {
    id: sheets
    readonly property PrivilegedModel model: WindowContext.privileged
    visible: false

    Connections {
        target: sheets.model
        function onAsked() { question.open() }
        function onFinished() { outcome.open() }
    }
    Sheet {
        id: question
        objectName: "privilegedSheet"
        title: sheets.model.question
        text: sheets.model.consequence
        iconName: "warning"
        danger: true
        action: sheets.model.actionTitle
        actionEnabled: sheets.model.canConfirm
        onAccepted: sheets.model.confirm()
        onRejected: sheets.model.decline()
        ListView {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(260, contentHeight)
            clip: true
            activeFocusOnTab: true
            model: sheets.model.lines
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("What will be removed")
            delegate: Label {
                required property string modelData
                width: ListView.view.width - 14
                text: modelData
                kind: "small"
                color: Theme.text
                wrapMode: Text.WrapAnywhere
                bottomPadding: 4
            }
        }
    }
    Sheet {
        id: outcome
        title: qsTr("Removal with administrator rights")
        text: sheets.model.outcomeText
        cancelTitle: qsTr("Done")
    }
}
