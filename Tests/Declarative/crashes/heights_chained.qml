import QtQuick 1.1
Item { id: top; width: 400; height: 400
  Component { id: box; Item { property Item before; height: before ? before.height + 1 : 1 } }
  Component.onCompleted: { var last = box.createObject(top); top.first = last; for (var i = 0; i < 5000; ++i) last = box.createObject(top, {"before": last}); top.first.height = 5 }
  property Item first
  MouseArea { anchors.fill: parent; onClicked: top.first.height += 1 }
}
