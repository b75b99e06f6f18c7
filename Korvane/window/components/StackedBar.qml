import QtQuick
import Korvane.Window
import Korvane.Theme

// Shares of a whole, largest first: {title, text, share}.
Column {
    id: bar
    property var parts: []
    function colourOf(index: int): color {
        return index === 4 && parts.length === 5 ? Theme.textFaint : Theme.series[index % 6]
    }
    spacing: 10
    Row {
        id: strip
        width: parent.width
        height: 10
        spacing: 2
        Repeater {
            model: bar.parts
            Rectangle {
                required property var modelData
                required property int index
                width: Math.max(3, Math.floor((strip.width - 2 * (bar.parts.length - 1)) * modelData.share))
                height: strip.height
                radius: 3
                color: bar.colourOf(index)
            }
        }
    }
    Flow {
        width: parent.width
        spacing: 18
        Repeater {
            model: bar.parts
            Row {
                id: legend
                required property var modelData
                required property int index
                spacing: 6
                Rectangle { width: 9; height: 9; radius: 3; color: bar.colourOf(legend.index); anchors.verticalCenter: parent.verticalCenter }
                Label { text: legend.modelData.title; kind: "small"; elide: Text.ElideMiddle; width: Math.min(implicitWidth, 220) }
                Label { text: legend.modelData.text; kind: "small"; color: Theme.text; font.weight: Font.Medium }
            }
        }
    }
}
