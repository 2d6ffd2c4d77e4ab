#include "WatchedScene.h"

#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QStringListModel>
#include <QtGui/QStandardItemModel>
#include <QtQml/QQmlContext>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <functional>
#include <memory>

namespace {

enum Role { NameRole = Qt::UserRole + 1, SizeRole };

/** A model with the roles "name" and "size". */
class Shelf : public QStandardItemModel
{
public:
    explicit Shelf(const QStringList &names)
    {
        setItemRoleNames({{NameRole, "name"}, {SizeRole, "size"}});
        for (const QString &name : names)
            appendRow(entry(name));
    }

    static QStandardItem *entry(const QString &name)
    {
        auto *item = new QStandardItem;
        item->setData(name, NameRole);
        item->setData(name.size(), SizeRole);
        return item;
    }
};

const char repeater[] = R"(
    Item {
        id: root
        property alias rep: rep
        property int made
        function shown() {
            var all = []
            for (var i = 0; i < rep.count; ++i)
                all.push(rep.itemAt(i).shown)
            return all.join(" ")
        }
        Repeater {
            id: rep
            model: given
            Item { property string shown: %1; Component.onCompleted: ++root.made }
        }
    })";

using Change = std::function<void(Shelf &)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class tst_QDeclarativeVisualModels : public QObject
{
    Q_OBJECT

private slots:
    void kindsOfModels_data();
    void kindsOfModels();
    void itemModelChanges_data();
    void itemModelChanges();
    void rolesMayChangeWithReset();
    void modelMayGo();
    void visualItemModel();
    void visualItemModelTakesItemsOnly();
    void initialValues();
    void visualDataModelSignals();
    void rootIndex();
    void parts();
    void partOfTheModelItself();
    void packagesAreReported();
    void movesRowsOfWhichSomeHaveItems_data();
    void movesRowsOfWhichSomeHaveItems();
    void itemsOutliveAViewThatPassedThem();
    void partnerGoes_data();
    void partnerGoes();

private:
    static bool load(WatchedScene &scene, const QByteArray &body, const QVariant &model)
    {
        scene.view().rootContext()->setContextProperty(QStringLiteral("given"), model);
        return scene.load(body);
    }

    static QByteArray showing(const QByteArray &expression)
    {
        return QByteArray(repeater).replace("%1", expression);
    }
};

void tst_QDeclarativeVisualModels::kindsOfModels_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *model, const char *expression, const char *shown) {
        QTest::newRow(name) << QByteArray(model) << QByteArray(expression) << QString::fromLatin1(shown);
    };
    row("number", "3", "index", "0 1 2");
    row("number as modelData", "2", "modelData", "0 1");
    row("zero", "0", "index", "");
    row("negative", "-4", "index", "");
    row("null", "null", "index", "");
    row("undefined", "undefined", "index", "");
    row("array", "['x', 'y']", "modelData", "x y");
    row("array, index", "['x', 'y']", "index + modelData", "0x 1y");
    row("array of numbers", "[4, 2.5]", "modelData", "4 2.5");
    row("array of objects", "[{ a: 1 }, { a: 2 }]", "modelData.a", "1 2");
    row("empty array", "[]", "modelData", "");
    row("object", "root", "modelData === root", "true");
    row("text", "'word'", "modelData", "");
    row("list of objects", "root.children", "modelData === root.children[index]", "true");
    row("list model", "rows", "[a, model.a, model.index].join('')", "110 221");
    row("list model with one role", "rows", "modelData", "1 2");
    row("string list", "words", "modelData", "one two");
    row("object list", "objects", "modelData.objectName + index", "left0 right1");
    row("item model", "shelf", "name + model.size + index", "ab20 c11");
}

void tst_QDeclarativeVisualModels::kindsOfModels()
{
    QFETCH(QByteArray, model);
    QFETCH(QByteArray, expression);
    QFETCH(QString, shown);
    Shelf shelf({QStringLiteral("ab"), QStringLiteral("c")});
    QObject left;
    QObject right;
    left.setObjectName(QStringLiteral("left"));
    right.setObjectName(QStringLiteral("right"));
    WatchedScene scene;
    QQmlContext *context = scene.view().rootContext();
    context->setContextProperty(QStringLiteral("words"), QStringList{"one", "two"});
    context->setContextProperty(QStringLiteral("shelf"), &shelf);
    context->setContextProperty(QStringLiteral("objects"),
                                QVariant::fromValue(QList<QObject *>{&left, &right}));
    QByteArray body = showing(expression).replace("given", "root.given");
    body.replace("property int made",
                 "property int made\nproperty variant given\n"
                 "ListModel { id: rows; ListElement { a: 1 } ListElement { a: 2 } }");
    QVERIFY(scene.load(body));
    scene.evaluate("root.given = " + model);
    QCOMPARE(scene.evaluate("shown()").toString(), shown);
    scene.evaluate("root.given = 1");
    QCOMPARE(scene.evaluate("rep.count").toInt(), 1);
    scene.evaluate("root.given = undefined");
    QCOMPARE(scene.evaluate("rep.count").toInt(), 0);
}

void tst_QDeclarativeVisualModels::itemModelChanges_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("made");
    QTest::newRow("insert") << Change([](Shelf &s) { s.insertRow(1, Shelf::entry(QStringLiteral("x"))); })
                            << "b x a c" << 1;
    QTest::newRow("append") << Change([](Shelf &s) { s.appendRow(Shelf::entry(QStringLiteral("x"))); })
                            << "b a c x" << 1;
    QTest::newRow("remove") << Change([](Shelf &s) { s.removeRow(1); }) << "b c" << 0;
    QTest::newRow("remove two") << Change([](Shelf &s) { s.removeRows(0, 2); }) << "c" << 0;
    QTest::newRow("data") << Change([](Shelf &s) { s.item(1)->setData(QStringLiteral("z"), NameRole); })
                          << "b z c" << 0;
    QTest::newRow("sort") << Change([](Shelf &s) {
        s.setSortRole(NameRole);
        s.sort(0);
    }) << "a b c" << 0;
    QTest::newRow("reset") << Change([](Shelf &s) {
        s.clear();
        s.appendRow(Shelf::entry(QStringLiteral("x")));
    }) << "x" << 1;
}

void tst_QDeclarativeVisualModels::itemModelChanges()
{
    QFETCH(Change, change);
    QFETCH(QString, shown);
    Shelf shelf({QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c")});
    WatchedScene scene;
    QVERIFY(load(scene, showing("model.name"), QVariant::fromValue<QObject *>(&shelf)));
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("b a c"));
    scene.evaluate("root.made = 0");
    change(shelf);
    QTRY_COMPARE(scene.evaluate("shown()").toString(), shown);
    QTEST(scene.value("made").toInt(), "made");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeVisualModels::rolesMayChangeWithReset()
{
    Shelf shelf({QStringLiteral("b")});
    WatchedScene scene;
    QVERIFY(load(scene, showing("model.name + model.extra"), QVariant::fromValue<QObject *>(&shelf)));
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("bundefined"));
    QStandardItem *entry = Shelf::entry(QStringLiteral("q"));
    entry->setData(5, Qt::UserRole + 9);
    {
        shelf.setItemRoleNames({{NameRole, "name"}, {Qt::UserRole + 9, "extra"}});
        shelf.clear();
        shelf.appendRow(entry);
    }
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("q5"));
}

void tst_QDeclarativeVisualModels::modelMayGo()
{
    auto shelf = std::make_unique<Shelf>(QStringList{"b", "a"});
    WatchedScene scene;
    QVERIFY(load(scene, showing("model.name"), QVariant::fromValue<QObject *>(shelf.get())));
    QCOMPARE(scene.evaluate("rep.count").toInt(), 2);
    shelf.reset();
    QTRY_COMPARE(scene.evaluate("rep.count").toInt(), 0);
}

void tst_QDeclarativeVisualModels::visualItemModel()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root
        property variant log: []
        function note(text) { var all = log; all.push(text); log = all }
        VisualItemModel {
            id: pages
            onCreatedItem: note("created " + index + item.objectName)
            onDestroyingItem: note("destroying " + item.objectName)
            Item { id: a; objectName: "a"; property int place: VisualItemModel.index }
            Item { id: b; objectName: "b"; property int place: VisualItemModel.index }
        }
        Item { id: alone; property int place: VisualItemModel.index }
        Row { id: row; Repeater { id: rep; model: pages } }
    })"));
    QCOMPARE(scene.evaluate("pages.count + ' ' + pages.children.length").toString(), QStringLiteral("2 2"));
    QCOMPARE(scene.evaluate("a.place + ' ' + b.place + ' ' + alone.place").toString(),
             QStringLiteral("0 1 -1"));
    QCOMPARE(scene.evaluate("rep.itemAt(1) === b && b.parent === row").toBool(), true);
    QCOMPARE(scene.evaluate("log.join()").toString(), QStringLiteral("created 0a,created 1b"));
    scene.evaluate("rep.model = 0");
    QCOMPARE(scene.evaluate("rep.count + a.objectName").toString(), QStringLiteral("0a"));
    QCOMPARE(scene.evaluate("pages.children[1] === b").toBool(), true);
}

void tst_QDeclarativeVisualModels::visualItemModelTakesItemsOnly()
{
    QDeclarativeView view;
    QQmlComponent component(view.engine());
    component.setData("import QtQuick 1.0\nVisualItemModel { QtObject {} }",
                      QUrl(QStringLiteral("file:///M.qml")));
    QVERIFY(component.isError());
}

void tst_QDeclarativeVisualModels::initialValues()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item { VisualDataModel { id: data } VisualItemModel { id: items } })"));
    QCOMPARE(scene.evaluate("[data.count, data.part, items.count, items.children.length].join()").toString(),
             QStringLiteral("0,,0,0"));
    QCOMPARE(scene.evaluate("data.delegate === null && data.parts !== null").toBool(), true);
}

void tst_QDeclarativeVisualModels::visualDataModelSignals()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root
        property variant log: []
        function note(text) { var all = log; all.push(text); log = all }
        ListModel { id: rows; ListElement { a: 1 } ListElement { a: 2 } ListElement { a: 3 } }
        VisualDataModel {
            id: visual; model: rows
            delegate: Item { property int a: model.a }
            onItemsInserted: note("inserted " + index + " " + count)
            onItemsRemoved: note("removed " + index + " " + count)
            onItemsMoved: note("moved " + from + " " + to + " " + count)
            onItemsChanged: note("changed " + index + " " + count)
            onModelReset: note("reset")
            onCreatedItem: note("created " + index + " " + item.a)
            onDestroyingItem: note("destroying " + item.a)
            onCountChanged: note("count " + visual.count)
        }
        Repeater { id: rep; model: visual }
        function take() { var text = log.join(); log = []; return text }
    })"));
    QCOMPARE(scene.warnings, QStringList());
    QCOMPARE(scene.evaluate("take()").toString(),
             QStringLiteral("inserted 0 3,count 3,created 0 1,created 1 2,created 2 3"));
    QCOMPARE(scene.evaluate("rows.append({ a: 4 }); take()").toString(),
             QStringLiteral("inserted 3 1,created 3 4,count 4"));
    QCOMPARE(scene.evaluate("rows.move(0, 1, 2); take()").toString(), QStringLiteral("moved 0 1 2"));
    QCOMPARE(scene.evaluate("rows.set(0, { a: 9 }); take()").toString(), QStringLiteral("changed 0 1"));
    QCOMPARE(scene.evaluate("rows.remove(1); take()").toString(),
             QStringLiteral("removed 1 1,destroying 1,count 3"));
    QCOMPARE(scene.evaluate("rep.count").toInt(), 3);
}

void tst_QDeclarativeVisualModels::rootIndex()
{
    Shelf shelf({QStringLiteral("a"), QStringLiteral("b")});
    shelf.item(1)->appendRow(Shelf::entry(QStringLiteral("b1")));
    shelf.item(1)->appendRow(Shelf::entry(QStringLiteral("b2")));
    WatchedScene scene;
    QVERIFY(load(scene, R"(Item {
        id: root
        VisualDataModel { id: visual; model: given; delegate: Item { property string shown: name } }
        Repeater { id: rep; model: visual }
        function shown() { var s = ""; for (var i = 0; i < rep.count; ++i) s += rep.itemAt(i).shown; return s }
    })",
                 QVariant::fromValue<QObject *>(&shelf)));
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("ab"));
    scene.evaluate("visual.rootIndex = visual.modelIndex(1)");
    QTRY_COMPARE(scene.evaluate("shown()").toString(), QStringLiteral("b1b2"));
    scene.evaluate("visual.rootIndex = visual.parentModelIndex()");
    QTRY_COMPARE(scene.evaluate("shown()").toString(), QStringLiteral("ab"));
}

void tst_QDeclarativeVisualModels::parts()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root
        ListModel { id: rows; ListElement { a: 1 } ListElement { a: 2 } }
        VisualDataModel {
            id: visual; model: rows
            delegate: Package {
                Item { Package.name: "left"; property string shown: "l" + a }
                Item { Package.name: "right"; property string shown: "r" + a }
            }
        }
        Repeater { id: left; model: visual.parts.left }
        Repeater { id: right; model: visual.parts.right }
    })"));
    QCOMPARE(scene.evaluate("left.itemAt(1).shown + right.itemAt(0).shown").toString(),
             QStringLiteral("l2r1"));
    scene.evaluate("rows.insert(0, { a: 5 })");
    QCOMPARE(scene.evaluate("left.count + left.itemAt(0).shown + right.itemAt(0).shown").toString(),
             QStringLiteral("3l5r5"));
    scene.evaluate("rows.clear()");
    QCOMPARE(scene.evaluate("left.count + ' ' + right.count").toString(), QStringLiteral("0 0"));
}

void tst_QDeclarativeVisualModels::partOfTheModelItself()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        VisualDataModel {
            id: visual; model: 2; part: "right"
            delegate: Package {
                Item { Package.name: "left" }
                Item { Package.name: "right"; property string shown: "r" + index }
            }
        }
        Repeater { id: rep; model: visual }
    })"));
    QCOMPARE(scene.evaluate("rep.itemAt(1).shown").toString(), QStringLiteral("r1"));
}

void tst_QDeclarativeVisualModels::packagesAreReported()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root
        property variant log: []
        function note(text) { var all = log; all.push(text); log = all }
        ListModel { id: rows; ListElement { a: 1 } ListElement { a: 2 } }
        VisualDataModel {
            id: visual; model: rows
            onCreatedPackage: note("created " + index + " " + arguments[1].objectName)
            onDestroyingPackage: note("destroying " + arguments[0].objectName)
            delegate: Package {
                objectName: "p" + a
                Item { Package.name: "left" }
                Item { Package.name: "right" }
            }
        }
        Repeater { model: visual.parts.left }
        Repeater { model: visual.parts.right }
        function take() { var text = log.join(); log = []; return text }
    })"));
    QCOMPARE(scene.evaluate("take()").toString(), QStringLiteral("created 0 p1,created 1 p2"));
    QCOMPARE(scene.evaluate("rows.append({ a: 3 }); take()").toString(), QStringLiteral("created 2 p3"));
    QCOMPARE(scene.evaluate("rows.remove(0); take()").toString(), QStringLiteral("destroying p1"));
}

void tst_QDeclarativeVisualModels::movesRowsOfWhichSomeHaveItems_data()
{
    QTest::addColumn<QString>("seen"); // the rows in view, one a view
    QTest::addColumn<QString>("move");
    QTest::addColumn<QString>("order");
    QTest::newRow("down") << "1 3"
                          << "0, 1, 2"
                          << "c a b d e f g h";
    QTest::newRow("up") << "1 3"
                        << "2, 1, 2"
                        << "a c d b e f g h";
    QTest::newRow("past an item") << "2 4"
                                  << "1, 2, 2"
                                  << "a d b c e f g h";
    QTest::newRow("far") << "1 5"
                         << "0, 3, 2"
                         << "c d e a b f g h";
    QTest::newRow("more rows than they pass") << "1 3 6"
                                              << "1, 3, 5"
                                              << "a g h b c d e f";
    QTest::newRow("more rows up") << "1 3 6"
                                  << "3, 1, 5"
                                  << "a d e f g h b c";
}

void tst_QDeclarativeVisualModels::movesRowsOfWhichSomeHaveItems()
{
    QFETCH(QString, seen);
    QFETCH(QString, move);
    WatchedScene scene;
    scene.view().rootContext()->setContextProperty(QStringLiteral("seen"), seen.split(QLatin1Char(' ')));
    QVERIFY(scene.load(R"(Item {
        id: root; width: 100; height: 100
        property int alive
        property int moves
        property string wrong
        function check(item) {
            if (letters.get(item.row).t != item.shown || item.changes > 1)
                wrong += item.shown + " stands as " + item.row + ", changed " + item.changes + "; "
        }
        function checked() {
            var found = 0
            for (var i = 0; i < views.count; ++i) {
                var all = views.itemAt(i).contentItem.children
                for (var k = 0; k < all.length; ++k)
                    if (all[k].shown) { ++found; check(all[k]) }
            }
            return wrong + (found == alive ? "" : found + " of " + alive)
        }
        ListModel { id: letters
            ListElement { t: "a" } ListElement { t: "b" } ListElement { t: "c" } ListElement { t: "d" }
            ListElement { t: "e" } ListElement { t: "f" } ListElement { t: "g" } ListElement { t: "h" } }
        VisualDataModel {
            id: visual; model: letters; onItemsMoved: ++root.moves
            delegate: Item { property string shown: t; property int row: index; property int changes: -1
                width: 10; height: 20; onRowChanged: ++changes
                Component.onCompleted: { changes = 0; ++root.alive } Component.onDestruction: --root.alive }
        }
        Repeater { id: views; model: seen
            ListView { width: 10; height: 19; model: visual; currentIndex: -1
                Component.onCompleted: contentY = modelData * 20 } }
    })"));
    scene.evaluate(QByteArray("letters.move(" + move.toLatin1() + ")").constData());
    QCOMPARE(scene.value("moves").toInt(), 1);
    QTRY_COMPARE(scene.evaluate("checked()").toString(), QString());
    // One view passes by the rows that the others show.
    for (int y = 0; y < 160; y += 10)
        scene.evaluate("views.itemAt(0).contentY = " + QByteArray::number(y));
    QTRY_COMPARE(scene.evaluate("checked()").toString(), QString());
    QTEST(scene
              .evaluate("var all = []; for (var i = 0; i < letters.count; ++i) all.push(letters.get(i).t); "
                        "all.join(' ')")
              .toString(),
          "order");
}

// A view takes the items of rows that it passes, also those that another view shows.
void tst_QDeclarativeVisualModels::itemsOutliveAViewThatPassedThem()
{
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root; width: 100; height: 100
        property int alive
        VisualDataModel {
            id: visual; model: 8
            delegate: Item { property int row: index; width: 10; height: 20
                Component.onCompleted: ++root.alive; Component.onDestruction: --root.alive }
        }
        Loader { id: passing; sourceComponent: ListView { width: 10; height: 19; model: visual; currentIndex: -1 } }
        ListView { id: lasting; width: 10; height: 19; model: visual; contentY: 60; currentIndex: -1 }
    })"));
    for (int y = 0; y <= 140; y += 10)
        scene.evaluate("passing.item.contentY = " + QByteArray::number(y));
    QTRY_COMPARE(scene.value("alive").toInt(), 2);
    scene.evaluate("passing.sourceComponent = undefined");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(scene.value("alive").toInt(), 1);
    scene.evaluate("lasting.contentY = 0; lasting.contentY = 60");
    QTRY_COMPARE(scene.evaluate("lasting.contentItem.children[0].row").toInt(), 3);
    QTRY_COMPARE(scene.value("alive").toInt(), 1);
}

void tst_QDeclarativeVisualModels::partnerGoes_data()
{
    QTest::addColumn<QByteArray>("view");
    QTest::addColumn<QByteArray>("going");
    QTest::addColumn<QString>("places");
    const QList<QPair<const char *, QByteArray>> views = {
        {"ListView", "ListView { anchors.fill: parent; model: visual }"},
        {"GridView", "GridView { anchors.fill: parent; model: visual; cellWidth: 30; cellHeight: 30 }"},
        {"PathView",
         "PathView { anchors.fill: parent; model: visual; path: Path { startX: 5; startY: 5; PathLine { x: "
         "65; "
         "y: 65 } } }"},
        {"Repeater", "Grid { columns: 2; Repeater { model: visual } }"},
    };
    const QStringList places = {"0,0 0,10 0,20", "0,0 30,0 60,0", "0,0 20,20 40,40", "0,0 10,0 0,10"};
    for (int i = 0; i < views.count(); ++i) {
        QTest::addRow("%s, destroyed", views[i].first)
            << views[i].second << QByteArray("destroy()") << places[i];
        QTest::addRow("%s, other model", views[i].first)
            << views[i].second << QByteArray("model = 2") << places[i];
    }
}

/** Where the rows stand that @p holder has. */
static QString placesIn(WatchedScene &scene, const QGraphicsItem *holder)
{
    QStringList places;
    for (const char *name : {"row0", "row1", "row2"}) {
        const QGraphicsObject *row = scene.item(name);
        if (row && row->parentItem() == holder)
            places += QStringLiteral("%1,%2").arg(row->x()).arg(row->y());
    }
    return places.join(QLatin1Char(' '));
}

// Of two views of one model the later one has the items, and gives them back.
void tst_QDeclarativeVisualModels::partnerGoes()
{
    QFETCH(QByteArray, view);
    QFETCH(QByteArray, going);
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root; width: 100; height: 100
        property Item partner
        VisualDataModel { id: visual; model: 3; delegate: Item { objectName: "row" + index; width: 10; height: 10 } }
        Component { id: maker; ListView { width: 100; height: 100; model: visual; spacing: 9 } }
        Item { id: place; anchors.fill: parent; )"
                       + view + " } }"));
    const auto *holder = scene.item("row0")->parentItem();
    scene.evaluate("partner = maker.createObject(root)");
    const auto *partner = scene.item("row0")->parentItem();
    QVERIFY(partner != holder);
    // Across its direction a list leaves an item where it is.
    for (const char *name : {"row0", "row1", "row2"})
        scene.item(name)->setPos(0, scene.item(name)->y());
    scene.evaluate("partner." + going);
    QFETCH(QString, places);
    QTRY_COMPARE(placesIn(scene, holder), places);
    QCOMPARE(scene.warnings, QStringList());
}

QTEST_MAIN(tst_QDeclarativeVisualModels)
#include "tst_qdeclarativevisualmodels.moc"
