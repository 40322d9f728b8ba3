import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The main window: the packs, the desk with the display arrangement, the colourways with their
// hearts, and the phases of a time-of-day wallpaper.
ApplicationWindow {
    id: window

    required property AppDelegate app
    readonly property bool ready: app.library.state === LibraryStatus.Ready
    // A pack slug, or "" for the favourites.
    property string browsing: packs.count > 0 ? packs.rows[0].slug : ""
    property string target: displayList.mainId
    property string selectedKey
    readonly property bool browsingOwned: browsing === "" || packs.current.owned === true

    title: "Quennet"
    width: 1000
    height: 700
    minimumWidth: 760
    minimumHeight: 520

    // Leaving a pack means its colourways have been seen.
    onBrowsingChanged: {
        app.actions.markSeen(seenPack)
        seenPack = browsing
        selectedKey = ""
    }
    property string seenPack: browsing
    onClosing: app.actions.markSeen(browsing)

    PackList {
        id: packs
        shop: window.app.shop
        currentKey: window.browsing
    }
    DisplayList {
        id: displayList
        displays: window.app.displays
        shop: window.app.shop
        currentKey: window.target
        onCountChanged: if (indexOf(window.target) < 0) window.target = mainId
    }
    ColourwayList {
        id: colourways
        shop: window.app.shop
        favourites: window.app.favourites
        displays: window.app.displays
        pack: window.browsing
        favouritesOnly: window.browsing === ""
        currentKey: window.selectedKey
    }

    menuBar: MenuBar {
        Menu {
            title: qsTr("&Quennet")
            Action {
                text: qsTr("About Quennet")
                onTriggered: window.app.openSettings("about")
            }
            MenuSeparator {}
            Action {
                text: qsTr("Settings…")
                shortcut: "Ctrl+,"
                onTriggered: window.app.openSettings()
            }
            Action {
                text: qsTr("Check for New Files")
                shortcut: "Ctrl+R"
                onTriggered: window.app.session.checkForNewFiles()
            }
            MenuItem {
                visible: window.app.session.signedIn
                height: visible ? implicitHeight : 0
                text: qsTr("Sign Out")
                onTriggered: window.app.session.signOut()
            }
            MenuSeparator {}
            Action {
                text: qsTr("Close Window")
                shortcut: StandardKey.Close
                onTriggered: window.close()
            }
            Action {
                text: qsTr("Quit Quennet")
                shortcut: StandardKey.Quit
                onTriggered: window.app.quit()
            }
        }
    }

    footer: Pane {
        visible: window.app.notice.visible
        padding: 8
        leftPadding: 16
        rightPadding: 12
        background: Rectangle {
            color: palette.window
            Rectangle { width: parent.width; height: 1; color: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.12) }
        }
        NoticeView {
            width: parent.width
            notice: window.app.notice
        }
    }

    // Signed out, the window is the sign-in sheet.
    SignInSheet {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 420)
        visible: window.app.library.state === LibraryStatus.SignedOut
        app: window.app
    }
    StateMessage {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 420)
        visible: window.app.library.state === LibraryStatus.Loading
        busy: true
        title: qsTr("Loading your packs…")
    }
    StateMessage {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 420)
        visible: window.app.library.state === LibraryStatus.Unreachable
        symbol: "offline"
        title: qsTr("Can't reach the shop")
        detail: qsTr("Check your connection and try again.")
        actionText: qsTr("Try Again")
        onAction: window.app.session.checkForNewFiles()
    }
    StateMessage {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 420)
        visible: window.app.library.state === LibraryStatus.Failed
        symbol: "warning"
        title: window.app.library.message
        actionText: qsTr("Try Again")
        onAction: window.app.session.checkForNewFiles()
    }

    RowLayout {
        anchors.fill: parent
        visible: window.ready
        spacing: 0

        // The packs.
        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 230
            color: Qt.darker(palette.window, palette.window.hslLightness < 0.5 ? 1.15 : 1.035)

            ListView {
                id: sidebar
                anchors.fill: parent
                anchors.topMargin: 10
                clip: true
                model: packs
                boundsBehavior: Flickable.StopAtBounds
                // The arrows browse, the favourites first, as the rows stand.
                activeFocusOnTab: true
                keyNavigationEnabled: false
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Packs")
                Keys.onUpPressed: browseBy(-1)
                Keys.onDownPressed: browseBy(1)
                function browseBy(step) {
                    const at = packs.rows.findIndex(row => row.slug === window.browsing)
                    const next = Math.max(-1, Math.min(packs.count - 1, at + step))
                    window.browsing = next < 0 ? "" : packs.rows[next].slug
                    if (next >= 0)
                        positionViewAtIndex(next, ListView.Contain)
                }
                header: SidebarRow {
                    width: ListView.view.width
                    title: qsTr("Favourites")
                    glyph: "heart"
                    selected: window.browsing === ""
                    onClicked: window.browsing = ""
                }
                section.property: "section"
                section.delegate: Label {
                    required property string section
                    width: ListView.view.width
                    leftPadding: 18
                    topPadding: 14
                    bottomPadding: 4
                    textFormat: Text.PlainText
                    text: section
                    font.pointSize: FontSizes.small
                    font.weight: Font.DemiBold
                    color: palette.placeholderText
                }
                delegate: SidebarRow {
                    required property var model
                    width: ListView.view.width
                    title: model.name
                    artwork: window.app.dark ? model.artworkDark : model.artwork
                    badge: model.newCount
                    selected: window.browsing === model.slug
                    onClicked: window.browsing = model.slug
                }
            }
        }
        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 1
            color: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.12)
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: 20
            Layout.bottomMargin: 0
            spacing: 14

            // The pack.
            RowLayout {
                Layout.fillWidth: true
                spacing: 12
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 2
                    Label {
                        Layout.fillWidth: true
                        textFormat: Text.PlainText
                        text: window.browsing === "" ? qsTr("Favourites") : (packs.current.name ?? "")
                        font.pointSize: FontSizes.title
                        font.weight: Font.DemiBold
                        elide: Text.ElideRight
                    }
                    Label {
                        Layout.fillWidth: true
                        textFormat: Text.PlainText
                        text: window.browsing === "" ? qsTr("The colourways with a heart, for you and for Shuffle.")
                                                     : (packs.current.line ?? "")
                        color: palette.placeholderText
                        elide: Text.ElideRight
                    }
                }
                Label {
                    visible: !window.browsingOwned
                    textFormat: Text.PlainText
                    text: packs.current.price ?? ""
                    font.weight: Font.DemiBold
                }
                Button {
                    visible: !window.browsingOwned
                    text: qsTr("View in Shop")
                    highlighted: true
                    onClicked: window.app.actions.openPage(packs.current.url)
                }
                Button {
                    visible: window.browsing !== "" && window.browsingOwned
                             && packs.current.hasDesktopFiles === true
                    text: qsTr("Save Desktop Files to Downloads")
                    onClicked: window.app.actions.saveDesktopFiles(window.browsing)
                }
            }

            // The desk: the displays as they stand.
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: deskColumn.implicitHeight + 24
                radius: 10
                color: Qt.darker(palette.window, palette.window.hslLightness < 0.5 ? 1.2 : 1.05)
                ColumnLayout {
                    id: deskColumn
                    anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
                    spacing: 8
                    Desk {
                        Layout.fillWidth: true
                        displays: displayList
                        artCache: window.app.artCache
                        dark: window.app.dark
                        selectedId: window.target
                        maxHeight: 150
                        gap: 10
                        onChosen: id => window.target = id
                    }
                    RowLayout {
                        Layout.fillWidth: true
                        visible: displayList.count > 1 || window.app.actions.canGoBack
                        Label {
                            Layout.fillWidth: true
                            // Keeps "Back" at the right end when there is one display.
                            opacity: displayList.count > 1 ? 1 : 0
                            textFormat: Text.PlainText
                            text: qsTr("A click on a colourway sets it on %1. Choose another display above.")
                                  .arg(displayList.current.name ?? "")
                            color: palette.placeholderText
                            font.pointSize: FontSizes.caption
                            elide: Text.ElideRight
                        }
                        Button {
                            flat: true
                            visible: displayList.count > 1
                            text: qsTr("Set on All Displays")
                            enabled: displayList.current.own === true
                            onClicked: window.app.actions.setOnAllDisplays(window.target)
                        }
                        Button {
                            flat: true
                            visible: window.app.actions.canGoBack
                            enabled: !window.app.actions.isGoingBack
                            text: qsTr("Back")
                            onClicked: window.app.actions.goBack()
                        }
                    }
                    // The panel's shuffle here too: without a tray, this window is the way in.
                    ShuffleBlock {
                        Layout.fillWidth: true
                        visible: window.ready
                        shuffle: window.app.shuffleView
                    }
                }
            }

            RowLayout {
                Layout.fillWidth: true
                visible: window.browsingOwned
                spacing: 10
                Label {
                    text: qsTr("Edition")
                    color: palette.placeholderText
                }
                Segmented {
                    id: edition
                }
                Item { Layout.fillWidth: true }
                Label {
                    text: qsTr("%n colourway(s)", "", colourways.count)
                    color: palette.placeholderText
                    font.pointSize: FontSizes.caption
                }
            }

            // The colourways.
            GridView {
                id: grid
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                readonly property int columns: Math.max(2, Math.floor(width / 210))
                cellWidth: width / columns
                cellHeight: (cellWidth - 16) * 10 / 16 + captionMetrics.height + 24
                FontMetrics { id: captionMetrics; font.pointSize: FontSizes.caption }
                boundsBehavior: Flickable.StopAtBounds
                activeFocusOnTab: true
                // Room above the first row for the focus ring, which the clip would cut.
                topMargin: 5
                // A model filled after the grid was made leaves it without a current tile.
                onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Colourways")
                model: colourways
                // Shown whenever tiles lie beyond the edge, which the phases below may make so.
                ScrollBar.vertical: ScrollBar {
                    policy: grid.contentHeight > grid.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
                }
                delegate: ColourwayTile {
                    required property var model
                    artCache: window.app.artCache
                    x: 8
                    width: grid.cellWidth - 16
                    name: model.name
                    packName: model.packName
                    artwork: window.app.dark ? model.previewDark : model.preview
                    favourite: model.favourite
                    isNew: model.isNew
                    owned: model.owned
                    shown: model.shown
                    progress: model.progress
                    selected: window.selectedKey === model.key
                    busy: model.downloading || window.app.actions.setting.indexOf(model.key) >= 0
                    onActivated: {
                        window.selectedKey = model.key
                        window.app.actions.setWallpaper(model.pack, model.slug, edition.edition, [window.target])
                    }
                    onFavouriteToggled: window.app.actions.toggleFavourite(model.pack, model.slug)
                    onMenuRequested: {
                        tileMenu.pack = model.pack
                        tileMenu.slug = model.slug
                        tileMenu.favourite = model.favourite
                        tileMenu.popup()
                    }
                }
                Label {
                    anchors.centerIn: parent
                    visible: grid.count === 0
                    color: palette.placeholderText
                    text: window.browsing === "" ? qsTr("Add favourites with the heart on a colourway.")
                                                 : qsTr("This pack has no colourways yet.")
                }
            }

            // The phases of the chosen time-of-day colourway.
            ColumnLayout {
                id: strip
                readonly property var phases: colourways.current.phases ?? []
                Layout.fillWidth: true
                Layout.bottomMargin: 14
                visible: phases.length > 0
                spacing: 6
                Label {
                    textFormat: Text.PlainText
                    text: qsTr("Through the day: %1").arg(colourways.current.name ?? "")
                    font.weight: Font.DemiBold
                }
                RowLayout {
                    Layout.fillWidth: true
                    spacing: 8
                    Repeater {
                        model: strip.phases
                        delegate: ColumnLayout {
                            required property var modelData
                            Layout.fillWidth: true
                            Layout.maximumWidth: 150
                            spacing: 3
                            ArtImage {
                                cache: window.app.artCache
                                Layout.fillWidth: true
                                Layout.preferredHeight: width * 10 / 16
                                radius: 6
                                url: modelData.url
                                placeholderColor: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.08)
                            }
                            Label {
                                Layout.fillWidth: true
                                horizontalAlignment: Text.AlignHCenter
                                textFormat: Text.PlainText
                                text: modelData.label
                                font.pointSize: FontSizes.small
                                color: palette.placeholderText
                                elide: Text.ElideRight
                            }
                        }
                    }
                    Item { Layout.fillWidth: true }
                }
            }
            Item { Layout.preferredHeight: 0 }
        }
    }

    Menu {
        id: tileMenu
        property string pack
        property string slug
        property bool favourite
        MenuItem {
            text: qsTr("Set on All Displays")
            onTriggered: window.app.actions.setWallpaper(tileMenu.pack, tileMenu.slug, edition.edition, [])
        }
        MenuSeparator {}
        MenuItem {
            text: tileMenu.favourite ? qsTr("Remove from Favourites") : qsTr("Add to Favourites")
            onTriggered: window.app.actions.toggleFavourite(tileMenu.pack, tileMenu.slug)
        }
    }

    component SidebarRow: ItemDelegate {
        id: row
        property string title
        property url artwork
        property string glyph
        property int badge: 0
        property bool selected: false
        height: Math.max(40, implicitContentHeight + topPadding + bottomPadding)
        Accessible.name: title
        Accessible.description: badge > 0 ? qsTr("%n new", "", badge) : ""
        Accessible.selectable: true
        Accessible.selected: selected
        leftPadding: 12
        rightPadding: 12
        background: Rectangle {
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            radius: 7
            color: row.selected ? palette.highlight
                                : row.hovered ? Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.06)
                                              : "transparent"
            FocusRing { radius: 10; visible: row.selected && sidebar.activeFocus }
        }
        contentItem: RowLayout {
            spacing: 10
            Item {
                Layout.preferredWidth: 36
                Layout.preferredHeight: 24
                Layout.leftMargin: 4
                ArtImage {
                    cache: window.app.artCache
                    anchors.fill: parent
                    visible: row.glyph === ""
                    radius: 4
                    url: row.artwork
                    placeholderColor: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.08)
                }
                Glyph {
                    anchors.centerIn: parent
                    visible: row.glyph !== ""
                    name: row.glyph
                    color: row.selected ? palette.highlightedText : "#e0475b"
                }
            }
            Label {
                Layout.fillWidth: true
                textFormat: Text.PlainText
                text: row.title
                elide: Text.ElideRight
                color: row.selected ? palette.highlightedText : palette.windowText
            }
            Rectangle {
                visible: row.badge > 0
                implicitWidth: Math.max(18, badgeText.implicitWidth + 10)
                implicitHeight: 18
                radius: 9
                color: row.selected ? palette.highlightedText : palette.highlight
                Label {
                    id: badgeText
                    anchors.centerIn: parent
                    textFormat: Text.PlainText
                    text: row.badge
                    font.pointSize: FontSizes.tiny
                    font.weight: Font.DemiBold
                    color: row.selected ? palette.highlight : palette.highlightedText
                }
            }
        }
    }

    // The editions side by side in one rounded frame, one chosen.
    component Segmented: Rectangle {
        id: segmented
        property string edition: "appearance"
        readonly property var editions: [
            { raw: "appearance", label: qsTr("Automatic") },
            { raw: "time-of-day", label: qsTr("Time of day") },
            { raw: "light", label: qsTr("Light") },
            { raw: "dark", label: qsTr("Dark") }
        ]
        implicitWidth: segments.implicitWidth + 4
        implicitHeight: segments.implicitHeight + 4
        radius: 7
        color: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.07)
        Row {
            id: segments
            anchors.centerIn: parent
            spacing: 2
            Repeater {
                model: segmented.editions
                delegate: AbstractButton {
                    id: segment
                    required property var modelData
                    readonly property bool chosen: segmented.edition === modelData.raw
                    implicitWidth: label.implicitWidth + 24
                    implicitHeight: Math.max(24, label.implicitHeight + 8)
                    Accessible.name: modelData.label
                    checkable: true
                    autoExclusive: true
                    checked: chosen
                    background: Rectangle {
                        radius: 5
                        color: segment.chosen ? palette.base
                                              : segment.hovered ? Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.06)
                                                                : "transparent"
                        border.width: segment.chosen ? 1 : 0
                        border.color: Qt.rgba(0, 0, 0, 0.15)
                        FocusRing { radius: 8; anchors.margins: -3; visible: segment.visualFocus }
                    }
                    contentItem: Label {
                        id: label
                        textFormat: Text.PlainText
                        text: segment.modelData.label
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        font.pointSize: FontSizes.caption
                        font.weight: segment.chosen ? Font.DemiBold : Font.Normal
                    }
                    onClicked: segmented.edition = modelData.raw
                }
            }
        }
    }
}
