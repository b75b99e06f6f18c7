import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// The way from the opened folder to the one on show. What does not fit is left out in the middle.
Item {
    id: bar
    required property var names
    signal chosen(int index)
    readonly property int widest: Math.round(200 * Math.max(1, Theme.scale))
    readonly property int around: 18 // a name's margins
    readonly property int step: 16   // the sign between two
    readonly property var shown: fit(names, width)
    implicitHeight: Theme.controlHeight
    clip: true
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Folders on the way here")

    FontMetrics {
        id: metrics
        font.family: Theme.family
        font.pixelSize: Theme.body
        font.weight: Font.DemiBold
    }
    function widthOf(name: string): real {
        return Math.min(widest, Math.ceil(metrics.advanceWidth(name)) + 2 + around)
    }
    function fit(names: var, room: real): var {
        const all = Array.from(names, (name, index) => ({ name: name, target: index }))
        const last = all.length - 1
        let taken = all.reduce((sum, crumb) => sum + widthOf(crumb.name) + step, 0)
        if (taken <= room || last < 2)
            return all
        taken = widthOf(all[0].name) + widthOf("…") + widthOf(all[last].name) + 3 * step
        let from = last
        while (from > 2 && taken + widthOf(all[from - 1].name) + step <= room)
            taken += widthOf(all[--from].name) + step
        return [all[0], { name: "…", target: from - 1 }, ...all.slice(from)]
    }

    Row {
        height: parent.height
        Repeater {
            model: bar.shown
            Row {
                id: crumb
                required property var modelData
                required property int index
                readonly property bool isHere: modelData.target === bar.names.length - 1
                height: bar.height
                Icon {
                    width: bar.step
                    visible: crumb.index > 0
                    anchors.verticalCenter: parent.verticalCenter
                    name: "chevron-right"
                    size: 14
                    fillMode: Image.Pad
                    mirror: bar.LayoutMirroring.enabled
                }
                AbstractButton {
                    id: button
                    height: parent.height
                    width: bar.widthOf(crumb.modelData.name)
                    hoverEnabled: true
                    focusPolicy: Qt.StrongFocus
                    text: crumb.modelData.name
                    Accessible.name: bar.names[crumb.modelData.target]
                    Accessible.role: Accessible.Button
                    onClicked: bar.chosen(crumb.modelData.target)
                    Keys.onReturnPressed: clicked()
                    Keys.onEnterPressed: clicked()
                    ToolTip.visible: hovered && (text === "…" || (contentItem as Label).truncated)
                    ToolTip.text: bar.names[crumb.modelData.target]
                    contentItem: Label {
                        text: button.text
                        leftPadding: bar.around / 2
                        rightPadding: bar.around / 2
                        elide: Text.ElideMiddle
                        verticalAlignment: Text.AlignVCenter
                        font.weight: crumb.isHere ? Font.DemiBold : Font.Medium
                        color: crumb.isHere ? Theme.text : Theme.accentText
                        Accessible.ignored: true
                    }
                    background: Rectangle {
                        radius: Theme.radius
                        color: button.down ? Theme.pressed : button.hovered ? Theme.hover : "transparent"
                        border.width: button.visualFocus ? 2 : 0
                        border.color: Theme.accent
                    }
                }
            }
        }
    }
}
