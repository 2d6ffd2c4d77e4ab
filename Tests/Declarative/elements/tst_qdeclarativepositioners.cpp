#include "MessageRecorder.h"
#include "QmlScene.h"
#include "WatchedScene.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsWidget>

class tst_QDeclarativePositioners : public QObject
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
    void emptySize_data();
    void emptySize();
    void skipped_data();
    void skipped();
    void showsAndHidesAtOnce();
    void wholePixels();
    void negativeSizes();
    void handlersThatGrowChildrenEnd();
    void sharedTransition();
    void rowWithTransparentAndHiddenItems();
    void followsChanges_data();
    void followsChanges();
    void hiddenParentKeepsPlaces();
    void goesOnWhereItChanged_data();
    void goesOnWhereItChanged();
    void ownSizeWins();
    void deletedChildrenAreLeftOut();
    void stackingOrderDoesNotMatter();
    void graphicsWidgetsArePlaced();
    void sizeBoundToPositionerEnds();
    void addAndMove();
    void anchorsAreWarnedOf_data();
    void anchorsAreWarnedOf();
    void layoutDirectionIsNewIn11();
    void mirrored();
};

static const char kids[] = "Rectangle { objectName: \"a\"; width: 20; height: 10 }\n"
                           "Rectangle { objectName: \"b\"; width: 30; height: 20 }\n"
                           "Rectangle { objectName: \"c\"; width: 10; height: 30 }\n";

static QByteArray scene(const QByteArray &positioner, const QByteArray &children = kids)
{
    return "import QtQuick 1.1\nItem { id: root; width: 200; height: 200\n" + positioner
        + "\nobjectName: \"p\"\n" + children + "} }";
}

/** The places of a, b and c as text. */
static QString placesOf(QmlScene *scene)
{
    QStringList places;
    for (const char *name : {"a", "b", "c"}) {
        const QPointF pos = scene->find(name)->pos();
        places << QStringLiteral("%1,%2").arg(pos.x()).arg(pos.y());
    }
    return places.join(QLatin1Char(' '));
}

static QSizeF sizeOf(QmlScene *scene)
{
    return QSizeF(scene->find("p")->width(), scene->find("p")->height());
}

void tst_QDeclarativePositioners::places_data()
{
    QTest::addColumn<QByteArray>("positioner");
    QTest::addColumn<QString>("places");
    QTest::addColumn<QSizeF>("size");
    const auto row = [](const char *name, const char *positioner, const char *places, const QSizeF &size) {
        QTest::newRow(name) << QByteArray(positioner) << QString::fromLatin1(places) << size;
    };
    row("row", "Row { spacing: 5", "0,0 25,0 60,0", {70, 30});
    row("row, negative spacing", "Row { spacing: -5", "0,0 15,0 40,0", {50, 30});
    row("row, right to left", "Row { spacing: 5; layoutDirection: Qt.RightToLeft", "50,0 15,0 0,0", {70, 30});
    row("row, right to left in its width", "Row { width: 100; layoutDirection: Qt.RightToLeft",
        "80,0 50,0 40,0", {100, 30});
    row("column", "Column { spacing: 5", "0,0 0,15 0,40", {30, 70});
    row("grid, an empty cell", "Grid { spacing: 1", "0,0 21,0 52,0", {63, 30});
    row("grid, empty cells", "Grid { columns: 9; rows: 4; spacing: 1", "0,0 21,0 52,0", {63, 33});
    row("grid, very many cells", "Grid { columns: 2000000000; rows: 2000000000", "0,0 20,0 50,0", {60, 30});
    row("grid, empty cells below", "Grid { columns: 3; rows: 9; flow: Grid.TopToBottom; spacing: 1",
        "0,0 0,11 0,32", {32, 63});
    row("grid, columns", "Grid { columns: 2", "0,0 20,0 0,20", {50, 50});
    row("grid, rows", "Grid { rows: 2; spacing: 2", "0,0 22,0 0,22", {52, 52});
    row("grid, both", "Grid { rows: 3; columns: 1", "0,0 0,10 0,30", {30, 60});
    row("grid, too few cells", "Grid { rows: 1; columns: 2", "0,0 20,0 0,0", {50, 20});
    row("grid, downwards", "Grid { rows: 2; flow: Grid.TopToBottom", "0,0 0,30 30,0", {40, 50});
    row("grid, right to left", "Grid { columns: 2; layoutDirection: Qt.RightToLeft", "30,0 0,0 40,20",
        {50, 50});
    row("flow", "Flow { width: 55; spacing: 2", "0,0 22,0 0,22", {55, 52});
    row("flow, without width", "Flow { spacing: 2", "0,0 22,0 54,0", {64, 30});
    row("flow, narrower than a child", "Flow { width: 5", "0,0 0,10 0,30", {5, 60});
    row("flow, downwards", "Flow { height: 35; flow: Flow.TopToBottom", "0,0 0,10 30,0", {40, 35});
    row("flow, right to left", "Flow { width: 55; layoutDirection: Qt.RightToLeft", "35,0 5,0 45,20",
        {55, 50});
}

void tst_QDeclarativePositioners::places()
{
    QFETCH(QByteArray, positioner);
    QFETCH(QString, places);
    QFETCH(QSizeF, size);
    QmlScene scene;
    scene.load(::scene(positioner));
    QCOMPARE(placesOf(&scene), places);
    QCOMPARE(sizeOf(&scene), size);
}

void tst_QDeclarativePositioners::emptySize_data()
{
    QTest::addColumn<QByteArray>("positioner");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("Row") << QByteArray("Row { spacing: 3") << QSizeF(-3, -1);
    QTest::newRow("Grid, rows") << QByteArray("Grid { rows: 3; spacing: 2") << QSizeF(-1, -1);
    QTest::newRow("Grid, columns") << QByteArray("Grid { columns: 3; spacing: 2") << QSizeF(-1, -1);
    QTest::newRow("Grid, both") << QByteArray("Grid { rows: 3; columns: 3; spacing: 2") << QSizeF(0, 4);
    QTest::newRow("Grid, downwards") << QByteArray("Grid { flow: Grid.TopToBottom") << QSizeF(-1, -1);
    QTest::newRow("Column") << QByteArray("Column { spacing: 3") << QSizeF(-1, -3);
    QTest::newRow("Grid") << QByteArray("Grid {") << QSizeF(-1, -1);
    QTest::newRow("Flow") << QByteArray("Flow {") << QSizeF(-1, -1);
}

void tst_QDeclarativePositioners::emptySize()
{
    QFETCH(QByteArray, positioner);
    QFETCH(QSizeF, size);
    QmlScene scene;
    scene.load(::scene(positioner, QByteArray()));
    QCOMPARE(sizeOf(&scene), size);
}

void tst_QDeclarativePositioners::skipped_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("places");
    const auto skip = [](const char *property, const char *value) {
        QTest::newRow(property)
            << QStringLiteral("b.%1 = %2").arg(QLatin1String(property), QLatin1String(value))
            << QStringLiteral("0,0 20,0 20,0");
    };
    skip("visible", "false");
    skip("opacity", "0");
    skip("width", "0");
    skip("height", "0");
}

void tst_QDeclarativePositioners::skipped()
{
    QFETCH(QString, script);
    QFETCH(QString, places);
    QmlScene scene;
    scene.load(::scene("property alias b: second; Row { ",
                       "Rectangle { objectName: \"a\"; width: 20; height: 10 }\n"
                       "Rectangle { id: second; objectName: \"b\"; width: 30; height: 20 }\n"
                       "Rectangle { objectName: \"c\"; width: 10; height: 30 }"));
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 20,0 50,0"));
    scene.run(script);
    QTRY_COMPARE(placesOf(&scene), places);
}

void tst_QDeclarativePositioners::showsAndHidesAtOnce()
{
    QmlScene scene;
    scene.load(::scene("Row {"));
    scene.run(QStringLiteral("children[0].children[0].visible = false"));
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 20,0 50,0"));
    scene.run(QStringLiteral("children[0].children[1].visible = false"));
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("0,0 20,0 0,0"));
    // A new size does not wait, and what waited is done with it.
    scene.run(QStringLiteral("children[0].children[0].visible = true"));
    scene.run(QStringLiteral("children[0].children[2].width = 15"));
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 20,0 20,0"));
    QCOMPARE(sizeOf(&scene).width(), 35.0);
}

void tst_QDeclarativePositioners::wholePixels()
{
    static const char fractions[] = "Rectangle { objectName: \"a\"; width: 10.6; height: 10.6 }\n"
                                    "Rectangle { objectName: \"b\"; width: 10.6; height: 10.4 }\n"
                                    "Rectangle { objectName: \"c\"; width: 10.6; height: 10.6 }\n";
    const auto check = [](const char *positioner, const char *places, const QSizeF &size) {
        QmlScene scene;
        scene.load(::scene(positioner, fractions));
        QCOMPARE(placesOf(&scene), QString::fromLatin1(places));
        QCOMPARE(sizeOf(&scene), size);
    };
    check("Row {", "0,0 10,0 20,0", {30, 10.6});
    check("Row { layoutDirection: Qt.RightToLeft", "19,0 9,0 0,0", {30, 10.6});
    check("Column { spacing: 1", "0,0 0,11 0,22", {10.6, 32});
    check("Grid { columns: 2", "0,0 10,0 0,10", {20, 20});
    check("Flow { width: 25", "0,0 10,0 0,11", {25, 21.6});
}

void tst_QDeclarativePositioners::negativeSizes()
{
    QmlScene scene;
    scene.load(::scene("Row { spacing: 2"));
    scene.find("a")->setWidth(-5);
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 -3,0 29,0"));
}

void tst_QDeclarativePositioners::handlersThatGrowChildrenEnd()
{
    QmlScene scene;
    MessageRecorder messages;
    scene.load(::scene("Row { onWidthChanged: children[0].width += 1"));
    QVERIFY(messages.texts().join(QLatin1Char('\n')).contains(QLatin1String("Possible loop")));
    QVERIFY(sizeOf(&scene).width() < 100);
}

void tst_QDeclarativePositioners::sharedTransition()
{
    QmlScene scene;
    scene.load(::scene("Row { id: row; add: slide; move: slide\n"
                       "Transition { id: slide; NumberAnimation { property: \"x\"; duration: 20 } }"));
    // Moving ends what adding has begun with the same transition.
    scene.find("a")->setWidth(25);
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("0,0 25,0 55,0"));
    scene.find("b")->setVisible(false);
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("0,0 25,0 25,0"));
    scene.find("b")->setX(7);
    scene.find("b")->setVisible(true);
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("0,0 7,0 55,0"));
}

void tst_QDeclarativePositioners::rowWithTransparentAndHiddenItems()
{
    QmlScene scene;
    scene.load(::scene("Row { spacing: 2",
                       "Rectangle { width: 10; height: 10 }\n"
                       "Rectangle { width: 10; height: 10; opacity: 0 }\n"
                       "Rectangle { width: 10; height: 10; visible: false }\n"
                       "Rectangle { objectName: \"fourth\"; width: 10; height: 10 }"));
    QCOMPARE(sizeOf(&scene).width(), 22.0);
    QCOMPARE(scene.find("fourth")->x(), 12.0);
}

void tst_QDeclarativePositioners::followsChanges_data()
{
    QTest::addColumn<QByteArray>("positioner");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("places");
    const auto row = [](const char *positioner, const char *script, const char *places) {
        QTest::newRow(script) << QByteArray(positioner) << QString::fromLatin1(script)
                              << QString::fromLatin1(places);
    };
    row("Row {", "children[0].spacing = 4", "0,0 24,0 58,0");
    row("Row {", "children[0].children[0].width = 50", "0,0 50,0 80,0");
    row("Row {", "children[0].layoutDirection = Qt.RightToLeft", "40,0 10,0 0,0");
    row("Grid { columns: 1", "children[0].columns = 3", "0,0 20,0 50,0");
    row("Grid { rows: 1", "children[0].rows = 3", "0,0 0,10 0,30");
    row("Grid { columns: 2", "children[0].flow = Grid.TopToBottom", "0,0 0,30 30,0");
    row("Flow {", "children[0].width = 25", "0,0 0,10 0,30");
    row("Flow { height: 35", "children[0].flow = Flow.TopToBottom", "0,0 0,10 30,0");
}

void tst_QDeclarativePositioners::followsChanges()
{
    QFETCH(QByteArray, positioner);
    QFETCH(QString, script);
    QFETCH(QString, places);
    QmlScene scene;
    scene.load(::scene(positioner));
    QVERIFY(placesOf(&scene) != places);
    scene.run(script);
    QCOMPARE(placesOf(&scene), places);
}

void tst_QDeclarativePositioners::hiddenParentKeepsPlaces()
{
    QmlScene scene;
    scene.load(::scene("Row {"));
    scene.find("p")->setVisible(false);
    scene.run(QStringLiteral("children[0].spacing = 10"));
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 30,0 70,0"));
}

void tst_QDeclarativePositioners::goesOnWhereItChanged_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("places");
    const auto row = [](const char *script, const char *places) {
        QTest::newRow(script) << QByteArray(script) << QString::fromLatin1(places);
    };
    row("", "0 12 24 34");
    row("add(10)", "0 12 24 36 46");
    row("add(0); add(10)", "0 12 24 36 36 46");
    row("kid(0).height = 3", "0 5 17 27");
    row("kid(2).height = 3", "0 12 24 27");
    row("kid(1).height = 3; kid(0).height = 3", "0 5 10 20");
    // Where one was put elsewhere by hand it goes back with the next that is placed.
    row("kid(1).y = 50; kid(2).height = 11", "0 12 24 35");
    row("kid(0).y = 50; add(10)", "0 12 24 36 46");
    row("kid(1).parent = root; add(10)", "0 12 24 34");
    row("kid(0).destroy(); add(10)", "0 12 24 34");
    row("kid(2).destroy(); add(10)", "0 12 24 34");
    row("kid(1).visible = false", "0 12 12 22");
    row("kid(1).visible = false; kid(2).height = 3", "0 12 12 15");
    row("column.spacing = 0; add(10)", "0 10 20 30 40");
    row("add(-4); add(10)", "0 12 24 36 34 44");
}

void tst_QDeclarativePositioners::goesOnWhereItChanged()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, places);
    for (const bool isRow : {false, true}) {
        WatchedScene scene;
        QByteArray source =
            "Item { id: root; width: 90; height: 90; Component { id: box; Item { width: 7; height: 7 } }\n"
            "function kid(i) { return column.children[i] }\n"
            "function add(height) { box.createObject(column, { height: height }) }\n"
            "function places() { var s = []; for (var i = 0; i < column.children.length; ++i) "
            "s.push(kid(i).y);\n"
            "s.push(column.height); return s.join(' ') }\n"
            "Column { id: column; spacing: 2; Item { width: 9; height: 10 } Item { width: 9; height: 10 }\n"
            "Item { width: 9; height: 10 } } }";
        if (isRow)
            source.replace("Column", "Row")
                .replace("height", "side")
                .replace("width", "height")
                .replace("side", "width")
                .replace(".y", ".x");
        QByteArray steps = script;
        if (isRow)
            steps.replace("height", "width").replace(".y", ".x");
        QVERIFY(scene.load(source));
        scene.evaluate(steps);
        QTRY_COMPARE(scene.evaluate("places()").toString(), places);
        QCOMPARE(scene.warnings, QStringList());
    }
}

void tst_QDeclarativePositioners::ownSizeWins()
{
    QmlScene scene;
    scene.load(::scene("Row { width: 7; height: 8"));
    QCOMPARE(sizeOf(&scene), QSizeF(7, 8));
    QCOMPARE(scene.find("p")->implicitWidth(), 60.0);
    QCOMPARE(scene.find("p")->implicitHeight(), 30.0);
}

void tst_QDeclarativePositioners::deletedChildrenAreLeftOut()
{
    QmlScene scene;
    scene.load(::scene("Row {"));
    delete scene.find("b");
    QCOMPARE(scene.find("c")->x(), 20.0);
    scene.find("a")->setParentItem(nullptr);
    QCOMPARE(scene.find("c")->x(), 0.0);
    QCOMPARE(sizeOf(&scene), QSizeF(10, 30));
}

void tst_QDeclarativePositioners::stackingOrderDoesNotMatter()
{
    QmlScene scene;
    scene.load(::scene("Row {"));
    scene.find("a")->setZValue(5);
    scene.run(QStringLiteral("children[0].spacing = 1"));
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 21,0 52,0"));
    scene.find("c")->stackBefore(scene.find("a"));
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("11,0 32,0 0,0"));
}

void tst_QDeclarativePositioners::graphicsWidgetsArePlaced()
{
    QmlScene scene;
    scene.load(::scene("Row {", "Rectangle { width: 20; height: 10 }"));
    auto *widget = new QGraphicsWidget;
    widget->resize(40, 15);
    widget->setParentItem(scene.find("p"));
    QCOMPARE(widget->x(), 20.0);
    QCOMPARE(sizeOf(&scene), QSizeF(60, 15));
    widget->resize(50, 25);
    QCOMPARE(sizeOf(&scene), QSizeF(70, 25));
    delete widget;
    QCOMPARE(sizeOf(&scene), QSizeF(20, 10));
}

void tst_QDeclarativePositioners::sizeBoundToPositionerEnds()
{
    QmlScene scene;
    MessageRecorder messages; // the engine tells of the loop
    scene.load(::scene("Column { id: col",
                       "Rectangle { width: col.width + 5; height: 10 }\n"
                       "Rectangle { objectName: \"b\"; width: 40; height: 10 }"));
    QCOMPARE(scene.find("b")->y(), 10.0);
    QVERIFY(sizeOf(&scene).width() < 1000);
}

void tst_QDeclarativePositioners::addAndMove()
{
    QmlScene scene;
    scene.load(::scene("property int adds: 0; property int moves: 0; Column { id: col\n"
                       "add: Transition { ScriptAction { script: root.adds++ } }\n"
                       "move: Transition { SequentialAnimation { ScriptAction { script: root.moves++ }\n"
                       "NumberAnimation { property: \"y\"; duration: 50 } } }\n"));
    QCOMPARE(scene.root()->property("adds").toInt(), 1);
    QCOMPARE(scene.root()->property("moves").toInt(), 1);
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("0,0 0,10 0,30"));
    scene.find("a")->setHeight(40);
    QCOMPARE(scene.root()->property("adds").toInt(), 2);
    QCOMPARE(scene.root()->property("moves").toInt(), 2);
    QCOMPARE(scene.find("b")->y(), 10.0);
    QTRY_COMPARE(placesOf(&scene), QStringLiteral("0,0 0,40 0,60"));
    // A child that goes while it is being moved is no trouble.
    scene.find("a")->setHeight(10);
    delete scene.find("b");
    QTRY_COMPARE(scene.find("c")->y(), 10.0);
}

void tst_QDeclarativePositioners::anchorsAreWarnedOf_data()
{
    QTest::addColumn<QByteArray>("positioner");
    QTest::addColumn<QByteArray>("anchor");
    QTest::addColumn<QString>("message");
    const QString row =
        QStringLiteral("QML Row: Cannot specify left, right, horizontalCenter, fill or centerIn "
                       "anchors for items inside Row");
    const QString column = QStringLiteral("QML Column: Cannot specify top, bottom, verticalCenter, fill or "
                                          "centerIn anchors for items inside Column");
    const auto add = [](const char *positioner, const char *anchor, const QString &message) {
        const QByteArray name = QByteArray(positioner) + ", " + anchor;
        QTest::newRow(name) << QByteArray(positioner) << QByteArray(anchor) << message;
    };
    for (const char *anchor :
         {"left: parent.left", "right: parent.right", "horizontalCenter: parent.horizontalCenter",
          "fill: parent", "centerIn: parent"})
        add("Row", anchor, row);
    for (const char *anchor :
         {"top: parent.top", "bottom: parent.bottom", "verticalCenter: parent.verticalCenter"})
        add("Row", anchor, QString());
    for (const char *anchor : {"top: parent.top", "bottom: parent.bottom",
                               "verticalCenter: parent.verticalCenter", "fill: parent", "centerIn: parent"})
        add("Column", anchor, column);
    add("Column", "left: parent.left", QString());
    for (const char *positioner : {"Grid", "Flow"}) {
        for (const char *anchor :
             {"left: parent.left", "top: parent.top", "fill: parent", "centerIn: parent"}) {
            add(positioner, anchor,
                QStringLiteral("QML %1: Cannot specify anchors for items inside %1")
                    .arg(QLatin1String(positioner)));
        }
    }
}

void tst_QDeclarativePositioners::anchorsAreWarnedOf()
{
    QFETCH(QByteArray, positioner);
    QFETCH(QByteArray, anchor);
    QFETCH(QString, message);
    QmlScene scene;
    QStringList texts;
    {
        MessageRecorder messages;
        scene.load(::scene(positioner + " {",
                           "Rectangle { width: 9; height: 9; anchors." + anchor
                               + " }\nRectangle { width: 9; height: 9 }"));
        scene.run(QStringLiteral("children[0].spacing = 3"));
        texts = messages.texts();
    }
    // Filling what grows with its content is a loop; that is told, too.
    const QStringList told =
        texts.filter(QRegularExpression(QStringLiteral(": (QML \\w+: )?Cannot specify")));
    QCOMPARE(told.count(), message.isEmpty() ? 0 : 1);
    if (message.isEmpty())
        QCOMPARE(texts, QStringList());
    else
        QVERIFY2(told.at(0).endsWith(message), qPrintable(told.at(0)));
}

void tst_QDeclarativePositioners::layoutDirectionIsNewIn11()
{
    QmlScene scene;
    QQmlComponent old(scene.view().engine());
    old.setData("import QtQuick 1.0\nRow { layoutDirection: Qt.RightToLeft }", QUrl());
    QVERIFY(old.isError());
}

void tst_QDeclarativePositioners::mirrored()
{
    QmlScene scene;
    scene.load(::scene("Row { LayoutMirroring.enabled: true"));
    QCOMPARE(placesOf(&scene), QStringLiteral("40,0 10,0 0,0"));
    scene.run(QStringLiteral("children[0].LayoutMirroring.enabled = false"));
    QCOMPARE(placesOf(&scene), QStringLiteral("0,0 20,0 50,0"));
}

QTEST_MAIN(tst_QDeclarativePositioners)
#include "tst_qdeclarativepositioners.moc"
