import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// One colourway in a browser: its artwork, its name, the heart, a "New" mark, a mark when a
// display shows it, and the progress of its download. Return or Space sets it; Tab reaches its heart.
FocusScope {
    id: tile

    required property ArtCache artCache
    property string name
    property string packName
    property url artwork
    property bool favourite: false
    property bool isNew: false
    property bool owned: true
    property bool shown: false
    property bool busy: false // being set: downloading or waiting for the desktop
    property real progress: 0
    property bool selected: false
    property real artHeight: width * 10 / 16
    signal activated()
    signal favouriteToggled()
    signal menuRequested()

    implicitHeight: artHeight + caption.implicitHeight + 6
    // The grid's keys reach the current tile.
    focus: GridView.isCurrentItem
    Accessible.role: Accessible.ListItem
    Accessible.name: packName === "" ? name : qsTr("%1 from %2").arg(name).arg(packName)
    Accessible.description: shown ? qsTr("On a display") : ""
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: if (owned) activated()
    Keys.onReturnPressed: if (owned) activated()
    Keys.onEnterPressed: if (owned) activated()
    Keys.onSpacePressed: if (owned) activated()
    Keys.onMenuPressed: if (owned) menuRequested()

    HoverHandler { id: hover }

    Rectangle {
        id: frame
        width: parent.width
        height: tile.artHeight
        radius: 9
        color: "transparent"
        border.width: tile.selected ? 2 : 0
        border.color: palette.highlight
        FocusRing { radius: 12; visible: tile.activeFocus && !heart.activeFocus }

        ArtImage {
            id: art
            cache: tile.artCache
            anchors.fill: parent
            anchors.margins: tile.selected ? 3 : 0
            radius: tile.selected ? 6 : 8
            url: tile.artwork
            placeholderColor: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.08)
        }
        // A hairline, so light art does not melt into a light window.
        Rectangle {
            anchors.fill: art
            radius: art.radius
            color: hover.hovered && tile.owned ? Qt.rgba(1, 1, 1, 0.08) : "transparent"
            border.width: 1
            border.color: Qt.rgba(0, 0, 0, 0.12)
        }

        // Busy: the art dims and a bar along its bottom fills.
        Rectangle {
            anchors.fill: art
            radius: art.radius
            visible: tile.busy
            color: Qt.rgba(0, 0, 0, 0.35)
            // Waiting for the first bytes or for the desktop: a turning quarter ring.
            ProgressRing {
                anchors.centerIn: parent
                visible: tile.progress <= 0
                implicitWidth: 24
                implicitHeight: 24
                fraction: 0.25
                trackColor: Qt.rgba(1, 1, 1, 0.25)
                fillColor: "white"
                RotationAnimator on rotation {
                    running: tile.busy && tile.progress <= 0
                    from: 0
                    to: 360
                    duration: 1000
                    loops: Animation.Infinite
                }
            }
            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 8 }
                visible: tile.progress > 0
                height: 4
                radius: 2
                color: Qt.rgba(1, 1, 1, 0.35)
                Rectangle {
                    width: parent.width * Math.min(1, tile.progress)
                    height: parent.height
                    radius: 2
                    color: "white"
                }
            }
        }

        Rectangle {
            visible: tile.isNew
            anchors { left: art.left; top: art.top; margins: 6 }
            width: newLabel.implicitWidth + 10
            height: newLabel.implicitHeight + 2
            radius: 8
            color: palette.highlight
            Label {
                id: newLabel
                anchors.centerIn: parent
                text: qsTr("New")
                font.pointSize: FontSizes.tiny
                font.weight: Font.DemiBold
                color: palette.highlightedText
            }
        }

        Rectangle {
            visible: tile.shown && !tile.busy
            anchors { left: art.left; bottom: art.bottom; margins: 6 }
            width: 18
            height: 18
            radius: 9
            color: palette.highlight
            Glyph { anchors.centerIn: parent; width: 12; height: 12; name: "check"; color: "white" }
        }

        MouseArea {
            anchors.fill: parent
            enabled: tile.owned
            cursorShape: tile.owned ? Qt.PointingHandCursor : Qt.ArrowCursor
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onClicked: mouse => mouse.button === Qt.RightButton ? tile.menuRequested() : tile.activated()
        }

        // The heart, over the art: always when it is a favourite, else on hover.
        AbstractButton {
            id: heart
            visible: tile.owned && (tile.favourite || hover.hovered || tile.activeFocus)
            anchors { right: art.right; top: art.top; margins: 5 }
            width: 22
            height: 22
            // In the tab chain only from its own tile.
            focusPolicy: tile.activeFocus ? Qt.TabFocus : Qt.NoFocus
            Accessible.name: qsTr("Favourite")
            checkable: true
            checked: tile.favourite
            background: Rectangle {
                radius: 11
                color: Qt.rgba(0, 0, 0, heart.hovered ? 0.5 : 0.35)
                FocusRing { radius: 15; visible: heart.activeFocus }
            }
            contentItem: Glyph {
                name: tile.favourite ? "heart-filled" : "heart"
                color: tile.favourite ? "#ff5a6e" : "white"
                lineWidth: 1.5
            }
            // The click asks; the heart shows what the favourites answer.
            onClicked: {
                tile.favouriteToggled()
                checked = Qt.binding(() => tile.favourite)
            }
            Keys.onReturnPressed: tile.favouriteToggled()
            Keys.onEnterPressed: tile.favouriteToggled()
        }
    }

    Label {
        id: caption
        anchors { top: frame.bottom; topMargin: 5; left: parent.left; right: parent.right }
        textFormat: Text.PlainText
        text: tile.name
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        font.pointSize: FontSizes.caption
        color: tile.owned ? palette.windowText : palette.placeholderText
    }
}
