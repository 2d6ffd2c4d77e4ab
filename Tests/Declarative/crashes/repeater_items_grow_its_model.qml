import QtQuick 1.1

// Each item brings rows, of which the repeater hears by a binding.
Item {
    width: 200; height: 200
    ListModel { id: rows; ListElement { v: 1 } }
    Column {
        Repeater {
            model: rows.count
            onItemAdded: if (rows.count < 800) { rows.append({v: 2}); rows.append({v: 3}) }
            Rectangle { width: 10; height: 10 }
        }
    }
}
