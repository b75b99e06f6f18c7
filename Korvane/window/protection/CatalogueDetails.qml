import QtQuick
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// Everything that the catalogue says about one place.
ColumnLayout {
    id: details
    /// A row of the catalogue by the names of its roles.
    required property var place
    visible: place.name !== undefined
    spacing: Theme.s3

    component Fact: ColumnLayout {
        id: fact
        required property string name
        property string value
        Layout.fillWidth: true
        spacing: 2
        Label { text: fact.name; kind: "caption"; font.weight: Font.DemiBold }
        Label {
            Layout.fillWidth: true
            text: fact.value
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            lineHeight: 1.15
        }
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2
        Label {
            Layout.fillWidth: true
            text: details.place.name ?? ""
            kind: "subtitle"
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            Layout.fillWidth: true
            text: details.place.category ?? ""
            kind: "small"
            wrapMode: Text.Wrap
        }
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: pattern.implicitHeight + 16
        radius: Theme.radius
        color: Theme.dark ? Theme.hover : Theme.window
        Label {
            id: pattern
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 10 }
            text: details.place.pattern ?? ""
            font.family: "monospace"
            font.pixelSize: Theme.small
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            Accessible.name: qsTr("Where: %1").arg(text)
        }
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 6
        RiskBadge { risk: details.place.risk ?? 0 }
        Label {
            Layout.fillWidth: true
            text: details.place.riskExplanation ?? ""
            color: Theme.textMuted
            wrapMode: Text.Wrap
        }
    }
    Fact { name: qsTr("Why it is safe"); value: details.place.whySafe ?? "" }
    Fact { name: qsTr("Tool"); value: details.place.toolName ?? "" }
    Fact { name: qsTr("Identifier"); value: details.place.rowID ?? "" }
}
