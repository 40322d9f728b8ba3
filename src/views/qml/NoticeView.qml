import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// The panel's one status line: downloads in progress, a file saved for the user, or a failure.
RowLayout {
    id: view

    required property NoticePresenter notice

    visible: notice.visible
    spacing: 8

    // A new notice comes in; progress of the same downloads does not flicker.
    Connections {
        target: view.notice
        function onArrived() { arrival.restart() }
    }
    NumberAnimation {
        id: arrival
        target: view
        property: "opacity"
        from: 0
        to: 1
        duration: 180
    }

    // A small ring that fills as the downloads progress.
    ProgressRing {
        visible: view.notice.kind === NoticePresenter.Downloading
        implicitWidth: 16
        implicitHeight: 16
        fraction: view.notice.fraction
        trackColor: palette.mid
        fillColor: palette.highlight
    }
    Glyph {
        visible: view.notice.kind === NoticePresenter.Saved
        name: "saved"
        color: "#2ea043"
    }
    Glyph {
        visible: view.notice.kind === NoticePresenter.Failed
        name: "warning"
        color: "#e5b400"
    }
    Label {
        Layout.fillWidth: true
        textFormat: Text.PlainText
        text: view.notice.text
        wrapMode: view.notice.kind === NoticePresenter.Failed ? Text.WordWrap : Text.NoWrap
        elide: Text.ElideMiddle
        maximumLineCount: 3
    }
    Label {
        visible: view.notice.kind === NoticePresenter.Downloading
        textFormat: Text.PlainText
        text: view.notice.percent
        color: palette.placeholderText
        horizontalAlignment: Text.AlignRight
        // A fixed width, so the line does not jitter while the figure counts.
        Layout.minimumWidth: widest.width
        TextMetrics {
            id: widest
            text: "100 %"
        }
    }
    Button {
        visible: view.notice.kind === NoticePresenter.Saved
        text: qsTr("Show in Folder")
        flat: true
        onClicked: view.notice.showInFolder()
    }
    ToolButton {
        visible: view.notice.kind === NoticePresenter.Saved || view.notice.kind === NoticePresenter.Failed
        implicitWidth: 24
        implicitHeight: 24
        Accessible.name: qsTr("Dismiss")
        contentItem: Glyph { name: "close"; color: palette.placeholderText; implicitWidth: 12; implicitHeight: 12 }
        onClicked: view.notice.dismiss()
    }
}
