#include "Patience.h"
#include "QmlScene.h"

#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeWatchdog>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <functional>

/** A host that has the user answer, which takes a while. */
class Asker : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void ask()
    {
        QEventLoop loop;
        QTimer::singleShot(3000, &loop, &QEventLoop::quit);
        loop.exec();
    }
};

/** What the watchdog interrupts has no other end: a test that fails here runs until it is killed. */
class tst_QDeclarativeWatchdog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        scene.reset(new QmlScene);
        scene->load(
            "import QtQuick 1.0\n"
            "Item {\n"
            "    property int times: 0\n"
            "    property bool goes: false\n"
            "    property variant value: { while (goes) ++times; return times }\n"
            "    function waitFor(ms) { var end = Date.now() + ms; while (Date.now() < end); ++times }\n"
            "    function endless() { while (true); }\n"
            "    function stubborn() { for (;;) try { while (true); } catch (e) {} finally { continue } }\n"
            "    function deep() { for (;;) [1].forEach(function() { while (true); }) }\n"
            "    Timer { id: timer; interval: 1; onTriggered: endless() }\n"
            "    function tick() { timer.start() }\n"
            "    function bind() { goes = true }\n"
            "}\n");
        watchdog.reset(new QDeclarativeWatchdog(scene->view().engine()));
        watchdog->setTimeout(100);
    }

    void cleanup()
    {
        watchdog.reset();
        scene.reset();
    }

    void interrupts_data()
    {
        QTest::addColumn<QByteArray>("function");
        for (const char *function : {"endless", "stubborn", "deep", "tick", "bind"})
            QTest::newRow(function) << QByteArray(function);
    }

    void interrupts()
    {
        QFETCH(const QByteArray, function);
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        call(function);
        QTRY_COMPARE(interrupted.count(), 1);
        // Scripts run again, and nothing is left of the one that was interrupted.
        const int times = scene->root()->property("times").toInt();
        scene->root()->setProperty("goes", false);
        QMetaObject::invokeMethod(scene->root(), "waitFor", Q_ARG(QVariant, 1));
        QVERIFY(scene->root()->property("times").toInt() > times);
    }

    void letsScriptsEndThatTakeLess()
    {
        watchdog->setTimeout(60000);
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        for (int i = 0; i < 3; ++i)
            callAndWait("waitFor", 120);
        QCOMPARE(scene->root()->property("times").toInt(), 3);
        QCOMPARE(interrupted.count(), 0);
    }

    // Many short ones in a row are many times at work.
    void countsEachTimeAtWork()
    {
        watchdog->setTimeout(2000);
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        for (int i = 0; i < 30; ++i)
            callAndWait("waitFor", 100);
        QCOMPARE(scene->root()->property("times").toInt(), 30);
        QCOMPARE(interrupted.count(), 0);
    }

    // However short each is, none of the others gets its turn.
    void countsShortOnesTogether()
    {
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        inAnEvent([&] {
            for (int i = 0; i < 400; ++i)
                QMetaObject::invokeMethod(scene->root(), "waitFor", Q_ARG(QVariant, 5));
        });
        QVERIFY(scene->root()->property("times").toInt() < 400);
        QTRY_COMPARE(interrupted.count(), 1);
    }

    void resumesWithoutASignal()
    {
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        QVERIFY(!watchdog->resume());
        inAnEvent([&] {
            QMetaObject::invokeMethod(scene->root(), "endless");
            QVERIFY(watchdog->resume());
            watchdog->restart();
            scene->run("times = 7");
        });
        QCOMPARE(scene->root()->property("times").toInt(), 7);
        QCoreApplication::processEvents();
        QCOMPARE(interrupted.count(), 0);
    }

    void isPatientWithoutATimeout_data()
    {
        QTest::addColumn<int>("timeout");
        QTest::newRow("none") << 0;
        QTest::newRow("negative") << -1;
    }

    void isPatientWithoutATimeout()
    {
        QFETCH(const int, timeout);
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        watchdog->setTimeout(timeout);
        QCOMPARE(watchdog->timeout(), timeout);
        callAndWait("waitFor", 400);
        QCOMPARE(scene->root()->property("times").toInt(), 1);
        QCOMPARE(interrupted.count(), 0);
    }

    // What the host does is its own affair, and scripts that run later have no part in it.
    void leavesTheHostAlone()
    {
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        inAnEvent([&] {
            QTest::qSleep(500);
            watchdog->restart();
            scene->run("times = 7");
        });
        QCOMPARE(scene->root()->property("times").toInt(), 7);
        QCoreApplication::processEvents();
        QCOMPARE(interrupted.count(), 0);
    }

    // A script that has the host ask something waits for the user, in a loop of events of its own.
    void leavesALoopOfEventsAlone()
    {
        watchdog->setTimeout(1000);
        QSignalSpy interrupted(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        Asker asker;
        scene->view().rootContext()->setContextProperty("asker", &asker);
        inAnEvent([&] { scene->run("asker.ask(); times = 7"); });
        QCOMPARE(scene->root()->property("times").toInt(), 7);
        QCoreApplication::processEvents();
        QCOMPARE(interrupted.count(), 0);
    }

    void watchesEachEngine()
    {
        QmlScene other;
        other.load("import QtQuick 1.0\nItem { function endless() { while (true); } }");
        QDeclarativeWatchdog second(other.view().engine());
        second.setTimeout(100);
        QSignalSpy first(watchdog.data(), &QDeclarativeWatchdog::interrupted);
        QSignalSpy interrupted(&second, &QDeclarativeWatchdog::interrupted);
        QTimer::singleShot(0, this, [&other] { QMetaObject::invokeMethod(other.root(), "endless"); });
        QTRY_COMPARE(interrupted.count(), 1);
        QCOMPARE(first.count(), 0);
    }

    void endsWhileItHasInterrupted()
    {
        QTimer::singleShot(0, this, [this] {
            QMetaObject::invokeMethod(scene->root(), "endless");
            watchdog.reset();
        });
        QTRY_VERIFY(!watchdog);
        QMetaObject::invokeMethod(scene->root(), "waitFor", Q_ARG(QVariant, 1));
        QCOMPARE(scene->root()->property("times").toInt(), 1);
    }

private:
    void inAnEvent(const std::function<void()> &work)
    {
        bool isDone = false;
        QTimer::singleShot(0, this, [&work, &isDone] {
            work();
            isDone = true;
        });
        QTRY_VERIFY(isDone);
    }

    void call(const QByteArray &function)
    {
        QTimer::singleShot(0, this, [this, function] { QMetaObject::invokeMethod(scene->root(), function); });
    }

    void callAndWait(const char *function, int argument)
    {
        inAnEvent([&] { QMetaObject::invokeMethod(scene->root(), function, Q_ARG(QVariant, argument)); });
    }

    QScopedPointer<QmlScene> scene;
    QScopedPointer<QDeclarativeWatchdog> watchdog;
};

QTEST_MAIN(tst_QDeclarativeWatchdog)
#include "tst_qdeclarativewatchdog.moc"
