#include "MessageRecorder.h"
#include "SteppedAnimations.h"
#include "WatchedScene.h"

#include <QtTest/QSignalSpy>

/** What QML 1 adds to the animations that Qt has, and what they animate. */
class tst_QDeclarativeAnimation : public QObject
{
    Q_OBJECT

private slots:
    void completes_data();
    void completes();
    void completesWhenStopped();
    void restartsCount();
    void completedCanBeConnected();
    void completesWithPropertiesOfItsOwn();
    void partsDoNotComplete();
    void assigns_data();
    void assigns();
    void behaviorMoves_data();
    void behaviorMoves();
    void behaviorOffSetsAtOnce();
    void anchorAnimationMoves();
    void vectorIsAnimated();
    void scriptActionByName();
    void scriptNames();
    void saysWhichAnglesAreMissing();
    void turnsToASide_data();
    void turnsToASide();
    void firstOfTwoStates();
    void anchorsComeBack();
    void bindingLetsGo();
    void stopsWithoutPosition();
    void destroyedWhileRunning();
};

void tst_QDeclarativeAnimation::completes_data()
{
    QTest::addColumn<QByteArray>("animation");
    const auto row = [](const char *name, const char *properties) {
        QTest::newRow(name) << QByteArray(name) + " { id: run; " + properties
                + "\nonStarted: log += 'started '; onCompleted: log += 'completed ';"
                  " onRunningChanged: log += running + ' ' }";
    };
    row("NumberAnimation", "target: box; property: 'x'; to: 20; duration: 20");
    row("PropertyAnimation", "target: box; property: 'x'; to: 20; duration: 20");
    row("ColorAnimation", "target: box; property: 'color'; to: 'red'; duration: 20");
    row("RotationAnimation", "target: box; property: 'rotation'; to: 20; duration: 20");
    row("Vector3dAnimation", "target: turn; property: 'axis'; to: Qt.vector3d(1, 0, 0); duration: 20");
    row("SmoothedAnimation", "target: box; property: 'x'; to: 20; duration: 20");
    row("SpringAnimation", "target: box; property: 'x'; to: 20; spring: 5; damping: 0.9; epsilon: 5");
    row("PauseAnimation", "duration: 20");
    row("PropertyAction", "target: box; property: 'x'; value: 20");
    row("ScriptAction", "script: box.x = 20");
    row("SequentialAnimation", "PauseAnimation { duration: 10 }");
    row("ParallelAnimation", "PauseAnimation { duration: 10 }");
}

void tst_QDeclarativeAnimation::completes()
{
    QFETCH(QByteArray, animation);
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property string log\n"
                       "Rectangle { id: box; width: 9; height: 9; transform: Rotation { id: turn } }\n"
                       + animation + " }"));
    scene.evaluate("run.start()");
    QTRY_VERIFY(scene.value("log").toString().contains(QLatin1String("completed")));
    QTRY_VERIFY(scene.value("log").toString().endsWith(QLatin1String("false ")));
    const QStringList words = scene.value("log").toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QCOMPARE(words.count(QStringLiteral("started")), 1);
    QCOMPARE(words.count(QStringLiteral("completed")), 1);
    QVERIFY(words.indexOf(QStringLiteral("started")) < words.indexOf(QStringLiteral("completed")));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeAnimation::completesWhenStopped()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property int done\n"
                       "NumberAnimation on x { id: run; to: 20; duration: 100000; onCompleted: done++ } }"));
    QCOMPARE(scene.value("done").toInt(), 0);
    scene.evaluate("run.stop()");
    QCOMPARE(scene.value("done").toInt(), 1);
    scene.evaluate("run.stop()");
    QCOMPARE(scene.value("done").toInt(), 1);
}

void tst_QDeclarativeAnimation::restartsCount()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property int done\n"
                       "PauseAnimation { id: run; duration: 100000; onCompleted: done++ } }"));
    scene.evaluate("run.start(); run.restart()");
    QCOMPARE(scene.value("done").toInt(), 1);
    scene.evaluate("run.complete()");
    QTRY_COMPARE(scene.value("done").toInt(), 2);
}

void tst_QDeclarativeAnimation::completedCanBeConnected()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property int done; property variant any: run\n"
                       "function count() { done += 10 }\n"
                       "PauseAnimation { id: run; objectName: 'run'; duration: 5 }\n"
                       "Connections { target: any; onCompleted: done++ }\n"
                       "Component.onCompleted: run.completed.connect(count) }"));
    QSignalSpy completed(scene.find<QObject>("run"), SIGNAL(completed()));
    scene.evaluate("run.start()");
    QTRY_COMPARE(completed.count(), 1);
    QCOMPARE(scene.value("done").toInt(), 11);
    scene.evaluate("run.completed()");
    QCOMPARE(scene.value("done").toInt(), 22);
    QCOMPARE(scene.warnings, QStringList());
}

/** Members of QML add a meta-object of their own on top. */
void tst_QDeclarativeAnimation::completesWithPropertiesOfItsOwn()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property int done\n"
                       "NumberAnimation { id: run; property int by: 3; signal counted(int n);\n"
                       "duration: 5; target: run; property: 'by'; to: 8; onCompleted: counted(by);\n"
                       "onCounted: done += n } }"));
    scene.evaluate("run.start()");
    QTRY_COMPARE(scene.value("done").toInt(), 8);
    scene.evaluate("run.destroy()");
}

void tst_QDeclarativeAnimation::partsDoNotComplete()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property string log\n"
                       "SequentialAnimation { id: run; onCompleted: log += 'all '\n"
                       "PauseAnimation { duration: 5; onCompleted: log += 'part ' } } }"));
    scene.evaluate("run.start()");
    QTRY_COMPARE(scene.value("log").toString(), QStringLiteral("all "));
}

void tst_QDeclarativeAnimation::assigns_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("Animation") << QByteArray("property Animation it: NumberAnimation { }");
    QTest::newRow("PropertyAnimation") << QByteArray("property PropertyAnimation it: ColorAnimation { }");
    QTest::newRow("NumberAnimation") << QByteArray("property NumberAnimation it: SmoothedAnimation { }");
    QTest::newRow("itself") << QByteArray("property SpringAnimation it: SpringAnimation { }");
    QTest::newRow("AnchorAnimation") << QByteArray("property Animation it: AnchorAnimation { }");
}

/** An animation goes where one of its base types is asked for. */
void tst_QDeclarativeAnimation::assigns()
{
    QFETCH(QByteArray, property);
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; " + property + " }"));
    QVERIFY(scene.value("it").value<QObject *>());
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeAnimation::behaviorMoves_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("plain") << QByteArray("Rectangle { Behavior on x { NumberAnimation { duration: 60 } } }")
                           << QByteArray("x");
    QTest::newRow("border") << QByteArray(
        "Rectangle { Behavior on border.width { NumberAnimation { duration: 60 } } }")
                            << QByteArray("border.width");
    QTest::newRow("margin") << QByteArray("Rectangle { anchors.left: parent.left; Behavior on "
                                          "anchors.leftMargin { NumberAnimation { duration: 60 } } }")
                            << QByteArray("anchors.leftMargin");
    QTest::newRow("font") << QByteArray("Text { font.pixelSize: 2; Behavior on font.pixelSize { "
                                        "NumberAnimation { duration: 60 } } }")
                          << QByteArray("font.pixelSize");
}

void tst_QDeclarativeAnimation::behaviorMoves()
{
    QFETCH(QByteArray, item);
    QFETCH(QByteArray, property);
    SteppedAnimations animations;
    animations.install();
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; width: 50; height: 50; property alias thing: loader.item\n"
                       "property Component made: Component { "
                       + item
                       + " }\n"
                         "property int now: thing."
                       + property
                       + "; property int steps; onNowChanged: steps++\n"
                         "Loader { id: loader; width: 40; height: 40; sourceComponent: made } }"));
    const QByteArray set = "thing." + property + " = 30";
    scene.evaluate(set.constData());
    QVERIFY(scene.value("now").toInt() < 30);
    QVERIFY(animations.goOnUntil([&] { return scene.value("now").toInt() == 30; }));
    QVERIFY(scene.value("steps").toInt() > 1);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeAnimation::behaviorOffSetsAtOnce()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50\n"
                       "Behavior on z { enabled: false; NumberAnimation { duration: 100000 } } }"));
    scene.evaluate("z = 30");
    QCOMPARE(scene.value("z").toInt(), 30);
}

void tst_QDeclarativeAnimation::anchorAnimationMoves()
{
    SteppedAnimations animations;
    animations.install();
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; width: 100; height: 50; property real seen; property int done\n"
                       "Item { id: box; objectName: 'box'; width: 10; height: 10; anchors.left: root.left\n"
                       "onXChanged: if (x > 0 && x < 90) seen = x }\n"
                       "states: State { name: 'right'; AnchorChanges { target: box; anchors.left: undefined\n"
                       "anchors.right: root.right } }\n"
                       "transitions: Transition { AnchorAnimation { duration: 80 } } }"));
    scene.evaluate("root.state = 'right'");
    QVERIFY(animations.goOnUntil([&] { return scene.item("box")->x() == 90.0; }));
    QVERIFY(scene.value("seen").toReal() > 0);
}

void tst_QDeclarativeAnimation::vectorIsAnimated()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property real x1: turn.origin.x\n"
                       "transform: Rotation { id: turn }\n"
                       "Vector3dAnimation { id: run; target: turn; property: 'origin'; duration: 30\n"
                       "from: Qt.vector3d(1, 1, 1); to: Qt.vector3d(5, 6, 7) } }"));
    scene.evaluate("run.start()");
    QTRY_COMPARE(scene.value("x1").toReal(), 5.0);
    QCOMPARE(scene.evaluate("turn.origin.z").toReal(), 7.0);
}

void tst_QDeclarativeAnimation::scriptActionByName()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { id: root; width: 50; height: 50; property string log; property bool over\n"
        "states: State { name: 'on'\n"
        "StateChangeScript { name: 'named'; script: log += 'named ' }\n"
        "StateChangeScript { script: log += 'loose ' } }\n"
        "transitions: Transition { SequentialAnimation { ScriptAction { script: log += 'first ' }\n"
        "PauseAnimation { duration: 5 } ScriptAction { scriptName: 'named' }\n"
        "PropertyAction { target: root; property: 'over'; value: true } } } }"));
    scene.evaluate("root.state = 'on'");
    QTRY_VERIFY(scene.value("over").toBool());
    // Without names they belong together as well.
    QCOMPARE(scene.value("log").toString(), QStringLiteral("loose named "));
}

void tst_QDeclarativeAnimation::scriptNames()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { StateChangeScript { id: change } ScriptAction { id: act } }"));
    QCOMPARE(scene.evaluate("change.name + act.scriptName").toString(), QString());
    scene.evaluate("change.name = 'a'; act.scriptName = 'b'");
    QCOMPARE(scene.evaluate("change.name + act.scriptName").toString(), QStringLiteral("ab"));
    scene.evaluate("change.name = ''; act.scriptName = ''");
    QCOMPARE(scene.evaluate("change.name + act.scriptName").toString(), QString());
}

void tst_QDeclarativeAnimation::saysWhichAnglesAreMissing()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { width: 50; height: 50; Rectangle { id: box; width: 9; height: 9 }\n"
        "SequentialAnimation { id: run; RotationAnimation { target: box; to: 45; duration: 5 } } }"));
    scene.evaluate("run.start()");
    QTRY_COMPARE(scene.evaluate("box.rotation").toInt(), 45);
    QCOMPARE(
        scene.warnings,
        QStringList{QStringLiteral("QML RotationAnimation: Cannot animate non-existent property \"angle\"")});
}

void tst_QDeclarativeAnimation::turnsToASide_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QByteArray>("direction");
    QTest::addColumn<QString>("halfway");
    const auto row = [](const char *name, const char *from, const char *to, const char *direction,
                        const char *halfway) {
        QTest::newRow(name) << QByteArray(from) << QByteArray(to) << QByteArray(direction)
                            << QString::fromLatin1(halfway);
    };
    row("numerical", "0", "720", "Numerical", "360");
    row("shortest", "0", "270", "Shortest", "-45");
    row("shortest, backwards", "300", "20", "Shortest", "340");
    row("clockwise", "90", "0", "Clockwise", "225");
    row("counterclockwise", "0", "90", "Counterclockwise", "-135");
    row("clockwise, two turns are two", "0", "720", "Clockwise", "360");
    row("shortest, 999 turns", "0", "359730", "Shortest", "45");
    row("clockwise, down 999 turns", "359550", "0", "Clockwise", "359595");
    row("shortest, many turns", "0", "36000090", "Shortest", "45");
    row("shortest, many turns down", "36000000", "-90", "Shortest", "35999955");
    row("clockwise, many turns down", "36000090", "0", "Clockwise", "36000225");
    row("counterclockwise, many turns", "0", "36000090", "Counterclockwise", "-135");
    // A turn more or less is the same number.
    row("shortest to 1e17", "0", "1e17", "Shortest", "-40");
    row("clockwise from 1e17", "1e17", "0", "Clockwise", "100000000000000030");
    row("shortest through all numbers", "-1e308", "1e308", "Shortest", "-1e+308");
    row("clockwise through all numbers", "1e308", "-1e308", "Clockwise", "1e+308");
    row("counterclockwise to infinity", "0", "Infinity", "Counterclockwise", "Infinity");
    row("clockwise from infinity", "Infinity", "0", "Clockwise", "NaN");
    row("counterclockwise through infinity", "-Infinity", "Infinity", "Counterclockwise", "NaN");
    row("shortest to no number", "0", "NaN", "Shortest", "NaN");
    row("clockwise from no number", "NaN", "0", "Clockwise", "NaN");
}

void tst_QDeclarativeAnimation::turnsToASide()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QByteArray, direction);
    // QDeclarativeRotationAnimation has its way to go also where content, which hears of a change before
    // anybody else, starts it at once.
    SteppedAnimations animations;
    animations.install();
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; property real turn; property int done\n"
                       "property variant seen: []\n"
                       "onTurnChanged: { var all = seen; all.push(String(turn)); seen = all }\n"
                       "RotationAnimation { id: run; target: root; property: 'turn'; duration: 64\n"
                       "from: "
                       + from + "; to: " + to
                       + "; direction: RotationAnimation.Numerical\n"
                         "onDirectionChanged: start(); onCompleted: done++ }\n"
                         "Component.onCompleted: run.direction = RotationAnimation."
                       + direction + " }"));
    if (direction == "Numerical")
        scene.evaluate("run.start()");
    QVERIFY(animations.goOnUntil([&] { return scene.value("done").toInt() == 1; }));
    const QStringList seen = scene.value("seen").toStringList();
    QFETCH(QString, halfway);
    QVERIFY2(seen.contains(halfway), qPrintable(seen.join(QLatin1Char(' '))));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeAnimation::firstOfTwoStates()
{
    // Whichever condition hears of the change first, the first that holds is entered, and no other on the
    // way.
    WatchedScene scene;
    QVERIFY(
        scene.load("Item { property bool on; property int level; property string log\n"
                   "onStateChanged: log += state + ' '\n"
                   "states: [ State { name: 'one'; when: on }, State { name: 'two'; when: on && level < 4 },"
                   " State { name: 'three'; when: level > 6 } ] }"));
    scene.evaluate("on = true");
    scene.evaluate("level = 9");
    scene.evaluate("on = false");
    scene.evaluate("level = 0");
    QCOMPARE(scene.value("log").toString(), QStringLiteral("one three  "));
}

void tst_QDeclarativeAnimation::anchorsComeBack()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Item { width: 90; height: 90\n"
                   "Item { id: a; x: 10; width: 5; height: 5 } Item { id: home; x: 40; y: 30 }\n"
                   "Item { id: b; anchors.left: a.left; y: 8; width: 5; height: 5 }\n"
                   "states: [ State { name: 'away'; ParentChange { target: b; parent: home } },"
                   " State { name: 'held'; AnchorChanges { target: a; anchors.right: parent.right } } ] }"));
    // What is no neighbour any more does not hold the item; it does so again when it is one.
    scene.evaluate("state = 'away'");
    scene.evaluate("a.x = 12");
    QCOMPARE(scene.evaluate("b.x + ' ' + b.y").toString(), QStringLiteral("-30 -22"));
    scene.evaluate("state = ''");
    QCOMPARE(scene.evaluate("b.x + ' ' + b.y").toString(), QStringLiteral("12 8"));
    // What the state did not anchor stays where it was put meanwhile.
    scene.evaluate("state = 'held'");
    scene.evaluate("a.y = 7");
    scene.evaluate("state = ''");
    QCOMPARE(scene.evaluate("a.x + ' ' + a.y").toString(), QStringLiteral("12 7"));
}

void tst_QDeclarativeAnimation::bindingLetsGo()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; width: 50; height: 50; property int from: 3; property int other: 1\n"
                       "z: other\n"
                       "Binding { id: tie; target: root; property: 'z'; value: from } }"));
    QCOMPARE(scene.value("z").toInt(), 3);
    scene.evaluate("root.from = 4");
    QCOMPARE(scene.value("z").toInt(), 4);
    MessageRecorder messages;
    scene.evaluate("tie.when = false");
    scene.evaluate("root.other = 7");
    QCOMPARE(scene.value("z").toInt(), 7);
    QCOMPARE(scene.warnings, QStringList());
    QCOMPARE(messages.texts(), QStringList());
}

void tst_QDeclarativeAnimation::stopsWithoutPosition()
{
    WatchedScene scene;
    QVERIFY(scene.load("Rectangle { width: 50; height: 50; \n"
                       "gradient: Gradient { GradientStop { id: first; color: '#ff0000' }\n"
                       "GradientStop { position: 1; color: '#0000ff' } } }"));
    QCOMPARE(scene.evaluate("first.position").toReal(), 0.0);
    QVERIFY(scene.pixel(25, 0).red() > 240);
    QVERIFY(scene.pixel(25, 49).blue() > 240);
}

void tst_QDeclarativeAnimation::destroyedWhileRunning()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property int done\n"
                       "Loader { id: loader; sourceComponent: Component { Item {\n"
                       "NumberAnimation on x { to: 20; duration: 100000; onCompleted: done++ } } } } }"));
    scene.evaluate("loader.sourceComponent = null");
    QTRY_VERIFY(!scene.evaluate("loader.item").value<QObject *>());
    QCOMPARE(scene.warnings, QStringList());
}

QTEST_MAIN(tst_QDeclarativeAnimation)
#include "tst_qdeclarativeanimation.moc"
