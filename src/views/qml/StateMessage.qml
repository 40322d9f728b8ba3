import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// A calm, centred message for a state of the library: a glyph, a title, a sentence, and maybe an
// action.
ColumnLayout {
    id: message

    property string title
    property string detail
    property bool busy: false
    property string symbol
    property string actionText
    signal action()

    spacing: 6

    BusyIndicator {
        Layout.alignment: Qt.AlignHCenter
        visible: message.busy
        running: visible
        implicitWidth: 28
        implicitHeight: 28
    }
    Glyph {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: 4
        visible: message.symbol !== ""
        name: message.symbol
        color: palette.placeholderText
        implicitWidth: 30
        implicitHeight: 30
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        textFormat: Text.PlainText
        text: message.title
        font.pointSize: FontSizes.heading
        font.weight: Font.DemiBold
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: text !== ""
        textFormat: Text.PlainText
        text: message.detail
        color: palette.placeholderText
    }
    Button {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 6
        visible: message.actionText !== ""
        text: message.actionText
        onClicked: message.action()
    }
}
