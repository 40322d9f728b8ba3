pragma Singleton
import QtQuick

// Text sizes as parts of the desktop's font, so that its scaling reaches every label.
QtObject {
    readonly property real base: Qt.application.font.pointSize > 0 ? Qt.application.font.pointSize : 10
    readonly property real tiny: base * 0.8
    readonly property real small: base * 0.85
    readonly property real caption: base * 0.92
    readonly property real heading: base * 1.15
    readonly property real subtitle: base * 1.3
    readonly property real title: base * 1.6
    readonly property real code: base * 2.1
}
