#include <Vidtips/VTScriptWatch_p.h>

#include <QtCore/QTimer>
#include <QtDeclarative/QDeclarativeComponent>
#include <QtDeclarative/QDeclarativeContext>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtTest/QTest>

#include <functional>
#include <memory>

using Vidtips::VTScriptWatch;

/** A host that takes its time when a script calls it. */
class Host : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void ask() { work(); }

    std::function<void()> work;
};

/** What the watch stops has no other end: a test that fails here may run until it is killed. */
class tst_VTScriptWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        stops = 0;
        engine = std::make_unique<QDeclarativeEngine>();
        engine->rootContext()->setContextProperty(QStringLiteral("host"), &host);
        QDeclarativeComponent component(engine.get());
        component.setData("import QtQuick 1.0\n"
                          "QtObject {\n"
                          "    property int times: 0\n"
                          "    function endless() { while (true); }\n"
                          "    function once() { ++times }\n"
                          "    function asks() { host.ask(); ++times }\n"
                          "}\n",
                          QUrl());
        object.reset(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        watch = std::make_unique<VTScriptWatch>(
            engine.get(), [this] { return timeout; }, [this] { ++stops; });
    }

    void cleanup()
    {
        watch.reset();
        object.reset();
        engine.reset();
    }

    void tellsWhatItStopped()
    {
        restart(100);
        inAnEvent([this] { call("endless"); });
        QTRY_COMPARE(stops, 1);
        QVERIFY(!watch->resume());
        call("once");
        QCOMPARE(object->property("times").toInt(), 1);
    }

    // Who asks at once is told by that alone.
    void resumesAtOnce()
    {
        restart(100);
        QVERIFY(!watch->resume());
        inAnEvent([this] {
            call("endless");
            call("once");
            QCOMPARE(object->property("times").toInt(), 0);
            QVERIFY(watch->resume());
            call("once");
            QCOMPARE(object->property("times").toInt(), 1);
        });
        QCoreApplication::processEvents();
        QCOMPARE(stops, 0);
    }

    void leavesPausesOut()
    {
        restart(1000);
        host.work = [this] {
            watch->beginPause();
            watch->beginPause();
            QTest::qSleep(700);
            watch->endPause();
            QTest::qSleep(700);
            watch->endPause();
        };
        inAnEvent([this] { call("asks"); });
        QCOMPARE(object->property("times").toInt(), 1);
        QCOMPARE(stops, 0);
    }

    void givesNewTime()
    {
        restart(0);
        inAnEvent([this] {
            restart(100);
            call("endless");
        });
        QTRY_COMPARE(stops, 1);
    }

private:
    void call(const char *function) { QMetaObject::invokeMethod(object.get(), function); }

    void restart(int time)
    {
        timeout = time;
        watch->restart();
    }

    static void inAnEvent(const std::function<void()> &work)
    {
        bool isDone = false;
        QTimer::singleShot(0, [&] {
            work();
            isDone = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(isDone, 30000);
    }

    Host host;
    std::unique_ptr<QDeclarativeEngine> engine;
    std::unique_ptr<QObject> object;
    std::unique_ptr<VTScriptWatch> watch;
    int timeout = 0;
    int stops = 0;
};

QTEST_MAIN(tst_VTScriptWatch)

#include "tst_vtscriptwatch.moc"
