import QtQuick 1.1

// Remarks, set off by a bar at the side where reading starts.
Column {
    id: list

    property variant ui
    property variant notes: []
    property color color: ui.accent

    spacing: 8

    Repeater {
        model: list.notes

        Item {
            width: list.width
            height: label.paintedHeight + 16

            Rectangle {
                anchors.fill: parent
                color: list.color
                opacity: 0.1
            }
            Rectangle {
                x: list.ui.mirrored ? parent.width - width : 0
                width: 3
                height: parent.height
                color: list.color
            }
            Text {
                id: label
                x: list.ui.mirrored ? 12 : 15
                y: 8
                width: parent.width - 27
                text: modelData
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: list.ui.textAlign
                font.pixelSize: list.ui.body
                color: list.ui.text
            }
        }
    }
}
