import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The first time the user opens Quennet: what it does, where it lives, and one way in.
ApplicationWindow {
    id: window

    required property AppDelegate app
    readonly property bool signedOut: app.library.state === LibraryStatus.SignedOut

    title: qsTr("Welcome to Quennet")
    width: 480
    height: 330
    minimumWidth: 420
    minimumHeight: 300

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: window.close()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 32
        spacing: 14

        Label {
            Layout.fillWidth: true
            text: qsTr("Welcome to Quennet")
            font.pointSize: FontSizes.title
            font.weight: Font.DemiBold
            wrapMode: Text.WordWrap
        }
        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("Quennet puts the wallpaper packs you bought in the Quennet shop on your desktop: on one display or on all of them, in light and dark, changing through the day or shuffled on a schedule.")
        }
        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: qsTr("It lives in the tray. Click its icon to choose a wallpaper; right-click it for the menu. Closing a window leaves Quennet running there.")
        }
        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            color: palette.placeholderText
            text: qsTr("If your desktop has no tray, open Quennet from your apps.")
        }
        Item { Layout.fillHeight: true }
        Button {
            Layout.alignment: Qt.AlignRight
            highlighted: true
            focus: true
            text: window.signedOut ? qsTr("Sign In…") : qsTr("Open Quennet")
            Accessible.name: text
            onClicked: {
                if (window.signedOut)
                    window.app.session.signIn()
                window.app.openMain()
                window.close()
            }
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
        }
    }
}
