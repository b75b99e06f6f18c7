import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// What was reclaimed, by day or week, and the log in two figures.
Item {
    id: view
    required property ReclaimedChart chart
    required property var words
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
                    text: qsTr("%1 %2 · %3 %4").arg(view.words.operationsRecorded).arg(view.chart.operationsText)
                        .arg(view.words.lifetimeReclaimed).arg(view.chart.lifetimeText)
                }
            }
            Label { text: view.chart.periodText; kind: "subtitle" }
            Row {
                spacing: 2
                Repeater {
                    model: view.chart.periods
                    Button {
                        required property string modelData
                        required property int index
                        objectName: "period" + index
                        text: modelData
                        checkable: true
                        autoExclusive: true
                        checked: view.chart.period === index
                        flat: !checked
                        onClicked: view.chart.period = index
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
                visible: !view.chart.periodIsEmpty
                bars: view.chart.bars
                ticks: view.chart.ticks
                name: qsTr("Space reclaimed, %1").arg(view.chart.periods[view.chart.period])
            }
            Label {
                anchors.centerIn: parent
                visible: view.chart.periodIsEmpty
                text: view.words.emptyPeriod
                color: Theme.textMuted
            }
        }
    }
}
