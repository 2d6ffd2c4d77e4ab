import QtQuick 1.1
import "colours.js" as Colours

// The look that all parts share: colours of the desktop's palette, a type scale that follows the desktop's font,
// spacing in steps of 4 pixels, and the reading direction.
Item {
    id: style

    property bool mirrored: Qt.application.layoutDirection === Qt.RightToLeft
    property bool motion: true

    property color window: palette.window
    property color text: palette.windowText
    property color accent: palette.highlight
    property color accentTint: Colours.mixed(window, accent, 0.16)
    property color accentText: Colours.readable(accent, accentTint, text)
    property color onAccent: palette.highlightedText
    property color caution: "#d98a00"

    property real strong: 1
    property real soft: 0.78
    property real faint: 0.55
    property real hairline: 0.14
    property real tint: 0.07

    property int body: Math.max(11, Math.round(probe.paintedHeight * 0.8))
    property int title: body + 3
    property int small: body - 1
    property int margin: 16
    property int growTime: motion ? 180 : 0

    property int textAlign: mirrored ? Text.AlignRight : Text.AlignLeft
    property int direction: mirrored ? Qt.RightToLeft : Qt.LeftToRight

    visible: false

    SystemPalette { id: palette }
    Text { id: probe; text: "Ag" }
}
