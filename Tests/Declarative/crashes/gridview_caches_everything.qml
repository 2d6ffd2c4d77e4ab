import QtQuick 1.1
GridView { width: 400; height: 400; model: 100000; cellWidth: 1; cellHeight: 1; cacheBuffer: 2147483647; delegate: Item { } }
