import QtQuick 1.1
Item { width: 400; height: 400
  Grid { rows: 3 }
  Grid { rows: 3; flow: Grid.TopToBottom; Item {} }
  Grid { columns: -2; rows: 3; spacing: -5; Rectangle { width: 10; height: 10; visible: false } }
  Grid { rows: 2147483647; columns: 2147483647; Rectangle { width: 10; height: 10 } }
}
