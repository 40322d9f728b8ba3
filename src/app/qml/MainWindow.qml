import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The main window: the packs, the desk with the display arrangement, and the colourways.
ApplicationWindow {
    id: window

    required property AppDelegate app

    title: "Quennet"
    width: 960
    height: 640
    minimumWidth: 720
    minimumHeight: 480

    menuBar: MenuBar {
        Menu {
            title: "&Quennet"
            Action {
                text: "About Quennet"
                onTriggered: window.app.openSettings("about")
            }
            MenuSeparator {}
            Action {
                text: "Settings…"
                shortcut: "Ctrl+,"
                onTriggered: window.app.openSettings()
            }
            Action {
                text: "Check for New Files"
                shortcut: "Ctrl+R"
                onTriggered: window.app.checkForNewFiles()
            }
            MenuItem {
                visible: window.app.signedIn
                height: visible ? implicitHeight : 0
                text: "Sign Out"
                onTriggered: window.app.signOut()
            }
            MenuSeparator {}
            Action {
                text: "Quit Quennet"
                shortcut: StandardKey.Quit
                onTriggered: window.app.quit()
            }
        }
    }

    // Signed out, the window is the sign-in sheet.
    Pane {
        anchors.fill: parent
        visible: window.app.libraryState === "signedOut"
        SignInSheet {
            anchors.centerIn: parent
            width: Math.min(parent.width - 48, 420)
            app: window.app
        }
    }

    StateMessage {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 420)
        visible: window.app.libraryState === "loading"
        busy: true
        title: "Loading your packs…"
    }
    StateMessage {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 420)
        visible: window.app.libraryState === "unreachable"
        symbol: "\u26a0"
        title: "Can't reach the shop"
        detail: "Check your connection and try again."
        actionText: "Try Again"
        onAction: window.app.checkForNewFiles()
    }
}
