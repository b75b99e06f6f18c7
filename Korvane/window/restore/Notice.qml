import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// What stands in place of a list: that it is being read, or why there is nothing in it.
Column {
    id: notice
    property bool busy: false
    property string iconName
    property string title
    property string text
    spacing: Theme.s3
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: !notice.busy
        width: 64
        height: 64
        radius: 32
        color: Theme.selected
        Icon { anchors.centerIn: parent; name: notice.iconName; size: 28; colour: Theme.accentText }
    }
    Label {
        width: parent.width
        text: notice.title
        kind: "subtitle"
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        width: parent.width
        visible: text !== ""
        text: notice.text
        color: Theme.textMuted
        wrapMode: Text.Wrap
        lineHeight: 1.2
        horizontalAlignment: Text.AlignHCenter
    }
    ProgressBar {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: notice.busy
        indeterminate: true
        Accessible.name: notice.title
    }
}
