import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// A shortcut, shown as the keys that make it up. Nothing is shown for an empty shortcut.
Row {
    id: chip

    property variant ui
    property string shortcut: ""
    property variant keys: shortcut === "" ? [] : shortcut.replace(/(^|\+)\+$/, "$1Plus").split("+")

    spacing: 4

    VTAccessible.role: VTAccessible.StaticText
    VTAccessible.name: shortcut
    VTAccessible.ignored: shortcut === ""

    Repeater {
        model: chip.keys

        Item {
            width: Math.max(height, label.paintedWidth + 12)
            height: chip.ui.small + 9

            Rectangle {
                anchors.fill: parent
                radius: 4
                smooth: true
                color: chip.ui.text
                opacity: chip.ui.hairline + 0.1
            }
            Rectangle {
                anchors { fill: parent; leftMargin: 1; rightMargin: 1; topMargin: 1; bottomMargin: 2 }
                radius: 3
                smooth: true
                color: chip.ui.window
            }
            Text {
                id: label
                anchors { centerIn: parent; verticalCenterOffset: -0.5 }
                text: modelData === "Plus" ? "+" : modelData
                textFormat: Text.PlainText
                font.pixelSize: chip.ui.small
                color: chip.ui.text
                opacity: chip.ui.soft
            }
        }
    }
}
