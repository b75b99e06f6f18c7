import QtQuick
import QtQuick.Controls
import Korvane.Window
import Korvane.Theme

// The views of a tool's states, and the sheet that asks before anything is removed.
FocusScope {
    id: view
    required property var tool
    required property ToolModel model
    signal chooseFolder()
    function find() {
        const results = loader.item as ResultsView
        if (results)
            results.find()
    }
    function act() {
        if (model.phase === ToolModel.Results)
            ask(model.prepare())
        else if (model.phase === ToolModel.Idle && model.canScan)
            model.scan()
    }
    function ask(question: var) {
        if (question.question !== undefined)
            confirmation.ask(question)
    }

    Loader {
        id: loader
        objectName: "stateLoader"
        anchors.fill: parent
        focus: true
        sourceComponent: [idle, scanning, results, cleaning, finished, failed][view.model.phase]
        // The focus goes from state to state, but is not taken from the sidebar.
        onLoaded: (item as Item).focus = true
    }
    Component {
        id: idle
        IdleView {
            tool: view.tool
            model: view.model
            onChooseFolder: view.chooseFolder()
        }
    }
    Component { id: scanning; ScanView { model: view.model } }
    Component { id: results; ResultsView { model: view.model; onAsk: view.act() } }
    Component { id: cleaning; CleanView { model: view.model } }
    Component {
        id: finished
        FinishedView {
            model: view.model
            onRetry: view.ask(view.model.prepareRetry())
        }
    }
    Component { id: failed; FailedView { model: view.model } }

    ConfirmSheet {
        id: confirmation
        onAccepted: view.model.confirm()
    }
}
