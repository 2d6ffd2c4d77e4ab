import QtQuick 1.0

Rectangle {
    width: 120
    height: 40

    Text {
        anchors.centerIn: parent
        text: vidtip.attribute("title")
    }
}
