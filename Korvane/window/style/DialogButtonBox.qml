import QtQuick
import QtQuick.Templates as T
import Korvane.Theme

T.DialogButtonBox {
    id: control
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    contentWidth: (contentItem as ListView).contentWidth
    spacing: Theme.s2
    padding: Theme.s3
    alignment: Qt.AlignRight
    delegate: Button {
        highlighted: T.DialogButtonBox.buttonRole === T.DialogButtonBox.AcceptRole // qmllint disable
    }
    contentItem: ListView {
        implicitWidth: contentWidth
        implicitHeight: Theme.controlHeight
        model: control.contentModel
        spacing: control.spacing
        orientation: ListView.Horizontal
        boundsBehavior: Flickable.StopAtBounds
        snapMode: ListView.SnapToItem
    }
    background: Rectangle { color: control.palette.window }
}
