import QtQuick 1.1
Item { width: 400; height: 400; Loader { id: l; width: 400; height: 400; focus: true; sourceComponent: c }
  Component { id: c; Item { focus: true; Keys.onPressed: l.sourceComponent = null; MouseArea { anchors.fill: parent; onPressed: l.sourceComponent = null; onReleased: l.sourceComponent = d } } }
  Component { id: d; Item { onWidthChanged: l.sourceComponent = c; Component.onDestruction: l.sourceComponent = d; MouseArea { anchors.fill: parent; onEntered: l.source = ""; hoverEnabled: true; onClicked: l.destroy() } } } }
