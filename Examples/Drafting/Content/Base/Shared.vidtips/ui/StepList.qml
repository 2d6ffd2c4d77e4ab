import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// Numbered steps; the numbers stand in a column of their own whatever the length of the texts.
Column {
    id: list

    property variant ui
    property variant steps: []

    spacing: 8

    VTAccessible.role: VTAccessible.List

    Repeater {
        model: list.steps

        Item {
            width: list.width
            height: Math.max(badge.height, label.paintedHeight)

            VTAccessible.role: VTAccessible.ListItem
            VTAccessible.name: (index + 1) + ". " + modelData

            Rectangle {
                id: badge
                x: list.ui.mirrored ? parent.width - width : 0
                width: 20
                height: 20
                radius: 10
                smooth: true
                color: list.ui.accentTint
            }
            Text {
                anchors.centerIn: badge
                text: index + 1
                font { pixelSize: list.ui.small; bold: true }
                color: list.ui.accentText
            }
            Text {
                id: label
                x: list.ui.mirrored ? 0 : 32
                y: Math.max(0, Math.round((badge.height - font.pixelSize * 1.35) / 2))
                width: parent.width - 32
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
