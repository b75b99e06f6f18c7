import QtQuick
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme
RowLayout {
    id: header
    property string title
    property string blurb
    default property alias actions: slot.data
    spacing: Theme.s3
    ColumnLayout {
        spacing: 3
        Layout.fillWidth: true
        Label { text: header.title; kind: "title"; Accessible.role: Accessible.Heading }
        Label { text: header.blurb; kind: "small"; font.pixelSize: Theme.body; wrapMode: Text.Wrap; Layout.fillWidth: true; visible: text !== "" }
    }
    RowLayout { id: slot; spacing: Theme.s2; Layout.alignment: Qt.AlignTop; Layout.fillWidth: false }
}
