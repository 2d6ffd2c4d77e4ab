import QtQuick 1.1
Item { id: top; width: 400; height: 400
  Component { id: box; Rectangle { width: 2; height: 2; property Item after; anchors.left: after ? after.right : undefined } }
  Component.onCompleted: { var last = null; for (var i = 0; i < 5000; ++i) { last = last ? box.createObject(top, {"after": last}) : box.createObject(top) } 
    top.children[1].width = 3; }
  Keys.onPressed: children[1].width += 1; focus: true
  MouseArea { anchors.fill: parent; onClicked: top.children[1].width += 1 }
}
