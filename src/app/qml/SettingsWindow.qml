import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// Settings, one pane at a time from the sidebar: general, account, storage and about.
ApplicationWindow {
    id: window

    required property AppDelegate app
    readonly property var panes: [
        { key: "general", title: "General" },
        { key: "account", title: "Account" },
        { key: "storage", title: "Storage" },
        { key: "about", title: "About" }
    ]

    title: "Quennet Settings"
    width: 680
    height: 480
    minimumWidth: 560
    minimumHeight: 380

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 170
            color: Qt.darker(palette.window, 1.04)
            ListView {
                id: sidebar
                anchors.fill: parent
                anchors.margins: 8
                model: window.panes
                currentIndex: window.panes.findIndex(p => p.key === window.app.settingsPane)
                delegate: ItemDelegate {
                    required property var modelData
                    required property int index
                    width: ListView.view.width
                    text: modelData.title
                    highlighted: ListView.isCurrentItem
                    onClicked: window.app.settingsPane = modelData.key
                }
            }
        }
        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 1
            color: palette.mid
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: 24
            currentIndex: sidebar.currentIndex

            GeneralPane { app: window.app }
            AccountPane { app: window.app }
            StoragePane { app: window.app }
            AboutPane { app: window.app }
        }
    }

    component PaneTitle: Label {
        font.pixelSize: 20
        font.weight: Font.DemiBold
        Layout.bottomMargin: 8
    }
    component Explanation: Label {
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        color: palette.placeholderText
    }

    component GeneralPane: ColumnLayout {
        required property AppDelegate app
        spacing: 6
        PaneTitle { text: "General" }
        Switch {
            text: "Open at login"
            checked: app.loginItem.on
            onToggled: app.loginItem.on = checked
        }
        Explanation {
            Layout.leftMargin: 4
            text: "Starts in the tray, so Shuffle and Do Not Disturb wallpapers keep working."
        }
        Item { Layout.fillHeight: true }
    }

    component AccountPane: ColumnLayout {
        required property AppDelegate app
        spacing: 6
        PaneTitle { text: "Account" }
        GridLayout {
            visible: app.signedIn
            columns: 2
            columnSpacing: 16
            Label { text: "Email"; color: palette.placeholderText }
            Label { text: app.account.email !== "" ? app.account.email : "Signed in" }
        }
        Button {
            visible: app.signedIn
            Layout.topMargin: 8
            text: "Sign Out"
            onClicked: app.signOut()
        }
        SignInSheet {
            visible: !app.signedIn
            Layout.fillWidth: true
            Layout.topMargin: 24
            app: parent.app
        }
        Item { Layout.fillHeight: true }
    }

    component StoragePane: ColumnLayout {
        required property AppDelegate app
        spacing: 6
        PaneTitle { text: "Storage" }
        Item { Layout.fillHeight: true }
    }

    component AboutPane: ColumnLayout {
        required property AppDelegate app
        spacing: 6
        PaneTitle { text: "Quennet" }
        Label { text: "Version " + app.version; color: palette.placeholderText }
        Label {
            Layout.topMargin: 16
            text: "Acknowledgements"
            font.weight: Font.DemiBold
        }
        ListView {
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: app.acknowledgements
            delegate: RowLayout {
                required property var modelData
                width: ListView.view.width
                Label { text: modelData.name; Layout.preferredWidth: 110 }
                Label { text: modelData.licence; Layout.preferredWidth: 110; color: palette.placeholderText }
                Label { text: modelData.use; Layout.fillWidth: true; elide: Text.ElideRight; color: palette.placeholderText }
            }
        }
    }
}
