import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// Bars over time, with plain rectangles: works with every renderer. Formats nothing itself.
Item {
    id: chart
    /// {label, text, share of the height} from the oldest.
    property var bars: []
    /// {text, share of the height} from the axis upwards.
    property var ticks: []
    property string name
    property int current: -1
    readonly property int padLeft: Math.ceil(widest.width) + 12
    readonly property int padBottom: Math.ceil(metrics.height) + 8
    readonly property int padTop: Math.ceil(metrics.height / 2)
    readonly property double plotWidth: Math.max(0, width - padLeft)
    readonly property int plotHeight: Math.max(0, height - padBottom - padTop)
    readonly property double slot: bars.length > 0 ? plotWidth / bars.length : 1
    /// Every how many bars there is room for a label; the newest always has one, which may have to
    /// stand half its width to the left.
    readonly property int stride: Math.max(1, Math.ceil((label.width * 1.5 + 8) / slot))

    function select(bar: int) { current = Math.max(0, Math.min(bars.length - 1, bar)) }
    onBarsChanged: current = Math.min(current, bars.length - 1)
    activeFocusOnTab: true
    Keys.onRightPressed: select(current < 0 ? 0 : current + 1)
    Keys.onLeftPressed: select(current < 0 ? bars.length - 1 : current - 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            select(event.key === Qt.Key_Home ? 0 : bars.length - 1)
            event.accepted = true
        }
    }
    onActiveFocusChanged: if (!activeFocus) current = -1
    Accessible.role: Accessible.Chart
    Accessible.name: name
    Accessible.focusable: true
    Accessible.description: current >= 0 ? bars[current].text : qsTr("The left and right arrow keys read each bar")

    FontMetrics { id: metrics; font.family: Theme.family; font.pixelSize: Theme.caption }
    TextMetrics {
        id: widest
        font: metrics.font
        text: {
            let longest = ""
            for (const tick of chart.ticks)
                longest = tick.text.length > longest.length ? tick.text : longest
            return longest
        }
    }
    TextMetrics { id: label; font: metrics.font; text: "30 Sep" }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -6
        radius: Theme.radius
        color: "transparent"
        border.width: 2
        border.color: Theme.accent
        visible: chart.activeFocus
    }

    Repeater {
        model: chart.ticks
        Item {
            id: tick
            required property var modelData
            required property int index
            y: chart.padTop + Math.round(chart.plotHeight * (1 - modelData.share))
            width: chart.width
            Rectangle {
                x: chart.padLeft
                width: chart.plotWidth
                height: 1
                color: Theme.border
                opacity: tick.index === 0 ? 1 : 0.6
            }
            Label {
                width: chart.padLeft - 12
                y: -height / 2
                horizontalAlignment: Text.AlignRight
                text: tick.modelData.text
                kind: "caption"
                color: Theme.textFaint
                Accessible.ignored: true
            }
        }
    }
    Repeater {
        model: chart.bars
        Item {
            id: bar
            required property var modelData
            required property int index
            readonly property bool chosen: hover.hovered || chart.current === index
            x: chart.padLeft + index * chart.slot
            y: chart.padTop
            width: chart.slot
            height: chart.plotHeight
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.text
            Rectangle {
                // Whole pixels: a bar that starts between two looks smeared.
                width: Math.max(3, Math.min(26, Math.round(chart.slot * 0.64)))
                height: bar.modelData.share > 0 ? Math.max(2, Math.round(parent.height * bar.modelData.share)) : 0
                x: Math.round(bar.x + (bar.width - width) / 2) - bar.x
                y: parent.height - height
                radius: Math.min(4, width / 3)
                color: bar.chosen ? Theme.accentHover : Theme.accent
                opacity: chart.current >= 0 && chart.current !== bar.index ? 0.55 : 1
                // A square foot.
                Rectangle {
                    anchors.bottom: parent.bottom
                    width: parent.width
                    height: Math.min(parent.height, parent.radius)
                    color: parent.color
                }
            }
            HoverHandler { id: hover }
            ToolTip.visible: hover.hovered || (chart.activeFocus && chart.current === bar.index)
            ToolTip.text: modelData.text
            Label {
                visible: (chart.bars.length - 1 - bar.index) % chart.stride === 0
                // The newest bar's label would stick out.
                x: Math.min((parent.width - width) / 2, chart.width - bar.x - width)
                y: parent.height + 6
                text: bar.modelData.label
                kind: "caption"
                color: Theme.textFaint
                Accessible.ignored: true
            }
        }
    }
}
