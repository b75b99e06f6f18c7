import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// Whether the hash chain holds, in words, with a sign and a colour.
Rectangle {
    id: card
    required property AuditModel audit
    readonly property var words: audit.words
    signal acknowledgeWanted()
    readonly property AuditChain chain: audit.chain
    readonly property int integrity: chain.integrity
    readonly property bool neutral: audit.verifying || integrity === AuditChain.Unknown || integrity === AuditChain.NothingToVerify
    readonly property int level: integrity === AuditChain.Verified ? 0 : integrity === AuditChain.Unverifiable ? 1 : 2
    readonly property color ink: neutral ? Theme.textMuted : Theme.riskInk[level]
    implicitHeight: column.implicitHeight + 2 * Theme.s2
    radius: Theme.radiusLarge
    color: neutral ? Theme.surface : Theme.riskFill[level]
    border.width: neutral ? 1 : 0
    border.color: Theme.border

    ColumnLayout {
        id: column
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; leftMargin: Theme.s4; rightMargin: Theme.s2 }
        spacing: Theme.s1
        RowLayout {
            spacing: Theme.s3
            Icon {
                name: card.neutral ? "info" : card.level === 0 ? "check" : card.level === 1 ? "eye" : "warning"
                colour: card.ink
            }
            Rectangle {
                visible: badge.text !== "" && !card.neutral
                implicitWidth: badge.implicitWidth + 20
                implicitHeight: badge.implicitHeight + 8
                radius: height / 2
                color: Theme.surface
                Label {
                    id: badge
                    anchors.centerIn: parent
                    text: card.chain.badge
                    kind: "caption"
                    font.weight: Font.DemiBold
                    color: card.ink
                }
            }
            Label {
                objectName: "integrityText"
                Layout.fillWidth: true
                text: card.audit.verifying ? qsTr("Verifying the hash chain…") : card.chain.text
                color: card.ink
                wrapMode: Text.Wrap
            }
            Button {
                objectName: "acknowledgeButton"
                visible: card.integrity === AuditChain.Broken && !card.audit.verifying
                text: card.words.acknowledge
                onClicked: card.acknowledgeWanted()
                Accessible.description: card.words.acknowledgeHelp
                ToolTip.visible: hovered
                ToolTip.delay: 500
                ToolTip.text: card.words.acknowledgeHelp
            }
            Button {
                objectName: "verifyButton"
                text: qsTr("Verify again")
                flat: true
                enabled: !card.audit.verifying
                onClicked: card.audit.refresh()
            }
        }
        Label {
            visible: text !== ""
            Layout.fillWidth: true
            text: card.chain.keyWarning
            color: card.ink
            kind: "small"
            wrapMode: Text.Wrap
        }
    }
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Integrity of the log")
}
