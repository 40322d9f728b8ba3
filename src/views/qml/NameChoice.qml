import QtQuick
import QtQuick.Controls

// A choice among names the shop sent: its list shows them as plain text, never as markup.
ComboBox {
    id: choice

    delegate: ItemDelegate {
        required property int index
        required property var modelData
        width: ListView.view ? ListView.view.width : implicitWidth
        highlighted: choice.highlightedIndex === index
        contentItem: Label {
            textFormat: Text.PlainText
            text: modelData[choice.textRole]
            elide: Text.ElideRight
            color: highlighted ? palette.highlightedText : palette.text
        }
    }
}
