import QtQuick

// A small line glyph drawn in the text colour, so the views need no icon theme: heart,
// heart-filled, back, shuffle, check, warning, saved, offline, plus, refresh, display, close.
Canvas {
    id: glyph

    property string name
    property color color: palette.windowText
    property real lineWidth: Math.max(1.4, width / 11)

    implicitWidth: 16
    implicitHeight: 16
    antialiasing: true

    onNameChanged: requestPaint()
    onColorChanged: requestPaint()
    onWidthChanged: requestPaint()
    onHeightChanged: requestPaint()

    onPaint: {
        const c = getContext("2d")
        c.reset()
        const s = Math.min(width, height)
        c.save()
        c.translate((width - s) / 2, (height - s) / 2)
        c.scale(s / 16, s / 16)
        c.strokeStyle = glyph.color
        c.fillStyle = glyph.color
        c.lineWidth = glyph.lineWidth * 16 / s
        c.lineCap = "round"
        c.lineJoin = "round"
        const heart = () => {
            c.beginPath()
            c.moveTo(8, 13.6)
            c.bezierCurveTo(2.5, 10, 1.2, 7.2, 1.8, 5)
            c.bezierCurveTo(2.5, 2.6, 6, 1.8, 8, 4.6)
            c.bezierCurveTo(10, 1.8, 13.5, 2.6, 14.2, 5)
            c.bezierCurveTo(14.8, 7.2, 13.5, 10, 8, 13.6)
            c.closePath()
        }
        switch (glyph.name) {
        case "heart":
            heart(); c.stroke(); break
        case "heart-filled":
            heart(); c.fill(); break
        case "back":
            c.beginPath(); c.moveTo(9.5, 3.5); c.lineTo(5, 8); c.lineTo(9.5, 12.5); c.stroke(); break
        case "check":
            c.beginPath(); c.moveTo(3.5, 8.5); c.lineTo(6.5, 11.5); c.lineTo(12.5, 4.5); c.stroke(); break
        case "close":
            c.beginPath(); c.moveTo(4.5, 4.5); c.lineTo(11.5, 11.5)
            c.moveTo(11.5, 4.5); c.lineTo(4.5, 11.5); c.stroke(); break
        case "plus":
            c.beginPath(); c.moveTo(8, 3.5); c.lineTo(8, 12.5)
            c.moveTo(3.5, 8); c.lineTo(12.5, 8); c.stroke(); break
        case "shuffle":
            c.beginPath()
            c.moveTo(1.5, 4.5); c.lineTo(4.5, 4.5); c.bezierCurveTo(8, 4.5, 8, 11.5, 11.5, 11.5); c.lineTo(14, 11.5)
            c.moveTo(1.5, 11.5); c.lineTo(4.5, 11.5); c.bezierCurveTo(8, 11.5, 8, 4.5, 11.5, 4.5); c.lineTo(14, 4.5)
            c.moveTo(12, 2.5); c.lineTo(14, 4.5); c.lineTo(12, 6.5)
            c.moveTo(12, 9.5); c.lineTo(14, 11.5); c.lineTo(12, 13.5)
            c.stroke(); break
        case "warning":
            c.beginPath(); c.moveTo(8, 1.5); c.lineTo(15, 14); c.lineTo(1, 14); c.closePath(); c.fill()
            c.strokeStyle = "#2b2100"; c.lineWidth = 1.6
            c.beginPath(); c.moveTo(8, 6); c.lineTo(8, 9.5); c.stroke()
            c.beginPath(); c.arc(8, 11.8, 0.3, 0, 2 * Math.PI); c.stroke(); break
        case "saved":
            c.beginPath(); c.arc(8, 8, 7, 0, 2 * Math.PI); c.fill()
            c.strokeStyle = "white"; c.lineWidth = 1.8
            c.beginPath(); c.moveTo(4.8, 8.3); c.lineTo(7, 10.5); c.lineTo(11.2, 5.8); c.stroke(); break
        case "offline":
            // A wifi fan with an exclamation mark beside it.
            c.beginPath(); c.arc(7, 13, 10, 1.25 * Math.PI, 1.75 * Math.PI); c.stroke()
            c.beginPath(); c.arc(7, 13, 6.2, 1.25 * Math.PI, 1.75 * Math.PI); c.stroke()
            c.beginPath(); c.arc(7, 13, 1.2, 0, 2 * Math.PI); c.fill()
            c.beginPath(); c.moveTo(14.5, 6); c.lineTo(14.5, 10.5); c.stroke()
            c.beginPath(); c.arc(14.5, 13.3, 0.3, 0, 2 * Math.PI); c.stroke(); break
        case "refresh":
            c.beginPath(); c.arc(8, 8, 5.5, -0.35 * Math.PI, 1.45 * Math.PI); c.stroke()
            c.beginPath(); c.moveTo(9.6, 0.9); c.lineTo(12.6, 2.9); c.lineTo(9.8, 5.4); c.stroke(); break
        case "display":
            c.beginPath(); c.rect(1.5, 2.5, 13, 9); c.stroke()
            c.beginPath(); c.moveTo(5.5, 14); c.lineTo(10.5, 14); c.stroke(); break
        }
        c.restore()
    }
}
