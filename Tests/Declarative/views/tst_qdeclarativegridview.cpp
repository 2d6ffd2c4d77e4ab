#include "WatchedScene.h"

#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

class tst_QDeclarativeGridView : public QObject
{
    Q_OBJECT

private slots:
    void cells_data();
    void cells();
    void refusesEmptyCells();
    void visiblePart();
    void cacheBuffer();
    void keys_data();
    void keys();
    void keysOfOthers();
    void moves_data();
    void moves();
    void movesWithoutRows();
    void indexAt_data();
    void indexAt();
    void positions_data();
    void positions();
    void positionsWithoutRows();
    void attached();
    void highlight();
    void highlightStays();
    void strictRange();
    void strictRangeFollows();
    void headerAndFooter();
    void footerFollows();
    void changes_data();
    void changes();
    void insertedAbove();
    void removedAbove();
    void addAndRemove();
    void delayRemove();
    void models_data();
    void models();
    void resized();
    void snaps_data();
    void snaps();
    void goesIdle();
};

namespace {

/** Three cells of 20 by 10 pixels to a line, and four lines of the ten in view. */
const QByteArray grid =
    "Item { id: root; width: 70; height: 40; property string log\n"
    "property bool passed; Keys.onPressed: passed = true\n"
    "ListModel { id: letters; %2 }\n"
    "GridView { id: view; objectName: 'view'; anchors.fill: parent; model: letters; focus: true\n"
    "cellWidth: 20; cellHeight: 10; highlightMoveDuration: 0\n"
    "delegate: Item { objectName: 'cell' + n; width: 16; height: 8; property int row: index\n"
    "property bool current: GridView.isCurrentItem; property variant owner: GridView.view\n"
    "GridView.onAdd: root.log += '+' + n; GridView.onRemove: root.log += '-' }\n"
    "%1 } }";

QByteArray withView(const QByteArray &content)
{
    QByteArray rows;
    for (int row = 0; row < 30; ++row)
        rows += "ListElement { n: " + QByteArray::number(row) + " } ";
    return QByteArray(grid).replace("%1", content).replace("%2", rows);
}

QPointF at(WatchedScene &scene, const char *name)
{
    const QGraphicsObject *item = scene.item(name);
    return item ? item->pos() : QPointF(-1, -1);
}

int number(WatchedScene &scene, const char *property)
{
    return scene.item("view")->property(property).toInt();
}

/** The rows that have an item, in order, with the cells that they stand in. */
QString shown(WatchedScene &scene)
{
    QMap<int, QString> cells;
    const auto children =
        scene.item("view")->property("contentItem").value<QDeclarativeItem *>()->childItems();
    for (QGraphicsItem *child : children) {
        const QGraphicsObject *item = child->toGraphicsObject();
        const QString name = item->objectName();
        if (name.startsWith(QStringLiteral("cell")))
            cells.insert(int(item->y()) / 10 * 3 + int(item->x()) / 20, name.mid(4));
    }
    QStringList text;
    for (auto cell = cells.cbegin(); cell != cells.cend(); ++cell)
        text += QStringLiteral("%1:%2").arg(cell.key()).arg(cell.value());
    return text.join(QLatin1Char(' '));
}

} // namespace

void tst_QDeclarativeGridView::cells_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QPointF>("second");
    QTest::addColumn<QPointF>("fifth");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("left to right") << QByteArray() << QPointF(20, 0) << QPointF(20, 10) << QSizeF(-1, 100);
    QTest::newRow("right to left") << QByteArray("layoutDirection: Qt.RightToLeft") << QPointF(20, 0)
                                   << QPointF(20, 10) << QSizeF(-1, 100);
    QTest::newRow("mirrored") << QByteArray(
        "LayoutMirroring.enabled: true; Component.onCompleted: cellWidth = 30")
                              << QPointF(0, 0) << QPointF(30, 20) << QSizeF(-1, 150);
    QTest::newRow("top to bottom") << QByteArray("flow: GridView.TopToBottom") << QPointF(0, 10)
                                   << QPointF(20, 0) << QSizeF(160, -1);
    QTest::newRow("top to bottom, right to left")
        << QByteArray("flow: GridView.TopToBottom; layoutDirection: Qt.RightToLeft") << QPointF(-20, 10)
        << QPointF(-40, 0) << QSizeF(160, -1);
    QTest::newRow("wider than the view") << QByteArray("Component.onCompleted: cellWidth = 90")
                                         << QPointF(0, 10) << QPointF(0, 40) << QSizeF(-1, 300);
}

void tst_QDeclarativeGridView::cells()
{
    QFETCH(QByteArray, content);
    QFETCH(QSizeF, size);
    WatchedScene scene;
    QVERIFY(scene.load(withView(content)));
    QTEST(at(scene, "cell1"), "second");
    QTEST(at(scene, "cell4"), "fifth");
    QCOMPARE(scene.item("view")->property("contentWidth").toReal(), size.width());
    QCOMPARE(scene.item("view")->property("contentHeight").toReal(), size.height());
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeGridView::refusesEmptyCells()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    QSignalSpy width(scene.item("view"), SIGNAL(cellWidthChanged()));
    scene.evaluate("view.cellWidth = 0; view.cellHeight = -5");
    QCOMPARE(number(scene, "cellWidth"), 20);
    QCOMPARE(number(scene, "cellHeight"), 10);
    QCOMPARE(width.count(), 0);
}

void tst_QDeclarativeGridView::visiblePart()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    QVERIFY(scene.item("cell11"));
    QVERIFY(!scene.item("cell18"));
    scene.evaluate("view.contentY = 15");
    QVERIFY(scene.item("cell14"));
    QCOMPARE(at(scene, "cell14"), QPointF(40, 40));
    // A leap makes nothing of what lies between.
    scene.evaluate("view.currentIndex = -1; view.contentY = 60");
    QVERIFY(scene.item("cell18"));
    QVERIFY(scene.item("cell29"));
    QTRY_VERIFY(!scene.item("cell9"));
    scene.evaluate("view.contentY = 0");
    QCOMPARE(at(scene, "cell0"), QPointF(0, 0));
    QCOMPARE(at(scene, "cell11"), QPointF(40, 30));
}

void tst_QDeclarativeGridView::cacheBuffer()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("cacheBuffer: 30")));
    // One at a time, whenever nothing else is made.
    QVERIFY(!scene.item("cell20"));
    for (int move = 0; move < 20; ++move)
        scene.evaluate("view.contentY = 1 - view.contentY");
    QVERIFY(scene.item("cell23"));
    QVERIFY(!scene.item("cell27"));
}

void tst_QDeclarativeGridView::keys_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to");
    const QByteArray plain;
    const QByteArray mirrored = "layoutDirection: Qt.RightToLeft";
    const QByteArray columns = "flow: GridView.TopToBottom";
    const QByteArray both = columns + "; " + mirrored;
    const QByteArray wraps = "keyNavigationWraps: true";
    QTest::newRow("right") << plain << 4 << int(Qt::Key_Right) << 5;
    QTest::newRow("right at the line's end") << plain << 2 << int(Qt::Key_Right) << 3;
    QTest::newRow("left") << plain << 3 << int(Qt::Key_Left) << 2;
    QTest::newRow("down") << plain << 4 << int(Qt::Key_Down) << 7;
    QTest::newRow("up") << plain << 4 << int(Qt::Key_Up) << 1;
    QTest::newRow("up at the top") << plain << 1 << int(Qt::Key_Up) << 1;
    QTest::newRow("down at the bottom") << plain << 28 << int(Qt::Key_Down) << 28;
    QTest::newRow("left at the start") << plain << 0 << int(Qt::Key_Left) << 0;
    QTest::newRow("wraps up") << wraps << 1 << int(Qt::Key_Up) << 29;
    QTest::newRow("wraps down") << wraps << 28 << int(Qt::Key_Down) << 0;
    QTest::newRow("wraps left") << wraps << 0 << int(Qt::Key_Left) << 29;
    QTest::newRow("wraps right") << wraps << 29 << int(Qt::Key_Right) << 0;
    QTest::newRow("right to left, right") << mirrored << 4 << int(Qt::Key_Right) << 3;
    QTest::newRow("right to left, left") << mirrored << 4 << int(Qt::Key_Left) << 5;
    QTest::newRow("columns, right") << columns << 5 << int(Qt::Key_Right) << 9;
    QTest::newRow("columns, left") << columns << 5 << int(Qt::Key_Left) << 1;
    QTest::newRow("columns, down") << columns << 5 << int(Qt::Key_Down) << 6;
    QTest::newRow("columns, up") << columns << 5 << int(Qt::Key_Up) << 4;
    QTest::newRow("columns right to left, right") << both << 5 << int(Qt::Key_Right) << 1;
    QTest::newRow("columns right to left, left") << both << 5 << int(Qt::Key_Left) << 9;
}

void tst_QDeclarativeGridView::keys()
{
    QFETCH(QByteArray, content);
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, to);
    WatchedScene scene;
    QVERIFY(scene.load(withView(content)));
    scene.item("view")->setProperty("currentIndex", from);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&scene.view(), &press);
    QCOMPARE(number(scene, "currentIndex"), to);
    // What the view has no use for goes on to the items above.
    QCOMPARE(scene.value("passed").toBool(), from == to);
}

void tst_QDeclarativeGridView::keysOfOthers()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("interactive: false")));
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(&scene.view(), &down);
    QCOMPARE(number(scene, "currentIndex"), 0);
    scene.evaluate("view.interactive = true");
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QApplication::sendEvent(&scene.view(), &letter);
    QVERIFY(scene.value("passed").toBool());
}

void tst_QDeclarativeGridView::moves_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("index");
    QTest::newRow("down") << "view.moveCurrentIndexDown()" << 3;
    QTest::newRow("down and up") << "view.moveCurrentIndexDown(); view.moveCurrentIndexUp()" << 0;
    QTest::newRow("right") << "view.moveCurrentIndexRight()" << 1;
    QTest::newRow("right and left") << "view.moveCurrentIndexRight(); view.moveCurrentIndexLeft()" << 0;
    QTest::newRow("up") << "view.moveCurrentIndexUp()" << 0;
    QTest::newRow("wrapped") << "view.keyNavigationWraps = true; view.moveCurrentIndexUp()" << 29;
}

void tst_QDeclarativeGridView::moves()
{
    QFETCH(QString, script);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate(script.toLatin1().constData());
    QTEST(number(scene, "currentIndex"), "index");
    QCOMPARE(scene.evaluate("view.currentItem.row").toInt(), number(scene, "currentIndex"));
    QVERIFY(scene.evaluate("view.currentItem.current && view.currentItem.focus").toBool());
}

void tst_QDeclarativeGridView::movesWithoutRows()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("keyNavigationWraps: true")));
    scene.evaluate("letters.clear(); view.moveCurrentIndexDown(); view.moveCurrentIndexLeft()");
    QCOMPARE(number(scene, "currentIndex"), -1);
    QVERIFY(scene.evaluate("view.currentItem === null").toBool());
}

void tst_QDeclarativeGridView::indexAt_data()
{
    QTest::addColumn<QString>("point");
    QTest::addColumn<int>("index");
    QTest::newRow("first") << "0, 0" << 0;
    QTest::newRow("fifth") << "25, 12" << 4;
    QTest::newRow("between items") << "18, 4" << 0;
    QTest::newRow("outside") << "65, 4" << -1;
    QTest::newRow("no item yet") << "5, 95" << -1;
    QTest::newRow("above") << "5, -5" << -1;
}

void tst_QDeclarativeGridView::indexAt()
{
    QFETCH(QString, point);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    QTEST(scene.evaluate(QStringLiteral("view.indexAt(%1)").arg(point).toLatin1().constData()).toInt(),
          "index");
}

void tst_QDeclarativeGridView::positions_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("contentY");
    QTest::newRow("beginning") << "view.positionViewAtIndex(13, GridView.Beginning)" << 40;
    QTest::newRow("centre") << "view.positionViewAtIndex(13, GridView.Center)" << 25;
    QTest::newRow("end") << "view.positionViewAtIndex(13, GridView.End)" << 10;
    QTest::newRow("visible below") << "view.positionViewAtIndex(20, GridView.Visible)" << 30;
    QTest::newRow("visible already") << "view.positionViewAtIndex(4, GridView.Visible)" << 0;
    QTest::newRow("contained") << "view.contentY = 15; view.positionViewAtIndex(5, GridView.Contain)" << 10;
    QTest::newRow("last at the beginning") << "view.positionViewAtIndex(29, GridView.Beginning)" << 60;
    QTest::newRow("out of range") << "view.positionViewAtIndex(30, GridView.Beginning)" << 0;
    QTest::newRow("below zero") << "view.contentY = 20; view.positionViewAtIndex(-1, GridView.Beginning)"
                                << 20;
    QTest::newRow("no such place") << "view.positionViewAtIndex(13, 9)" << 0;
    QTest::newRow("view's end") << "view.positionViewAtEnd()" << 60;
    QTest::newRow("view's beginning") << "view.contentY = 33; view.positionViewAtBeginning()" << 0;
}

void tst_QDeclarativeGridView::positions()
{
    QFETCH(QString, script);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate(script.toLatin1().constData());
    QTEST(number(scene, "contentY"), "contentY");
}

void tst_QDeclarativeGridView::positionsWithoutRows()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate("letters.clear(); view.positionViewAtEnd(); view.positionViewAtBeginning(); "
                   "view.positionViewAtIndex(0, GridView.End)");
    QCOMPARE(number(scene, "contentY"), 0);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeGridView::attached()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    QCOMPARE(scene.item("cell3")->property("owner").value<QObject *>(), scene.item("view"));
    QVERIFY(scene.item("cell0")->property("current").toBool());
    scene.evaluate("view.currentIndex = 3");
    QVERIFY(!scene.item("cell0")->property("current").toBool());
    QVERIFY(scene.item("cell3")->property("current").toBool());
}

void tst_QDeclarativeGridView::highlight()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlight: Rectangle { objectName: 'mark' }\n"
                                "Component.onCompleted: highlightMoveDuration = 40")));
    QCOMPARE(scene.item("mark")->property("width").toReal(), 16.0);
    QCOMPARE(scene.item("mark")->property("height").toReal(), 8.0);
    scene.evaluate("view.currentIndex = 5");
    QCOMPARE(at(scene, "mark"), QPointF(0, 0));
    QTRY_COMPARE(at(scene, "mark"), QPointF(40, 10));
    scene.evaluate("view.highlightFollowsCurrentItem = false; view.currentIndex = 1");
    QTest::qWait(60);
    QCOMPARE(at(scene, "mark"), QPointF(40, 10));
}

void tst_QDeclarativeGridView::highlightStays()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlight: Rectangle { objectName: 'mark' }")));
    scene.evaluate("view.currentIndex = 14");
    QCOMPARE(number(scene, "contentY"), 10);
    scene.evaluate("view.cellHeight = 20");
    // The view does not leave its place to show the current row.
    QCOMPARE(number(scene, "contentY"), 10);
    QCOMPARE(at(scene, "mark"), QPointF(40, 80));
}

void tst_QDeclarativeGridView::strictRange()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlightRangeMode: GridView.StrictlyEnforceRange\n"
                                "preferredHighlightBegin: 10; preferredHighlightEnd: 20\n"
                                "highlight: Rectangle { objectName: 'mark' }")));
    QCOMPARE(number(scene, "contentY"), -10);
    scene.evaluate("view.currentIndex = 29");
    QCOMPARE(number(scene, "contentY"), 80);
    QCOMPARE(at(scene, "mark").y(), 90.0);
    scene.evaluate("view.contentY = 500; view.returnToBounds()");
    QTRY_COMPARE(number(scene, "contentY"), 80);
}

void tst_QDeclarativeGridView::strictRangeFollows()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlightRangeMode: GridView.StrictlyEnforceRange\n"
                                "preferredHighlightBegin: 10; preferredHighlightEnd: 20\n"
                                "highlight: Rectangle { objectName: 'mark' }\n"
                                "Component.onCompleted: currentIndex = 4")));
    QCOMPARE(number(scene, "contentY"), 0);
    // The row in the same column becomes the current one.
    scene.evaluate("view.contentY = 20");
    QCOMPARE(number(scene, "currentIndex"), 10);
    QCOMPARE(at(scene, "mark"), QPointF(20, 30));
}

void tst_QDeclarativeGridView::headerAndFooter()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("header: Item { objectName: 'head'; width: 60; height: 15 }\n"
                                "footer: Item { objectName: 'foot'; width: 60; height: 5 }")));
    QCOMPARE(at(scene, "head"), QPointF(0, 0));
    QCOMPARE(at(scene, "cell0"), QPointF(0, 15));
    QCOMPARE(at(scene, "foot"), QPointF(0, 115));
    scene.evaluate("view.positionViewAtEnd()");
    QCOMPARE(number(scene, "contentY"), 80);
    scene.evaluate("view.positionViewAtBeginning()");
    QCOMPARE(number(scene, "contentY"), 0);
    scene.evaluate("letters.clear()");
    QCOMPARE(at(scene, "foot"), QPointF(0, 15));
}

void tst_QDeclarativeGridView::footerFollows()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("footer: Item { objectName: 'foot'; width: 60; height: 5 }")));
    scene.evaluate("letters.append({ n: 30 })");
    QTRY_COMPARE(at(scene, "foot").y(), 110.0);
    scene.evaluate("view.footer = null");
    QVERIFY(!scene.item("foot"));
}

void tst_QDeclarativeGridView::changes_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("cells");
    QTest::newRow("none") << ""
                          << "0:0 1:1 2:2 3:3 4:4 5:5";
    QTest::newRow("inserted first") << "letters.insert(0, { n: 50 })"
                                    << "0:50 1:0 2:1 3:2 4:3 5:4 6:5";
    QTest::newRow("inserted") << "letters.insert(2, { n: 50 })"
                              << "0:0 1:1 2:50 3:2 4:3 5:4 6:5";
    QTest::newRow("appended") << "letters.append({ n: 50 })"
                              << "0:0 1:1 2:2 3:3 4:4 5:5 6:50";
    QTest::newRow("removed first") << "letters.remove(0)"
                                   << "0:1 1:2 2:3 3:4 4:5";
    QTest::newRow("removed") << "letters.remove(3)"
                             << "0:0 1:1 2:2 3:4 4:5";
    QTest::newRow("removed last") << "letters.remove(5)"
                                  << "0:0 1:1 2:2 3:3 4:4";
    QTest::newRow("moved down") << "letters.move(0, 3, 2)"
                                << "0:2 1:3 2:4 3:0 4:1 5:5";
    QTest::newRow("moved up") << "letters.move(4, 1, 2)"
                              << "0:0 1:4 2:5 3:1 4:2 5:3";
    QTest::newRow("cleared") << "letters.clear()"
                             << "";
    QTest::newRow("cleared and filled") << "letters.clear(); letters.append({ n: 7 })"
                                        << "0:7";
}

void tst_QDeclarativeGridView::changes()
{
    QFETCH(QString, script);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate("while (letters.count > 6) letters.remove(6)");
    scene.evaluate(script.toLatin1().constData());
    QFETCH(QString, cells);
    QTRY_COMPARE(shown(scene), cells);
    QCOMPARE(number(scene, "count"), scene.evaluate("letters.count").toInt());
}

void tst_QDeclarativeGridView::insertedAbove()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("currentIndex: 13")));
    scene.evaluate("view.contentY = 40");
    QCOMPARE(at(scene, "cell13"), QPointF(20, 40));
    // The cells that went out of view are given up with the next movement.
    scene.evaluate("view.contentY = 41; view.contentY = 40");
    QVERIFY(!scene.item("cell0"));
    scene.evaluate(
        "letters.insert(0, { n: 50 }); letters.insert(0, { n: 51 }); letters.insert(0, { n: 52 })");
    // What is in view stays there, and the rows above it begin earlier.
    QCOMPARE(at(scene, "cell13"), QPointF(20, 40));
    QCOMPARE(number(scene, "contentY"), 40);
    QCOMPARE(number(scene, "currentIndex"), 16);
    scene.evaluate("view.positionViewAtBeginning()");
    QCOMPARE(number(scene, "contentY"), -10);
    QCOMPARE(at(scene, "cell52"), QPointF(0, -10));
}

void tst_QDeclarativeGridView::removedAbove()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("currentIndex: 14")));
    scene.evaluate("view.contentY = 40");
    scene.evaluate("letters.remove(0); letters.remove(0); letters.remove(0)");
    QCOMPARE(at(scene, "cell14"), QPointF(40, 40));
    QCOMPARE(number(scene, "currentIndex"), 11);
    scene.evaluate("view.positionViewAtBeginning()");
    QCOMPARE(at(scene, "cell3"), QPointF(0, number(scene, "contentY")));
}

void tst_QDeclarativeGridView::addAndRemove()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate("root.log = ''; letters.insert(1, { n: 50 })");
    QCOMPARE(scene.value("log").toString(), QStringLiteral("+50"));
    scene.evaluate("letters.append({ n: 60 })");
    QCOMPARE(scene.value("log").toString(), QStringLiteral("+50"));
    scene.evaluate("letters.remove(1)");
    QCOMPARE(scene.value("log").toString(), QStringLiteral("+50-"));
}

void tst_QDeclarativeGridView::delayRemove()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: view.delegate = lingering\n"
                                "Component { id: lingering; Item { objectName: 'cell' + n\n"
                                "property alias stays: keeper.target; width: 16; height: 8\n"
                                "GridView.delayRemove: true; property bool leaves\n"
                                "onLeavesChanged: GridView.delayRemove = !leaves\n"
                                "Connections { id: keeper; target: null } } }")));
    const QPointer<QGraphicsObject> leaving = scene.item("cell1");
    scene.evaluate("letters.remove(1)");
    QVERIFY(leaving);
    QCOMPARE(leaving->pos(), QPointF(20, 0));
    QCOMPARE(at(scene, "cell2"), QPointF(40, 0));
    QCOMPARE(number(scene, "count"), 29);
    leaving->setProperty("leaves", true);
    QTRY_VERIFY(!leaving);
    QTRY_COMPARE(at(scene, "cell2"), QPointF(20, 0));
}

void tst_QDeclarativeGridView::models_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("count");
    QTest::newRow("number") << "3" << 3;
    QTest::newRow("list") << "['x', 'y']" << 2;
    QTest::newRow("nothing") << "null" << 0;
    QTest::newRow("items") << "items" << 2;
}

void tst_QDeclarativeGridView::models()
{
    QFETCH(QString, model);
    QFETCH(int, count);
    WatchedScene scene;
    QVERIFY(scene.load(withView("VisualItemModel { id: items; Item { objectName: 'cellx' } "
                                "Item { objectName: 'celly' } }\n"
                                "Component { id: plain; Item { objectName: 'cellp' } }")));
    scene.evaluate(("view.delegate = plain; view.model = " + model).toLatin1().constData());
    QCOMPARE(number(scene, "count"), count);
    QCOMPARE(shown(scene).split(QLatin1Char(' '), Qt::SkipEmptyParts).count(), count);
    QCOMPARE(number(scene, "contentY"), 0);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeGridView::resized()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate("root.width = 105");
    QTRY_COMPARE(at(scene, "cell4"), QPointF(80, 0));
    QCOMPARE(scene.item("view")->property("contentHeight").toReal(), 60.0);
    scene.evaluate("root.width = 0");
    QTRY_COMPARE(at(scene, "cell1"), QPointF(0, 10));
}

void tst_QDeclarativeGridView::snaps_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("way");
    QTest::addColumn<int>("contentY");
    QTest::newRow("row, up") << 1 << 24 << 10;
    QTest::newRow("row, back") << 1 << 15 << 0;
    QTest::newRow("one row") << 2 << 24 << 10;
}

void tst_QDeclarativeGridView::snaps()
{
    QFETCH(int, mode);
    QFETCH(int, way);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.item("view")->setProperty("snapMode", mode);
    const QPoint from(30, 38);
    scene.press(from);
    scene.move(from - QPoint(0, 11));
    scene.move(from - QPoint(0, 12));
    scene.move(from - QPoint(0, way));
    QVERIFY(scene.letRest());
    scene.release(from - QPoint(0, way));
    QTRY_VERIFY(!scene.item("view")->property("moving").toBool());
    QTEST(number(scene, "contentY"), "contentY");
}

void tst_QDeclarativeGridView::goesIdle()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: highlightMoveDuration = 40")));
    scene.evaluate("view.currentIndex = 20");
    QTRY_COMPARE(number(scene, "contentY"), 30);
    QTest::qWait(50);
    QSignalSpy moves(scene.item("view"), SIGNAL(contentYChanged()));
    QTest::qWait(50);
    QCOMPARE(moves.count(), 0);
}

QTEST_MAIN(tst_QDeclarativeGridView)
#include "tst_qdeclarativegridview.moc"
