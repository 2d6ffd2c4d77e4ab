import QtQuick 1.1
Flickable { width: 400; height: 400; contentHeight: 4000; onContentYChanged: contentY += 1; onContentHeightChanged: contentHeight += 1; Component.onCompleted: { contentY = 1; contentHeight += 1 }
  Item { width: 10; onHeightChanged: height += 1; Component.onCompleted: height = 1 } }
