import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// A quiet button: a sign, a label or both; lit by the pointer and by the keyboard's focus. A sign is called by its
// name.
FocusScope {
    id: button

    property variant ui
    property string glyph: ""
    property string label: ""
    property string name: label
    property color color: ui.text
    property bool labelFirst: false

    signal clicked()

    width: content.width + 16
    height: 28

    VTAccessible.role: VTAccessible.Button
    VTAccessible.name: name
    VTAccessible.onPressed: button.clicked()

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Keys.onSpacePressed: button.clicked()

    Rectangle {
        anchors.fill: parent
        radius: 4
        smooth: true
        color: button.ui.text
        opacity: area.pressed ? 0.16 : area.containsMouse ? 0.09 : 0
    }
    Rectangle {
        anchors { fill: parent; margins: 1 }
        radius: 3
        smooth: true
        color: "transparent"
        border { width: 1; color: button.ui.accent }
        visible: button.activeFocus
    }
    Row {
        id: content
        x: 8
        height: parent.height
        spacing: 8
        layoutDirection: button.labelFirst !== button.ui.mirrored ? Qt.RightToLeft : Qt.LeftToRight

        Glyph {
            anchors.verticalCenter: parent.verticalCenter
            name: button.glyph
            color: button.color
            width: visible ? 14 : 0
            height: 14
            visible: button.glyph !== ""
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.label
            textFormat: Text.PlainText
            visible: button.label !== ""
            font.pixelSize: button.ui.body
            color: button.color
        }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: { button.focus = true; button.clicked() }
        onEntered: vidTipView.setItemCursor(button, "PointingHandCursor", "button")
        onExited: vidTipView.setItemCursor(button, "", "button")
    }
}
