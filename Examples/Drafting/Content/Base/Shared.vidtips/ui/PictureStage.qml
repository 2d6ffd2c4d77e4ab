import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// A picture over the full width, in the proportions of a clip so that tips of either kind look alike.
Rectangle {
    id: stage

    property variant ui
    property url source
    property string name: ""

    width: parent ? parent.width : 352
    height: Math.round(width * 9 / 16)
    color: "#171d25"

    Image {
        anchors.fill: parent
        source: stage.source
        fillMode: Image.PreserveAspectFit
        smooth: true
        VTAccessible.name: stage.name
    }
}
