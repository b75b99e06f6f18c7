import QtQuick
import Korvane.Window
import Korvane.Theme

// How full the disk with the home folder is, for the foot of the sidebar.
Column {
    id: gauge
    readonly property DashboardModel dashboard: WindowContext.dashboard
    spacing: 6
    opacity: dashboard.freeText === "" ? 0 : 1
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1, %2").arg(dashboard.diskName).arg(dashboard.freeText)

    Item {
        width: parent.width
        height: name.height
        Label {
            id: name
            anchors { left: parent.left; right: free.left; rightMargin: Theme.s2 }
            text: gauge.dashboard.diskName
            kind: "small"
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Label {
            id: free
            anchors.right: parent.right
            text: gauge.dashboard.freeText
            kind: "small"
            color: gauge.dashboard.isNearlyFull ? Theme.riskInk[2] : Theme.text
            Accessible.ignored: true
        }
    }
    UsageBar {
        width: parent.width
        share: gauge.dashboard.usedShare
        warns: gauge.dashboard.isNearlyFull
    }
}
