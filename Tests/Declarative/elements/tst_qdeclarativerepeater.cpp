#include "WatchedScene.h"

#include <QtCore/QStringListModel>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class tst_QDeclarativeRepeater : public QObject
{
    Q_OBJECT

private slots:
    void models_data();
    void models();
    void itemModel();
    void objectList();
    void stacksBeforeItself();
    void keepsOrder_data();
    void keepsOrder();
    void changedNumber();
    void lastModelOfSeveral();
    void changedDelegate();
    void reset();
    void removedItemsLeaveAtOnce();
    void itemAtIsNullOutside();
    void visualItemModel();
    void sharedDataModel();
    void waitsForParent();
    void refusesWhatIsNotVisual();
    void survivesItemsEnd();
    void removesFromWithin();
    void goesWithItsItems();
};

namespace {

QString labels(WatchedScene &scene)
{
    QString text;
    const auto children = scene.view().rootObject()->childItems();
    for (QGraphicsItem *child : children)
        text += child->toGraphicsObject()->property("label").toString();
    return text;
}

const QByteArray page = "Item { id: root; width: 100; height: 100\n"
                        "property string seen\n"
                        "property alias model: repeater.model; property alias count: repeater.count\n"
                        "ListModel { id: letters; ListElement { t: 'A' } ListElement { t: 'B' } "
                        "ListElement { t: 'C' } ListElement { t: 'D' } }\n"
                        "Item { property string label: '<' }\n"
                        "Repeater { id: repeater; objectName: 'repeater'\n"
                        "onItemAdded: root.seen += '+' + index + item.label\n"
                        "onItemRemoved: root.seen += '-' + index + item.label\n"
                        "onCountChanged: root.seen += '#' + count\n"
                        "%1 }\n"
                        "Item { property string label: '>' } }";

QByteArray withRepeater(const QByteArray &content)
{
    return QByteArray(page).replace("%1", content);
}

} // namespace

void tst_QDeclarativeRepeater::models_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("order");
    const QByteArray item = "; Item { property string label: %1 }";
    const auto with = [&item](const char *label) { return QByteArray(item).replace("%1", label); };
    QTest::newRow("number") << QByteArray("model: 3") + with("index") << "<012>";
    QTest::newRow("zero") << QByteArray("model: 0") + with("index") << "<>";
    QTest::newRow("negative number") << QByteArray("model: -4") + with("index") << "<>";
    QTest::newRow("list of texts") << QByteArray("model: ['x', 'y']") + with("modelData") << "<xy>";
    QTest::newRow("list of numbers") << QByteArray("model: [7, 8, 9]") + with("modelData") << "<789>";
    QTest::newRow("empty list") << QByteArray("model: []") + with("modelData") << "<>";
    QTest::newRow("list model") << QByteArray("model: letters") + with("t") << "<ABCD>";
    QTest::newRow("object") << QByteArray("model: root") + with("index + modelData.width") << "<100>";
    QTest::newRow("none") << QByteArray("Item { property string label: 'x' }") << "<>";
    QTest::newRow("no delegate") << QByteArray("model: 3") << "<>";
    QTest::newRow("data model") << QByteArray(
        "model: VisualDataModel { model: 2; delegate: Item { property string label: index } }")
                                << "<01>";
    QTest::newRow("item model") << QByteArray("model: VisualItemModel { Item { property string label: 'p' } "
                                              "Item { property string label: 'q' } }")
                                << "<pq>";
}

void tst_QDeclarativeRepeater::models()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, order);
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater(content)));
    QCOMPARE(labels(scene), order);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeRepeater::itemModel()
{
    QStringListModel model({QStringLiteral("a"), QStringLiteral("b")});
    WatchedScene scene;
    scene.view().rootContext()->setContextProperty(QStringLiteral("outside"), &model);
    QVERIFY(scene.load(withRepeater("model: outside; Item { property string label: display }")));
    QCOMPARE(labels(scene), QStringLiteral("<ab>"));
    model.insertRows(1, 1);
    model.setData(model.index(1), QStringLiteral("i"));
    QCOMPARE(labels(scene), QStringLiteral("<aib>"));
    model.removeRows(0, 1);
    QCOMPARE(labels(scene), QStringLiteral("<ib>"));
    model.setStringList({QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")});
    QCOMPARE(labels(scene), QStringLiteral("<xyz>"));
    QCOMPARE(scene.value("count").toInt(), 3);
}

void tst_QDeclarativeRepeater::objectList()
{
    QObject first, second;
    first.setObjectName(QStringLiteral("f"));
    second.setObjectName(QStringLiteral("s"));
    WatchedScene scene;
    scene.view().rootContext()->setContextProperty(QStringLiteral("objects"),
                                                   QVariant::fromValue(QList<QObject *>{&first, &second}));
    QVERIFY(scene.load(withRepeater("model: objects; Item { property string label: modelData.objectName }")));
    QCOMPARE(labels(scene), QStringLiteral("<fs>"));
}

void tst_QDeclarativeRepeater::stacksBeforeItself()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 2; Item { property string label: index }")));
    const auto children = scene.view().rootObject()->childItems();
    QCOMPARE(children.count(), 5);
    QCOMPARE(children.at(3)->toGraphicsObject()->objectName(), QStringLiteral("repeater"));
}

void tst_QDeclarativeRepeater::keepsOrder_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("seen");
    QTest::newRow("insert") << QByteArray("letters.insert(1, {t: 'X'})") << "<AXBCD>"
                            << "+1X#5";
    QTest::newRow("insert first") << QByteArray("letters.insert(0, {t: 'X'})") << "<XABCD>"
                                  << "+0X#5";
    QTest::newRow("append") << QByteArray("letters.append({t: 'X'})") << "<ABCDX>"
                            << "+4X#5";
    QTest::newRow("remove") << QByteArray("letters.remove(1)") << "<ACD>"
                            << "-1B#3";
    QTest::newRow("move down") << QByteArray("letters.move(0, 2, 1)") << "<BCAD>"
                               << "";
    QTest::newRow("move up") << QByteArray("letters.move(3, 1, 1)") << "<ADBC>"
                             << "";
    QTest::newRow("move two") << QByteArray("letters.move(0, 2, 2)") << "<CDAB>"
                              << "";
    QTest::newRow("move to the end") << QByteArray("letters.move(0, 3, 1)") << "<BCDA>"
                                     << "";
    QTest::newRow("change") << QByteArray("letters.setProperty(2, 't', 'Q')") << "<ABQD>"
                            << "";
    QTest::newRow("clear") << QByteArray("letters.clear()") << "<>"
                           << "-0A-0B-0C-0D#0";
    QTest::newRow("move and remove") << QByteArray("letters.move(0, 3, 1); letters.remove(0)") << "<CDA>"
                                     << "-0B#3";
}

void tst_QDeclarativeRepeater::keepsOrder()
{
    QFETCH(QByteArray, script);
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: letters; Item { property string label: t }")));
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("#4+0A+1B+2C+3D"));
    scene.root()->setProperty("seen", QString());
    // Where the model is out of the root's own scope it is reached through the repeater.
    scene.evaluate("var letters = model; " + script);
    QTEST(labels(scene), "order");
    QTEST(scene.value("seen").toString(), "seen");
}

void tst_QDeclarativeRepeater::changedNumber()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 2; Item { property string label: index }")));
    const QPointer<QObject> first = scene.evaluate("children[1]").value<QObject *>();
    scene.root()->setProperty("seen", QString());
    scene.evaluate("model = 3");
    QCOMPARE(labels(scene), QStringLiteral("<012>"));
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("-01--10+00+11+22#3"));
    QTRY_VERIFY(!first);
    scene.root()->setProperty("seen", QString());
    scene.evaluate("model = 3");
    QCOMPARE(scene.value("seen").toString(), QString());
    scene.evaluate("model = undefined");
    QCOMPARE(labels(scene), QStringLiteral("<>"));
    QCOMPARE(scene.value("count").toInt(), 0);
}

void tst_QDeclarativeRepeater::lastModelOfSeveral()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 1; property int fills; onModelChanged: ++fills\n"
                                    "Item { property string label: index }")));
    scene.evaluate(
        "(function() { repeater.itemAdded.connect(function() {\n"
        "if (repeater.fills < 1) { repeater.model = 9; repeater.model = 5; repeater.model = 2 } }) })()");
    scene.item("repeater")->setProperty("fills", 0);
    scene.root()->setProperty("seen", QString());
    scene.evaluate("model = 3");
    QCOMPARE(labels(scene), QStringLiteral("<01>"));
    // No model was filled between the first and the last.
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("--10+00+11+22#3-12-01--10+00+11#2"));
}

void tst_QDeclarativeRepeater::changedDelegate()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        withRepeater("property Component other: Component { Item { property string label: 'o' } }\n"
                     "model: 2; Item { property string label: index }")));
    QObject *repeater = scene.item("repeater");
    QSignalSpy changed(repeater, SIGNAL(delegateChanged()));
    repeater->setProperty("delegate", repeater->property("other"));
    QCOMPARE(labels(scene), QStringLiteral("<oo>"));
    QCOMPARE(changed.count(), 1);
    repeater->setProperty("delegate", QVariant::fromValue<QQmlComponent *>(nullptr));
    QCOMPARE(labels(scene), QStringLiteral("<>"));
}

void tst_QDeclarativeRepeater::reset()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: ['x', 'y']; Item { property string label: modelData }")));
    scene.root()->setProperty("seen", QString());
    scene.evaluate("model = ['z']");
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("-0y--1x+0z#1"));
}

void tst_QDeclarativeRepeater::removedItemsLeaveAtOnce()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 1; Item { property string label: index }")));
    const QPointer<QGraphicsObject> item = scene.evaluate("children[1]").value<QGraphicsObject *>();
    QVERIFY(item);
    scene.evaluate("model = 0");
    QVERIFY(item);
    QVERIFY(!item->scene());
    QTRY_VERIFY(!item);
}

void tst_QDeclarativeRepeater::itemAtIsNullOutside()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 2; Item { property string label: index }\n"
                                    "property string found: [itemAt(-1), itemAt(0).label, itemAt(1).label, "
                                    "itemAt(2)].join()\n"
                                    "function probe() { root.seen = [itemAt(-1) == null, itemAt(0).label, "
                                    "itemAt(1).label, itemAt(2) == null].join(); }")));
    QMetaObject::invokeMethod(scene.item("repeater"), "probe");
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("true,0,1,true"));
}

void tst_QDeclarativeRepeater::visualItemModel()
{
    WatchedScene scene;
    QVERIFY(
        scene.load(withRepeater("property variant items: VisualItemModel { id: items\n"
                                "Item { property string label: 'p' } Item { property string label: 'q' } }\n"
                                "model: items")));
    QCOMPARE(labels(scene), QStringLiteral("<pq>"));
    const QPointer<QObject> first = scene.evaluate("children[1]").value<QObject *>();
    QObject *repeater = scene.item("repeater");
    const QVariant items = repeater->property("model");
    repeater->setProperty("model", 1);
    QCOMPARE(labels(scene), QStringLiteral("<>"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(first);
    repeater->setProperty("model", items);
    QCOMPARE(labels(scene), QStringLiteral("<pq>"));
}

void tst_QDeclarativeRepeater::sharedDataModel()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { VisualDataModel { id: rows; model: 2; delegate: Item { property string label: index } }\n"
        "Repeater { model: rows } Repeater { objectName: 'other'; model: rows } }"));
    // Each row has one item, which the second repeater holds as well.
    QCOMPARE(scene.view().rootObject()->childItems().count(), 4);
    scene.item("other")->setProperty("model", QVariant());
    QCOMPARE(scene.view().rootObject()->childItems().count(), 4);
}

void tst_QDeclarativeRepeater::waitsForParent()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { id: root; property Component maker: Component { Repeater { model: 2; Item {} } } }"));
    scene.evaluate("maker.createObject(null).parent = root");
    QCOMPARE(scene.view().rootObject()->childItems().count(), 3);
}

void tst_QDeclarativeRepeater::refusesWhatIsNotVisual()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 2; QtObject {}")));
    QCOMPARE(labels(scene), QStringLiteral("<>"));
    QCOMPARE(scene.warnings.count(), 2);
    QVERIFY2(scene.warnings.first().contains(QStringLiteral("Delegate must be of Item type")),
             qPrintable(scene.warnings.first()));
}

void tst_QDeclarativeRepeater::survivesItemsEnd()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("property variant items: VisualItemModel { id: items\n"
                                    "Item { property string label: 'p' } Item { property string label: 'q' } "
                                    "Item { property string label: 'r' } }\nmodel: items")));
    delete scene.evaluate("children[2]").value<QObject *>();
    QCOMPARE(labels(scene), QStringLiteral("<pr>"));
    scene.evaluate("model = 2");
    QCOMPARE(labels(scene), QStringLiteral("<>"));
}

void tst_QDeclarativeRepeater::removesFromWithin()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: letters; Item { property string label: t; signal go; "
                                    "onGo: letters.remove(index) }")));
    scene.evaluate("children[2].go()");
    QCOMPARE(labels(scene), QStringLiteral("<ACD>"));
    QTRY_COMPARE(scene.value("count").toInt(), 3);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeRepeater::goesWithItsItems()
{
    WatchedScene scene;
    QVERIFY(scene.load(withRepeater("model: 3; Item { property string label: index }")));
    delete scene.item("repeater");
    QCOMPARE(labels(scene), QStringLiteral("<>"));
    // The items, which stand below the repeater, go before it when their parent does.
    QVERIFY(scene.load(withRepeater("model: 3; Item { property string label: index }")));
    QVERIFY(scene.load("Item {}"));
}

QTEST_MAIN(tst_QDeclarativeRepeater)
#include "tst_qdeclarativerepeater.moc"
