import QtQuick

// Where the keyboard is: a ring in the highlight colour just outside its parent's shape.
Rectangle {
    anchors.fill: parent
    anchors.margins: -4
    color: "transparent"
    border.width: 2
    border.color: palette.highlight
}
