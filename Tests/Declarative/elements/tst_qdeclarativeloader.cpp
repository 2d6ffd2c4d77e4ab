#include "HeldServer.h"
#include "WatchedScene.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class tst_QDeclarativeLoader : public QObject
{
    Q_OBJECT

private slots:
    void initialValues();
    void takesSize_data();
    void takesSize();
    void followsItem();
    void sizesBoundItems();
    void signalsInOrder();
    void sourceAndComponentReplaceEachOther();
    void refusesWhatIsNotVisual();
    void reportsErrors_data();
    void reportsErrors();
    void showsItsProperties();
    void replacesItemFromWithin();
    void replacesSourceWhileLoading();
    void survivesTheItemsEnd();
    void survivesTheComponentsEnd();
    void oldItemLeavesAtOnce();
    void loadsFromTheNetwork();
    void passesFocusAndKeys();
    void itemRefusesDestroy();
};

void tst_QDeclarativeLoader::initialValues()
{
    WatchedScene scene;
    QVERIFY(scene.load("Loader {}"));
    QCOMPARE(scene.value("status").toInt(), 0);
    QCOMPARE(scene.value("progress").toReal(), 0.0);
    QVERIFY(!scene.value("item").value<QObject *>());
    QVERIFY(scene.value("source").toUrl().isEmpty());
    QCOMPARE(scene.evaluate("[Loader.Null, Loader.Ready, Loader.Loading, Loader.Error].join()").toString(),
             QStringLiteral("0,1,2,3"));
}

void tst_QDeclarativeLoader::takesSize_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QSizeF>("loader");
    QTest::addColumn<QSizeF>("item");
    QTest::newRow("of the item") << QByteArray() << QSizeF(40, 30) << QSizeF(40, 30);
    QTest::newRow("own") << QByteArray("width: 10; height: 20;") << QSizeF(10, 20) << QSizeF(10, 20);
    QTest::newRow("own width") << QByteArray("width: 10;") << QSizeF(10, 30) << QSizeF(10, 30);
    QTest::newRow("own height") << QByteArray("height: 20;") << QSizeF(40, 20) << QSizeF(40, 20);
    QTest::newRow("nothing") << QByteArray("width: 0; height: 0;") << QSizeF(0, 0) << QSizeF(0, 0);
}

void tst_QDeclarativeLoader::takesSize()
{
    QFETCH(QByteArray, properties);
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 9; height: 9; Loader { objectName: 'loader'; " + properties
                       + " sourceComponent: Item { width: 40; height: 30 } } }"));
    QObject *loader = scene.item("loader");
    auto *item = loader->property("item").value<QObject *>();
    QVERIFY(item);
    QTEST(QSizeF(loader->property("width").toReal(), loader->property("height").toReal()), "loader");
    QTEST(QSizeF(item->property("width").toReal(), item->property("height").toReal()), "item");
}

void tst_QDeclarativeLoader::followsItem()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { Loader { objectName: 'loader'; sourceComponent: Item { width: 40; height: 30 } } }"));
    QObject *loader = scene.item("loader");
    auto *item = loader->property("item").value<QObject *>();
    item->setProperty("width", 70);
    QCOMPARE(loader->property("width").toInt(), 70);
    QCOMPARE(loader->property("implicitWidth").toInt(), 70);
    loader->setProperty("width", 20);
    QCOMPARE(item->property("width").toInt(), 20);
    item->setProperty("width", 33);
    QCOMPARE(item->property("width").toInt(), 33);
    QCOMPARE(loader->property("width").toInt(), 20);
    QCOMPARE(loader->property("implicitWidth").toInt(), 33);
}

void tst_QDeclarativeLoader::sizesBoundItems()
{
    // The item's own bindings run later than the loader's size is there, and win over it until that changes.
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; property int wanted: 40\n"
                       "Loader { objectName: 'loader'; width: 10; "
                       "sourceComponent: Item { width: root.wanted; height: root.wanted } } }"));
    QObject *loader = scene.item("loader");
    auto *item = loader->property("item").value<QObject *>();
    QCOMPARE(item->property("width").toInt(), 40);
    QCOMPARE(item->property("height").toInt(), 40);
    QCOMPARE(loader->property("width").toInt(), 10);
    QCOMPARE(loader->property("implicitWidth").toInt(), 40);
    QCOMPARE(loader->property("height").toInt(), 40);
    loader->setProperty("width", 12);
    QCOMPARE(item->property("width").toInt(), 12);
}

void tst_QDeclarativeLoader::signalsInOrder()
{
    WatchedScene scene;
    QVERIFY(scene.load("Loader { property string seen; property Component one: Component { Item {} }\n"
                       "onSourceComponentChanged: seen += 'c'; onSourceChanged: seen += 's'\n"
                       "onStatusChanged: seen += 't' + status; onProgressChanged: seen += 'p' + progress\n"
                       "onItemChanged: seen += item ? 'i' : 'n'; onLoaded: seen += 'l' }"));
    const auto seen = [&scene] {
        QString text = scene.value("seen").toString();
        scene.root()->setProperty("seen", QString());
        return text;
    };
    scene.evaluate("sourceComponent = one");
    const QString loaded = seen();
    // Both properties share one signal, whose two handlers run in no fixed order.
    QVERIFY2(loaded == QStringLiteral("cst1p1il") || loaded == QStringLiteral("sct1p1il"),
             qPrintable(loaded));
    scene.evaluate("sourceComponent = one; source = ''");
    QCOMPARE(seen(), QString());
    scene.evaluate("sourceComponent = undefined");
    QVERIFY(seen().endsWith(QStringLiteral("t0p0n")));
}

void tst_QDeclarativeLoader::sourceAndComponentReplaceEachOther()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("Part.qml"), "import QtQuick 1.0\nItem { objectName: 'part' }");
    QVERIFY(scene.load("Loader { property Component one: Component { Item { objectName: 'one' } } "
                       "sourceComponent: one }"));
    scene.evaluate("source = 'Part.qml'");
    QVERIFY(!scene.value("sourceComponent").value<QObject *>());
    QCOMPARE(scene.evaluate("item.objectName").toString(), QStringLiteral("part"));
    scene.evaluate("sourceComponent = one");
    QVERIFY(scene.value("source").toUrl().isEmpty());
    QCOMPARE(scene.evaluate("item.objectName").toString(), QStringLiteral("one"));
    scene.evaluate("source = 'Part.qml'");
    scene.evaluate("sourceComponent = undefined");
    QVERIFY(scene.value("source").toUrl().isEmpty());
    QVERIFY(!scene.value("item").value<QObject *>());
}

void tst_QDeclarativeLoader::refusesWhatIsNotVisual()
{
    WatchedScene scene;
    QVERIFY(scene.load("Loader { property int loads: 0; onLoaded: ++loads; sourceComponent: QtObject {} }"));
    QCOMPARE(scene.warnings.count(), 1);
    QVERIFY2(scene.warnings.first().endsWith(
                 QStringLiteral(": Loader does not support loading non-visual elements.")),
             qPrintable(scene.warnings.first()));
    QVERIFY(!scene.value("item").value<QObject *>());
    QCOMPARE(scene.value("status").toInt(), 1);
    QCOMPARE(scene.value("loads").toInt(), 0);
}

void tst_QDeclarativeLoader::reportsErrors_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << QByteArray() << "No such file or directory";
    QTest::newRow("unknown property") << QByteArray("import QtQuick 1.0\nItem { none: 1 }")
                                      << "Cannot assign to non-existent property \"none\"";
    QTest::newRow("unknown type") << QByteArray("import QtQuick 1.0\nNone {}") << "None is not a type";
    QTest::newRow("syntax") << QByteArray("import QtQuick 1.0\nItem {") << "Expected token `}'";
}

void tst_QDeclarativeLoader::reportsErrors()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    WatchedScene scene;
    if (!content.isEmpty())
        scene.addFile(QStringLiteral("Part.qml"), content);
    QVERIFY(scene.load("Loader { property int loads: 0; onLoaded: ++loads; source: 'Part.qml' }"));
    QCOMPARE(scene.value("status").toInt(), 3);
    QVERIFY(!scene.value("item").value<QObject *>());
    QCOMPARE(scene.value("loads").toInt(), 0);
    QCOMPARE(scene.warnings, QStringList{message});
}

void tst_QDeclarativeLoader::showsItsProperties()
{
    // Files see what the loader itself declares.
    WatchedScene scene;
    scene.addFile(QStringLiteral("Part.qml"), "import QtQuick 1.0\nItem { objectName: given }");
    QVERIFY(scene.load("Loader { property string given: 'from outside'; source: 'Part.qml' }"));
    QCOMPARE(scene.evaluate("item.objectName").toString(), QStringLiteral("from outside"));
}

void tst_QDeclarativeLoader::replacesItemFromWithin()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Loader { id: loader; property Component two: Component { Item { objectName: 'two' } }\n"
                   "sourceComponent: Item { signal go; onGo: { loader.sourceComponent = loader.two; "
                   "objectName = 'left' } } }"));
    scene.evaluate("item.go()");
    QCOMPARE(scene.evaluate("item.objectName").toString(), QStringLiteral("two"));
    QCOMPARE(scene.warnings, QStringList());
    QTRY_COMPARE(scene.view().rootObject()->childItems().count(), 1);
}

void tst_QDeclarativeLoader::replacesSourceWhileLoading()
{
    WatchedScene scene;
    QVERIFY(scene.load("Loader { id: loader; property int loads: 0; onLoaded: ++loads\n"
                       "property Component two: Component { Item { objectName: 'two' } }\n"
                       "sourceComponent: Item { objectName: 'one'; "
                       "Component.onCompleted: loader.sourceComponent = loader.two } }"));
    QCOMPARE(scene.evaluate("item.objectName").toString(), QStringLiteral("two"));
    QCOMPARE(scene.value("loads").toInt(), 1);
    QCOMPARE(scene.value("status").toInt(), 1);
    QTRY_COMPARE(scene.view().rootObject()->childItems().count(), 1);
}

void tst_QDeclarativeLoader::survivesTheItemsEnd()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Loader { property Component one: Component { Item { width: 5 } } sourceComponent: one }"));
    delete scene.value("item").value<QObject *>();
    QVERIFY(!scene.value("item").value<QObject *>());
    scene.evaluate("width = 20");
    scene.evaluate("sourceComponent = undefined");
    scene.evaluate("sourceComponent = one");
    QCOMPARE(scene.evaluate("item.width").toInt(), 20);
}

void tst_QDeclarativeLoader::survivesTheComponentsEnd()
{
    WatchedScene scene;
    QVERIFY(scene.load("Loader { property Component one: Component { Item { width: 5 } }\n"
                       "Component.onCompleted: sourceComponent = one }"));
    delete scene.value("one").value<QObject *>();
    QCOMPARE(scene.evaluate("item.width").toInt(), 5);
    QCOMPARE(scene.value("status").toInt(), 1);
    scene.evaluate("sourceComponent = undefined");
    QCOMPARE(scene.value("progress").toInt(), 0);
    QVERIFY(!scene.value("item").value<QObject *>());
}

void tst_QDeclarativeLoader::oldItemLeavesAtOnce()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Loader { property Component one: Component { Rectangle { width: 50; height: 50; color: 'red' } } "
        "sourceComponent: one }"));
    QPointer<QObject> old = scene.value("item").value<QObject *>();
    scene.evaluate("sourceComponent = undefined");
    QVERIFY(old);
    QCOMPARE(scene.view().rootObject()->childItems().count(), 0);
    QVERIFY(!qobject_cast<QGraphicsObject *>(old.data())->scene());
    QTRY_VERIFY(!old);
}

void tst_QDeclarativeLoader::loadsFromTheNetwork()
{
    HeldServer server;
    WatchedScene scene;
    QVERIFY(scene.load("Loader {}"));
    QSignalSpy status(scene.root(), SIGNAL(statusChanged()));
    const auto setSource = [&](const QByteArray &name) {
        scene.root()->setProperty("source", QUrl(QString::fromLatin1(server.url(name))));
    };
    setSource("Part.qml");
    QCOMPARE(scene.value("status").toInt(), 2);
    QCOMPARE(scene.value("progress").toReal(), 0.0);
    QVERIFY(server.answer("200 OK", "import QtQuick 1.0\nItem { width: 12 }"));
    // The engine wants to know of types beside the file.
    QVERIFY(server.answer("404 Not Found", QByteArray()));
    QTRY_COMPARE(scene.value("status").toInt(), 1);
    QCOMPARE(scene.value("progress").toReal(), 1.0);
    QCOMPARE(scene.value("width").toInt(), 12);
    QCOMPARE(status.count(), 2);
    setSource("None.qml");
    QVERIFY(server.answer("404 Not Found", QByteArray()));
    QTRY_COMPARE(scene.value("status").toInt(), 3);
    QCOMPARE(scene.warnings.count(), 1);
    // Called off, and gone, while on the way.
    setSource("Other.qml");
    scene.evaluate("source = ''");
    QCOMPARE(scene.value("status").toInt(), 0);
    setSource("Third.qml");
    QVERIFY(scene.load("Item {}"));
    QCOMPARE(scene.warnings.count(), 1);
}

void tst_QDeclarativeLoader::passesFocusAndKeys()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { property string seen\n"
        "Loader { objectName: 'loader'; focus: true; Keys.onPressed: parent.seen += 'l' + event.text\n"
        "sourceComponent: Item { focus: true; Keys.onPressed: { parent.parent.seen += 'i' + event.text; "
        "event.accepted = event.text == 'a' } } } }"));
    QVERIFY(scene.item("loader")->property("activeFocus").toBool());
    QVERIFY(scene.item("loader")->property("item").value<QObject *>()->property("activeFocus").toBool());
    QTest::keyClick(&scene.view(), Qt::Key_A);
    QTest::keyClick(&scene.view(), Qt::Key_B);
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("iaiblb"));
}

void tst_QDeclarativeLoader::itemRefusesDestroy()
{
    WatchedScene scene;
    QVERIFY(scene.load("Loader { sourceComponent: Item {} }"));
    scene.evaluate("item.destroy()");
    QCOMPARE(scene.warnings.count(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(scene.value("item").value<QObject *>());
}

QTEST_MAIN(tst_QDeclarativeLoader)
#include "tst_qdeclarativeloader.moc"
