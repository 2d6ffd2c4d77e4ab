import QtQuick 1.1
PathView { width: 400; height: 400; model: 10; dragMargin: 400
  path: Path { startX: 20; startY: 20; PathLine { x: 200; y: 20 } PathPercent { value: 0.3 } PathLine { x: 200; y: 200 } PathPercent { value: 0.8 } PathLine { x: 20; y: 20 } }
  delegate: Rectangle { width: 40; height: 40 } }
