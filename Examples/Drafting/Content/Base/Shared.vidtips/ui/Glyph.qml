import QtQuick 1.1

// The few signs of the user interface, drawn from rectangles so that they take any colour and any size.
Item {
    id: glyph

    property string name: ""
    property color color: "black"

    width: 16
    height: 16

    Loader {
        anchors.fill: parent
        sourceComponent: glyph.name === "play" ? play
            : glyph.name === "pause" ? pause
            : glyph.name === "pin" ? pin
            : glyph.name === "more" ? more
            : glyph.name === "forward" ? forward : undefined
    }

    Component {
        id: play
        Item {
            Item {
                x: parent.width * 0.28
                y: parent.height * 0.12
                width: parent.width * 0.6
                height: parent.height * 0.76
                clip: true
                Rectangle {
                    property real side: parent.height / Math.SQRT2
                    x: -side / 2
                    y: (parent.height - side) / 2
                    width: side
                    height: side
                    rotation: 45
                    smooth: true
                    color: glyph.color
                }
                transform: Scale { xScale: 1.55 }
            }
        }
    }
    Component {
        id: pause
        Item {
            Rectangle { x: parent.width * 0.22; y: parent.height * 0.14; width: parent.width * 0.2; height: parent.height * 0.72; color: glyph.color }
            Rectangle { x: parent.width * 0.58; y: parent.height * 0.14; width: parent.width * 0.2; height: parent.height * 0.72; color: glyph.color }
        }
    }
    Component {
        id: pin
        Item {
            rotation: 30
            Rectangle { x: parent.width * 0.3; y: 0; width: parent.width * 0.4; height: parent.height * 0.16; radius: 1; smooth: true; color: glyph.color }
            Rectangle { x: parent.width * 0.38; y: parent.height * 0.1; width: parent.width * 0.24; height: parent.height * 0.4; smooth: true; color: glyph.color }
            Rectangle { x: parent.width * 0.2; y: parent.height * 0.46; width: parent.width * 0.6; height: parent.height * 0.16; radius: 1; smooth: true; color: glyph.color }
            Rectangle { x: parent.width * 0.45; y: parent.height * 0.6; width: parent.width * 0.1; height: parent.height * 0.4; smooth: true; color: glyph.color }
        }
    }
    Component {
        id: more
        Item {
            Rectangle { x: parent.width * 0.2; y: parent.height * 0.46; width: parent.width * 0.38; height: 1.5; rotation: 35; smooth: true; color: glyph.color }
            Rectangle { x: parent.width * 0.46; y: parent.height * 0.46; width: parent.width * 0.38; height: 1.5; rotation: -35; smooth: true; color: glyph.color }
        }
    }
    Component {
        id: forward
        Item {
            Rectangle { x: parent.width * 0.3; y: parent.height * 0.36; width: parent.width * 0.42; height: 1.5; rotation: 45; smooth: true; color: glyph.color }
            Rectangle { x: parent.width * 0.3; y: parent.height * 0.6; width: parent.width * 0.42; height: 1.5; rotation: -45; smooth: true; color: glyph.color }
        }
    }
}
