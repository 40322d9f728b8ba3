import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The tray panel: what the library can show now, and the notice line.
Rectangle {
    id: panel

    required property AppDelegate app
    signal closeRequested()

    implicitWidth: 360
    implicitHeight: content.implicitHeight + 2 * content.y
    color: palette.window
    border.color: palette.mid
    // Square: without a compositor, rounded corners would show black.
    radius: 0

    ColumnLayout {
        id: content
        x: 16
        y: 14
        width: panel.width - 2 * x
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            Label {
                Layout.fillWidth: true
                text: "Quennet"
                font.pixelSize: 15
                font.weight: Font.DemiBold
            }
            ToolButton {
                text: "Open Quennet"
                onClicked: {
                    panel.closeRequested()
                    panel.app.openMain()
                }
            }
        }

        StateMessage {
            Layout.fillWidth: true
            Layout.topMargin: 24
            Layout.bottomMargin: 24
            visible: panel.app.libraryState === "loading"
            busy: true
            title: "Loading your packs…"
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.topMargin: 12
            Layout.bottomMargin: 12
            visible: panel.app.libraryState === "signedOut"
            spacing: 12
            Label {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: "Sign in to use your packs"
                color: palette.placeholderText
            }
            SignInSheet {
                Layout.fillWidth: true
                app: panel.app
            }
        }
        StateMessage {
            Layout.fillWidth: true
            Layout.topMargin: 24
            Layout.bottomMargin: 24
            visible: panel.app.libraryState === "unreachable"
            symbol: "\u26a0"
            title: "Can't reach the shop"
            detail: "Check your connection and try again."
            actionText: "Try Again"
            onAction: panel.app.checkForNewFiles()
        }

        NoticeView {
            Layout.fillWidth: true
            notice: panel.app.notice
        }

        MenuSeparator {
            Layout.fillWidth: true
            padding: 0
        }
        RowLayout {
            Layout.fillWidth: true
            Button {
                flat: true
                text: "Settings…"
                onClicked: {
                    panel.closeRequested()
                    panel.app.openSettings()
                }
            }
            Item { Layout.fillWidth: true }
            Button {
                flat: true
                text: "Quit Quennet"
                onClicked: panel.app.quit()
            }
        }
    }
}
