import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// The simple tip of @NAME@: its title and shortcut in the desktop's tool-tip colours.
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

    VTStyledRectangle {
        id: background
        anchors.fill: parent
        toolTipStyle: true
    }
    Text {
        id: label
        x: root.margin
        y: root.margin
        textFormat: Text.PlainText
        color: background.textColor
    }
}
