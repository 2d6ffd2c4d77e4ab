#include "WatchedScene.h"

#include <QtWidgets/QApplication>

/** Mouse areas under real mouse events; what they log is collected in the root's "seen". */
class tst_QDeclarativeMouseArea : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void drag_data();
    void drag();
    void dragEndsWithTheButton();
    void dragIsNoClick();
    void filterChildren();
    void stealing_data();
    void stealing();
    void hold_data();
    void hold();
    void hiddenAreas_data();
    void hiddenAreas();
    void unacceptedDoubleClickIsAPress();
    void movesWithTheMouseInPlace();
    void hoverEndsWithTheView();
    void destroyedDuringPress();

private:
    QString seen() const { return m_scene->value("seen").toString(); }

    QScopedPointer<WatchedScene> m_scene;
};

void tst_QDeclarativeMouseArea::initTestCase()
{
    QApplication::setStartDragDistance(10);
}

void tst_QDeclarativeMouseArea::drag_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QPointF>("end");
    // The first move passes the threshold, so the item follows from (40, 35) to (70, 80).
    QTest::newRow("both axes") << QByteArray() << QPointF(30, 45);
    QTest::newRow("x") << QByteArray("drag.axis: Drag.XAxis") << QPointF(30, 0);
    QTest::newRow("y") << QByteArray("drag.axis: Drag.YAxis") << QPointF(0, 45);
    QTest::newRow("y by name") << QByteArray("drag.axis: \"YAxis\"") << QPointF(0, 45);
    QTest::newRow("maximum") << QByteArray("drag.maximumX: 12; drag.maximumY: 7") << QPointF(12, 7);
    QTest::newRow("minimum") << QByteArray("drag.minimumX: 35; drag.minimumY: 60") << QPointF(35, 60);
}

void tst_QDeclarativeMouseArea::drag()
{
    QFETCH(QByteArray, settings);
    QFETCH(QPointF, end);
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 200; height: 200; property string seen: ""
        Rectangle { id: box; objectName: "box"; width: 50; height: 50; color: "red"
            MouseArea { id: area; anchors.fill: parent; drag.target: box; )"
                          + settings + R"(
                drag.onActiveChanged: seen += drag.active ? "on " : "off " } } })"));
    auto *box = qobject_cast<QGraphicsObject *>(m_scene->item("box"));
    m_scene->press({20, 20});
    m_scene->move({40, 35});
    QCOMPARE(box->pos(), QPointF());
    QCOMPARE(seen(), QString());
    m_scene->move({70, 80});
    QCOMPARE(box->pos(), end);
    QCOMPARE(seen(), QStringLiteral("on "));
    m_scene->release({70, 80});
    QCOMPARE(seen(), QStringLiteral("on off "));
}

void tst_QDeclarativeMouseArea::dragEndsWithTheButton()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 200; height: 100
        Item { id: box; objectName: "box"; width: 50; height: 50
            MouseArea { width: 50; height: 50; drag.target: box; hoverEnabled: true } } })"));
    m_scene->press({20, 20});
    m_scene->release({20, 20});
    m_scene->move({100, 20}, Qt::NoButton);
    m_scene->move({140, 20}, Qt::NoButton);
    QCOMPARE(m_scene->item("box")->property("x").toInt(), 0);
}

void tst_QDeclarativeMouseArea::dragIsNoClick()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 200; height: 100; property string seen: ""
        Item { id: box; width: 100; height: 50
            MouseArea { anchors.fill: parent; drag.target: box; onClicked: seen += "clicked"
                        onReleased: seen += mouse.isClick } } })"));
    m_scene->press({20, 20});
    m_scene->move({40, 20});
    m_scene->move({50, 20});
    m_scene->release({50, 20});
    QCOMPARE(seen(), QStringLiteral("false"));
}

void tst_QDeclarativeMouseArea::filterChildren()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 200; height: 100; property string seen: ""
        Item { id: box; objectName: "box"; width: 100; height: 50
            MouseArea { anchors.fill: parent; drag.target: box; drag.filterChildren: true
                onReleased: seen += "outer released "; onClicked: seen += "outer clicked "
                MouseArea { width: 40; height: 40; onClicked: seen += "inner clicked "
                            onCanceled: seen += "inner canceled " } } } })"));
    m_scene->click({20, 20});
    QCOMPARE(seen(), QStringLiteral("outer released inner clicked "));
    m_scene->root()->setProperty("seen", QString());
    m_scene->press({20, 20});
    m_scene->move({35, 20});
    m_scene->move({60, 20});
    QCOMPARE(m_scene->item("box")->property("x").toInt(), 25);
    m_scene->release({60, 20});
    QCOMPARE(seen(), QStringLiteral("inner canceled outer released "));
}

void tst_QDeclarativeMouseArea::stealing_data()
{
    QTest::addColumn<bool>("prevent");
    QTest::addColumn<QString>("log");
    QTest::newRow("may be stolen") << false << QStringLiteral("pressed canceled ");
    QTest::newRow("prevented") << true << QStringLiteral("pressed released clicked ");
}

void tst_QDeclarativeMouseArea::stealing()
{
    QFETCH(bool, prevent);
    QFETCH(QString, log);
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 100; property string seen: ""
        Flickable { anchors.fill: parent; contentHeight: 400
            MouseArea { objectName: "area"; width: 100; height: 400
                onPressed: seen += "pressed "; onReleased: seen += "released "
                onCanceled: seen += "canceled "; onClicked: seen += "clicked " } } })"));
    m_scene->item("area")->setProperty("preventStealing", prevent);
    m_scene->press({50, 90});
    m_scene->move({50, 75});
    m_scene->move({50, 60});
    m_scene->move({50, 40});
    m_scene->release({50, 40});
    QCOMPARE(seen(), log);
    QVERIFY(!m_scene->item("area")->property("pressed").toBool());
}

void tst_QDeclarativeMouseArea::hold_data()
{
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QString>("log");
    QTest::newRow("in place") << QPoint(20, 20) << QStringLiteral("held released true ");
    QTest::newRow("moved inside") << QPoint(40, 30) << QStringLiteral("held released true ");
    QTest::newRow("moved out") << QPoint(80, 20) << QStringLiteral("released false ");
}

void tst_QDeclarativeMouseArea::hold()
{
    QFETCH(QPoint, to);
    QFETCH(QString, log);
    m_scene.reset(new WatchedScene);
    QVERIFY(
        m_scene->load(R"(Item { width: 100; height: 60; property string seen: ""; property bool waited: false
        Timer { interval: 900; running: area.pressed; onTriggered: waited = true }
        MouseArea { id: area; width: 50; height: 50
            onPressAndHold: seen += "held "; onClicked: seen += "clicked "
            onReleased: seen += "released " + mouse.wasHeld + " " } })"));
    m_scene->press({20, 20});
    m_scene->move(to);
    QTRY_VERIFY(m_scene->value("waited").toBool());
    m_scene->release(to);
    QCOMPARE(seen(), log);
}

void tst_QDeclarativeMouseArea::hiddenAreas_data()
{
    QTest::addColumn<QByteArray>("setting");
    QTest::addColumn<QString>("log");
    QTest::newRow("plain") << QByteArray() << QStringLiteral("top ");
    QTest::newRow("invisible") << QByteArray("visible: false") << QStringLiteral("bottom ");
    QTest::newRow("transparent") << QByteArray("opacity: 0") << QStringLiteral("bottom ");
    QTest::newRow("disabled") << QByteArray("enabled: false") << QStringLiteral("bottom ");
    QTest::newRow("other button") << QByteArray("acceptedButtons: Qt.RightButton")
                                  << QStringLiteral("bottom ");
    QTest::newRow("no button") << QByteArray("acceptedButtons: Qt.NoButton") << QStringLiteral("bottom ");
}

void tst_QDeclarativeMouseArea::hiddenAreas()
{
    QFETCH(QByteArray, setting);
    QFETCH(QString, log);
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 60; property string seen: ""
        MouseArea { anchors.fill: parent; onClicked: seen += "bottom " }
        MouseArea { anchors.fill: parent; onClicked: seen += "top "; )"
                          + setting + " } }"));
    m_scene->click({20, 20});
    QCOMPARE(seen(), log);
}

void tst_QDeclarativeMouseArea::unacceptedDoubleClickIsAPress()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 60; property string seen: ""
        MouseArea { anchors.fill: parent; onPressed: seen += "p "; onClicked: seen += "c " } })"));
    m_scene->click({20, 20});
    QTest::mouseDClick(m_scene->view().viewport(), Qt::LeftButton, {}, {20, 20});
    m_scene->release({20, 20});
    QCOMPARE(seen(), QStringLiteral("p c p c "));
}

void tst_QDeclarativeMouseArea::movesWithTheMouseInPlace()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 60
        MouseArea { objectName: "area"; width: 50; height: 50 } })"));
    QObject *area = m_scene->item("area");
    m_scene->press({20, 20});
    QCOMPARE(area->property("mouseX").toInt(), 20);
    area->setProperty("x", 5);
    QCOMPARE(area->property("mouseX").toInt(), 15);
    m_scene->release({20, 20});
}

void tst_QDeclarativeMouseArea::hoverEndsWithTheView()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 60; property string seen: ""
        MouseArea { objectName: "area"; anchors.fill: parent; hoverEnabled: true
                    onEntered: seen += "in "; onExited: seen += "out " } })"));
    m_scene->move({20, 20}, Qt::NoButton);
    QVERIFY(m_scene->item("area")->property("containsMouse").toBool());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(m_scene->view().viewport(), &leave);
    QVERIFY(!m_scene->item("area")->property("containsMouse").toBool());
    QCOMPARE(seen(), QStringLiteral("in out "));
}

void tst_QDeclarativeMouseArea::destroyedDuringPress()
{
    m_scene.reset(new WatchedScene);
    QVERIFY(m_scene->load(R"(Item { width: 100; height: 60; property string seen: ""
        Loader { id: loader; sourceComponent: MouseArea { width: 100; height: 60
            onPressed: loader.sourceComponent = undefined } } })"));
    m_scene->press({20, 20});
    m_scene->release({20, 20});
    QTRY_VERIFY(m_scene->evaluate("loader.item === null").toBool());
    QVERIFY(m_scene->warnings.isEmpty());
}

QTEST_MAIN(tst_QDeclarativeMouseArea)
#include "tst_qdeclarativemousearea.moc"
