import QtQuick
import Korvane.Window
import Korvane.Theme

// How hard it is to get back what was removed: word, sign and colour together.
Rectangle {
    id: badge
    /// 0 low, 1 medium, 2 high.
    property int risk: 0
    readonly property int level: Math.max(0, Math.min(2, risk))
    implicitWidth: Math.max(76, row.implicitWidth + 18)
    implicitHeight: Math.max(22, row.implicitHeight + 6)
    radius: height / 2
    color: Theme.riskFill[level]
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("Risk: %1").arg(Theme.riskWord[level])
    Row {
        id: row
        anchors.centerIn: parent
        spacing: 4
        Icon { name: Theme.riskIcon[badge.level]; size: 13; colour: Theme.riskInk[badge.level]; anchors.verticalCenter: parent.verticalCenter }
        Label {
            text: Theme.riskWord[badge.level]
            kind: "caption"
            color: Theme.riskInk[badge.level]
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
    }
}
