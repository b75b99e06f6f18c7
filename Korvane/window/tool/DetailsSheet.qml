import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

// Everything there is to know of one item: why it is listed, how risky it is, how to keep it.
Sheet {
    id: sheet
    objectName: "detailsSheet"
    required property ToolModel model
    property var item: ({})
    function show(item: var) {
        sheet.item = item
        open()
    }
    title: item.title ?? ""
    cancelTitle: qsTr("Close")
    width: Math.min(Math.round(560 * Math.max(1, Math.min(1.25, Theme.scale))), parent ? parent.width - 64 : 560)

    Row {
        id: pictures
        visible: (sheet.item.picture ?? "") !== ""
        Layout.fillWidth: true
        spacing: Theme.s3
        Repeater {
            model: visible ? [{ source: sheet.item.picture, text: qsTr("This picture") },
                              { source: sheet.item.pictureKept, text: qsTr("The one that stays") }] : []
            Column {
                id: picture
                required property var modelData
                width: (pictures.width - pictures.spacing) / 2
                spacing: 4
                Rectangle {
                    width: parent.width
                    height: Math.round(width * 0.66)
                    radius: Theme.radius
                    color: Theme.dark ? Theme.surface : Theme.window
                    Image {
                        anchors.fill: parent
                        anchors.margins: 4
                        source: picture.modelData.source ?? ""
                        sourceSize.width: 480
                        sourceSize.height: 480
                        fillMode: Image.PreserveAspectFit
                        asynchronous: true
                        Accessible.role: Accessible.Graphic
                        Accessible.name: picture.modelData.text
                    }
                }
                Label { text: picture.modelData.text; kind: "small" }
            }
        }
    }
    Label { Layout.fillWidth: true; text: sheet.item.path ?? ""; kind: "small"; wrapMode: Text.WrapAnywhere }
    RowLayout {
        spacing: Theme.s3
        RiskBadge { risk: sheet.item.risk ?? 0 }
        Label { text: sheet.item.sizeText ?? ""; font.weight: Font.Medium }
        Label { text: sheet.item.dateText ?? ""; color: Theme.textMuted; Layout.fillWidth: true; elide: Text.ElideRight }
    }
    Label { Layout.fillWidth: true; text: sheet.item.riskExplanation ?? ""; kind: "small"; wrapMode: Text.Wrap }
    Label {
        Layout.fillWidth: true
        visible: text !== ""
        text: sheet.item.refusal ?? ""
        color: Theme.riskInk[1]
        wrapMode: Text.Wrap
    }
    Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.border }
    Label { text: qsTr("Why it is listed"); kind: "small"; font.weight: Font.DemiBold }
    Label { Layout.fillWidth: true; visible: text !== ""; text: sheet.item.rule ?? ""; font.weight: Font.Medium; wrapMode: Text.Wrap }
    Label { Layout.fillWidth: true; visible: text !== ""; text: sheet.item.reason ?? ""; wrapMode: Text.Wrap; lineHeight: 1.2 }
    Label { Layout.fillWidth: true; visible: text !== ""; text: sheet.item.keptText ?? ""; kind: "small" }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.s2
        Button { text: qsTr("Show in the file manager"); icon.name: "reveal"; onClicked: WindowContext.reveal(sheet.item.url) }
        Button {
            visible: sheet.item.isDuplicate ?? false
            text: qsTr("Keep this copy")
            icon.name: "check"
            onClicked: {
                sheet.model.results.keep(sheet.item.row)
                sheet.close()
            }
        }
        Button {
            text: qsTr("Protect this path")
            icon.name: "shield"
            onClicked: {
                sheet.model.protect(sheet.item.row)
                sheet.close()
            }
        }
    }
}
