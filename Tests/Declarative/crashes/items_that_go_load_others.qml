import QtQuick 1.1

// Each row that goes has the loader make the next view, before the event loop is reached again.
Item {
    id: page
    width: 400; height: 400
    Component {
        id: content
        ListView {
            width: 400; height: 400
            model: 20
            delegate: Item {
                width: 60; height: 20
                Component.onDestruction: { box.sourceComponent = null; box.sourceComponent = content }
            }
        }
    }
    Loader { id: box; sourceComponent: content }
    MouseArea { anchors.fill: parent; onPressed: box.item.model = 0 }
}
