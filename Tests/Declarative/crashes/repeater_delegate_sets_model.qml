import QtQuick 1.1
Item { width: 400; height: 400
  Repeater { id: rep; model: 10; Rectangle { width: 4; height: 4; Component.onCompleted: if (index == 5) rep.model = rep.model > 6 ? rep.model - 1 : 3 } }
  Repeater { id: other; model: ListModel { id: m } Rectangle { Component.onCompleted: if (m.count < 100000) m.append({v: 1}) } }
  Column { Repeater { id: third; model: 5; onItemAdded: model = model + 1; Rectangle { width: 4; height: 4 } } }
  Component.onCompleted: m.append({v: 1})
}
