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

    ProgressBar {
        visible: view.notice.kind === "downloading"
        Layout.preferredWidth: 48
        from: 0
        to: 1
        value: view.notice.fraction
    }
    Label {
        visible: view.notice.kind !== "downloading"
        text: view.notice.kind === "saved" ? "\u2714" : "\u26a0"
        color: view.notice.kind === "saved" ? "#2e9d4f" : "#d9a400"
        font.pixelSize: 14
    }
    Label {
        Layout.fillWidth: true
        text: view.notice.text
        elide: Text.ElideMiddle
    }
    Label {
        visible: view.notice.kind === "downloading"
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
        visible: view.notice.kind === "saved"
        text: "Show in Folder"
        flat: true
        onClicked: view.notice.showInFolder()
    }
}
