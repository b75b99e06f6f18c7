import QtQuick.Dialogs
import Korvane.Window

// Where the shown operations are saved. In a file of its own, so that the dialogs are loaded when
// they are needed.
FileDialog {
    id: dialog
    required property AuditModel audit
    readonly property var words: audit.words
    title: words.exportTitle
    fileMode: FileDialog.SaveFile
    acceptLabel: qsTr("Save")
    currentFolder: audit.startFolder
    // What is there is asked about by the window, with every kind of dialog in the same way.
    options: FileDialog.DontConfirmOverwrite // qmllint disable
    nameFilters: [qsTr("Comma-separated text (*.csv)"), qsTr("JSON (*.json)")]
    defaultSuffix: selectedNameFilter.index === 1 ? "json" : "csv"
    onAccepted: audit.exportTo(selectedFile, false)
    function show() {
        selectedFile = audit.proposedFile(currentFolder)
        open()
    }
}
