import QtQuick 1.1

PathView {
    id: root
    width: 200; height: 200
    property int rows: 3
    model: rows
    path: Path { startX: 10; startY: 10; PathLine { x: 190; y: 190 } }
    delegate: Item { width: 10; height: 10; Component.onCompleted: root.rows += 2 }
}
