import QtQuick
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// A card with a heading; what is put inside stands below it.
Card {
    id: section
    property string title
    default property alias body: column.data
    implicitHeight: column.implicitHeight + 2 * Theme.s4
    ColumnLayout {
        id: column
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.s4 }
        spacing: Theme.s3
        Label {
            visible: text !== ""
            Layout.fillWidth: true
            text: section.title
            kind: "subtitle"
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
    }
}
