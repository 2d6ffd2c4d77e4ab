import QtQuick 1.0
import com.corvale.vidtips.qml 1.0

Item {
    width: 120
    height: 40

    VTStyledRectangle {
        anchors.fill: parent
        toolTipStyle: true
    }

    Text {
        anchors.centerIn: parent
        text: vidtip.attribute("title")
    }
}
