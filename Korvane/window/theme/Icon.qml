import QtQuick
import Korvane.Theme

Image {
    id: icon
    property string name
    property color colour: Theme.textMuted
    property int size: 18
    // #aarrggbb or #rrggbb -> rrggbb
    readonly property string hex: { const s = colour.toString(); return s.length === 9 ? s.substring(3) : s.substring(1) }
    source: name === "" ? "" : "image://icon/" + name + "/" + hex
    sourceSize.width: size
    sourceSize.height: size
    width: size
    height: size
    smooth: true
    Accessible.ignored: true
}
