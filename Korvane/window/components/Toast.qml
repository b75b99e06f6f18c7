import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// A sentence at the foot of the window that goes by itself.
Popup {
    id: toast
    function show(sentence: string) {
        label.text = sentence
        open()
        timer.restart()
    }
    parent: Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: parent.height - height - 84
    width: Math.min(label.implicitWidth + 40, Math.min(640, parent.width - 80))
    padding: 12
    horizontalPadding: 20
    closePolicy: Popup.NoAutoClose
    background: Rectangle { radius: Theme.radiusLarge; color: Theme.dark ? "#39414E" : "#262C36" }
    contentItem: Label {
        id: label
        color: "#FFFFFF"
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.AlertMessage
    }
    Timer {
        id: timer
        interval: 6000
        onTriggered: toast.close()
    }
}
