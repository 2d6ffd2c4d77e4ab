import QtQuick 1.1

Item {
    id: root
    width: 200; height: 200
    property int rows: 3
    Repeater {
        model: root.rows
        onItemAdded: root.rows += 2
        Item { }
    }
}
