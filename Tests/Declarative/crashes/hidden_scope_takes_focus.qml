import QtQuick 1.1

// Hidden while its window is not active, a scope takes the focus over from what is inside, which then goes.
Item {
    id: root
    width: 400; height: 400
    property Item last
    Component { id: input; TextInput { focus: true; width: 40; height: 20; text: "a" } }
    FocusScope {
        id: scope
        focus: true
        Item { id: box }
    }
    TextInput { id: other; y: 100; width: 40; height: 20 }
    function turn() {
        scope.visible = true
        last = input.createObject(box)
        last.forceActiveFocus()
        scope.visible = false
        scope.focus = true
        scope.forceActiveFocus()
        last.destroy()
    }
    Component.onCompleted: turn()
    Timer { interval: 1; running: true; repeat: true; onTriggered: { other.forceActiveFocus(); turn() } }
}
