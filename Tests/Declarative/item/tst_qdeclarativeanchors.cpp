#include "ItemScene.h"
#include "WatchedScene.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsWidget>

/** Anchors that the recorded scenes do not show: mirrored, widgets as targets, loops, ends of targets. */
class tst_QDeclarativeAnchors : public QObject
{
    Q_OBJECT

private slots:
    void layout_data();
    void layout();
    void mirrored_data();
    void mirrored();
    void followsTarget();
    void manyFollowADeepChain();
    void loopIsReported_data();
    void loopIsReported();
    void forgetsDestroyedTarget();
    void fillsWidget();
    void linesCompare_data();
    void linesCompare();
};

void tst_QDeclarativeAnchors::layout_data()
{
    QTest::addColumn<QByteArray>("anchors");
    QTest::addColumn<QRectF>("geometry");
    // The parent is 101 x 60, the sibling 20 x 10 at 30, 20; the item is 10 x 8 by itself.
    QTest::newRow("left, centre") << QByteArray(
        "left: parent.left; horizontalCenter: sibling.horizontalCenter")
                                  << QRectF(0, 0, 80, 8);
    QTest::newRow("right, centre") << QByteArray("right: parent.right; horizontalCenter: sibling.right")
                                   << QRectF(-1, 0, 102, 8);
    QTest::newRow("top, centre") << QByteArray("top: sibling.bottom; verticalCenter: parent.bottom")
                                 << QRectF(0, 30, 10, 60);
    QTest::newRow("bottom, centre") << QByteArray("bottom: parent.bottom; verticalCenter: sibling.top")
                                    << QRectF(0, -20, 10, 80);
    QTest::newRow("odd centre") << QByteArray("horizontalCenter: parent.horizontalCenter")
                                << QRectF(46, 0, 10, 8);
    QTest::newRow("margins") << QByteArray("fill: sibling; margins: 2; topMargin: -3")
                             << QRectF(32, 17, 16, 11);
    QTest::newRow("fill before lines")
        << QByteArray("fill: parent; left: sibling.left") << QRectF(0, 0, 101, 60);
    QTest::newRow("baseline") << QByteArray("baseline: sibling.baseline; baselineOffset: 3")
                              << QRectF(0, 30, 10, 8);
}

void tst_QDeclarativeAnchors::layout()
{
    QFETCH(QByteArray, anchors);
    QFETCH(QRectF, geometry);
    ItemScene scene("Item { width: 101; height: 60\n"
                    "Item { id: sibling; x: 30; y: 20; width: 20; height: 10; baselineOffset: 7 }\n"
                    "Item { objectName: 'item'; width: 10; height: 8; anchors { "
                    + anchors + " } } }");
    QCOMPARE(scene.geometry("item"), geometry);
    QVERIFY2(scene.warnings.isEmpty(), qPrintable(scene.warnings.join('\n')));
}

void tst_QDeclarativeAnchors::mirrored_data()
{
    QTest::addColumn<QByteArray>("anchors");
    QTest::addColumn<qreal>("x");
    QTest::newRow("left") << QByteArray("left: parent.left") << 90.0;
    QTest::newRow("left with margin") << QByteArray("left: parent.left; leftMargin: 7") << 83.0;
    QTest::newRow("right with margin") << QByteArray("right: parent.right; rightMargin: 7") << 7.0;
    QTest::newRow("beside a sibling") << QByteArray("left: sibling.right") << 20.0;
    QTest::newRow("centre with offset") << QByteArray("horizontalCenter: parent.horizontalCenter; "
                                                      "horizontalCenterOffset: 5")
                                        << 40.0;
    QTest::newRow("centred with offset") << QByteArray("centerIn: parent; horizontalCenterOffset: 5") << 40.0;
    QTest::newRow("filled") << QByteArray("fill: parent; leftMargin: 10; rightMargin: 30") << 30.0;
}

void tst_QDeclarativeAnchors::mirrored()
{
    QFETCH(QByteArray, anchors);
    QFETCH(qreal, x);
    ItemScene scene("Item { id: root; width: 100; height: 60; property bool turned: true\n"
                    "LayoutMirroring.enabled: root.turned; LayoutMirroring.childrenInherit: true\n"
                    "Item { id: sibling; x: 30; width: 20; height: 10 }\n"
                    "Item { objectName: 'item'; width: 10; height: 10; anchors { "
                    + anchors + " } } }");
    QCOMPARE(scene.geometry("item").x(), x);
    const qreal width = scene.geometry("item").width();
    scene.root()->setProperty("turned", false);
    QVERIFY(scene.geometry("item").x() != x);
    QCOMPARE(scene.geometry("item").width(), width);
}

void tst_QDeclarativeAnchors::followsTarget()
{
    ItemScene scene("Item { width: 100; height: 60\n"
                    "Item { objectName: 'target'; x: 30; width: 20; height: 10 }\n"
                    "Item { objectName: 'item'; width: 10; anchors.left: parent.children[0].right } }");
    scene.item("target")->setWidth(40);
    QCOMPARE(scene.geometry("item").x(), 70.0);
    scene.item("target")->setX(5);
    QCOMPARE(scene.geometry("item").x(), 45.0);
}

void tst_QDeclarativeAnchors::manyFollowADeepChain()
{
    // What waits until the chain has been followed so far is much, but nothing of it comes of itself.
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { id: all; Component { id: box; Item { width: 1; property Item before\n"
        "anchors.left: before ? before.right : undefined } }\n"
        "property Item first; property variant ends\n"
        "Component.onCompleted: { first = box.createObject(all); var last = first, i\n"
        "for (i = 0; i < 400; ++i) last = box.createObject(all, { before: last })\n"
        "var made = []; for (i = 0; i < 2000; ++i) made.push(box.createObject(all, { before: last }))\n"
        "ends = made } }"));
    scene.evaluate("first.x = 5");
    QCOMPARE(scene.evaluate("ends[0].x + ' ' + ends[1999].x").toString(), QStringLiteral("406 406"));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeAnchors::loopIsReported_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QString>("direction");
    QTest::newRow("horizontal") << QByteArray("left: b.right") << QByteArray("left: a.right")
                                << QStringLiteral("horizontal anchor.");
    QTest::newRow("vertical") << QByteArray("top: b.bottom") << QByteArray("top: a.bottom")
                              << QStringLiteral("vertical anchor.");
    QTest::newRow("fill") << QByteArray("fill: b; margins: 1") << QByteArray("fill: a; margins: 1")
                          << QStringLiteral("fill.");
}

void tst_QDeclarativeAnchors::loopIsReported()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QString, direction);
    ItemScene scene("Item { width: 100; height: 60\n"
                    "Item { id: a; width: 10; height: 10; anchors { "
                    + first
                    + " } }\n"
                      "Item { id: b; width: 10; height: 10; anchors { "
                    + second + " } } }");
    QVERIFY(!scene.warnings.isEmpty());
    for (const QString &warning : scene.warnings)
        QVERIFY2(warning.endsWith(QStringLiteral("Possible anchor loop detected on ") + direction),
                 qPrintable(warning));
}

void tst_QDeclarativeAnchors::forgetsDestroyedTarget()
{
    ItemScene scene(
        "Item { width: 100; height: 60\n"
        "Item { objectName: 'target'; x: 30; width: 20; height: 10 }\n"
        "Item { objectName: 'item'; width: 10; height: 10; anchors.left: parent.children[0].right\n"
        "anchors.verticalCenter: parent.verticalCenter } }");
    delete scene.item("target");
    QCOMPARE(scene.geometry("item"), QRectF(50, 25, 10, 10));
    scene.item("item")->setX(3);
    QCOMPARE(scene.geometry("item").x(), 3.0);
    scene.root()->setProperty("height", 40);
    QCOMPARE(scene.geometry("item").y(), 15.0);
}

void tst_QDeclarativeAnchors::fillsWidget()
{
    ItemScene scene("Item { width: 100; height: 60; Item { objectName: 'item' } }");
    QGraphicsWidget widget(scene.root());
    widget.setGeometry(10, 5, 70, 40);
    auto *anchors = scene.item("item")->property("anchors").value<QObject *>();
    QVERIFY(anchors->setProperty("fill", QVariant::fromValue<QGraphicsObject *>(&widget)));
    QCOMPARE(scene.geometry("item"), QRectF(10, 5, 70, 40));
    widget.setGeometry(20, 15, 30, 30);
    QCOMPARE(scene.geometry("item"), QRectF(20, 15, 30, 30));
}

void tst_QDeclarativeAnchors::linesCompare_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<bool>("result");
    QTest::newRow("what was set") << QByteArray("item.anchors.left == target.right") << true;
    QTest::newRow("another side") << QByteArray("item.anchors.left == target.left") << false;
    QTest::newRow("of another item") << QByteArray("item.anchors.left == item.right") << false;
    QTest::newRow("read twice") << QByteArray("target.baseline == target.baseline") << true;
    QTest::newRow("not set") << QByteArray("item.anchors.right == item.anchors.top") << true;
    QTest::newRow("set and not set") << QByteArray("item.anchors.left != item.anchors.right") << true;
}

void tst_QDeclarativeAnchors::linesCompare()
{
    QFETCH(QByteArray, expression);
    QFETCH(bool, result);
    ItemScene scene("Item { property bool result: " + expression
                    + "; width: 100; height: 60\n"
                      "Item { id: target; width: 20; height: 10 }\n"
                      "Item { id: item; anchors.left: target.right } }");
    QCOMPARE(scene.root()->property("result").toBool(), result);
}

QTEST_MAIN(tst_QDeclarativeAnchors)
#include "tst_qdeclarativeanchors.moc"
