#include "WatchedScene.h"

#include <QtQml/QQmlComponent>
#include <QtTest/QTest>

/** Handlers of the signals of any object, and what the engine has to say of their form. */
class tst_QDeclarativeConnections : public QObject
{
    Q_OBJECT

private slots:
    void parentIsTheTarget();
    void handlerSetsTheTarget();
    void targetGoes();
    void unknownSignals_data();
    void unknownSignals();
    void refusedContent_data();
    void refusedContent();
    void noticesOfTheHostStay_data();
    void noticesOfTheHostStay();
    void contentHasNoNotices();
};

void tst_QDeclarativeConnections::parentIsTheTarget()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 9; height: 9; property int said: 0\n"
                       "Item { id: inside; signal told(int what)\n"
                       "  Connections { onTold: said += what; onTargetChanged: said = -1 } }\n"
                       "function tell(what) { inside.told(what) } }"));
    scene.evaluate("tell(3); tell(4)");
    QCOMPARE(scene.value("said").toInt(), 7);
    // Its own signals are not its business.
    QCOMPARE(scene.warnings,
             QStringList{"QML Connections: Cannot assign to non-existent property \"onTargetChanged\""});
}

void tst_QDeclarativeConnections::handlerSetsTheTarget()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 9; height: 9; property string said\n"
                       "Item { id: one } Item { id: two }\n"
                       "function change() { one.x += 1; two.y += 1 }\n"
                       "Connections { id: both; target: one\n"
                       "  onXChanged: { both.target = two; said += 'x' }\n"
                       "  onYChanged: { both.target = null; said += 'y' } } }"));
    for (int i = 0; i < 3; ++i) {
        scene.evaluate("change()");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QCOMPARE(scene.value("said").toString(), QStringLiteral("xy"));
    scene.evaluate("both.target = one; change()");
    QCOMPARE(scene.value("said").toString(), QStringLiteral("xyxy"));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeConnections::targetGoes()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Item { id: root; width: 9; height: 9; property int said: 0\n"
                   "Component { id: maker; Item { } }\n"
                   "Connections { id: watcher; onXChanged: said += 1 }\n"
                   "function watch() { watcher.target = maker.createObject(root); watcher.target.x = 5 } }"));
    scene.evaluate("watch()");
    scene.evaluate("watcher.target.destroy()");
    QTRY_VERIFY(scene.evaluate("watcher.target === null").toBool());
    scene.evaluate("watch()");
    QCOMPARE(scene.value("said").toInt(), 2);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeConnections::unknownSignals_data()
{
    QTest::addColumn<QByteArray>("ignored");
    QTest::addColumn<QStringList>("warnings");
    QTest::newRow("told") << QByteArray("false")
                          << QStringList{"QML Connections: Cannot assign to non-existent property \"onFoo\""};
    QTest::newRow("ignored") << QByteArray("true") << QStringList();
}

void tst_QDeclarativeConnections::unknownSignals()
{
    QFETCH(QByteArray, ignored);
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; width: 9; height: 9; property int said: 0\n"
                       "Connections { target: root; ignoreUnknownSignals: "
                       + ignored + "; onFoo: said += 1; onXChanged: said += 1 } }"));
    scene.evaluate("x = 3");
    QCOMPARE(scene.value("said").toInt(), 1);
    QTEST(scene.warnings, "warnings");
}

void tst_QDeclarativeConnections::refusedContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *content, const char *error) {
        QTest::newRow(content) << QByteArray(content) << QString::fromLatin1(error);
    };
    row("foo: 3", "Cannot assign to non-existent property \"foo\"");
    row("on: 3", "Cannot assign to non-existent property \"on\"");
    row("onto: 3", "Cannot assign to non-existent property \"onto\"");
    row("onFoo: 3", "Connections: script expected");
    row("onFoo: Item { }", "Connections: nested objects not allowed");
    row("onFoo { a: 3 }", "Connections: syntax error");
}

void tst_QDeclarativeConnections::refusedContent()
{
    QFETCH(QByteArray, content);
    QDeclarativeEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick 1.0\nConnections { " + content + " }", QUrl("a.qml"));
    QVERIFY(component.isError());
    QTEST(component.errors().constFirst().description(), "error");
}

/** What the engine says of @p document when it makes it. */
static QStringList noticesOf(const QByteArray &document)
{
    QDeclarativeEngine engine;
    engine.setOutputWarningsToStandardError(false);
    QStringList notices;
    QObject::connect(&engine, &QQmlEngine::warnings, [&notices](const QList<QQmlError> &errors) {
        for (const QQmlError &error : errors)
            notices += error.description();
    });
    QQmlComponent component(&engine);
    component.setData(document, QUrl("a.qml"));
    const std::unique_ptr<QObject> made(component.create());
    if (!made)
        qFatal("%s", qPrintable(component.errorString()));
    made->setProperty("on", false);
    return notices;
}

// An old form of handlers, and a value of which nothing says what it is to be afterwards.
static const char oldHandler[] = "QtObject { id: o; property bool on: true\n"
                                 "property QtObject a: Connections { target: o; onOnChanged: target } }";
static const char oldBinding[] = "QtObject { id: o; property bool on: true; property int x\n"
                                 "property QtObject a: Binding { target: o; property: 'x'; value: 3;"
                                 " when: o.on } }";

void tst_QDeclarativeConnections::noticesOfTheHostStay_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("Connections") << QByteArray(oldHandler);
    QTest::newRow("Binding") << QByteArray(oldBinding);
}

void tst_QDeclarativeConnections::noticesOfTheHostStay()
{
    QFETCH(QByteArray, document);
    QCOMPARE(noticesOf("import QtQml 2.14\n" + document).count(), 1);
}

void tst_QDeclarativeConnections::contentHasNoNotices()
{
    QCOMPARE(noticesOf(QByteArray("import QtQuick 1.0\n") + oldHandler), QStringList());
    QCOMPARE(noticesOf(QByteArray("import QtQuick 1.0\n") + oldBinding), QStringList());
}

QTEST_MAIN(tst_QDeclarativeConnections)
#include "tst_qdeclarativeconnections.moc"
