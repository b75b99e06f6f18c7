import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// What was reclaimed, by day or week, and the log in two figures.
Item {
    id: view
    required property AuditModel audit
    readonly property var words: audit.words
    implicitHeight: column.implicitHeight + Theme.s4 + Theme.s3

    ColumnLayout {
        id: column
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.s4 }
        spacing: Theme.s3
        RowLayout {
            spacing: Theme.s3
            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true
                Label { text: qsTr("Space reclaimed"); kind: "subtitle"; Accessible.role: Accessible.Heading }
                Label {
                    Layout.fillWidth: true
                    wrapMode: Text.Wrap
                    kind: "small"
                    text: qsTr("%1 %2 · %3 %4").arg(view.words.operationsRecorded).arg(view.audit.operationsText)
                        .arg(view.words.lifetimeReclaimed).arg(view.audit.lifetimeText)
                }
            }
            Label { text: view.audit.periodText; kind: "subtitle" }
            Row {
                spacing: 2
                Repeater {
                    model: view.audit.periods
                    Button {
                        required property string modelData
                        required property int index
                        objectName: "period" + index
                        text: modelData
                        checkable: true
                        autoExclusive: true
                        checked: view.audit.period === index
                        flat: !checked
                        onClicked: view.audit.period = index
                        Accessible.role: Accessible.RadioButton
                        Accessible.checked: checked
                    }
                }
            }
        }
        Item {
            Layout.fillWidth: true
            implicitHeight: Math.round(150 * Math.max(1, Math.min(1.3, Theme.scale)))
            BarChart {
                anchors.fill: parent
                visible: !view.audit.periodIsEmpty
                bars: view.audit.bars
                ticks: view.audit.ticks
                name: qsTr("Space reclaimed, %1").arg(view.audit.periods[view.audit.period])
            }
            Label {
                anchors.centerIn: parent
                visible: view.audit.periodIsEmpty
                text: view.words.emptyPeriod
                color: Theme.textMuted
            }
        }
    }
}
