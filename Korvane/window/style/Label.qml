import QtQuick
import QtQuick.Templates as T
import Korvane.Theme

// Names of files are shown as they are: markup in them is part of the name.
T.Label {
    color: enabled ? Theme.text : Theme.textFaint
    linkColor: Theme.accentText
    textFormat: Text.PlainText
    font.family: Theme.family
    font.pixelSize: Theme.body
}
