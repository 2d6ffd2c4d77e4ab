#include "HostileTest.h"
#include "Patience.h"

#include <QtCore/QTimer>

using namespace Vidtips;

/** Milliseconds that a slow machine may take. */
constexpr int patience = 120000;

/** User interfaces whose scripts do not end, which the library stops: one that it does not hangs the test. */
class tst_EndlessScripts : public HostileTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        begin();
        session->set(ScriptTimeout, 100);
    }

    void cleanup() { end(); }

    void stops_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("when it is there") << QByteArray("Component.onCompleted: { while (true); }");
        QTest::newRow("in a binding") << QByteArray("property int a: { while (true); return 1 }");
        QTest::newRow("in a timer") << QByteArray(
            "Timer { interval: 1; running: true; onTriggered: { while (true); } }");
        QTest::newRow("that asks the host again and again")
            << QByteArray("Component.onCompleted: { while (true) vidTipView.notification(9, 1); }");
        QTest::newRow("after the host was asked")
            << QByteArray("Component.onCompleted: { vidTipView.notification(9, 1); while (true); }");
    }

    void stops()
    {
        QFETCH(const QByteArray, body);
        writeEndless(body);
        showLater("endless");
        QTRY_COMPARE(told("was stopped"), 1);
        QTRY_VERIFY(!session->window()->isVisible());
        QVERIFY(!root());
        QCOMPARE(told("was stopped"), 1);
    }

    // As the host that calls show() from elsewhere than an event.
    void stopsWithoutAnEvent()
    {
        writeEndless("Component.onCompleted: { while (true); }");
        show("endless");
        QTRY_COMPARE(told("was stopped"), 1);
        QTRY_VERIFY(!session->window()->isVisible());
    }

    void saysWhichOne()
    {
        const QString path = writeEndless("Component.onCompleted: { while (true); }");
        showLater("endless");
        QTRY_COMPARE(told("was stopped"), 1);
        const auto message =
            qMakePair(int(VTMessageWarning),
                      QStringLiteral("%1 was stopped, as its scripts ran for more than 100 ms").arg(path));
        QVERIFY(session->host->messages.contains(message));
    }

    void isLoadedAgainWhenItHasChanged()
    {
        const QByteArray body = "Component.onCompleted: { while (true); }";
        writeEndless(body);
        for (int i = 1; i <= 2; ++i) {
            showLater("endless");
            QTRY_COMPARE(told("was stopped"), i);
            QTRY_VERIFY(!session->window()->isVisible());
        }
        show("endless");
        QVERIFY(!root());
        QVERIFY(told("was stopped twice for tips of the package \"Endless\" and is not loaded for them") > 0);
        writeEndless("property int changed: 1");
        show("endless");
        QTRY_VERIFY(root());
        QCOMPARE(root()->property("changed").toInt(), 1);
    }

    // What a package has shown in the user interface of another one takes it away from nobody else.
    void barsItForThePackageThatIsShown()
    {
        packages->writeUserInterface("Sound",
                                     "property string key: vidtip ? vidtip.attribute('key') : ''\n"
                                     "onKeyChanged: { while (key === 'greedy'); }");
        packages->writeControl("Greedy", "tips.xml", R"(<vidtip key="greedy"/>)", "search=\"Sound\"");
        session->manager()->loadPackage(QFileInfo(packages->filePath("Greedy.vidtips")));
        for (int i = 1; i <= 2; ++i) {
            QVERIFY(show("sound"));
            QTRY_VERIFY(root() && root()->property("key") == "sound");
            showLater("greedy");
            QTRY_COMPARE(told("was stopped"), i);
            QTRY_VERIFY(!session->window()->isVisible());
        }
        show("greedy");
        QVERIFY(!root());
        QVERIFY(told("was stopped twice for tips of the package \"Greedy\" and is not loaded for them") > 0);
    }

    void stopsWhatGoes()
    {
        writeEndless("Component.onDestruction: { while (true); }");
        QVERIFY(show("endless"));
        QTRY_VERIFY(root());
        QTimer::singleShot(0, this, [this] { show("sound"); });
        QTRY_VERIFY(root() && root()->property("key") == "sound");
        QCOMPARE(told("Endless.vidtips/ui/VidtipsUI.qml was stopped"), 1);
        QCoreApplication::processEvents();
        QVERIFY(session->window()->isVisible());
        QCOMPARE(told("was stopped"), 1);
    }

    // Its thread is its own, and goes with the view.
    // QDeclarativeWorkers interrupts them.
    void leavesWorkersThatDoNotEnd()
    {
        writeEndless("property bool isAtWork: false\nWorkerScript { id: it; source: 'worker.js'; onMessage: "
                     "isAtWork = true }\n"
                     "Component.onCompleted: it.sendMessage({})");
        packages->write("Endless.vidtips/ui/worker.js",
                        "WorkerScript.onMessage = function() { WorkerScript.sendMessage(1); while (true); }");
        // Each begins, although the one before has the same thread.
        for (int i = 0; i < 3; ++i) {
            QVERIFY(show("endless"));
            QTRY_VERIFY(root() && root()->property("isAtWork").toBool());
            QVERIFY(show("sound"));
            QTRY_VERIFY(root() && root()->property("key") == "sound");
        }
        QVERIFY(show("endless"));
        QTRY_VERIFY(root() && root()->property("isAtWork").toBool());
        session.reset();
        begin();
    }

    void takesANewTimeAtOnce()
    {
        session->set(ScriptTimeout, 0);
        writeEndless(
            "property bool isDone: false\n"
            "function take() { var end = Date.now() + 400; while (Date.now() < end); isDone = true }");
        QVERIFY(show("endless"));
        QTRY_VERIFY(root());
        QMetaObject::invokeMethod(root(), "take", Qt::QueuedConnection);
        QTRY_VERIFY(root()->property("isDone").toBool());
        root()->setProperty("isDone", false);
        session->set(ScriptTimeout, 100);
        QMetaObject::invokeMethod(root(), "take", Qt::QueuedConnection);
        QTRY_COMPARE(told("was stopped"), 1);
    }

    // A hundred thousand items are too many at any speed.
    void stopsCountlessItems_data()
    {
        QTest::addColumn<QByteArray>("body");
        const QByteArray item = "Component { id: item; Item { } }\n";
        QTest::newRow("rows") << QByteArray("Repeater { model: 200000; Item { } }");
        QTest::newRow("rows of rows")
            << QByteArray("Repeater { model: 500; Item { Repeater { model: 500; Item { } } } }");
        QTest::newRow("script that goes on") << item
                + "Component.onCompleted: { for (;;) try { item.createObject(root) } finally { continue } }";
        QTest::newRow("timer") << item
                + "property int rounds: 0\nTimer { interval: 1; repeat: true; running: rounds < 40; "
                  "onTriggered: "
                  "{ ++rounds; for (var i = 0; i < 5000; ++i) item.createObject(root) } }";
    }

    void stopsCountlessItems()
    {
        QFETCH(const QByteArray, body);
        session->set(ScriptTimeout, 0);
        const QString path = writeEndless("id: root\n" + body);
        showLater("endless");
        QTRY_COMPARE_WITH_TIMEOUT(told("was stopped"), 1, patience);
        QTRY_VERIFY(!session->window()->isVisible());
        QVERIFY(!root());
        const auto message =
            qMakePair(int(VTMessageWarning),
                      QStringLiteral("%1 was stopped, as it has more than 100000 items").arg(path));
        QVERIFY(session->host->messages.contains(message));
        show("sound");
        QCOMPARE(told("was stopped"), 1);
    }

    // They are counted before the first is made: the engine's stack has no room for so many at a time.
    void stopsFilesOfCountlessItems_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("root") << QByteArray("Many0 { }");
        QTest::newRow("component") << QByteArray("Component { Many0 { } }");
        QTest::newRow("Loader") << QByteArray("Loader { source: 'Many0.qml' }");
        QTest::newRow("Loader of a component")
            << QByteArray("Loader { sourceComponent: Qt.createComponent('Many0.qml') }");
        QTest::newRow("rows") << QByteArray(
            "Repeater { model: 2; delegate: Qt.createComponent('Many0.qml') }");
        QTest::newRow("header") << QByteArray(
            "ListView { width: 9; height: 9; model: 2; header: Qt.createComponent('Many0.qml') }");
        QTest::newRow("cursor") << QByteArray(
            "TextInput { focus: true; cursorDelegate: Qt.createComponent('Many0.qml') }");
        QTest::newRow("Loaders within each other") << QByteArray("Loader { source: 'Outer.qml' }");
    }

    void stopsFilesOfCountlessItems()
    {
        QFETCH(const QByteArray, body);
        session->set(ScriptTimeout, 0);
        const auto write = [this](const QByteArray &name, const QByteArray &object) {
            packages->write("Endless.vidtips/ui/" + QString::fromLatin1(name) + ".qml",
                            "import QtQuick 1.1\n" + object);
        };
        // Ten of the next one each make 1,111,111 items.
        for (int i = 0; i < 6; ++i)
            write("Many" + QByteArray::number(i),
                  "Item { " + QByteArray("Many" + QByteArray::number(i + 1) + " { } ").repeated(10) + '}');
        write("Many6", "Item { }");
        write("Outer", "Item { Loader { source: 'Many0.qml' } }");
        const QString path = writeEndless("id: root\n" + body);
        showLater("endless");
        QTRY_COMPARE_WITH_TIMEOUT(told("was stopped"), 1, patience);
        const auto message =
            qMakePair(int(VTMessageWarning),
                      QStringLiteral("%1 was stopped, as it has more than 100000 items").arg(path));
        QVERIFY(session->host->messages.contains(message));
        QVERIFY(!root());
        show("sound");
        QCOMPARE(told("was stopped"), 1);
    }

    void countsItemsThatAreThere()
    {
        session->set(ScriptTimeout, 0);
        writeEndless(
            "property int made: 0\nComponent { id: item; Item { } }\nfunction make() { for (var i = 0; i < "
            "40000; ++i) { item.createObject(null).destroy(); ++made } }");
        QVERIFY(show("endless"));
        QTRY_VERIFY(root());
        for (int i = 1; i <= 3; ++i) {
            QMetaObject::invokeMethod(root(), "make", Qt::QueuedConnection);
            QTRY_COMPARE_WITH_TIMEOUT(root()->property("made").toInt(), 40000 * i, patience);
        }
        QCOMPARE(told("was stopped"), 0);
    }

    // The host may ask the user something in what a user interface has it do.
    void waitsForTheHost()
    {
        writeEndless(
            "property bool isDone: false\nfunction tell() { vidTipView.notification(9, 1); isDone = true }");
        QVERIFY(show("endless"));
        QTRY_VERIFY(root());
        session->host->onNotification = [](int type, const QString &) {
            if (type == 9)
                QTest::qSleep(400);
        };
        QMetaObject::invokeMethod(root(), "tell", Qt::QueuedConnection);
        QTRY_VERIFY(root()->property("isDone").toBool());
        session->host->onNotification = nullptr;
        QCoreApplication::processEvents();
        QCOMPARE(told("was stopped"), 0);
    }

private:
    QString writeEndless(const QByteArray &body)
    {
        packages->writeControl("Endless", "tips.xml", R"(<vidtip key="endless"/>)");
        const QString path = packages->writeUserInterface("Endless", body);
        session->manager()->loadPackage(QFileInfo(packages->filePath("Endless.vidtips")));
        return path;
    }

    void showLater(const QString &key)
    {
        QTimer::singleShot(0, this, [this, key] { show(key); });
    }

    int told(const QString &text) const
    {
        int count = 0;
        for (const auto &message : qAsConst(session->host->messages))
            count += message.second.contains(text) && message.first == VTMessageWarning;
        return count;
    }
};

QTEST_MAIN(tst_EndlessScripts)
#include "tst_endlessscripts.moc"
