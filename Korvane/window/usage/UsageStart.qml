import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// What the tool is for, where there is nothing to show yet.
ColumnLayout {
    id: start
    required property DiskUsageModel usage
    required property var tool
    signal folderWanted()
    spacing: 0
    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        implicitWidth: 104
        implicitHeight: 104
        radius: 30
        color: Theme.selected
        Icon { anchors.centerIn: parent; name: start.tool.iconName; size: 52; colour: Theme.accentText }
    }
    Label {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: Theme.s4
        text: start.tool.title
        kind: "title"
        font.pixelSize: Theme.title + 6
        Accessible.role: Accessible.Heading
    }
    Label {
        Layout.fillWidth: true
        Layout.topMargin: Theme.s2
        text: start.tool.blurb
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        color: Theme.textMuted
        font.pixelSize: Theme.subtitle - 1
    }
    Button {
        objectName: "measureHomeButton"
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: Theme.s5
        implicitHeight: Math.max(42, Theme.controlHeight + 8)
        horizontalPadding: 24
        focus: true
        highlighted: true
        text: qsTr("Measure my home folder")
        icon.name: "home"
        onClicked: start.usage.openHome()
    }
    Button {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: Theme.s2
        flat: true
        text: qsTr("Choose folder…")
        onClicked: start.folderWanted()
    }
    Label {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: Theme.s2
        text: qsTr("You can also drop a folder here. Nothing is changed.")
        kind: "small"
    }
}
