import QtQuick
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// How the audit log is: a sign and words, never colour alone.
RowLayout {
    id: status
    required property DashboardModel dashboard
    readonly property bool isSound: dashboard.chain === DashboardModel.Sound
    readonly property bool isBroken: dashboard.chain === DashboardModel.Broken
    readonly property color ink: isBroken ? Theme.riskInk[2] : isSound ? Theme.riskInk[0] : Theme.textMuted
    spacing: Theme.s2
    visible: dashboard.chainText !== ""
    Icon {
        name: status.isBroken ? "warning" : status.isSound ? "check" : "info"
        size: 16
        colour: status.ink
    }
    Label {
        Layout.fillWidth: true
        text: status.dashboard.chainText
        color: status.ink
        wrapMode: Text.Wrap
    }
}
