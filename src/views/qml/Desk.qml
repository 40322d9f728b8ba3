import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The displays as they are arranged, to scale, each showing its current picture with what it is
// ("Not from your packs" when the desktop's own settings chose it). A click chooses the display
// the next colourway goes to; so do Return and Space on the display that Tab or the arrows reach.
Item {
    id: desk

    required property DisplayList displays
    required property ArtCache artCache
    property bool dark
    property string selectedId
    property real gap: 6
    readonly property rect bounds: displays.bounds
    readonly property real scale: bounds.width > 0 && bounds.height > 0
        ? Math.min(width / bounds.width, maxHeight / bounds.height) : 0
    property real maxHeight: 120
    signal chosen(string displayId)

    implicitHeight: bounds.height * scale

    Item {
        id: arrangement
        width: desk.bounds.width * desk.scale
        height: desk.bounds.height * desk.scale
        anchors.horizontalCenter: parent.horizontalCenter

        Repeater {
            id: screens
            model: desk.displays
            delegate: Item {
                id: screen
                required property int index
                required property string displayId
                required property string name
                required property rect frame
                required property url thumbnail
                required property url thumbnailDark
                required property bool own
                required property string caption
                required property string detail
                readonly property bool selected: desk.selectedId === displayId

                x: (frame.x - desk.bounds.x) * desk.scale + desk.gap / 2
                y: (frame.y - desk.bounds.y) * desk.scale + desk.gap / 2
                width: frame.width * desk.scale - desk.gap
                height: frame.height * desk.scale - desk.gap
                activeFocusOnTab: desk.displays.count > 1
                Accessible.role: Accessible.RadioButton
                Accessible.name: name
                Accessible.description: caption
                Accessible.focusable: desk.displays.count > 1
                Accessible.checkable: true
                Accessible.checked: selected
                Accessible.onPressAction: desk.chosen(displayId)
                Keys.onLeftPressed: step(-1)
                Keys.onUpPressed: step(-1)
                Keys.onRightPressed: step(1)
                Keys.onDownPressed: step(1)
                Keys.onSpacePressed: desk.chosen(displayId)
                Keys.onReturnPressed: desk.chosen(displayId)
                Keys.onEnterPressed: desk.chosen(displayId)
                function step(by) {
                    screens.itemAt((index + by + screens.count) % screens.count).forceActiveFocus()
                }

                FocusRing { radius: 11; visible: screen.activeFocus }
                Rectangle {
                    anchors.fill: parent
                    radius: 8
                    color: "transparent"
                    border.width: screen.selected && desk.displays.count > 1 ? 2 : 0
                    border.color: palette.highlight
                }
                ArtImage {
                    id: picture
                    cache: desk.artCache
                    anchors.fill: parent
                    anchors.margins: screen.selected && desk.displays.count > 1 ? 3 : 0
                    radius: screen.selected && desk.displays.count > 1 ? 5 : 7
                    url: desk.dark ? screen.thumbnailDark : screen.thumbnail
                    placeholderColor: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.1)
                }
                // Without a picture to show: the display, and what it is, in the middle.
                ColumnLayout {
                    anchors.centerIn: picture
                    width: picture.width - 12
                    visible: !picture.ready
                    spacing: 4
                    Glyph {
                        Layout.alignment: Qt.AlignHCenter
                        name: "display"
                        implicitWidth: 20
                        implicitHeight: 20
                        color: palette.placeholderText
                    }
                    Label {
                        Layout.fillWidth: true
                        horizontalAlignment: Text.AlignHCenter
                        textFormat: Text.PlainText
                        text: screen.caption
                        color: palette.placeholderText
                        font.pointSize: FontSizes.small
                        elide: Text.ElideRight
                    }
                }
                // The words sit on a soft shade at the bottom of the picture.
                Rectangle {
                    visible: picture.ready
                    anchors { left: picture.left; right: picture.right; bottom: picture.bottom }
                    height: words.implicitHeight + 8
                    radius: picture.radius
                    gradient: Gradient {
                        GradientStop { position: 0; color: Qt.rgba(0, 0, 0, 0) }
                        GradientStop { position: 0.5; color: Qt.rgba(0, 0, 0, 0.45) }
                        GradientStop { position: 1; color: Qt.rgba(0, 0, 0, 0.6) }
                    }
                    ColumnLayout {
                        id: words
                        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 6 }
                        spacing: 0
                        Label {
                            Layout.fillWidth: true
                            textFormat: Text.PlainText
                            text: screen.caption
                            color: "white"
                            font.pointSize: FontSizes.small
                            font.weight: Font.DemiBold
                            elide: Text.ElideRight
                        }
                        Label {
                            Layout.fillWidth: true
                            visible: screen.own && screen.height > 70
                            textFormat: Text.PlainText
                            text: screen.detail
                            color: Qt.rgba(1, 1, 1, 0.8)
                            font.pointSize: FontSizes.tiny
                            elide: Text.ElideRight
                        }
                    }
                }
                MouseArea {
                    anchors.fill: parent
                    cursorShape: desk.displays.count > 1 ? Qt.PointingHandCursor : Qt.ArrowCursor
                    onClicked: desk.chosen(screen.displayId)
                }
                // The desktop names its displays: shown as they are, never as markup.
                ToolTip {
                    visible: hovered.hovered
                    delay: 600
                    contentItem: Label {
                        textFormat: Text.PlainText
                        text: screen.name
                    }
                }
                HoverHandler { id: hovered }
            }
        }
    }
}
