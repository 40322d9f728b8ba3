import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// Settings, one pane at a time from the sidebar: general, account, storage and about.
ApplicationWindow {
    id: window

    required property AppDelegate app
    readonly property var panes: [
        { key: "general", title: qsTr("General") },
        { key: "account", title: qsTr("Account") },
        { key: "storage", title: qsTr("Storage") },
        { key: "about", title: qsTr("About") }
    ]

    title: qsTr("Quennet Settings")
    width: 700
    height: 540
    minimumWidth: 600
    minimumHeight: 440

    RowLayout {
        anchors.fill: parent
        spacing: 0
        Keys.onEscapePressed: window.close()

        // The panes, pinned on the left.
        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 180
            color: Qt.darker(palette.window, palette.window.hslLightness < 0.5 ? 1.15 : 1.035)
            ListView {
                id: sidebar
                anchors.fill: parent
                anchors.topMargin: 12
                interactive: false
                model: window.panes
                currentIndex: window.panes.findIndex(p => p.key === window.app.settingsPane)
                // The keyboard starts here; the arrows change the pane, as a click does.
                focus: true
                activeFocusOnTab: true
                keyNavigationEnabled: false
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Settings")
                Keys.onUpPressed: showPane(currentIndex - 1)
                Keys.onDownPressed: showPane(currentIndex + 1)
                function showPane(index) {
                    if (index >= 0 && index < window.panes.length)
                        window.app.settingsPane = window.panes[index].key
                }
                delegate: ItemDelegate {
                    id: paneRow
                    required property var modelData
                    required property int index
                    readonly property bool current: ListView.isCurrentItem
                    width: ListView.view.width
                    height: Math.max(36, implicitHeight)
                    leftPadding: 20
                    Accessible.selectable: true
                    Accessible.selected: current
                    text: modelData.title
                    background: Rectangle {
                        anchors.fill: parent
                        anchors.leftMargin: 8
                        anchors.rightMargin: 8
                        anchors.topMargin: 2
                        anchors.bottomMargin: 2
                        radius: 7
                        color: paneRow.current ? palette.highlight
                                               : paneRow.hovered ? Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.06)
                                                                 : "transparent"
                        FocusRing { radius: 10; visible: paneRow.current && sidebar.activeFocus }
                    }
                    contentItem: Label {
                        text: paneRow.text
                        verticalAlignment: Text.AlignVCenter
                        color: paneRow.current ? palette.highlightedText : palette.windowText
                    }
                    onClicked: window.app.settingsPane = modelData.key
                }
            }
        }
        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 1
            color: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.12)
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: 28
            Layout.bottomMargin: 16
            currentIndex: sidebar.currentIndex

            GeneralPane { app: window.app }
            AccountPane { app: window.app }
            StoragePane { app: window.app }
            AboutPane { app: window.app }
        }
    }

    component PaneTitle: Label {
        font.pointSize: FontSizes.title
        font.weight: Font.DemiBold
        Layout.bottomMargin: 10
    }
    component SectionTitle: Label {
        Layout.topMargin: 14
        font.weight: Font.DemiBold
    }
    component Explanation: Label {
        // It shows pack and wallpaper names.
        textFormat: Text.PlainText
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        color: palette.placeholderText
        font.pointSize: FontSizes.caption
    }
    // A switch with its words to the left, as desktop settings lay them out.
    component SettingSwitch: RowLayout {
        id: setting
        property alias text: title.text
        property alias checked: control.checked
        signal toggled(bool checked)
        Layout.fillWidth: true
        Label { id: title; Layout.fillWidth: true; wrapMode: Text.WordWrap; verticalAlignment: Text.AlignVCenter }
        Switch {
            id: control
            padding: 0
            Accessible.name: title.text
            onToggled: setting.toggled(checked)
        }
    }

    component GeneralPane: ScrollView {
        id: generalPane
        required property AppDelegate app
        contentWidth: availableWidth
        ColumnLayout {
            width: generalPane.availableWidth
            spacing: 10
            PaneTitle { text: qsTr("General") }
            SettingSwitch {
                text: qsTr("Open at login")
                checked: generalPane.app.loginItem.on
                onToggled: checked => generalPane.app.loginItem.on = checked
            }
            Explanation {
                text: qsTr("Starts in the tray, so Shuffle and Do Not Disturb wallpapers keep working.")
            }
            SettingSwitch {
                text: qsTr("Show what's new after updates")
                checked: generalPane.app.greeting.showsWhatsNew
                onToggled: checked => generalPane.app.greeting.showsWhatsNew = checked
            }
            SettingSwitch {
                text: qsTr("Play feedback sounds")
                checked: generalPane.app.sounds.on
                onToggled: checked => generalPane.app.sounds.on = checked
            }
            Explanation {
                text: qsTr("A sound when a wallpaper is set, when setting one fails and when you sign in, if your desktop's event sounds are on.")
            }

            SectionTitle { text: qsTr("Shuffle") }
            SettingSwitch {
                text: qsTr("Shuffle wallpapers")
                checked: generalPane.app.shuffleView.isOn
                onToggled: checked => generalPane.app.shuffleView.isOn = checked
            }
            GridLayout {
                Layout.fillWidth: true
                columns: 2
                columnSpacing: 12
                rowSpacing: 6
                Label { text: qsTr("How often"); Layout.fillWidth: true }
                ComboBox {
                    Layout.alignment: Qt.AlignRight
                    Layout.rightMargin: 4
                    Layout.preferredWidth: 190
                    model: generalPane.app.shuffleView.intervals
                    currentIndex: generalPane.app.shuffleView.interval
                    onActivated: index => generalPane.app.shuffleView.interval = index
                    Accessible.name: qsTr("How often")
                }
                Label { text: qsTr("Shuffle from"); Layout.fillWidth: true }
                ComboBox {
                    Layout.alignment: Qt.AlignRight
                    Layout.rightMargin: 4
                    Layout.preferredWidth: 190
                    model: generalPane.app.shuffleView.sources
                    currentIndex: generalPane.app.shuffleView.source
                    onActivated: index => generalPane.app.shuffleView.source = index
                    Accessible.name: qsTr("Shuffle from")
                }
            }
            SettingSwitch {
                text: qsTr("Different wallpaper on each display")
                checked: generalPane.app.shuffleView.differentOnEachDisplay
                onToggled: checked => generalPane.app.shuffleView.differentOnEachDisplay = checked
            }
            Explanation {
                visible: text !== ""
                text: generalPane.app.shuffleView.status
            }

            SectionTitle { text: qsTr("Do Not Disturb") }
            GridLayout {
                id: focusRows
                readonly property FocusFilter filter: generalPane.app.focusFilter
                readonly property var wallpapers: [{ key: "", text: qsTr("No wallpaper") }].concat(
                    filter.wallpaperOptions.map(option => ({ key: option.key, text: qsTr("%1 – %2").arg(option.name).arg(option.packName) })))
                Layout.fillWidth: true
                columns: 2
                columnSpacing: 12
                rowSpacing: 6
                Label { text: qsTr("Wallpaper"); Layout.fillWidth: true }
                NameChoice {
                    Layout.alignment: Qt.AlignRight
                    Layout.rightMargin: 4
                    Layout.preferredWidth: 190
                    model: focusRows.wallpapers
                    textRole: "text"
                    currentIndex: Math.max(0, focusRows.wallpapers.findIndex(entry => entry.key === focusRows.filter.wallpaper))
                    onActivated: index => focusRows.filter.wallpaper = focusRows.wallpapers[index].key
                    Accessible.name: qsTr("Do Not Disturb wallpaper")
                }
                Label { text: qsTr("Edition"); Layout.fillWidth: true }
                ComboBox {
                    Layout.alignment: Qt.AlignRight
                    Layout.rightMargin: 4
                    Layout.preferredWidth: 190
                    enabled: focusRows.filter.wallpaper !== ""
                    model: focusRows.filter.editionOptions
                    textRole: "label"
                    currentIndex: Math.max(0, focusRows.filter.editionOptions.findIndex(option => option.value === focusRows.filter.edition))
                    onActivated: index => focusRows.filter.edition = focusRows.filter.editionOptions[index].value
                    Accessible.name: qsTr("Do Not Disturb wallpaper edition")
                }
            }
            Explanation {
                text: focusRows.filter.isDoNotDisturbOn
                      ? qsTr("Do Not Disturb is on now: %1.").arg(focusRows.filter.summary)
                      : qsTr("While Do Not Disturb is on, every display shows this wallpaper. Your own come back when it ends.")
            }

            SectionTitle { text: qsTr("Workspaces") }
            SettingSwitch {
                text: qsTr("Use on all workspaces")
                checked: generalPane.app.actions.usesOnAllWorkspaces
                onToggled: checked => generalPane.app.actions.usesOnAllWorkspaces = checked
            }
            Explanation {
                text: qsTr("Keeps the wallpaper you set here on every workspace. Turn this off to choose a different one for each workspace in your desktop settings.")
            }
            // The helper's autostart entry was switched off in the desktop's own settings.
            Explanation {
                visible: generalPane.app.actions.usesOnAllWorkspaces
                         && generalPane.app.spacesHelper.status === SpacesHelper.RequiresApproval
                text: qsTr("Your desktop needs your permission to start the workspace helper at login. Allow it in your desktop settings.")
            }
            Item { Layout.fillHeight: true }
        }
    }

    component AccountPane: ColumnLayout {
        id: accountPane
        required property AppDelegate app
        spacing: 6
        PaneTitle { text: qsTr("Account") }
        GridLayout {
            visible: accountPane.app.session.signedIn
            columns: 2
            columnSpacing: 16
            rowSpacing: 6
            Label { text: qsTr("Email"); color: palette.placeholderText }
            Label {
                textFormat: Text.PlainText
                text: accountPane.app.account.email !== "" ? accountPane.app.account.email : qsTr("Signed in")
            }
        }
        Explanation {
            visible: accountPane.app.session.signedIn
            Layout.topMargin: 6
            text: qsTr("Your packs come from the shop account with this email address.")
        }
        Button {
            visible: accountPane.app.session.signedIn
            Layout.topMargin: 10
            text: qsTr("Sign Out")
            onClicked: accountPane.app.session.signOut()
        }
        SignInSheet {
            visible: !accountPane.app.session.signedIn
            Layout.fillWidth: true
            Layout.topMargin: 24
            app: accountPane.app
        }
        Item { Layout.fillHeight: true }
    }

    component StoragePane: ColumnLayout {
        id: storagePane
        required property AppDelegate app
        readonly property WallpaperActions actions: app.actions
        spacing: 6
        PaneTitle { text: qsTr("Storage") }
        RowLayout {
            Layout.fillWidth: true
            Label { Layout.fillWidth: true; text: qsTr("Downloaded wallpapers") }
            Label {
                text: storagePane.actions.downloadedSize
                color: palette.placeholderText
            }
        }
        RowLayout {
            Layout.topMargin: 10
            // Offered only while nothing downloads: a removal would race the downloads.
            Button {
                visible: storagePane.actions.canRemoveDownloads || storagePane.actions.isRemoving
                text: qsTr("Remove Downloads")
                enabled: storagePane.actions.canRemoveDownloads && storagePane.actions.hasDownloads
                onClicked: storagePane.actions.removeDownloads()
            }
            Label {
                visible: !storagePane.actions.canRemoveDownloads && !storagePane.actions.isRemoving
                text: qsTr("Available once downloads finish")
                color: palette.placeholderText
            }
            BusyIndicator {
                visible: storagePane.actions.isRemoving
                running: visible
                implicitWidth: 20
                implicitHeight: 20
            }
        }
        Explanation {
            text: qsTr("Wallpapers on your displays are kept. Anything removed downloads again when you set it.")
        }
        Item { Layout.fillHeight: true }
    }

    component AboutPane: ColumnLayout {
        id: aboutPane
        required property AppDelegate app
        spacing: 6
        PaneTitle { text: "Quennet" }
        Label { text: qsTr("Version %1").arg(aboutPane.app.version); color: palette.placeholderText }
        Explanation {
            text: qsTr("The wallpaper packs you bought in the Quennet shop, on every display.")
        }
        SectionTitle { text: qsTr("Acknowledgements") }
        ListView {
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: aboutPane.app.acknowledgements
            spacing: 2
            delegate: RowLayout {
                required property var modelData
                width: ListView.view.width
                Label { text: modelData.name; Layout.preferredWidth: 110 }
                Label { text: modelData.licence; Layout.preferredWidth: 110; color: palette.placeholderText }
                Label { text: modelData.use; Layout.fillWidth: true; elide: Text.ElideRight; color: palette.placeholderText }
            }
        }
        RowLayout {
            Layout.topMargin: 10
            Button {
                text: qsTr("What's New")
                Accessible.name: text
                onClicked: aboutPane.app.openChangelog()
            }
            Button {
                text: qsTr("Show Welcome")
                Accessible.name: text
                onClicked: aboutPane.app.openWelcome()
            }
        }
    }
}
