import QtQuick 1.1
Item { id: top; width: 400; height: 400
  Component { id: box; Item { property Item before; property int value: before ? before.value + 1 : 0 } }
  Component.onCompleted: { var last = box.createObject(top); top.first = last; for (var i = 0; i < 5000; ++i) last = box.createObject(top, {"before": last}); top.first.value = 5 }
  property Item first
  MouseArea { anchors.fill: parent; onClicked: top.first.value += 1 }
}
