import QtQuick 1.1
PathView { id: p; width: 400; height: 400; ListModel { id: m } model: m; path: Path { startX: 20; startY: 20; PathLine { x: 400; y: 400 } PathAttribute { name: "s"; value: 4 } }
  delegate: Rectangle { width: 40; height: 40; property bool c: PathView.isCurrentItem; onCChanged: p.currentIndex += 3; onXChanged: p.offset += 1; Component.onCompleted: if (m.count > 3 && index % 3 == 0) m.remove(0); else if (m.count < 300) m.append({v: 2}) 
    MouseArea { anchors.fill: parent; onClicked: p.model = 4 } }
  onCurrentIndexChanged: m.move(0, m.count - 1, 1)
  onOffsetChanged: pathItemCount = count % 7
  Component.onCompleted: { for (var i = 0; i < 60; ++i) m.append({v: i}); currentIndex = 30; m.move(2, 40, 3); m.clear() } }
