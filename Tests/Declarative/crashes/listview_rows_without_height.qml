import QtQuick 1.1
ListView { width: 400; height: 400; model: 100000; delegate: Item { width: 20 } }
