#include "WatchedScene.h"

#include <QtCore/QStringListModel>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>

/** Lists of rows that are 20 pixels high in views that are 100, unless a test says otherwise. */
class tst_QDeclarativeListView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void models_data();
    void models();
    void itemModelChanges();
    void modelGoesAway();
    void delegateIsNoItem();
    void delegateChanges();
    void positionViewAtIndex_data();
    void positionViewAtIndex();
    void positionAtTheEnds();
    void cacheBuffer();
    void keys_data();
    void keys();
    void disabledWrapLeavesTheKey();
    void currentIndexBeforeTheModel();
    void highlightIsNotMoved();
    void highlightRange_data();
    void highlightRange();
    void strictRangeFollowsTheView();
    void flickOneItem();
    void insertAboveKeepsTheView();
    void insertMoreThanFits();
    void removeAllVisible();
    void moveWithinView_data();
    void moveWithinView();
    void moveOutOfView();
    void movesSeveralRows_data();
    void movesSeveralRows();
    void movesRowsWithAndWithoutItems();
    void currentRowAmongThoseLeftOut_data();
    void currentRowAmongThoseLeftOut();
    void fillsUpAfterRemoval();
    void resetKeepsTheCurrentRow();
    void headerResizes();
    void sectionsFollowTheRows();
    void attachedView();
    void viewResized();
    void jumpFar();
    void jumpToShorterRows();

private:
    void load(const QByteArray &settings);
    QVariant list(const char *property) const { return m_scene->item("list")->property(property); }
    qreal rowPosition(const QString &name) const;
    QString rows();
    QString rowsWithPlaces();

    QScopedPointer<WatchedScene> m_scene;
};

void tst_QDeclarativeListView::initTestCase()
{
    QApplication::setStartDragDistance(10);
}

void tst_QDeclarativeListView::init()
{
    m_scene.reset(new WatchedScene);
}

void tst_QDeclarativeListView::load(const QByteArray &settings)
{
    QVERIFY(m_scene->load(R"(Item { id: root; width: 100; height: 100; property string seen: ""
        ListModel { id: letters
            ListElement { t: "a" } ListElement { t: "b" } ListElement { t: "c" } ListElement { t: "d" }
            ListElement { t: "e" } ListElement { t: "f" } ListElement { t: "g" } ListElement { t: "h" } }
        Component { id: letter
            Item { objectName: t; width: 100; height: 20 } }
        Component { id: number
            Item { objectName: "row" + index; width: 100; height: 20; property bool current: ListView.isCurrentItem } }
        ListView { id: list; objectName: "list"; anchors.fill: parent; focus: true; highlightMoveDuration: 0
                   highlightResizeDuration: 0; )"
                          + settings + "} }"));
}

qreal tst_QDeclarativeListView::rowPosition(const QString &name) const
{
    const QObject *row = m_scene->item(name.toLatin1().constData());
    return row ? row->property("y").toReal() : -1000;
}

/** The names of the rows that have items, from top to bottom. */
QString tst_QDeclarativeListView::rows()
{
    auto *content = m_scene->item("list")->property("contentItem").value<QGraphicsObject *>();
    QMap<qreal, QString> names;
    const auto items = content->childItems();
    for (QGraphicsItem *item : items) {
        if (!item->toGraphicsObject()->objectName().isEmpty())
            names.insert(item->y(), item->toGraphicsObject()->objectName());
    }
    return names.values().join(QString());
}

QString tst_QDeclarativeListView::rowsWithPlaces()
{
    QString text;
    const QString names = rows();
    for (const QChar name : names)
        text += name + QString::number(rowPosition(name)) + QLatin1Char(' ');
    return text;
}

void tst_QDeclarativeListView::models_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<int>("count");
    QTest::newRow("number") << QByteArray("7") << 7;
    QTest::newRow("negative number") << QByteArray("-3") << 0;
    QTest::newRow("strings") << QByteArray("[\"x\", \"y\"]") << 2;
    QTest::newRow("ListModel") << QByteArray("letters") << 8;
    QTest::newRow("object") << QByteArray("root") << 1;
    QTest::newRow("null") << QByteArray("null") << 0;
    QTest::newRow("VisualDataModel") << QByteArray("VisualDataModel { model: 4; delegate: number }") << 4;
    QTest::newRow("VisualItemModel") << QByteArray(
        "VisualItemModel { Item { height: 9 } Item { height: 9 } }")
                                     << 2;
}

void tst_QDeclarativeListView::models()
{
    QFETCH(QByteArray, model);
    QFETCH(int, count);
    load("delegate: number; model: " + model);
    QCOMPARE(list("count").toInt(), count);
    QCOMPARE(list("currentIndex").toInt(), count ? 0 : -1);
    QVERIFY2(m_scene->warnings.isEmpty(), qPrintable(m_scene->warnings.join(QLatin1Char('\n'))));
    m_scene->evaluate("list.model = undefined");
    QCOMPARE(list("count").toInt(), 0);
    QVERIFY(m_scene->evaluate("list.currentItem === null").toBool());
}

void tst_QDeclarativeListView::itemModelChanges()
{
    QStringListModel model({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    m_scene->view().rootContext()->setContextProperty(QStringLiteral("strings"), &model);
    load("model: strings; delegate: Item { objectName: display; width: 100; height: 20 }");
    QCOMPARE(rows(), QStringLiteral("abc"));
    model.insertRow(1);
    model.setData(model.index(1), QStringLiteral("x"));
    QTRY_COMPARE(rows(), QStringLiteral("axbc"));
    model.removeRow(0);
    QTRY_COMPARE(rows(), QStringLiteral("xbc"));
    model.setStringList({QStringLiteral("p")});
    QTRY_COMPARE(rows(), QStringLiteral("p"));
    QCOMPARE(list("count").toInt(), 1);
}

void tst_QDeclarativeListView::modelGoesAway()
{
    auto *model = new QStringListModel({QStringLiteral("a"), QStringLiteral("b")});
    m_scene->view().rootContext()->setContextProperty(QStringLiteral("strings"), model);
    load("model: strings; delegate: number");
    QCOMPARE(list("count").toInt(), 2);
    delete model;
    QTRY_COMPARE(list("count").toInt(), 0);
    QTRY_COMPARE(rows(), QString());
}

void tst_QDeclarativeListView::delegateIsNoItem()
{
    load("model: 3; delegate: QtObject { }");
    QCOMPARE(list("count").toInt(), 3);
    QCOMPARE(rows(), QString());
    QVERIFY(m_scene->warnings.contains(QStringLiteral("Delegate must be of Item type"))
            || m_scene->warnings.join(QString()).contains(QLatin1String("Delegate must be of Item type")));
}

void tst_QDeclarativeListView::delegateChanges()
{
    load("model: 3; delegate: number; header: Item { height: 5 }");
    QCOMPARE(rowPosition(QStringLiteral("row1")), 25.0);
    m_scene->evaluate(
        "list.delegate = Qt.createQmlObject('import QtQuick 1.0; Component { Item { objectName: "
        "\"n\" + index; height: 30 } }', root)");
    QTRY_COMPARE(rows(), QStringLiteral("n0n1n2"));
    QCOMPARE(rowPosition(QStringLiteral("n1")), 35.0);
}

void tst_QDeclarativeListView::positionViewAtIndex_data()
{
    QTest::addColumn<qreal>("from");
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<qreal>("position");
    // 50 rows: the content is 1000 pixels high and moves from 0 to 900.
    QTest::newRow("beginning") << 0.0 << 10 << QByteArray("Beginning") << 200.0;
    QTest::newRow("beginning, near") << 190.0 << 10 << QByteArray("Beginning") << 200.0;
    QTest::newRow("beginning, last") << 0.0 << 49 << QByteArray("Beginning") << 900.0;
    QTest::newRow("center") << 0.0 << 10 << QByteArray("Center") << 160.0;
    QTest::newRow("center, first") << 300.0 << 0 << QByteArray("Center") << 0.0;
    QTest::newRow("end") << 0.0 << 10 << QByteArray("End") << 120.0;
    QTest::newRow("end, first") << 300.0 << 0 << QByteArray("End") << 0.0;
    QTest::newRow("visible, is") << 195.0 << 10 << QByteArray("Visible") << 195.0;
    QTest::newRow("visible, partly") << 210.0 << 10 << QByteArray("Visible") << 210.0;
    QTest::newRow("contain, is") << 195.0 << 10 << QByteArray("Contain") << 195.0;
    QTest::newRow("contain, above") << 210.0 << 10 << QByteArray("Contain") << 200.0;
    QTest::newRow("contain, below") << 110.0 << 10 << QByteArray("Contain") << 120.0;
    QTest::newRow("no such row") << 110.0 << 50 << QByteArray("Beginning") << 110.0;
    QTest::newRow("negative row") << 110.0 << -1 << QByteArray("Beginning") << 110.0;
}

void tst_QDeclarativeListView::positionViewAtIndex()
{
    QFETCH(qreal, from);
    QFETCH(int, index);
    QFETCH(QByteArray, mode);
    QFETCH(qreal, position);
    load("model: 50; delegate: number");
    m_scene->item("list")->setProperty("contentY", from);
    m_scene->evaluate("list.positionViewAtIndex(" + QByteArray::number(index) + ", ListView." + mode + ")");
    QCOMPARE(list("contentY").toReal(), position);
    if (index >= 0 && index < 50)
        QVERIFY(m_scene->item("row" + QByteArray::number(index)));
}

void tst_QDeclarativeListView::positionAtTheEnds()
{
    load("model: 50; delegate: number; header: Item { height: 30 } footer: Item { height: 40 }");
    m_scene->evaluate("list.positionViewAtEnd()");
    QCOMPARE(list("contentY").toReal(), 970.0);
    QCOMPARE(list("atYEnd").toBool(), true);
    m_scene->evaluate("list.positionViewAtBeginning()");
    QCOMPARE(list("contentY").toReal(), 0.0);
    QCOMPARE(list("atYBeginning").toBool(), true);
}

void tst_QDeclarativeListView::cacheBuffer()
{
    load("model: 50; delegate: number");
    QCOMPARE(rows(), QStringLiteral("row0row1row2row3row4"));
    // One at a time, whenever nothing else is made.
    m_scene->evaluate("list.cacheBuffer = 40");
    QCOMPARE(rows(), QStringLiteral("row0row1row2row3row4row5"));
    for (int move = 0; move < 6; ++move)
        m_scene->evaluate("list.contentX = 1 - list.contentX");
    QCOMPARE(rows(), QStringLiteral("row0row1row2row3row4row5row6"));
    m_scene->evaluate("list.cacheBuffer = 0");
    QCOMPARE(rows(), QStringLiteral("row0row1row2row3row4"));
}

void tst_QDeclarativeListView::keys_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    const QByteArray across = "orientation: ListView.Horizontal; ";
    QTest::newRow("down") << QByteArray() << int(Qt::Key_Down) << 1 << 2;
    QTest::newRow("up") << QByteArray() << int(Qt::Key_Up) << 1 << 0;
    QTest::newRow("right, vertical") << QByteArray() << int(Qt::Key_Right) << 1 << 1;
    QTest::newRow("up at the first") << QByteArray() << int(Qt::Key_Up) << 0 << 0;
    QTest::newRow("down at the last") << QByteArray() << int(Qt::Key_Down) << 3 << 3;
    QTest::newRow("up wraps") << QByteArray("keyNavigationWraps: true") << int(Qt::Key_Up) << 0 << 3;
    QTest::newRow("down wraps") << QByteArray("keyNavigationWraps: true") << int(Qt::Key_Down) << 3 << 0;
    QTest::newRow("right") << across << int(Qt::Key_Right) << 1 << 2;
    QTest::newRow("left") << across << int(Qt::Key_Left) << 1 << 0;
    QTest::newRow("right to left: right")
        << across + "layoutDirection: Qt.RightToLeft" << int(Qt::Key_Right) << 1 << 0;
    QTest::newRow("right to left: left")
        << across + "layoutDirection: Qt.RightToLeft" << int(Qt::Key_Left) << 1 << 2;
    QTest::newRow("mirrored: left") << across + "LayoutMirroring.enabled: true" << int(Qt::Key_Left) << 1
                                    << 2;
    QTest::newRow("not interactive") << QByteArray("interactive: false") << int(Qt::Key_Down) << 1 << 1;
}

void tst_QDeclarativeListView::keys()
{
    QFETCH(QByteArray, settings);
    QFETCH(int, key);
    QFETCH(int, from);
    QFETCH(int, to);
    load("model: 4; delegate: number; currentIndex: " + QByteArray::number(from) + "; " + settings);
    QTest::keyClick(&m_scene->view(), Qt::Key(key));
    QCOMPARE(list("currentIndex").toInt(), to);
    QVERIFY(m_scene->item("row" + QByteArray::number(to))->property("current").toBool());
}

void tst_QDeclarativeListView::disabledWrapLeavesTheKey()
{
    load("model: 2; delegate: number; Keys.onDownPressed: root.seen += 'down '; Keys.priority: "
         "Keys.AfterItem");
    QTest::keyClick(&m_scene->view(), Qt::Key_Down);
    QCOMPARE(m_scene->value("seen").toString(), QString());
    QTest::keyClick(&m_scene->view(), Qt::Key_Down);
    QCOMPARE(m_scene->value("seen").toString(), QStringLiteral("down "));
}

void tst_QDeclarativeListView::currentIndexBeforeTheModel()
{
    load("delegate: number; currentIndex: 2");
    QCOMPARE(list("currentIndex").toInt(), 2);
    m_scene->evaluate("list.model = 4");
    QCOMPARE(list("currentIndex").toInt(), 2);
    QCOMPARE(m_scene->evaluate("list.currentItem.objectName").toString(), QStringLiteral("row2"));
}

void tst_QDeclarativeListView::highlightIsNotMoved()
{
    load("model: 20; delegate: number; highlightFollowsCurrentItem: false; "
         "highlight: Rectangle { objectName: 'mark' }");
    QVERIFY(m_scene->item("mark"));
    m_scene->evaluate("list.currentIndex = 15");
    QCOMPARE(list("currentIndex").toInt(), 15);
    // The view follows the highlight, which stays.
    QCOMPARE(list("contentY").toReal(), 0.0);
    QCOMPARE(rowPosition(QStringLiteral("mark")), 0.0);
}

void tst_QDeclarativeListView::highlightRange_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<int>("index");
    QTest::addColumn<qreal>("position");
    QTest::newRow("none") << QByteArray("NoHighlightRange") << 10 << 120.0;
    QTest::newRow("apply") << QByteArray("ApplyRange") << 10 << 160.0;
    QTest::newRow("apply, first rows") << QByteArray("ApplyRange") << 1 << 0.0;
    QTest::newRow("apply, last rows") << QByteArray("ApplyRange") << 19 << 300.0;
    QTest::newRow("strict") << QByteArray("StrictlyEnforceRange") << 10 << 160.0;
    QTest::newRow("strict, last rows") << QByteArray("StrictlyEnforceRange") << 19 << 340.0;
}

void tst_QDeclarativeListView::highlightRange()
{
    QFETCH(QByteArray, mode);
    QFETCH(int, index);
    QFETCH(qreal, position);
    load("model: 20; delegate: number; preferredHighlightBegin: 40; preferredHighlightEnd: 60; "
         "highlightRangeMode: ListView."
         + mode);
    m_scene->item("list")->setProperty("currentIndex", index);
    QTRY_COMPARE(list("contentY").toReal(), position);
}

void tst_QDeclarativeListView::strictRangeFollowsTheView()
{
    load("model: 20; delegate: number; preferredHighlightBegin: 40; preferredHighlightEnd: 60; "
         "highlightRangeMode: ListView.StrictlyEnforceRange");
    QTRY_COMPARE(list("contentY").toReal(), -40.0);
    m_scene->evaluate("list.contentY = 62");
    QCOMPARE(list("currentIndex").toInt(), 5);
    m_scene->evaluate("list.returnToBounds()");
    QTRY_COMPARE(list("contentY").toReal(), 60.0);
}

void tst_QDeclarativeListView::flickOneItem()
{
    load("model: 20; delegate: Item { height: 100; width: 100 } snapMode: ListView.SnapOneItem; "
         "maximumFlickVelocity: 5000");
    m_scene->drag({{50, 95}, {50, 80}, {50, 60}, {50, 30}, {50, 5}});
    m_scene->release({50, 5});
    QVERIFY(list("flicking").toBool());
    QTRY_VERIFY(!list("moving").toBool());
    QCOMPARE(list("contentY").toReal(), 100.0);
}

void tst_QDeclarativeListView::insertAboveKeepsTheView()
{
    load("model: letters; delegate: letter; currentIndex: 7");
    QTRY_COMPARE(list("contentY").toReal(), 60.0);
    m_scene->evaluate("list.contentY = 50");
    QSignalSpy moved(m_scene->item("list"), SIGNAL(contentYChanged()));
    m_scene->evaluate("letters.insert(0, {t: 'x'})");
    QCOMPARE(list("currentIndex").toInt(), 8);
    QCOMPARE(rowPosition(QStringLiteral("d")), 60.0);
    QCOMPARE(moved.count(), 0);
    m_scene->evaluate("list.positionViewAtBeginning()");
    QVERIFY(rows().startsWith(QLatin1String("xa")));
}

void tst_QDeclarativeListView::insertMoreThanFits()
{
    load("model: letters; delegate: letter");
    m_scene->evaluate("for (var i = 0; i < 300; ++i) letters.insert(1, {t: 'n' + i})");
    QCOMPARE(list("count").toInt(), 308);
    QCOMPARE(rows(), QStringLiteral("an299n298n297n296"));
    QTRY_COMPARE(list("contentHeight").toReal(), 308 * 20.0);
}

void tst_QDeclarativeListView::removeAllVisible()
{
    load("model: letters; delegate: letter");
    m_scene->evaluate("for (var i = 0; i < 6; ++i) letters.remove(0)");
    QTRY_COMPARE(rows(), QStringLiteral("gh"));
    QCOMPARE(list("currentIndex").toInt(), 0);
    QCOMPARE(m_scene->evaluate("list.currentItem.objectName").toString(), QStringLiteral("g"));
    QCOMPARE(rowPosition(QStringLiteral("g")), list("contentY").toReal());
    m_scene->evaluate("letters.clear()");
    QCOMPARE(list("currentIndex").toInt(), -1);
    // The content keeps its length until there are rows again.
    QCOMPARE(list("contentHeight").toReal(), 40.0);
}

void tst_QDeclarativeListView::moveWithinView_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("order");
    QTest::addColumn<int>("current");
    QTest::newRow("down") << 1 << 3 << QStringLiteral("acdbe") << 1;
    QTest::newRow("up") << 3 << 1 << QStringLiteral("adbce") << 3;
    QTest::newRow("current") << 2 << 4 << QStringLiteral("abdec") << 4;
}

void tst_QDeclarativeListView::moveWithinView()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QString, order);
    QFETCH(int, current);
    load("model: letters; delegate: letter; currentIndex: 2");
    m_scene->evaluate("letters.move(" + QByteArray::number(from) + ", " + QByteArray::number(to) + ", 1)");
    QTRY_COMPARE(rows(), order);
    QCOMPARE(list("currentIndex").toInt(), current);
    QCOMPARE(m_scene->evaluate("list.currentItem.objectName").toString(), QStringLiteral("c"));
}

void tst_QDeclarativeListView::moveOutOfView()
{
    load("model: letters; delegate: letter; currentIndex: 5");
    m_scene->evaluate("letters.move(1, 7, 1)");
    QTRY_COMPARE(rows(), QStringLiteral("cdefg"));
    QCOMPARE(list("currentIndex").toInt(), 4);
}

void tst_QDeclarativeListView::movesSeveralRows_data()
{
    QTest::addColumn<QByteArray>("move");
    QTest::addColumn<QString>("places");
    // Rows are 20 pixels high and five apart; "c" has 30.
    QTest::newRow("down within") << QByteArray("1, 2, 2") << QStringLiteral("a0 d25 b50 c75 ");
    QTest::newRow("down beyond") << QByteArray("1, 5, 3") << QStringLiteral("a0 e25 f50 g75 ");
    QTest::newRow("first ones") << QByteArray("0, 1, 2") << QStringLiteral("c0 a35 b60 d85 ");
    QTest::newRow("into view from below") << QByteArray("6, 1, 1") << QStringLiteral("a0 g25 b50 c75 ");
    QTest::newRow("out of view") << QByteArray("1, 7, 1") << QStringLiteral("a0 c25 d60 e85 ");
}

void tst_QDeclarativeListView::movesSeveralRows()
{
    QFETCH(QByteArray, move);
    load("model: letters; spacing: 5; delegate: Item { objectName: t; width: 100; height: t == 'c' ? 30 : 20 "
         "}");
    m_scene->evaluate("letters.move(" + move + ")");
    QFETCH(QString, places);
    QTRY_COMPARE(rowsWithPlaces(), places);
}

void tst_QDeclarativeListView::movesRowsWithAndWithoutItems()
{
    // Only one of the rows has an item, so the model tells of the move in pieces.
    load("model: letters; currentIndex: 4; cacheBuffer: 0; delegate: Item { objectName: t; width: 100; "
         "height: 20\n"
         "ListView.onRemove: root.seen += 'removed' + t; ListView.onAdd: root.seen += 'added' + t }");
    m_scene->evaluate("letters.move(4, 1, 3)");
    QTRY_COMPARE(list("currentIndex").toInt(), 1);
    QCOMPARE(m_scene->evaluate("list.currentItem.objectName").toString(), QStringLiteral("e"));
    QCOMPARE(m_scene->value("seen").toString(), QString());
}

void tst_QDeclarativeListView::currentRowAmongThoseLeftOut_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("places");
    QTest::newRow("moved there") << 5 << QByteArray("letters.move(3, 1, 3)")
                                 << QStringLiteral("a0 d20 f40 b60 c80 ");
    QTest::newRow("made the current one") << 0 << QByteArray("letters.move(3, 1, 2); list.currentIndex = 2")
                                          << QStringLiteral("a0 d20 e40 b60 c80 f100 ");
    QTest::newRow("view moves") << 0 << QByteArray("letters.move(3, 1, 2); list.contentY = 1")
                                << QStringLiteral("a0 d20 e40 b60 c80 f100 ");
}

void tst_QDeclarativeListView::currentRowAmongThoseLeftOut()
{
    QFETCH(int, current);
    QFETCH(QByteArray, script);
    load("model: letters; delegate: letter; currentIndex: " + QByteArray::number(current));
    m_scene->evaluate("list.contentY = 0");
    m_scene->evaluate(script);
    QTEST(rowsWithPlaces(), "places");
}

void tst_QDeclarativeListView::fillsUpAfterRemoval()
{
    QStringListModel model(QStringLiteral("a b c d e f g h i j k l").split(QLatin1Char(' ')));
    m_scene->view().rootContext()->setContextProperty(QStringLiteral("strings"), &model);
    load("model: strings; delegate: Item { objectName: display; width: 100; height: 20 }");
    // The row above goes when the view has moved on.
    m_scene->evaluate("list.contentY = 25; list.contentY = 26");
    model.removeRows(1, 4);
    // The rows in view stay where they are, so the view has to go where they now begin.
    QTRY_COMPARE(rowsWithPlaces(), QStringLiteral("a80 f100 g120 h140 i160 "));
    QCOMPARE(list("contentY").toReal(), 80.0);
}

void tst_QDeclarativeListView::resetKeepsTheCurrentRow()
{
    QStringListModel model({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    m_scene->view().rootContext()->setContextProperty(QStringLiteral("strings"), &model);
    load("model: strings; delegate: number; currentIndex: 1");
    model.setStringList({QStringLiteral("x"), QStringLiteral("y")});
    QCOMPARE(list("currentIndex").toInt(), 1);
    QCOMPARE(m_scene->evaluate("list.currentItem.objectName").toString(), QStringLiteral("row1"));
    model.setStringList({});
    QTRY_COMPARE(rows(), QString());
    QVERIFY(m_scene->evaluate("list.currentItem === null").toBool());
}

void tst_QDeclarativeListView::headerResizes()
{
    load("model: 3; delegate: number; header: Item { objectName: 'head'; height: 20 } "
         "footer: Item { objectName: 'foot'; height: 10 }");
    QCOMPARE(rowPosition(QStringLiteral("foot")), 80.0);
    m_scene->item("head")->setProperty("height", 35);
    QTRY_COMPARE(rowPosition(QStringLiteral("head")), -15.0);
    QCOMPARE(rowPosition(QStringLiteral("row0")), 20.0);
    // What does not fit by 5 pixels comes to rest with its end in view.
    QTRY_COMPARE(list("contentY").toReal(), -10.0);
}

void tst_QDeclarativeListView::sectionsFollowTheRows()
{
    load("model: letters; delegate: Item { objectName: t; width: 100; height: 20; "
         "property string all: ListView.previousSection + '<' + ListView.section + '>' + "
         "ListView.nextSection } "
         "section.property: 't'; section.criteria: ViewSection.FirstCharacter; "
         "section.delegate: Item { height: 10 }");
    QCOMPARE(rowPosition(QStringLiteral("b")), 40.0);
    QCOMPARE(m_scene->item("b")->property("all").toString(), QStringLiteral("a<b>c"));
    m_scene->evaluate("letters.setProperty(1, 't', 'a2')");
    QTRY_COMPARE(m_scene->item("c")->property("all").toString(), QStringLiteral("a<c>d"));
    QTRY_COMPARE(rowPosition(QStringLiteral("c")), 60.0);
    QCOMPARE(list("currentSection").toString(), QStringLiteral("a"));
    m_scene->evaluate("list.contentY = 60");
    QCOMPARE(list("currentSection").toString(), QStringLiteral("c"));
}

void tst_QDeclarativeListView::attachedView()
{
    load("model: 2; delegate: Item { objectName: 'row' + index; width: 10; height: 20; "
         "property variant owner: ListView.view; Item { property variant inner: ListView.view } }");
    QCOMPARE(m_scene->item("row0")->property("owner").value<QObject *>(), m_scene->item("list"));
}

void tst_QDeclarativeListView::viewResized()
{
    load("model: 20; delegate: number");
    m_scene->evaluate("list.contentY = 300");
    m_scene->evaluate("root.height = 200");
    QCOMPARE(list("contentY").toReal(), 200.0);
    QTRY_VERIFY(m_scene->item("row10"));
    m_scene->evaluate("root.height = 40");
    QTRY_COMPARE(rows(), QStringLiteral("row0row10row11"));
}

void tst_QDeclarativeListView::jumpFar()
{
    load("model: 100000; delegate: number");
    m_scene->evaluate("list.contentY = 1000000");
    QVERIFY(m_scene->item("row50000"));
    QVERIFY(rows().count(QLatin1String("row")) < 20);
    m_scene->evaluate("list.currentIndex = 99999");
    QTRY_COMPARE(list("contentY").toReal(), 100000 * 20.0 - 100);
    m_scene->evaluate("list.positionViewAtBeginning()");
    QCOMPARE(list("contentY").toReal(), 0.0);
    QVERIFY(m_scene->item("row0"));
}

void tst_QDeclarativeListView::jumpToShorterRows()
{
    // The rows there turn out to be shorter than those from which their places were estimated.
    load("model: 30; delegate: Item { objectName: String.fromCharCode(65 + index); width: 100; height: index "
         "> 24 ? 10 : 40 }");
    m_scene->evaluate("list.currentIndex = 29");
    QTRY_COMPARE(list("contentY").toReal(), rowPosition(QStringLiteral("^")) + 10 - 100);
    QTRY_VERIFY2(rows().startsWith(QLatin1Char('W')) || rows().startsWith(QLatin1Char('X')),
                 qPrintable(rows()));
    QVERIFY(rowPosition(rows().left(1)) <= list("contentY").toReal());
}

QTEST_MAIN(tst_QDeclarativeListView)
#include "tst_qdeclarativelistview.moc"
