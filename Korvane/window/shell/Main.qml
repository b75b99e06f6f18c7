import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Korvane.Window
import Korvane.Theme

ApplicationWindow {
    id: window
    property string startPage
    property size startSize
    readonly property Page page: loader.item as Page
    readonly property var tool: loader.shown
    property bool mayClose: false

    width: 1180
    height: 760
    minimumWidth: 860
    minimumHeight: 560
    visible: true
    title: tool.title ? qsTr("%1 — Korvane").arg(tool.title) : "Korvane"
    color: Theme.window
    font.family: Theme.family
    font.pixelSize: Theme.body
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    // For a control that the style does not draw itself.
    palette {
        window: Theme.window; windowText: Theme.text; base: Theme.surface; text: Theme.text
        button: Theme.raised; buttonText: Theme.text; highlight: Theme.accent
        highlightedText: Theme.text; mid: Theme.border; dark: Theme.borderStrong
        light: Theme.surface; placeholderText: Theme.textFaint
        toolTipBase: Theme.raised; toolTipText: Theme.text
    }

    function open(id: string) {
        const row = WindowContext.navigation.rowOf(id)
        if (row >= 0) {
            sidebar.currentIndex = row
            loader.forceActiveFocus()
        }
    }

    onClosing: event => {
        if (WindowContext.isCleaning && !mayClose) {
            event.accepted = false
            closeSheet.open()
        } else {
            state.save()
        }
    }
    Component.onCompleted: {
        state.restore()
        open(startPage !== "" ? startPage : state.lastPage)
        if (sidebar.currentIndex < 0)
            sidebar.currentIndex = 0
    }

    WindowState {
        id: state
        window: window
        fixedSize: window.startSize
        page: window.tool.pageID ?? ""
    }

    Shortcut { sequences: ["F5", StandardKey.Refresh]; onActivated: if (window.page) window.page.refresh() }
    Shortcut { sequences: [StandardKey.Find]; onActivated: if (window.page) window.page.find() }
    Shortcut { sequences: ["Ctrl+Return", "Ctrl+Enter"]; onActivated: if (window.page) window.page.act() }
    Shortcut { sequence: "Ctrl+B"; onActivated: tray.open = !tray.open }
    Shortcut { sequences: [StandardKey.Preferences, "Ctrl+,"]; onActivated: window.open("settings") }
    Shortcut { sequences: [StandardKey.Quit]; onActivated: window.close() }
    Repeater {
        model: 9
        Item {
            id: place
            required property int index
            Shortcut { sequence: "Ctrl+" + (place.index + 1); onActivated: sidebar.currentIndex = place.index }
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0
        Sidebar {
            id: sidebar
            Layout.preferredWidth: Math.round(224 * Math.max(1, Math.min(1.25, Theme.scale)))
            Layout.fillHeight: true
            onActivated: loader.show()
        }
        Loader {
            id: loader
            objectName: "pageLoader"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            onLoaded: (item as Item).focus = true
            property var shown: ({})
            function show() {
                if (sidebar.currentIndex < 0)
                    return
                shown = WindowContext.navigation.get(sidebar.currentIndex)
                setSource(Qt.resolvedUrl(shown.source), { tool: shown })
            }
        }
        CollectorTray {
            id: tray
            Layout.fillHeight: true
        }
    }

    Toast { id: toast }
    UpdateSheet { id: updateSheet }
    PrivilegedSheets {}
    Sheet {
        id: closeSheet
        title: qsTr("Korvane is still removing items")
        text: qsTr("Close after the item that is being removed now? Anything already removed stays removed, and is in the log.")
        danger: true
        action: qsTr("Stop and close")
        onAccepted: {
            window.mayClose = true
            window.close()
        }
    }

    Connections {
        target: WindowContext
        function onPageRequested(id) { window.open(id) }
        function onNotified(sentence) { toast.show(sentence) }
        function onUpdateRequested() { updateSheet.start() }
    }
}
