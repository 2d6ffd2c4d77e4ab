#include "WatchedScene.h"

#include <QtGui/QWheelEvent>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>

/** Flickables under real mouse and wheel events. */
class tst_QDeclarativeFlickable : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void defaults();
    void dataGoesToTheContent();
    void followsTheMouse();
    void directions_data();
    void directions();
    void notInteractive();
    void endOfInteraction();
    void bounds_data();
    void bounds();
    void pressStopsAFlick();
    void releaseAfterPassingTheThreshold();
    void pressDelay();
    void pressDelayQuickClick();
    void dragWithinPressDelay();
    void wheel_data();
    void wheel();
    void wheelAtTheEndGoesBelow();
    void innerKeepsTheSameDirection();
    void velocityEndsAtZero();
    void resizingKeepsInBounds();
    void visibleAreaOfNothing();

private:
    void load(const QByteArray &settings, const QByteArray &content = QByteArray());
    bool turn(int delta, Qt::Orientation orientation = Qt::Vertical);
    QVariant flick(const char *property) const { return m_scene->item("flick")->property(property); }
    QString seen() const { return m_scene->value("seen").toString(); }

    QScopedPointer<WatchedScene> m_scene;
    int m_contentHeight = 400;
};

void tst_QDeclarativeFlickable::initTestCase()
{
    QApplication::setStartDragDistance(10);
}

void tst_QDeclarativeFlickable::init()
{
    m_scene.reset(new WatchedScene);
    m_contentHeight = 400;
}

void tst_QDeclarativeFlickable::load(const QByteArray &settings, const QByteArray &content)
{
    const QByteArray contentHeight = QByteArray::number(m_contentHeight);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 100; property string seen: ""
        MouseArea { anchors.fill: parent; onPressed: seen += "below " }
        Flickable { id: flick; objectName: "flick"; anchors.fill: parent; contentWidth: 100
            onMovementStarted: seen += "started "; onMovementEnded: seen += "ended "
            onFlickStarted: seen += "flick "; onFlickEnded: seen += "flicked "
            contentHeight: )"
                          + contentHeight + "; " + settings + "\n" + content + "} }"));
}

bool tst_QDeclarativeFlickable::turn(int delta, Qt::Orientation orientation)
{
    QWidget *viewport = m_scene->view().viewport();
    const QPoint angle = orientation == Qt::Vertical ? QPoint(0, delta) : QPoint(delta, 0);
    QWheelEvent event(QPointF(50, 50), viewport->mapToGlobal(QPoint(50, 50)), QPoint(), angle, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &event);
    return event.isAccepted();
}

void tst_QDeclarativeFlickable::defaults()
{
    QVERIFY(m_scene->load("Flickable { objectName: \"flick\"; width: 50; height: 50 }"));
    QCOMPARE(flick("contentWidth").toReal(), -1.0);
    QCOMPARE(flick("contentHeight").toReal(), -1.0);
    QCOMPARE(flick("maximumFlickVelocity").toReal(), 2500.0);
    QCOMPARE(flick("flickDeceleration").toReal(), 1750.0);
    QCOMPARE(flick("boundsBehavior").toInt(), 2);
    QCOMPARE(flick("interactive").toBool(), true);
    QCOMPARE(flick("pressDelay").toInt(), 0);
    QCOMPARE(m_scene->evaluate("contentItem.width + ' ' + contentItem.height").toString(),
             QStringLiteral("50 50"));
}

void tst_QDeclarativeFlickable::dataGoesToTheContent()
{
    load({}, "Rectangle { objectName: \"kid\" } Timer { id: timer }");
    QCOMPARE(m_scene->evaluate("flick.flickableChildren.length").toInt(), 1);
    QCOMPARE(m_scene->evaluate("flick.flickableData.length").toInt(), 2);
    QVERIFY(m_scene->evaluate("flick.flickableChildren[0].parent === flick.contentItem").toBool());
}

void tst_QDeclarativeFlickable::followsTheMouse()
{
    load({});
    m_scene->press({50, 90});
    m_scene->move({50, 81});
    QCOMPARE(flick("moving").toBool(), false);
    m_scene->move({50, 70});
    QCOMPARE(flick("contentY").toReal(), 0.0);
    m_scene->move({50, 60});
    QCOMPARE(flick("moving").toBool(), true);
    QCOMPARE(flick("contentY").toReal(), 0.0);
    m_scene->move({50, 40});
    QCOMPARE(flick("contentY").toReal(), 20.0);
    m_scene->move({50, 45});
    QCOMPARE(flick("contentY").toReal(), 15.0);
    QCOMPARE(flick("movingHorizontally").toBool(), false);
    m_scene->release({50, 45});
}

void tst_QDeclarativeFlickable::directions_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QPointF>("end");
    QTest::newRow("as tall content needs") << QByteArray() << QPointF(0, 20);
    QTest::newRow("vertical") << QByteArray("flickableDirection: Flickable.VerticalFlick") << QPointF(0, 20);
    QTest::newRow("horizontal") << QByteArray(
        "flickableDirection: Flickable.HorizontalFlick; boundsBehavior: Flickable.StopAtBounds")
                                << QPointF(0, 0);
    QTest::newRow("both") << QByteArray("flickableDirection: Flickable.HorizontalAndVerticalFlick")
                          << QPointF(10, 20);
}

void tst_QDeclarativeFlickable::directions()
{
    QFETCH(QByteArray, settings);
    QFETCH(QPointF, end);
    load(settings);
    m_scene->drag({{90, 90}, {70, 70}, {60, 60}, {40, 40}});
    QCOMPARE(QPointF(flick("contentX").toReal(), flick("contentY").toReal()), end);
    m_scene->release({40, 40});
}

void tst_QDeclarativeFlickable::notInteractive()
{
    load("interactive: false");
    m_scene->drag({{50, 90}, {50, 70}, {50, 50}, {50, 20}});
    m_scene->release({50, 20});
    QCOMPARE(flick("contentY").toReal(), 0.0);
    QCOMPARE(seen(), QStringLiteral("below "));
    QVERIFY(!turn(-120) || flick("contentY").toReal() == 0);
}

void tst_QDeclarativeFlickable::endOfInteraction()
{
    load({});
    m_scene->drag({{50, 90}, {50, 70}, {50, 50}, {50, 20}});
    m_scene->release({50, 20});
    QCOMPARE(flick("flicking").toBool(), true);
    m_scene->item("flick")->setProperty("interactive", false);
    QCOMPARE(flick("moving").toBool(), false);
    QCOMPARE(flick("flicking").toBool(), false);
    QCOMPARE(seen(), QStringLiteral("started flick flicked ended "));
}

void tst_QDeclarativeFlickable::bounds_data()
{
    QTest::addColumn<QByteArray>("behavior");
    QTest::addColumn<qreal>("dragged");
    QTest::newRow("stop") << QByteArray("StopAtBounds") << 0.0;
    QTest::newRow("drag over") << QByteArray("DragOverBounds") << -15.0;
    QTest::newRow("overshoot") << QByteArray("DragAndOvershootBounds") << -15.0;
}

void tst_QDeclarativeFlickable::bounds()
{
    QFETCH(QByteArray, behavior);
    QFETCH(qreal, dragged);
    load("boundsBehavior: Flickable." + behavior);
    m_scene->drag({{50, 20}, {50, 35}, {50, 50}, {50, 80}});
    QCOMPARE(flick("contentY").toReal(), dragged);
    m_scene->release({50, 80});
    QTRY_COMPARE(flick("contentY").toReal(), 0.0);
    QTRY_COMPARE(flick("moving").toBool(), false);
    m_scene->evaluate("flick.contentY = 350");
    QCOMPARE(flick("contentY").toReal(), 350.0);
    m_scene->evaluate("flick.returnToBounds()");
    QTRY_COMPARE(flick("contentY").toReal(), 300.0);
}

void tst_QDeclarativeFlickable::pressStopsAFlick()
{
    m_contentHeight = 20000;
    load({}, "MouseArea { width: 100; height: 20000; onClicked: seen += \"clicked \" }");
    m_scene->drag({{50, 95}, {50, 70}, {50, 50}, {50, 5}});
    m_scene->release({50, 5});
    QTRY_VERIFY(flick("verticalVelocity").toReal() > 100);
    m_scene->press({50, 50});
    const qreal stopped = flick("contentY").toReal();
    m_scene->release({50, 50});
    QCOMPARE(seen(), QStringLiteral("started flick flicked ended "));
    QCOMPARE(flick("contentY").toReal(), stopped);
    QVERIFY(stopped < 19900);
}

void tst_QDeclarativeFlickable::releaseAfterPassingTheThreshold()
{
    load({},
         "MouseArea { width: 100; height: 400; onPressed: seen += \"pressed \"; onCanceled: seen += "
         "\"canceled \"; onReleased: seen += \"released \"; onClicked: seen += \"clicked \" }");
    m_scene->press({50, 90});
    m_scene->move({50, 70});
    m_scene->release({50, 70});
    QCOMPARE(seen(), QStringLiteral("pressed canceled "));
}

void tst_QDeclarativeFlickable::pressDelay()
{
    load("pressDelay: 50",
         "MouseArea { objectName: \"kid\"; width: 100; height: 400; onPressed: seen += \"pressed \" }");
    m_scene->press({50, 50});
    QCOMPARE(m_scene->item("kid")->property("pressed").toBool(), false);
    QTRY_COMPARE(m_scene->item("kid")->property("pressed").toBool(), true);
    m_scene->release({50, 50});
    QCOMPARE(m_scene->item("kid")->property("pressed").toBool(), false);
    QCOMPARE(seen(), QStringLiteral("pressed "));
}

void tst_QDeclarativeFlickable::pressDelayQuickClick()
{
    load("pressDelay: 5000", "MouseArea { width: 100; height: 400; onClicked: seen += \"clicked \" }");
    m_scene->press({50, 50});
    m_scene->release({50, 50});
    QCOMPARE(seen(), QStringLiteral("clicked "));
}

void tst_QDeclarativeFlickable::dragWithinPressDelay()
{
    load("pressDelay: 5000", "MouseArea { width: 100; height: 400; onPressed: seen += \"pressed \" }");
    m_scene->drag({{50, 90}, {50, 70}, {50, 50}, {50, 40}});
    QCOMPARE(flick("contentY").toReal(), 10.0);
    m_scene->release({50, 40});
    QVERIFY(!seen().contains(QLatin1String("pressed")));
}

void tst_QDeclarativeFlickable::wheel_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("delta");
    QTest::addColumn<bool>("moves");
    QTest::newRow("down") << Qt::Vertical << -120 << true;
    QTest::newRow("up at the beginning") << Qt::Vertical << 120 << false;
    QTest::newRow("across") << Qt::Horizontal << -120 << false;
}

void tst_QDeclarativeFlickable::wheel()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, delta);
    QFETCH(bool, moves);
    load({});
    turn(delta, orientation);
    QCOMPARE(flick("flicking").toBool(), moves);
    QTRY_COMPARE(flick("moving").toBool(), false);
    QCOMPARE(flick("contentY").toReal() > 50, moves);
    QCOMPARE(seen(), moves ? QStringLiteral("started flick flicked ended ") : QString());
}

void tst_QDeclarativeFlickable::wheelAtTheEndGoesBelow()
{
    QVERIFY(m_scene->load(R"(Flickable { objectName: "outer"; width: 100; height: 100; contentHeight: 400
        Flickable { objectName: "flick"; width: 100; height: 90; contentHeight: 120; contentY: 30 } })"));
    turn(-120);
    QCOMPARE(m_scene->root()->property("flicking").toBool(), true);
    QCOMPARE(flick("flicking").toBool(), false);
}

void tst_QDeclarativeFlickable::innerKeepsTheSameDirection()
{
    QVERIFY(m_scene->load(R"(Flickable { width: 100; height: 100; contentHeight: 400
        Flickable { objectName: "flick"; width: 100; height: 100; contentHeight: 300 } })"));
    m_scene->drag({{50, 90}, {50, 70}, {50, 50}, {50, 40}});
    QCOMPARE(flick("contentY").toReal(), 10.0);
    QCOMPARE(m_scene->root()->property("moving").toBool(), false);
    m_scene->release({50, 40});
}

void tst_QDeclarativeFlickable::velocityEndsAtZero()
{
    load({});
    QSignalSpy changes(m_scene->item("flick"), SIGNAL(verticalVelocityChanged()));
    m_scene->drag({{50, 95}, {50, 70}, {50, 50}, {50, 5}});
    m_scene->release({50, 5});
    QTRY_COMPARE(flick("contentY").toReal(), 300.0);
    QTRY_COMPARE(flick("moving").toBool(), false);
    QCOMPARE(flick("verticalVelocity").toReal(), 0.0);
    QVERIFY(changes.count() > 2);
    QCOMPARE(flick("atYEnd").toBool(), true);
}

void tst_QDeclarativeFlickable::resizingKeepsInBounds()
{
    load({});
    m_scene->evaluate("flick.contentY = 300");
    m_scene->evaluate("flick.contentHeight = 150");
    QCOMPARE(flick("contentY").toReal(), 50.0);
    m_scene->evaluate("flick.anchors.bottomMargin = -40");
    QCOMPARE(flick("contentY").toReal(), 10.0);
}

void tst_QDeclarativeFlickable::visibleAreaOfNothing()
{
    m_contentHeight = 100;
    load({});
    QCOMPARE(m_scene->evaluate("flick.visibleArea.heightRatio").toReal(), 0.0);
    m_scene->evaluate("flick.contentY = 5");
    QCOMPARE(m_scene->evaluate("flick.visibleArea.heightRatio").toReal(), 1.0);
    QCOMPARE(m_scene->evaluate("flick.visibleArea.yPosition").toReal(), 0.05);
}

QTEST_MAIN(tst_QDeclarativeFlickable)
#include "tst_qdeclarativeflickable.moc"
