import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The panel's shuffle block: the switch, how often and from where, why it waits if it does, when
// the next change comes and what it brings.
ColumnLayout {
    id: block

    required property ShuffleView shuffle

    spacing: 2

    RowLayout {
        Layout.fillWidth: true
        spacing: 8
        Glyph {
            name: "shuffle"
            implicitWidth: 16
            implicitHeight: 16
            color: block.shuffle.isOn ? palette.highlight : palette.windowText
        }
        Label {
            Layout.fillWidth: true
            text: qsTr("Shuffle")
            font.weight: Font.DemiBold
        }
        Button {
            text: qsTr("Shuffle Now")
            flat: true
            enabled: !block.shuffle.isShuffling
            font.pointSize: FontSizes.caption
            onClicked: block.shuffle.shuffleNow()
        }
        Switch {
            checked: block.shuffle.isOn
            onToggled: block.shuffle.isOn = checked
            Accessible.name: qsTr("Shuffle")
        }
    }
    Label {
        Layout.fillWidth: true
        Layout.leftMargin: 24
        Layout.topMargin: -6
        textFormat: Text.PlainText
        text: block.shuffle.summary
        color: palette.placeholderText
        font.pointSize: FontSizes.small
        elide: Text.ElideRight
    }

    ColumnLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 24
        visible: block.shuffle.isOn || block.shuffle.status !== ""
        spacing: 2
        Label {
            Layout.fillWidth: true
            visible: text !== ""
            textFormat: Text.PlainText
            text: block.shuffle.status
            wrapMode: Text.WordWrap
            font.pointSize: FontSizes.small
            color: palette.windowText
        }
        Label {
            Layout.fillWidth: true
            visible: block.shuffle.isOn && text !== ""
            textFormat: Text.PlainText
            text: block.shuffle.isShuffling ? qsTr("Shuffling…") : block.shuffle.next
            font.pointSize: FontSizes.small
            color: palette.placeholderText
            elide: Text.ElideRight
        }
        Label {
            Layout.fillWidth: true
            visible: block.shuffle.isOn && block.shuffle.upNext.length > 0
            textFormat: Text.PlainText
            text: qsTr("Up next: %1").arg(block.shuffle.upNext.map(p => p.name).join(qsTr(", ")))
            font.pointSize: FontSizes.small
            color: palette.placeholderText
            elide: Text.ElideRight
        }
    }
}
