#include "WatchedScene.h"

#include <QtTest/QSignalSpy>

/** Flipable shows one of two sides and gives that one the mouse. */
class tst_QDeclarativeFlipable : public QObject
{
    Q_OBJECT

private slots:
    void initialSide();
    void side_data();
    void side();
    void sideFollowsTheParent();
    void backIsNotMirrored_data();
    void backIsNotMirrored();
    void mouseGoesToTheSideShown();
    void facesAreGivenOnce();
    void withoutFaces();
    void backGoesAway();
};

static const char flipable[] =
    "Item { width: 100; height: 100\n"
    "Flipable { id: flip; objectName: 'flip'; x: 20; y: 20; width: 60; height: 60; property string log\n"
    "transform: Rotation { id: turn; origin.x: 30; origin.y: 30; axis { x: 0; y: 1; z: 0 } }\n"
    "onSideChanged: log += side\n"
    "front: Rectangle { objectName: 'front'; width: 60; height: 60; color: '#ff0000'\n"
    "MouseArea { anchors.fill: parent; onClicked: flip.log += 'front' } }\n"
    "back: Rectangle { objectName: 'back'; width: 60; height: 60; color: '#0000ff'\n"
    "Rectangle { width: 30; height: 30; color: '#00ff00' }\n"
    "MouseArea { anchors.fill: parent; onClicked: flip.log += 'back' } } } }";

void tst_QDeclarativeFlipable::initialSide()
{
    WatchedScene scene;
    QVERIFY(scene.load(flipable));
    QCOMPARE(scene.evaluate("flip.side == Flipable.Front").toBool(), true);
    QCOMPARE(scene.item("front")->parentItem(), scene.item("flip"));
    QCOMPARE(scene.item("back")->parentItem(), scene.item("flip"));
    QCOMPARE(scene.item("back")->opacity(), 0.0);
    QCOMPARE(scene.pixel(50, 50), QColor(Qt::red));
    QCOMPARE(scene.item("flip")->property("log").toString(), QString());
}

void tst_QDeclarativeFlipable::side_data()
{
    QTest::addColumn<QByteArray>("turn");
    QTest::addColumn<bool>("isBack");
    QTest::newRow("a little") << QByteArray("turn.angle = 80") << false;
    QTest::newRow("beyond the edge") << QByteArray("turn.angle = 100") << true;
    QTest::newRow("half") << QByteArray("turn.angle = 180") << true;
    QTest::newRow("the other way") << QByteArray("turn.angle = -100") << true;
    QTest::newRow("nearly round") << QByteArray("turn.angle = 280") << false;
    QTest::newRow("round") << QByteArray("turn.angle = 360") << false;
    QTest::newRow("about x") << QByteArray("turn.axis = Qt.vector3d(1, 0, 0); turn.angle = 180") << true;
    QTest::newRow("in the plane") << QByteArray("turn.axis = Qt.vector3d(0, 0, 1); turn.angle = 180")
                                  << false;
    QTest::newRow("turned as an item") << QByteArray("flip.rotation = 180") << false;
}

void tst_QDeclarativeFlipable::side()
{
    QFETCH(QByteArray, turn);
    QFETCH(bool, isBack);
    WatchedScene scene;
    QVERIFY(scene.load(flipable));
    scene.evaluate(turn.constData());
    QCOMPARE(scene.evaluate("flip.side == Flipable.Back").toBool(), isBack);
    QCOMPARE(scene.item("front")->opacity(), isBack ? 0.0 : 1.0);
    QCOMPARE(scene.item("back")->opacity(), isBack ? 1.0 : 0.0);
    QCOMPARE(scene.item("flip")->property("log").toString(), isBack ? QStringLiteral("1") : QString());
}

/** The side is what the item's place in the scene makes it when it comes there. */
void tst_QDeclarativeFlipable::sideFollowsTheParent()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50\n"
                       "Item { transform: Rotation { angle: 180; axis { x: 0; y: 1; z: 0 } }\n"
                       "Item { id: inside } }\n"
                       "Flipable { id: flip; width: 9; height: 9 } }"));
    QCOMPARE(scene.evaluate("flip.side").toInt(), 0);
    scene.evaluate("flip.parent = inside");
    QCOMPARE(scene.evaluate("flip.side").toInt(), 1);
}

void tst_QDeclarativeFlipable::backIsNotMirrored_data()
{
    QTest::addColumn<QByteArray>("axis");
    QTest::newRow("over y") << QByteArray("0, 1, 0");
    QTest::newRow("over x") << QByteArray("1, 0, 0");
}

void tst_QDeclarativeFlipable::backIsNotMirrored()
{
    QFETCH(QByteArray, axis);
    WatchedScene scene;
    QVERIFY(scene.load(flipable));
    const QByteArray turn = "turn.axis = Qt.vector3d(" + axis + "); turn.angle = 180";
    scene.evaluate(turn.constData());
    QCOMPARE(scene.pixel(30, 30), QColor(0, 255, 0));
    QCOMPARE(scene.pixel(70, 30), QColor(Qt::blue));
    QCOMPARE(scene.pixel(30, 70), QColor(Qt::blue));
}

void tst_QDeclarativeFlipable::mouseGoesToTheSideShown()
{
    WatchedScene scene;
    QVERIFY(scene.load(flipable));
    QTest::mouseClick(scene.view().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    QCOMPARE(scene.item("flip")->property("log").toString(), QStringLiteral("front"));
    scene.evaluate("turn.angle = 180");
    QTest::mouseClick(scene.view().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    QCOMPARE(scene.item("flip")->property("log").toString(), QStringLiteral("front1back"));
}

void tst_QDeclarativeFlipable::facesAreGivenOnce()
{
    WatchedScene scene;
    QVERIFY(scene.load(flipable));
    QGraphicsObject *front = scene.item("front");
    QSignalSpy frontChanged(scene.item("flip"), SIGNAL(frontChanged()));
    scene.evaluate("flip.front = flip.back");
    scene.evaluate("flip.back = null");
    QCOMPARE(frontChanged.count(), 0);
    QCOMPARE(scene.item("flip")->property("front").value<QGraphicsObject *>(), front);
    QCOMPARE(scene.warnings.count(), 2);
    QVERIFY(scene.warnings.at(0).contains(QLatin1String("front is a write-once property")));
    QVERIFY(scene.warnings.at(1).contains(QLatin1String("back is a write-once property")));
}

void tst_QDeclarativeFlipable::withoutFaces()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; Flipable { id: flip; objectName: 'flip'\n"
                       "front: null; width: 9; height: 9\n"
                       "transform: Rotation { id: turn; axis { x: 0; y: 1; z: 0 } } } }"));
    scene.evaluate("turn.angle = 180");
    QCOMPARE(scene.evaluate("flip.side").toInt(), 1);
    QVERIFY(!scene.item("flip")->property("back").value<QObject *>());
}

void tst_QDeclarativeFlipable::backGoesAway()
{
    WatchedScene scene;
    QVERIFY(scene.load(flipable));
    delete scene.item("back");
    scene.evaluate("turn.angle = 180");
    QCOMPARE(scene.evaluate("flip.side").toInt(), 1);
    QVERIFY(!scene.item("flip")->property("back").value<QObject *>());
}

QTEST_MAIN(tst_QDeclarativeFlipable)
#include "tst_qdeclarativeflipable.moc"
