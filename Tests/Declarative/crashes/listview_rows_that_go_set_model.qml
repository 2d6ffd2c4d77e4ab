import QtQuick 1.1

// Each of the many rows has all of them made again when the scene is unloaded.
Item {
    id: root
    property int times: 0
    width: 100
    height: 100

    ListView {
        id: view
        width: 100
        height: 100
        highlightRangeMode: ListView.StrictlyEnforceRange
        model: 20000
        delegate: Item {
            width: 100
            Component.onDestruction: view.model = 20000 + root.times++ % 20
        }
    }
}
