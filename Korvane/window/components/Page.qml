import QtQuick

// What the window knows of any screen.
FocusScope {
    /// The row of the navigation: pageID, title, blurb, iconName.
    required property var tool
    /// F5.
    function refresh() {}
    /// Ctrl+F.
    function find() {}
    /// Ctrl+Enter: the one main action.
    function act() {}
}
