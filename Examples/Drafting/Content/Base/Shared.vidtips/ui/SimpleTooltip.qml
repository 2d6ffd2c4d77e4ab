import QtQuick 1.1
import com.corvale.vidtips.qml 1.0
import "colours.js" as Colours
import "content.js" as Content

// The simple tip: title, shortcut and one line, in the desktop's tool-tip colours. Letters on these are black, which
// a dark desktop's do not suit, so that the colours are those of windows there.
Item {
    id: root

    property QtObject tip: vidtip
    property bool complete: false
    property bool mirrored: Qt.application.layoutDirection === Qt.RightToLeft
    property int margin: 8
    property int widest: 320
    property bool dark: Colours.luminance(palette.window) < 0.18
    property color text: dark ? palette.windowText : background.textColor

    function read() {
        if (!tip || !complete)
            return;
        title.text = Content.attribute(tip, "title");
        shortcut.text = tip.attribute("shortcut");
        var reason = Content.hostProperty("available", "on") === "off" ? Content.text(tip, "unavailable") : "";
        line.text = reason !== "" ? reason : Content.text(tip, "summary").replace(/([.!?])\s.*$/, "$1");
    }

    onTipChanged: read()
    Component.onCompleted: { complete = true; read() }

    width: Math.ceil(Math.max(title.paintedWidth + (shortcut.text === "" ? 0 : shortcut.paintedWidth + 16),
                              line.text === "" ? 0 : Math.min(measure.paintedWidth, widest - 2 * margin))) + 2 * margin
    height: Math.ceil(title.paintedHeight + (line.text === "" ? 0 : line.paintedHeight + 2)) + 2 * 6

    SystemPalette { id: palette }
    VTStyledRectangle {
        id: background
        width: root.width - 1
        height: root.height - 1
        toolTipStyle: true
    }
    // A border of one pixel lies within its item at the left and above, and beyond it at the right and below.
    Rectangle {
        width: root.width - 1
        height: root.height - 1
        color: palette.window
        border { width: 1; color: Colours.mixed(palette.window, palette.windowText, 0.3) }
        visible: root.dark
    }
    Text {
        id: title
        x: root.mirrored ? root.width - paintedWidth - root.margin : root.margin
        y: 6
        textFormat: Text.PlainText
        font.bold: true
        color: root.text
    }
    Text {
        id: shortcut
        x: root.mirrored ? root.margin : root.width - paintedWidth - root.margin
        y: 6
        textFormat: Text.PlainText
        color: root.text
        opacity: 0.65
    }
    Text {
        id: line
        x: root.margin
        y: 6 + title.paintedHeight + 2
        width: Math.min(root.widest - 2 * root.margin, measure.paintedWidth + 1)
        wrapMode: Text.Wrap
        horizontalAlignment: root.mirrored ? Text.AlignRight : Text.AlignLeft
        textFormat: Text.PlainText
        color: root.text
    }
    Text {
        id: measure
        text: line.text
        textFormat: Text.PlainText
        visible: false
    }
}
