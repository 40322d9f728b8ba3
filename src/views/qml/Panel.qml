import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The tray panel: each display with what it shows, the shuffle, the user's colourways to choose
// from, and the notice line; or what the library is waiting for.
Rectangle {
    id: panel

    required property AppDelegate app
    readonly property bool ready: app.library.state === LibraryStatus.Ready
    // The display the next colourway goes to.
    property string target: displayList.mainId
    // A pack slug, or "" for the favourites.
    property string browsing: packs.count > 0 ? packs.rows[0].slug : ""
    signal closeRequested()

    implicitWidth: 360
    implicitHeight: content.implicitHeight + 2 * content.y
    color: palette.window
    border.color: Qt.darker(palette.window, 1.35)
    // Square: without a compositor, rounded corners would show black.
    radius: 0

    DisplayList {
        id: displayList
        displays: panel.app.displays
        shop: panel.app.shop
        currentKey: panel.target
        onCountChanged: if (indexOf(panel.target) < 0) panel.target = mainId
    }
    PackList {
        id: packs
        shop: panel.app.shop
        ownedOnly: true
        onCountChanged: if (panel.browsing !== "" && indexOf(panel.browsing) < 0)
                            panel.browsing = count > 0 ? rows[0].slug : ""
    }
    ColourwayList {
        id: colourways
        shop: panel.app.shop
        favourites: panel.app.favourites
        displays: panel.app.displays
        pack: panel.browsing
        favouritesOnly: panel.browsing === ""
    }

    ColumnLayout {
        id: content
        x: 14
        y: 12
        width: panel.width - 2 * x
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 4
            Label {
                Layout.fillWidth: true
                text: "Quennet"
                font.pointSize: FontSizes.heading
                font.weight: Font.DemiBold
            }
            ToolButton {
                visible: panel.app.actions.canGoBack && panel.ready
                enabled: !panel.app.actions.isGoingBack
                text: qsTr("Back")
                icon.width: 0
                leftPadding: 6
                rightPadding: 8
                contentItem: RowLayout {
                    spacing: 2
                    Glyph { name: "back"; implicitWidth: 14; implicitHeight: 14 }
                    Label { text: qsTr("Back") }
                }
                ToolTip.visible: hovered
                ToolTip.delay: 800
                ToolTip.text: qsTr("Put back what the displays showed before")
                onClicked: panel.app.actions.goBack()
            }
            ToolButton {
                visible: panel.ready
                implicitWidth: 30
                implicitHeight: 30
                Accessible.name: qsTr("Check for New Files")
                contentItem: Glyph { name: "refresh"; implicitWidth: 14; implicitHeight: 14 }
                ToolTip.visible: hovered
                ToolTip.delay: 800
                ToolTip.text: qsTr("Check for New Files")
                onClicked: panel.app.session.checkForNewFiles()
            }
        }

        // What the library is waiting for.
        StateMessage {
            Layout.fillWidth: true
            Layout.topMargin: 28
            Layout.bottomMargin: 28
            visible: panel.app.library.state === LibraryStatus.Loading
            busy: true
            title: qsTr("Loading your packs…")
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.topMargin: 8
            Layout.bottomMargin: 8
            visible: panel.app.library.state === LibraryStatus.SignedOut
            spacing: 14
            Label {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Sign in to use your packs")
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
            visible: panel.app.library.state === LibraryStatus.Unreachable
            symbol: "offline"
            title: qsTr("Can't reach the shop")
            detail: qsTr("Check your connection and try again.")
            actionText: qsTr("Try Again")
            onAction: panel.app.session.checkForNewFiles()
        }
        StateMessage {
            Layout.fillWidth: true
            Layout.topMargin: 24
            Layout.bottomMargin: 24
            visible: panel.app.library.state === LibraryStatus.Failed
            symbol: "warning"
            title: panel.app.library.message
            actionText: qsTr("Try Again")
            onAction: panel.app.session.checkForNewFiles()
        }

        // The displays.
        ColumnLayout {
            Layout.fillWidth: true
            visible: panel.ready && displayList.count > 0
            spacing: 6
            Desk {
                Layout.fillWidth: true
                displays: displayList
                artCache: panel.app.artCache
                dark: panel.app.dark
                selectedId: panel.target
                maxHeight: 104
                onChosen: id => panel.target = id
            }
            RowLayout {
                Layout.fillWidth: true
                visible: displayList.count > 1
                Label {
                    Layout.fillWidth: true
                    textFormat: Text.PlainText
                    text: qsTr("Choosing for %1").arg(displayList.current.name ?? "")
                    color: palette.placeholderText
                    font.pointSize: FontSizes.small
                    elide: Text.ElideRight
                }
                Button {
                    flat: true
                    font.pointSize: FontSizes.caption
                    text: qsTr("Set on All Displays")
                    enabled: displayList.current.own === true
                    onClicked: panel.app.actions.setOnAllDisplays(panel.target)
                }
            }
        }

        Separator { visible: panel.ready }

        ShuffleBlock {
            Layout.fillWidth: true
            visible: panel.ready
            shuffle: panel.app.shuffleView
        }

        Separator { visible: panel.ready }

        // The colourways to choose from.
        RowLayout {
            Layout.fillWidth: true
            visible: panel.ready
            spacing: 6
            NameChoice {
                id: packChoice
                Layout.fillWidth: true
                textRole: "name"
                valueRole: "slug"
                model: [{ slug: "", name: qsTr("Favourites") }].concat(packs.rows)
                currentIndex: Math.max(0, model.findIndex(entry => entry.slug === panel.browsing))
                onActivated: panel.browsing = currentValue
                Accessible.name: qsTr("Pack")
            }
            EditionChoice {
                id: edition
                Layout.preferredWidth: 128
            }
        }

        GridView {
            id: grid
            Layout.fillWidth: true
            visible: panel.ready
            // The keyboard chooses too: arrows move, Return sets.
            focus: panel.ready
            keyNavigationEnabled: true
            activeFocusOnTab: true
            currentIndex: 0
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Colourways")
            readonly property int columns: 3
            readonly property int rowsShown: Math.min(2, Math.ceil(count / columns))
            Layout.preferredHeight: Math.max(1, rowsShown) * cellHeight + topMargin
            // Room above the first row for the focus ring, which the clip would cut.
            topMargin: 5
            clip: true
            cellWidth: width / columns
            cellHeight: cellWidth * 10 / 16 + captionMetrics.height + 10
            FontMetrics { id: captionMetrics; font.pointSize: FontSizes.caption }
            boundsBehavior: Flickable.StopAtBounds
            model: colourways
            ScrollBar.vertical: ScrollBar { policy: grid.count > 6 ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff }
            delegate: ColourwayTile {
                required property var model
                artCache: panel.app.artCache
                width: grid.cellWidth - 8
                x: 4
                name: model.name
                packName: model.packName
                artwork: panel.app.dark ? model.thumbnailDark : model.thumbnail
                favourite: model.favourite
                isNew: model.isNew
                owned: model.owned
                shown: model.shown
                progress: model.progress
                busy: model.downloading || panel.app.actions.setting.indexOf(model.key) >= 0
                onActivated: panel.app.actions.setWallpaper(model.pack, model.slug, edition.edition,
                                                            [panel.target])
                onFavouriteToggled: panel.app.actions.toggleFavourite(model.pack, model.slug)
                onMenuRequested: {
                    tileMenu.pack = model.pack
                    tileMenu.slug = model.slug
                    tileMenu.favourite = model.favourite
                    tileMenu.popup()
                }
            }
            Label {
                anchors.centerIn: parent
                width: parent.width - 24
                visible: grid.count === 0
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                color: palette.placeholderText
                text: panel.browsing === "" ? qsTr("Add favourites with the heart on a colourway.")
                                            : qsTr("This pack has no colourways yet.")
            }
        }

        NoticeView {
            Layout.fillWidth: true
            notice: panel.app.notice
        }

        Separator {}

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: -6
            Layout.rightMargin: -6
            spacing: 0
            Button {
                flat: true
                text: qsTr("Open Quennet")
                onClicked: {
                    panel.closeRequested()
                    panel.app.openMain()
                }
            }
            Button {
                flat: true
                text: qsTr("Settings…")
                onClicked: {
                    panel.closeRequested()
                    panel.app.openSettings()
                }
            }
            Item { Layout.fillWidth: true }
            Button {
                flat: true
                text: qsTr("Quit")
                onClicked: panel.app.quit()
            }
        }
    }

    Menu {
        id: tileMenu
        property string pack
        property string slug
        property bool favourite
        MenuItem {
            text: qsTr("Set on All Displays")
            onTriggered: panel.app.actions.setWallpaper(tileMenu.pack, tileMenu.slug, edition.edition, [])
        }
        MenuSeparator {}
        MenuItem {
            text: tileMenu.favourite ? qsTr("Remove from Favourites") : qsTr("Add to Favourites")
            onTriggered: panel.app.actions.toggleFavourite(tileMenu.pack, tileMenu.slug)
        }
    }

    component Separator: Rectangle {
        Layout.fillWidth: true
        implicitHeight: 1
        color: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.1)
    }
}
