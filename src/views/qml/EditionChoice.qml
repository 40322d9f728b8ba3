import QtQuick
import QtQuick.Controls

// Which edition a colourway is set in: one that follows light and dark, the time of day, or a
// fixed light or dark picture. The value is the edition's raw text.
ComboBox {
    id: choice

    readonly property string edition: model[currentIndex].raw

    textRole: "label"
    model: [
        { raw: "appearance", label: qsTr("Automatic") },
        { raw: "time-of-day", label: qsTr("Time of day") },
        { raw: "light", label: qsTr("Light") },
        { raw: "dark", label: qsTr("Dark") }
    ]
    Accessible.name: qsTr("Edition")
    ToolTip.visible: hovered
    ToolTip.delay: 800
    ToolTip.text: qsTr("Edition")
}
