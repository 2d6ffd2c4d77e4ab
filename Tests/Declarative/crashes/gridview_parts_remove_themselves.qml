import QtQuick 1.1
GridView { id: g; width: 400; height: 400; model: 3; delegate: Rectangle { width: 20; height: 20; MouseArea { anchors.fill: parent; onClicked: g.delegate = null } }
  header: Rectangle { width: 400; height: 40; MouseArea { anchors.fill: parent; onClicked: { g.header = null; g.footer = null; g.highlight = null } } Component.onCompleted: g.model = 5 }
  footer: Rectangle { width: 400; height: 40; Component.onCompleted: g.header = g.footer; Component.onDestruction: g.model = 7 }
  highlight: Rectangle { width: 400; height: 40; onXChanged: g.highlight = null; Component.onCompleted: g.currentIndex = 2 }
}
