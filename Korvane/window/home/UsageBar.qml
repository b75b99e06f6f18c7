import QtQuick
import Korvane.Theme

// The used part of a disk.
Rectangle {
    id: bar
    property double share
    property bool warns
    implicitHeight: 6
    radius: height / 2
    color: Theme.track
    Accessible.ignored: true
    Rectangle {
        anchors.left: parent.left
        width: Math.max(height, parent.width * bar.share)
        height: parent.height
        radius: parent.radius
        color: bar.warns ? Theme.danger : Theme.accent
    }
}
