import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// What changed in Quennet: the changes since the version last opened, or the whole changelog.
ApplicationWindow {
    id: window

    required property AppDelegate app

    title: qsTr("What's New in Quennet")
    width: 600
    height: 560
    minimumWidth: 420
    minimumHeight: 320

    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: window.close()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 12

        Label {
            text: qsTr("What's New")
            font.pointSize: FontSizes.title
            font.weight: Font.DemiBold
        }
        ScrollView {
            id: scroller
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            TextArea {
                readOnly: true
                focus: true
                // The changelog is compiled into the program: Markdown of our own.
                textFormat: Text.MarkdownText
                wrapMode: Text.WordWrap
                text: window.app.greeting.notes
                background: null
                leftPadding: 0
                rightPadding: 0
                Accessible.name: qsTr("Changes")
            }
        }
        RowLayout {
            Layout.fillWidth: true
            CheckBox {
                Layout.fillWidth: true
                text: qsTr("Show what's new after updates")
                checked: window.app.greeting.showsWhatsNew
                onToggled: window.app.greeting.showsWhatsNew = checked
                Accessible.name: text
            }
            Button {
                text: qsTr("Close")
                Accessible.name: text
                onClicked: window.close()
            }
        }
    }
}
