import QtQuick 1.1
ListView { width: 400; height: 400; model: 100000; spacing: -20; delegate: Rectangle { width: 20; height: 20 } }
