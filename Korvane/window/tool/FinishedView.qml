import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

FocusScope {
    id: view
    required property ToolModel model
    signal retry()
    Card {
        anchors.fill: parent
        anchors.margins: Theme.s5
        anchors.topMargin: 0
        OutcomeView {
            anchors.fill: parent
            outcome: view.model.outcome
            focus: true
            onRetry: view.retry()
            onDone: view.model.reset()
        }
    }
}
