import QtQuick 1.1

// The inner item goes while the root does, which stands in it.
Item {
    id: root
    width: 200; height: 200
    Item {
        id: outer
        Item { id: inner }
    }
    MouseArea {
        anchors.fill: parent
        onPressed: { inner.parent = null; root.parent = inner }
    }
}
