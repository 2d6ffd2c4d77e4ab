#include "WatchedScene.h"

#include <QtGui/QTouchDevice>

/** PinchArea under the touches of fingers. */
class tst_QDeclarativePinchArea : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_device = QTest::createTouchDevice(); }
    void signalsOfAPinch();
    void oneFingerIsNoPinch();
    void smallMovesAreNoPinch();
    void eventDescribes();
    void targetScales_data();
    void targetScales();
    void targetTurns();
    void turnGoesBeyondHalf();
    void targetIsDragged_data();
    void targetIsDragged();
    void refusedPinchIsLeftAlone();
    void disabledAreaLetsThrough();
    void mouseStaysWhileEnabled();
    void liftingOneFingerEnds();
    void fingersOnOnePoint();

private:
    bool load(WatchedScene *scene, const QByteArray &pinch = {});
    void fingers(WatchedScene *scene, const QPoint &first, const QPoint &second);
    void press(WatchedScene *scene, const QPoint &first, const QPoint &second);
    void release(WatchedScene *scene, const QPoint &first, const QPoint &second);
    static QString log(WatchedScene *scene) { return scene->value("log").toString(); }

    QTouchDevice *m_device = nullptr;
};

bool tst_QDeclarativePinchArea::load(WatchedScene *scene, const QByteArray &pinch)
{
    return scene->load(
        "Item { id: root; width: 400; height: 400; property string log; property variant seen\n"
        "MouseArea { anchors.fill: parent; onClicked: log += 'click ' }\n"
        "PinchArea { id: area; anchors.fill: parent\n"
        "onPinchStarted: log += 'started '\n"
        "onPinchUpdated: { log += 'updated '; seen = [pinch.scale, pinch.rotation, pinch.center.x,\n"
        "pinch.startCenter.x, pinch.pointCount, pinch.previousScale, pinch.point1.x, pinch.startPoint2.x,\n"
        "pinch.angle, pinch.previousAngle, pinch.previousCenter.x] }\n"
        "onPinchFinished: log += 'finished '\n"
        + pinch
        + "}\n"
          "Rectangle { id: thing; objectName: 'thing'; x: 150; y: 150; width: 100; height: 100 } }");
}

void tst_QDeclarativePinchArea::press(WatchedScene *scene, const QPoint &first, const QPoint &second)
{
    QTest::touchEvent(scene->view().viewport(), m_device)
        .press(0, first, scene->view().viewport())
        .press(1, second, scene->view().viewport());
}

void tst_QDeclarativePinchArea::fingers(WatchedScene *scene, const QPoint &first, const QPoint &second)
{
    QTest::touchEvent(scene->view().viewport(), m_device)
        .move(0, first, scene->view().viewport())
        .move(1, second, scene->view().viewport());
}

void tst_QDeclarativePinchArea::release(WatchedScene *scene, const QPoint &first, const QPoint &second)
{
    QTest::touchEvent(scene->view().viewport(), m_device)
        .release(0, first, scene->view().viewport())
        .release(1, second, scene->view().viewport());
}

void tst_QDeclarativePinchArea::signalsOfAPinch()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    press(&scene, {150, 200}, {250, 200});
    QCOMPARE(log(&scene), QString());
    fingers(&scene, {130, 200}, {270, 200});
    QCOMPARE(log(&scene), QStringLiteral("started "));
    QVERIFY(scene.evaluate("area.pinch.active").toBool());
    fingers(&scene, {120, 200}, {280, 200});
    QCOMPARE(log(&scene), QStringLiteral("started updated "));
    release(&scene, {120, 200}, {280, 200});
    QCOMPARE(log(&scene), QStringLiteral("started updated finished "));
    QVERIFY(!scene.evaluate("area.pinch.active").toBool());
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {300, 200});
    QCOMPARE(log(&scene), QStringLiteral("started updated finished started "));
    release(&scene, {100, 200}, {300, 200});
}

void tst_QDeclarativePinchArea::oneFingerIsNoPinch()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    QWidget *viewport = scene.view().viewport();
    QTest::touchEvent(viewport, m_device).press(0, {100, 100}, viewport);
    QTest::touchEvent(viewport, m_device).move(0, {200, 200}, viewport);
    QTest::touchEvent(viewport, m_device).release(0, {200, 200}, viewport);
    QCOMPARE(log(&scene), QString());
}

void tst_QDeclarativePinchArea::smallMovesAreNoPinch()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    press(&scene, {150, 200}, {250, 200});
    const int threshold = QApplication::startDragDistance();
    fingers(&scene, {150 - threshold, 200}, {250 + threshold, 200});
    release(&scene, {150 - threshold, 200}, {250 + threshold, 200});
    QCOMPARE(log(&scene), QString());
}

void tst_QDeclarativePinchArea::eventDescribes()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {200, 200});
    QCOMPARE(log(&scene), QStringLiteral("started "));
    fingers(&scene, {100, 200}, {250, 200});
    fingers(&scene, {100, 200}, {300, 200});
    const QVariantList seen = scene.value("seen").toList();
    const QVariantList expected{2.0, 0.0, 200.0, 150.0, 2, 1.5, 100.0, 200.0, 0.0, 0.0, 175.0};
    QCOMPARE(seen.count(), expected.count());
    for (int i = 0; i < seen.count(); ++i)
        QVERIFY2(qFuzzyCompare(1 + seen.at(i).toReal(), 1 + expected.at(i).toReal()),
                 qPrintable(QStringLiteral("%1: %2").arg(i).arg(seen.at(i).toReal())));
    release(&scene, {100, 200}, {300, 200});
}

void tst_QDeclarativePinchArea::targetScales_data()
{
    QTest::addColumn<QPoint>("second");
    QTest::addColumn<qreal>("scale");
    QTest::newRow("larger") << QPoint(300, 200) << 2.0;
    QTest::newRow("smaller") << QPoint(150, 200) << 0.5;
    QTest::newRow("at most") << QPoint(390, 200) << 2.5;
    QTest::newRow("at least") << QPoint(110, 200) << 0.4;
}

void tst_QDeclarativePinchArea::targetScales()
{
    QFETCH(QPoint, second);
    QFETCH(qreal, scale);
    WatchedScene scene;
    QVERIFY(load(&scene, "pinch { target: thing; minimumScale: 0.4; maximumScale: 2.5 }"));
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {200, 200});
    fingers(&scene, {100, 200}, second);
    QCOMPARE(scene.item("thing")->scale(), scale);
    QCOMPARE(scene.item("thing")->pos(), QPointF(150, 150));
    release(&scene, {100, 200}, second);
    QCOMPARE(scene.item("thing")->scale(), scale);
}

void tst_QDeclarativePinchArea::targetTurns()
{
    WatchedScene scene;
    QVERIFY(load(&scene, "pinch { target: thing; minimumRotation: -45; maximumRotation: 100 }"));
    press(&scene, {200, 200}, {300, 200});
    fingers(&scene, {220, 200}, {320, 200});
    fingers(&scene, {220, 200}, {220, 300});
    QCOMPARE(scene.item("thing")->rotation(), 90.0);
    fingers(&scene, {220, 200}, {120, 200});
    QCOMPARE(scene.item("thing")->rotation(), 100.0);
    release(&scene, {220, 200}, {120, 200});
}

/** The turn adds up, so the jump from 180 to -180 degrees is none. */
void tst_QDeclarativePinchArea::turnGoesBeyondHalf()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    press(&scene, {200, 200}, {300, 200});
    fingers(&scene, {220, 200}, {320, 200});
    for (const QPoint &second : {QPoint(220, 300), QPoint(120, 200), QPoint(220, 100), QPoint(320, 200)})
        fingers(&scene, {220, 200}, second);
    QCOMPARE(scene.value("seen").toList().at(1).toReal(), 360.0);
    release(&scene, {220, 200}, {320, 200});
}

void tst_QDeclarativePinchArea::targetIsDragged_data()
{
    QTest::addColumn<QByteArray>("axis");
    QTest::addColumn<QPointF>("place");
    QTest::newRow("no") << QByteArray("Pinch.NoDrag") << QPointF(150, 150);
    QTest::newRow("x") << QByteArray("Pinch.XAxis") << QPointF(170, 150);
    QTest::newRow("y") << QByteArray("Pinch.YAxis") << QPointF(150, 180);
    QTest::newRow("both") << QByteArray("Pinch.XandYAxis") << QPointF(170, 180);
    QTest::newRow("limited") << QByteArray("Pinch.XandYAxis; pinch.maximumX: 160; pinch.minimumY: 190")
                             << QPointF(160, 190);
}

void tst_QDeclarativePinchArea::targetIsDragged()
{
    QFETCH(QByteArray, axis);
    QFETCH(QPointF, place);
    WatchedScene scene;
    QVERIFY(load(&scene, "pinch.target: thing; pinch.dragAxis: " + axis + "\n"));
    press(&scene, {100, 100}, {200, 100});
    fingers(&scene, {100, 120}, {200, 120});
    fingers(&scene, {120, 150}, {220, 150});
    QCOMPARE(scene.item("thing")->pos(), place);
    release(&scene, {120, 150}, {220, 150});
}

void tst_QDeclarativePinchArea::refusedPinchIsLeftAlone()
{
    WatchedScene scene;
    QVERIFY(load(&scene,
                 "pinch.target: thing; pinch.maximumScale: 4\n"
                 "Component.onCompleted: pinchStarted.connect(function(pinch) {\n"
                 "pinch.accepted = false })"));
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {300, 200});
    fingers(&scene, {50, 200}, {350, 200});
    release(&scene, {50, 200}, {350, 200});
    QCOMPARE(log(&scene), QStringLiteral("started "));
    QCOMPARE(scene.item("thing")->scale(), 1.0);
    QVERIFY(!scene.evaluate("area.pinch.active").toBool());
}

void tst_QDeclarativePinchArea::disabledAreaLetsThrough()
{
    WatchedScene scene;
    QVERIFY(load(&scene, "enabled: false"));
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {300, 200});
    release(&scene, {100, 200}, {300, 200});
    // What takes no touch gets the mouse that Qt makes of it.
    QCOMPARE(log(&scene), QStringLiteral("click "));
    scene.evaluate("area.enabled = true; root.log = ''");
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {300, 200});
    QCOMPARE(log(&scene), QStringLiteral("started "));
    scene.evaluate("area.enabled = false");
    release(&scene, {100, 200}, {300, 200});
    QCOMPARE(log(&scene), QStringLiteral("started finished "));
}

void tst_QDeclarativePinchArea::mouseStaysWhileEnabled()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    QWidget *viewport = scene.view().viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    QCOMPARE(log(&scene), QString());
    scene.evaluate("area.enabled = false");
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    QCOMPARE(log(&scene), QStringLiteral("click "));
}

void tst_QDeclarativePinchArea::liftingOneFingerEnds()
{
    WatchedScene scene;
    QVERIFY(load(&scene));
    QWidget *viewport = scene.view().viewport();
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {100, 200}, {300, 200});
    QTest::touchEvent(viewport, m_device).stationary(0).release(1, {300, 200}, viewport);
    QCOMPARE(log(&scene), QStringLiteral("started finished "));
    QTest::touchEvent(viewport, m_device).release(0, {100, 200}, viewport);
    QCOMPARE(log(&scene), QStringLiteral("started finished "));
}

void tst_QDeclarativePinchArea::fingersOnOnePoint()
{
    WatchedScene scene;
    QVERIFY(load(&scene, "pinch.target: thing; pinch.maximumScale: 4"));
    press(&scene, {150, 200}, {250, 200});
    fingers(&scene, {200, 200}, {200, 200});
    fingers(&scene, {100, 200}, {300, 200});
    QCOMPARE(scene.item("thing")->scale(), 1.0);
    release(&scene, {100, 200}, {300, 200});
    QCOMPARE(log(&scene), QStringLiteral("started updated finished "));
}

QTEST_MAIN(tst_QDeclarativePinchArea)
#include "tst_qdeclarativepincharea.moc"
