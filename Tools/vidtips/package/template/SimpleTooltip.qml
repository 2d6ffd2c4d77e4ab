import QtQuick 1.1

// The simple tip of @NAME@: its title and shortcut in the colours of windows, light or dark.
Item {
    id: root

    property QtObject tip: vidtip
    property bool complete: false
    property int margin: 6

    function read() {
        if (!tip || !complete)
            return;
        var keys = tip.attribute("shortcut");
        label.text = vidTipView.interpolate(tip.attribute("title")) + (keys === "" ? "" : " (" + keys + ")");
    }

    onTipChanged: read()
    Component.onCompleted: { complete = true; read() }

    width: Math.ceil(label.paintedWidth) + 2 * margin
    height: Math.ceil(label.paintedHeight) + 2 * margin

    SystemPalette { id: palette }
    Rectangle {
        width: parent.width - 1
        height: parent.height - 1
        color: palette.window
        border { width: 1; color: palette.mid }
    }
    Text {
        id: label
        x: root.margin
        y: root.margin
        textFormat: Text.PlainText
        color: palette.windowText
    }
}
