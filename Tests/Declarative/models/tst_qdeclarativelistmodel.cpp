#include "WatchedScene.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

namespace {

const char letters[] = R"(
    Item {
        id: root
        property variant log: []
        property alias model: list
        function note(text) { var all = log; all.push(text); log = all }
        function dump() {
            var all = []
            for (var i = 0; i < list.count; ++i)
                all.push(list.get(i).name + "" + list.get(i).n)
            return all.join(" ")
        }
        ListModel {
            id: list
            onItemsInserted: note("inserted " + index + " " + count)
            onItemsRemoved: note("removed " + index + " " + count)
            onItemsMoved: note("moved " + from + " " + to + " " + count)
            onItemsChanged: note("changed " + index + " " + count + " " + roles.length)
            onCountChanged: note("count " + list.count)
            ListElement { name: "a"; n: 1 }
            ListElement { name: "b"; n: 2 }
            ListElement { name: "c"; n: 3 }
        }
        Row {
            Repeater { id: rep; objectName: "rep"; model: list; Text { property string shown: name + n } }
        }
        function shown() {
            var all = []
            for (var i = 0; i < rep.count; ++i)
                all.push(rep.itemAt(i).shown)
            return all.join(" ")
        }
    })";

} // namespace

class tst_QDeclarativeListModel : public QObject
{
    Q_OBJECT

private slots:
    void functions_data();
    void functions();
    void values_data();
    void values();
    void refusals_data();
    void refusals();
    void declarations_data();
    void declarations();
    void writesThroughGetSilently();
    void rowObjectFollowsItsRow();
    void rolesMayComeLater();
    void nestedListsAreModels();
    void copiesRows();
    void worker();
    void workerOutlivesModel();
};

void tst_QDeclarativeListModel::functions_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QStringList>("signalled");
    QTest::newRow("append") << QByteArray("list.append({ name: 'd', n: 4 })") << "a1 b2 c3 d4"
                            << QStringList{"inserted 3 1", "count 4"};
    QTest::newRow("insert first") << QByteArray("list.insert(0, { name: 'd', n: 4 })") << "d4 a1 b2 c3"
                                  << QStringList{"inserted 0 1", "count 4"};
    QTest::newRow("insert last") << QByteArray("list.insert(3, { name: 'd', n: 4 })") << "a1 b2 c3 d4"
                                 << QStringList{"inserted 3 1", "count 4"};
    QTest::newRow("remove") << QByteArray("list.remove(1)") << "a1 c3"
                            << QStringList{"removed 1 1", "count 2"};
    QTest::newRow("move down") << QByteArray("list.move(0, 2, 1)") << "b2 c3 a1"
                               << QStringList{"moved 0 2 1"};
    QTest::newRow("move up") << QByteArray("list.move(1, 0, 2)") << "b2 c3 a1" << QStringList{"moved 1 0 2"};
    QTest::newRow("move nothing") << QByteArray("list.move(1, 0, 0)") << "a1 b2 c3" << QStringList();
    QTest::newRow("set") << QByteArray("list.set(1, { n: 7 })") << "a1 b7 c3" << QStringList{"changed 1 1 1"};
    QTest::newRow("set two") << QByteArray("list.set(1, { name: 'x', n: 7 })") << "a1 x7 c3"
                             << QStringList{"changed 1 1 2"};
    QTest::newRow("set the same") << QByteArray("list.set(1, { n: 2 })") << "a1 b2 c3" << QStringList();
    QTest::newRow("set after the last") << QByteArray("list.set(3, { name: 'd', n: 4 })") << "a1 b2 c3 d4"
                                        << QStringList{"inserted 3 1", "count 4"};
    QTest::newRow("setProperty") << QByteArray("list.setProperty(2, 'name', 'z')") << "a1 b2 z3"
                                 << QStringList{"changed 2 1 1"};
    QTest::newRow("another type") << QByteArray("list.setProperty(2, 'n', 'three')") << "a1 b2 cthree"
                                  << QStringList{"changed 2 1 1"};
    QTest::newRow("clear") << QByteArray("list.clear()") << "" << QStringList{"removed 0 3", "count 0"};
    QTest::newRow("clear twice") << QByteArray("list.clear(); root.log = []; list.clear()") << ""
                                 << QStringList();
}

void tst_QDeclarativeListModel::functions()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, rows);
    WatchedScene scene;
    QVERIFY(scene.load(letters));
    scene.evaluate("root.log = []");
    scene.evaluate(script.constData());
    QCOMPARE(scene.evaluate("dump()").toString(), rows);
    QCOMPARE(scene.evaluate("shown()").toString(), rows);
    QTEST(scene.evaluate("root.log.join('|')").toString().split('|', Qt::SkipEmptyParts), "signalled");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeListModel::values_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("text") << QByteArray("'x'") << QByteArray("v") << QVariant("x");
    QTest::newRow("number") << QByteArray("2.5") << QByteArray("v") << QVariant(2.5);
    QTest::newRow("bool") << QByteArray("true") << QByteArray("v === true") << QVariant(true);
    QTest::newRow("null") << QByteArray("null") << QByteArray("v === null") << QVariant(true);
    QTest::newRow("undefined") << QByteArray("undefined") << QByteArray("v === undefined") << QVariant(true);
    QTest::newRow("date") << QByteArray("new Date(2012, 1, 9)") << QByteArray("v.getFullYear()")
                          << QVariant(2012);
    QTest::newRow("object") << QByteArray("({ a: { b: 3 } })") << QByteArray("v.a.b") << QVariant(3);
    QTest::newRow("array of numbers")
        << QByteArray("[1, 2, 3]") << QByteArray("v[0] + v[1] + v[2]") << QVariant(6);
    QTest::newRow("array of objects")
        << QByteArray("[{ a: 1 }, { a: 2 }]") << QByteArray("v.count + v.get(1).a") << QVariant(4);
    QTest::newRow("empty array") << QByteArray("[]") << QByteArray("v.count") << QVariant(0);
    QTest::newRow("item") << QByteArray("root") << QByteArray("v === root") << QVariant(true);
    QTest::newRow("colour") << QByteArray("Qt.rgba(1, 0, 0, 1)") << QByteArray("v + ''")
                            << QVariant("#ff0000");
    QTest::newRow("function") << QByteArray("function() { return 9 }") << QByteArray("v()") << QVariant(9);
}

void tst_QDeclarativeListModel::values()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, read);
    QFETCH(QVariant, expected);
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; ListModel { id: list } function read(v) { return " + read + R"( }
        Repeater { id: rep; model: list; Item { property variant got: index ? null : read(model.v) } } })"));
    scene.evaluate("list.append({ v: " + value + " })");
    QCOMPARE(scene.evaluate("read(list.get(0).v)").toString(), expected.toString());
    QCOMPARE(scene.evaluate("rep.itemAt(0).got").toString(), expected.toString());
    scene.evaluate("list.append({}); list.setProperty(1, 'v', " + value + ")");
    QCOMPARE(scene.evaluate("read(list.get(1).v)").toString(), expected.toString());
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeListModel::refusals_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("warning");
    QTest::newRow("append array") << QByteArray("list.append([{ name: 'd' }])")
                                  << "QML ListModel: append: value is not an object";
    QTest::newRow("append number") << QByteArray("list.append(7)")
                                   << "QML ListModel: append: value is not an object";
    QTest::newRow("append null") << QByteArray("list.append(null)")
                                 << "QML ListModel: append: value is not an object";
    QTest::newRow("insert array") << QByteArray("list.insert(0, [{ name: 'd' }])")
                                  << "QML ListModel: insert: value is not an object";
    QTest::newRow("insert far") << QByteArray("list.insert(4, {})")
                                << "QML ListModel: insert: index 4 out of range";
    QTest::newRow("insert below") << QByteArray("list.insert(-1, {})")
                                  << "QML ListModel: insert: index -1 out of range";
    QTest::newRow("remove far") << QByteArray("list.remove(3)")
                                << "QML ListModel: remove: index 3 out of range";
    QTest::newRow("remove below") << QByteArray("list.remove(-1)")
                                  << "QML ListModel: remove: index -1 out of range";
    QTest::newRow("set text") << QByteArray("list.set(0, 'x')")
                              << "QML ListModel: set: value is not an object";
    QTest::newRow("set far") << QByteArray("list.set(4, {})") << "QML ListModel: set: index 4 out of range";
    QTest::newRow("setProperty far") << QByteArray("list.setProperty(3, 'n', 1)")
                                     << "QML ListModel: set: index 3 out of range";
    QTest::newRow("setProperty below")
        << QByteArray("list.setProperty(-1, 'n', 1)") << "QML ListModel: set: index -1 out of range";
    QTest::newRow("move far") << QByteArray("list.move(0, 3, 1)") << "QML ListModel: move: out of range";
    QTest::newRow("move below") << QByteArray("list.move(-1, 0, 1)") << "QML ListModel: move: out of range";
    QTest::newRow("move many") << QByteArray("list.move(0, 1, 2147483647)")
                               << "QML ListModel: move: out of range";
    QTest::newRow("move negative") << QByteArray("list.move(0, 1, -1)")
                                   << "QML ListModel: move: out of range";
    QTest::newRow("get far") << QByteArray("list.get(30)") << QString();
    QTest::newRow("get below") << QByteArray("list.get(-1)") << QString();
    QTest::newRow("sync") << QByteArray("list.sync()")
                          << "QML ListModel: List sync() can only be called from a WorkerScript";
}

void tst_QDeclarativeListModel::refusals()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, warning);
    WatchedScene scene;
    QVERIFY(scene.load(letters));
    QVERIFY(!scene.evaluate(script.constData()).isValid());
    QCOMPARE(scene.warnings.join('\n'), warning);
    QCOMPARE(scene.evaluate("dump()").toString(), QStringLiteral("a1 b2 c3"));
}

void tst_QDeclarativeListModel::declarations_data()
{
    QTest::addColumn<QByteArray>("elements");
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QString>("expected");
    const auto loads = [](const char *name, const char *elements, const char *read, const char *value) {
        QTest::newRow(name) << QByteArray(elements) << QByteArray(read) << QString::fromLatin1(value);
    };
    loads("text", "ListElement { a: \"x\" }", "list.get(0).a", "x");
    loads("negative", "ListElement { a: -2.5 }", "list.get(0).a", "-2.5");
    loads("bool", "ListElement { a: true }", "list.get(0).a === true", "true");
    loads("enum", "ListElement { a: Text.AlignRight }", "list.get(0).a", "2");
    loads("translated", "ListElement { a: QT_TR_NOOP(\"word\") }", "list.get(0).a", "word");
    loads("empty list", "ListElement { a: [] }", "list.get(0).a.count", "0");
    loads("one nested", "ListElement { a: ListElement { b: 4 } }", "list.get(0).a.get(0).b", "4");
    loads("nested twice",
          "ListElement { a: [ ListElement { b: [ ListElement { c: 5 }, ListElement { c: 6 } ] } ] }",
          "list.get(0).a.get(0).b.get(1).c", "6");
    loads("no roles", "ListElement {} ListElement {}", "list.count", "2");
    loads("differing roles", "ListElement { a: 1 } ListElement { b: 2 }",
          "list.get(0).b + ',' + list.get(1).b", "undefined,2");
    const auto fails = [](const char *name, const char *elements, const char *message) {
        QTest::newRow(name) << QByteArray(elements) << QByteArray() << QString::fromLatin1(message);
    };
    fails("script", "ListElement { a: 1 + 2 }", "ListElement: cannot use script for property value");
    fails("binding", "ListElement { a: root.width }", "ListElement: cannot use script for property value");
    fails("nested script", "ListElement { a: [ ListElement { b: 1 + 1 } ] }",
          "ListElement: cannot use script for property value");
    fails("id", "ListElement { id: row; a: 1 }", "ListElement: cannot use reserved \"id\" property");
    fails("item", "Item {}", "ListElement: cannot contain nested elements");
    fails("item in element", "ListElement { Item {} }", "ListElement: cannot contain nested elements");
    fails("item as value", "ListElement { a: Item {} }", "ListElement: cannot contain nested elements");
    fails("group", "ListElement { a.b: 1 }", "ListElement: cannot contain nested elements");
    fails("property of the model", "nothing: 1", "ListModel: undefined property 'nothing'");
}

void tst_QDeclarativeListModel::declarations()
{
    QFETCH(QByteArray, elements);
    QFETCH(QByteArray, read);
    QFETCH(QString, expected);
    const QByteArray body = "import QtQuick 1.0\nItem { id: root; ListModel { id: list; " + elements + " } }";
    QDeclarativeView view;
    QQmlComponent component(view.engine());
    component.setData(body, QUrl(QStringLiteral("file:///List.qml")));
    if (read.isEmpty()) {
        QVERIFY(component.isError());
        QCOMPARE(component.errors().constFirst().description(), expected);
        return;
    }
    const std::unique_ptr<QObject> root(component.create());
    QVERIFY2(root, qPrintable(component.errorString()));
    QQmlExpression expression(qmlContext(root.get()), root.get(), QString::fromUtf8(read));
    QCOMPARE(expression.evaluate().toString(), expected);
}

void tst_QDeclarativeListModel::writesThroughGetSilently()
{
    WatchedScene scene;
    QVERIFY(scene.load(letters));
    scene.evaluate("root.log = []");
    scene.evaluate("list.get(1).n = 22; list.get(1).other = 5");
    QCOMPARE(scene.evaluate("dump()").toString(), QStringLiteral("a1 b22 c3"));
    QCOMPARE(scene.evaluate("list.get(1).other").toInt(), 5);
    QCOMPARE(scene.evaluate("rep.itemAt(1).shown").toString(), QStringLiteral("b2"));
    // What was read before must not keep a later write of the same value from being one.
    scene.evaluate("list.set(1, { n: 3 }); list.get(1).n = 22");
    QCOMPARE(scene.evaluate("list.get(1).n").toInt(), 22);
    QCOMPARE(scene.evaluate("root.log.join('|')").toString(), QStringLiteral("changed 1 1 1"));
}

void tst_QDeclarativeListModel::rowObjectFollowsItsRow()
{
    WatchedScene scene;
    QVERIFY(scene.load(letters));
    scene.evaluate("root.log = list.get(0); list.move(0, 2, 1)");
    QCOMPARE(scene.evaluate("root.log.name").toString(), QStringLiteral("a"));
    scene.evaluate("root.log.n = 8");
    QCOMPARE(scene.evaluate("dump()").toString(), QStringLiteral("b2 c3 a8"));
    scene.evaluate("var row = list.get(2); list.remove(2); row.n = 9; root.log = [row.n === undefined]");
    QCOMPARE(scene.evaluate("dump()").toString(), QStringLiteral("b2 c3"));
    QCOMPARE(scene.evaluate("root.log[0]").toBool(), true);
}

void tst_QDeclarativeListModel::rolesMayComeLater()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item { ListModel { id: list; ListElement { a: 1 } }
        Repeater { id: rep; model: list; Item { property string got: model.a + "," + model.b } } })"));
    scene.evaluate("list.append({ a: 2, b: 3 })");
    QCOMPARE(scene.evaluate("rep.itemAt(0).got + ' ' + rep.itemAt(1).got").toString(),
             QStringLiteral("1,undefined 2,3"));
    scene.evaluate("list.setProperty(0, 'b', 4)");
    QCOMPARE(scene.evaluate("rep.itemAt(0).got").toString(), QStringLiteral("1,4"));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeListModel::nestedListsAreModels()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item { id: root; ListModel { id: list; ListElement { a: [ ListElement { n: 1 } ] } }
        Repeater { id: rep; model: list
            Item { property variant texts: inner; property int n: a.count
                   Repeater { id: inner; model: a; Item { property int m: n } } } } })"));
    scene.evaluate("list.get(0).a.append({ n: 5 })");
    QCOMPARE(scene.evaluate("rep.itemAt(0).n").toInt(), 2);
    QCOMPARE(scene.evaluate("rep.itemAt(0).texts.itemAt(1).m").toInt(), 5);
    scene.evaluate("list.get(0).a.append([1])");
    QCOMPARE(scene.warnings, QStringList{"QML ListModel: append: value is not an object"});
    scene.evaluate("list.setProperty(0, 'a', [{ n: 7 }])");
    QCOMPARE(scene.evaluate("rep.itemAt(0).n").toInt(), 1);
    QCOMPARE(scene.evaluate("rep.itemAt(0).texts.itemAt(0).m").toInt(), 7);
    scene.evaluate("list.remove(0)");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(scene.evaluate("rep.count").toInt(), 0);
    QCOMPARE(scene.warnings.count(), 1);
}

void tst_QDeclarativeListModel::copiesRows()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item { ListModel { id: list; ListElement { x: 1; a: [ ListElement { n: 1 } ] } }
        ListModel { id: other } })"));
    scene.evaluate("other.append(list.get(0)); other.get(0).a.append({ n: 2 }); list.append(list.get(0))");
    QCOMPARE(scene.evaluate("[list.get(0).a.count, other.get(0).a.count, list.get(1).x].join()").toString(),
             QStringLiteral("1,2,1"));
}

void tst_QDeclarativeListModel::worker()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("work.js"), R"(
        WorkerScript.onMessage = function(message) {
            var list = message.list
            var found = list.get(1).name + list.get(1).sub.count
            list.remove(0)
            list.get(0).n = 20
            list.append({ name: "d", n: 4, sub: [{ s: 1 }, { s: 2 }] })
            list.insert(0, { name: "e", n: 5 })
            list.move(0, 1, 1)
            list.sync()
            WorkerScript.sendMessage({ found: found, count: list.count })
        })");
    QVERIFY(scene.load(R"(Item {
        id: root
        property string found
        property variant log: []
        ListModel {
            id: list
            onItemsInserted: { var l = root.log; l.push("+" + index); root.log = l }
            onItemsRemoved: { var l = root.log; l.push("-" + index); root.log = l }
            ListElement { name: "a"; n: 1 }
            ListElement { name: "b"; n: 2; sub: [ ListElement { s: 9 } ] }
            ListElement { name: "c"; n: 3 }
        }
        Repeater { id: rep; model: list; Item { property string shown: name + n } }
        function shown() { var s = ""; for (var i = 0; i < rep.count; ++i) s += rep.itemAt(i).shown; return s }
        WorkerScript { id: worker; source: "work.js"; onMessage: root.found = messageObject.found + messageObject.count }
    })"));
    scene.evaluate("worker.sendMessage({ list: list })");
    QTRY_COMPARE(scene.value("found").toString(), QStringLiteral("b14"));
    QTRY_COMPARE(scene.evaluate("shown()").toString(), QStringLiteral("b20e5c3d4"));
    QCOMPARE(scene.evaluate("list.get(3).sub.get(1).s").toInt(), 2);
    QCOMPARE(scene.evaluate("log.join()").toString(), QStringLiteral("-0,+1,+3"));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeListModel::workerOutlivesModel()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("work.js"), R"(
        WorkerScript.onMessage = function(message) {
            for (var i = 0; i < 200; ++i) { message.list.append({ n: i }); message.list.sync() }
            WorkerScript.sendMessage({ done: message.list.count })
        })");
    QVERIFY(scene.load(R"(Item {
        id: root
        property int done
        Component { id: maker; ListModel {} }
        WorkerScript { id: worker; source: "work.js"; onMessage: root.done = messageObject.done }
        function go() { var list = maker.createObject(root); worker.sendMessage({ list: list }); list.destroy() }
    })"));
    scene.evaluate("go()");
    QTRY_COMPARE(scene.value("done").toInt(), 200);
    QCOMPARE(scene.warnings, QStringList());
}

QTEST_MAIN(tst_QDeclarativeListModel)
#include "tst_qdeclarativelistmodel.moc"
