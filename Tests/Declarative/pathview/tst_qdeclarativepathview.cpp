#include "PaintLog.h"
#include "Patience.h"
#include "WatchedScene.h"

#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <cmath>

class tst_QDeclarativePathView : public QObject
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
    void offsetWraps_data();
    void offsetWraps();
    void offsetKeepsCurrent();
    void currentIndex_data();
    void currentIndex();
    void turnsTheShorterWay_data();
    void turnsTheShorterWay();
    void steps();
    void attributes();
    void attributesOfAnotherPath();
    void attached();
    void declaredIndex();
    void resizedDelegate();
    void highlight();
    void highlightWithoutRange();
    void highlightFollowsRows();
    void applyRange();
    void changes_data();
    void changes();
    void currentFollows_data();
    void currentFollows();
    void emptied();
    void models_data();
    void models();
    void changedFromDelegate();
    void refusesWhatIsNotVisual();
    void destroyedPath();
    void destroyedItem();
    void dragSnaps();
    void dragWithoutRange();
    void dragRoundTheCorner();
    void dragStartsOnItemsOrNearThePath_data();
    void dragStartsOnItemsOrNearThePath();
    void clickStaysWithTheDelegate();
    void flick();
    void pressStopsFlick();
    void notInteractive();
    void goesIdle();
};

namespace {

/** Twenty pixels from row to row on a straight line, from x 10 on, when there are five rows. */
const QByteArray line =
    "Item { id: root; width: 120; height: 40; property string log\n"
    "property alias current: view.currentIndex\n"
    "ListModel { id: letters; ListElement { t: 'a' } ListElement { t: 'b' } ListElement { t: 'c' } "
    "ListElement { t: 'd' } ListElement { t: 'e' } }\n"
    "PathView { id: view; objectName: 'view'; anchors.fill: parent; model: letters; highlightMoveDuration: "
    "0\n"
    "path: Path { id: line; startX: 10; startY: 20; PathLine { x: 110; y: 20 } }\n"
    "delegate: Rectangle { objectName: 'row' + t; property string label: t\n"
    "property bool on: PathView.onPath; property bool current: PathView.isCurrentItem; width: 10; height: 10 "
    "}\n"
    "onCurrentIndexChanged: root.log += ' index ' + currentIndex; onCountChanged: root.log += ' count ' + "
    "count\n"
    "onMovementStarted: root.log += ' started'; onMovementEnded: root.log += ' ended'\n"
    "onFlickStarted: root.log += ' flick'; onFlickEnded: root.log += ' flicked'\n"
    "%1 } }";

QByteArray withView(const QByteArray &content)
{
    return QByteArray(line).replace("%1", content);
}

/** The rows on the path with their centres, from left to right. */
QString shown(WatchedScene &scene)
{
    QMap<int, QString> labels;
    const auto children = scene.item("view")->childItems();
    for (QGraphicsItem *child : children) {
        const QVariant label = child->toGraphicsObject()->property("label");
        if (label.isValid())
            labels.insert(int(child->x()) + 5, label.toString());
    }
    QString text;
    for (auto label = labels.cbegin(); label != labels.cend(); ++label)
        text += label.value() + QString::number(label.key()) + QLatin1Char(' ');
    return text.trimmed();
}

} // namespace

void tst_QDeclarativePathView::places_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("rows");
    QTest::newRow("all") << QByteArray() << "a10 b30 c50 d70 e90";
    QTest::newRow("moved") << QByteArray("offset: 1") << "e10 a30 b50 c70 d90";
    QTest::newRow("half way") << QByteArray("offset: 0.5") << "a20 b40 c60 d80 e100";
    QTest::newRow("some of them") << QByteArray("pathItemCount: 2") << "a10 b60";
    QTest::newRow("some, half way") << QByteArray("pathItemCount: 2; offset: 1.5") << "e35 a85";
    QTest::newRow("one") << QByteArray("pathItemCount: 1") << "a10";
    QTest::newRow("room for more") << QByteArray("pathItemCount: 50") << "a10 b30 c50 d70 e90";
    QTest::newRow("room for none") << QByteArray("pathItemCount: 0") << "a10";
    QTest::newRow("less than all") << QByteArray("pathItemCount: -7") << "a10 b30 c50 d70 e90";
    QTest::newRow("range") << QByteArray("preferredHighlightBegin: 0.4; preferredHighlightEnd: 0.4")
                           << "d10 e30 a50 b70 c90";
    QTest::newRow("some from a range on")
        << QByteArray("preferredHighlightBegin: 0.5; preferredHighlightEnd: 0.5; pathItemCount: 4")
        << "d10 e35 a60 b85";
    QTest::newRow("no range mode") << QByteArray("preferredHighlightBegin: 0.4; preferredHighlightEnd: 0.4; "
                                                 "highlightRangeMode: PathView.NoHighlightRange")
                                   << "a10 b30 c50 d70 e90";
    QTest::newRow("range that is none")
        << QByteArray("preferredHighlightBegin: 0.4; preferredHighlightEnd: 0.2") << "a10 b30 c50 d70 e90";
    QTest::newRow("range off the path")
        << QByteArray("preferredHighlightBegin: 2; preferredHighlightEnd: 3") << "a10 b30 c50 d70 e90";
    QTest::newRow("no model") << QByteArray("Component.onCompleted: view.model = undefined") << QString();
    QTest::newRow("no path") << QByteArray("Component.onCompleted: { view.path = null; view.model = 2 }")
                             << QString();
    QTest::newRow("path without length") << QByteArray("Component.onCompleted: view.path = empty; "
                                                       "Path { id: empty; startX: 4 }")
                                         << "a10 b30 c50 d70 e90";
    QTest::newRow("percent") << QByteArray("Component.onCompleted: view.path = uneven; Path { id: uneven; "
                                           "startX: 10; startY: 20; PathLine { x: 30; y: 20 } PathPercent { "
                                           "value: 0.6 } PathLine { x: 110; y: 20 } }")
                             << "a10 b17 c23 d30 e50";
}

void tst_QDeclarativePathView::places()
{
    QFETCH(QByteArray, content);
    WatchedScene scene;
    QVERIFY(scene.load(withView(content)));
    QTEST(shown(scene), "rows");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativePathView::offsetWraps_data()
{
    QTest::addColumn<QString>("set");
    QTest::addColumn<qreal>("offset");
    QTest::newRow("below") << "-1" << 4.0;
    QTest::newRow("count") << "5" << 0.0;
    QTest::newRow("far beyond") << "13.5" << 3.5;
    QTest::newRow("far below") << "-1000000" << 0.0;
    QTest::newRow("just below a row") << "1.9999999999" << 2.0;
    QTest::newRow("just below none") << "-0.0000000001" << 0.0;
    QTest::newRow("endless") << "Infinity" << 0.0;
    QTest::newRow("no number") << "NaN" << 0.0;
}

void tst_QDeclarativePathView::offsetWraps()
{
    QFETCH(QString, set);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate(QByteArray("view.offset = " + set.toLatin1()).constData());
    QTEST(scene.item("view")->property("offset").toReal(), "offset");
}

void tst_QDeclarativePathView::offsetKeepsCurrent()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate("view.offset = 2.5");
    QCOMPARE(scene.value("current").toInt(), 0);
    QCOMPARE(shown(scene), QStringLiteral("d20 e40 a60 b80 c100"));
    scene.evaluate("view.incrementCurrentIndex()");
    QCOMPARE(shown(scene), QStringLiteral("b10 c30 d50 e70 a90"));
}

void tst_QDeclarativePathView::currentIndex_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("rows");
    QTest::newRow("set") << "view.currentIndex = 2" << 2 << "c10 d30 e50 a70 b90";
    QTest::newRow("beyond") << "view.currentIndex = 7" << 2 << "c10 d30 e50 a70 b90";
    QTest::newRow("below") << "view.currentIndex = -1" << 4 << "e10 a30 b50 c70 d90";
    QTest::newRow("next") << "view.incrementCurrentIndex()" << 1 << "b10 c30 d50 e70 a90";
    QTest::newRow("previous") << "view.decrementCurrentIndex()" << 4 << "e10 a30 b50 c70 d90";
    QTest::newRow("round") << "view.currentIndex = 4; view.incrementCurrentIndex()" << 0
                           << "a10 b30 c50 d70 e90";
    QTest::newRow("same") << "view.currentIndex = 0" << 0 << "a10 b30 c50 d70 e90";
}

void tst_QDeclarativePathView::currentIndex()
{
    QFETCH(QString, script);
    WatchedScene scene;
    QVERIFY(scene.load(withView({})));
    scene.evaluate(script.toLatin1().constData());
    QTEST(scene.value("current").toInt(), "index");
    QTEST(shown(scene), "rows");
    const QString label = scene.evaluate("letters.get(view.currentIndex).t").toString();
    for (const char *name : {"rowa", "rowb", "rowc", "rowd", "rowe"}) {
        const bool current = QLatin1String(name).endsWith(label);
        QCOMPARE(scene.item(name)->property("current").toBool(), current);
        QCOMPARE(scene.item(name)->property("focus").toBool(), current);
    }
}

void tst_QDeclarativePathView::turnsTheShorterWay_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("rises");
    QTest::newRow("later") << "view.currentIndex = 1" << false;
    QTest::newRow("round the start") << "view.currentIndex = 4" << true;
    QTest::newRow("increment") << "view.incrementCurrentIndex()" << false;
    QTest::newRow("decrement") << "view.decrementCurrentIndex()" << true;
}

void tst_QDeclarativePathView::turnsTheShorterWay()
{
    QFETCH(QString, script);
    QFETCH(bool, rises);
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: highlightMoveDuration = 100")));
    QGraphicsObject *view = scene.item("view");
    QSignalSpy moves(view, SIGNAL(offsetChanged()));
    scene.evaluate(script.toLatin1().constData());
    QVERIFY(moves.isEmpty());
    bool between = true;
    const qreal target = rises ? 1 : 4;
    while (view->property("offset").toReal() != target && moves.wait(Patience::longest)) {
        const qreal offset = view->property("offset").toReal();
        between = between && (rises ? offset <= 1 : offset >= 4);
    }
    QVERIFY(between);
    QCOMPARE(view->property("offset").toReal(), target);
    // Only the user's own movement counts as such.
    QVERIFY(!scene.value("log").toString().contains(QStringLiteral("started")));
}

void tst_QDeclarativePathView::steps()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: view.model = undefined")));
    scene.evaluate("view.incrementCurrentIndex(); view.decrementCurrentIndex()");
    QCOMPARE(scene.item("view")->property("count").toInt(), 0);
    scene.evaluate("view.model = 1");
    scene.evaluate("view.incrementCurrentIndex(); view.decrementCurrentIndex()");
    QCOMPARE(scene.value("current").toInt(), 0);
}

void tst_QDeclarativePathView::attributes()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { width: 100; height: 40; PathView { id: view; objectName: 'view'; anchors.fill: parent\n"
        "model: 4; highlightMoveDuration: 0\n"
        "path: Path { startX: 0; startY: 20; PathAttribute { id: first; name: 'size'; value: 10 }\n"
        "PathLine { x: 80; y: 20 } PathAttribute { name: 'size'; value: 50 } }\n"
        "highlight: Item { objectName: 'highlight'; property real size: PathView.size }\n"
        "delegate: Item { objectName: 'row' + index; property string seen\n"
        "property real size: PathView.size; onSizeChanged: seen += size + ' '; width: PathView.size } } }"));
    QCOMPARE(scene.item("row0")->property("seen").toString(), QStringLiteral("10 "));
    QCOMPARE(scene.item("row2")->property("seen").toString(), QStringLiteral("30 "));
    QCOMPARE(scene.item("row2")->x(), 25.0);
    QCOMPARE(scene.item("highlight")->property("size").toReal(), 10.0);
    scene.evaluate("view.offset = 1");
    QCOMPARE(scene.item("row2")->property("size").toReal(), 40.0);
    QCOMPARE(scene.item("row2")->x(), 40.0);
    scene.evaluate("first.value = 30");
    QCOMPARE(scene.item("row3")->property("size").toReal(), 30.0);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativePathView::attributesOfAnotherPath()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Path { id: other; startX: 110; startY: 10; PathAttribute { name: 'tint'; "
                                "value: 3 } PathLine { x: 10; y: 10 } }\n"
                                "Component { id: tinted; Item { objectName: 'tinted' + index; property real "
                                "tint: PathView.tint; property string label: 't'; width: 10 } }")));
    scene.evaluate("view.path = other");
    QCOMPARE(shown(scene), QStringLiteral("e30 d50 c70 b90 a110"));
    scene.evaluate("view.delegate = tinted");
    QCOMPARE(scene.item("tinted2")->property("tint").toReal(), 3.0);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativePathView::attached()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("pathItemCount: 2\n"
                                "Component.onCompleted: view.delegate = watching\n"
                                "Component { id: watching; Rectangle { objectName: 'w' + index; width: 10\n"
                                "property variant owner: PathView.view; property bool on: PathView.onPath\n"
                                "PathView.onPathChanged: root.log += ' path' + index + PathView.onPath\n"
                                "PathView.onCurrentItemChanged: root.log += ' current' + index } }")));
    QCOMPARE(scene.item("w0")->property("owner").value<QObject *>(), scene.item("view"));
    QVERIFY(scene.item("w0")->property("on").toBool());
    QCOMPARE(scene.item("w1")->zValue(), 2.0);
    scene.evaluate("root.log = ''; view.currentIndex = 1");
    QCOMPARE(scene.value("log").toString().simplified(),
             QStringLiteral("current0 current1 index 1 path0false path2true"));
    QVERIFY(!scene.item("w0"));
}

void tst_QDeclarativePathView::declaredIndex()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("currentIndex: 3; offset: 1")));
    QCOMPARE(shown(scene), QStringLiteral("d10 e30 a50 b70 c90"));
    QCOMPARE(scene.value("current").toInt(), 3);
    WatchedScene beyond;
    QVERIFY(beyond.load(withView("currentIndex: 30")));
    QCOMPARE(beyond.value("current").toInt(), 4);
    QCOMPARE(shown(beyond), QStringLiteral("e10 a30 b50 c70 d90"));
}

void tst_QDeclarativePathView::resizedDelegate()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlight: Rectangle { objectName: 'highlight'; width: 10; height: 10 }")));
    scene.item("rowb")->setProperty("width", 31);
    QCOMPARE(scene.item("rowb")->pos(), QPointF(15, 15));
    scene.item("highlight")->setProperty("height", 20);
    QCOMPARE(scene.item("highlight")->pos(), QPointF(5, 10));
}

void tst_QDeclarativePathView::highlight()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("preferredHighlightBegin: 0.4; preferredHighlightEnd: 0.4\n"
                                "Component { id: mark; Rectangle { objectName: 'mark'; width: 4; height: 4 } "
                                "}")));
    QVERIFY(scene.item("view")->property("highlightItem").value<QObject *>());
    QSignalSpy changes(scene.item("view"), SIGNAL(highlightItemChanged()));
    scene.evaluate("view.highlight = mark");
    QCOMPARE(changes.count(), 1);
    QCOMPARE(scene.item("view")->property("highlightItem").value<QObject *>(), scene.item("mark"));
    QCOMPARE(scene.item("mark")->pos(), QPointF(48, 18));
    scene.evaluate("view.currentIndex = 3");
    QCOMPARE(scene.item("mark")->pos(), QPointF(48, 18));
    QCOMPARE(scene.item("rowd")->x(), 45.0);
    scene.evaluate("view.highlight = null");
    QVERIFY(!scene.item("mark"));
}

void tst_QDeclarativePathView::highlightWithoutRange()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlightRangeMode: PathView.NoHighlightRange\n"
                                "highlight: Rectangle { objectName: 'mark'; width: 4; height: 4 }\n"
                                "Component.onCompleted: highlightMoveDuration = 40")));
    QCOMPARE(scene.item("mark")->x(), 8.0);
    scene.evaluate("view.currentIndex = 2");
    QCOMPARE(scene.item("mark")->x(), 8.0);
    QTRY_COMPARE(scene.item("mark")->x(), 48.0);
    QCOMPARE(shown(scene), QStringLiteral("a10 b30 c50 d70 e90"));
    // From its own movement on it no more follows the rows.
    scene.evaluate("view.offset = 2");
    QCOMPARE(shown(scene), QStringLiteral("d10 e30 a50 b70 c90"));
    QCOMPARE(scene.item("mark")->x(), 48.0);
}

void tst_QDeclarativePathView::highlightFollowsRows()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlightRangeMode: PathView.NoHighlightRange\n"
                                "highlight: Rectangle { objectName: 'mark'; width: 4; height: 4\n"
                                "property bool on: PathView.onPath }")));
    scene.evaluate("view.offset = 1");
    QCOMPARE(scene.item("mark")->x(), 28.0);
    QVERIFY(scene.item("mark")->property("on").toBool());
    // While its row is not on the path it waits at the end.
    scene.evaluate("view.pathItemCount = 1");
    QCOMPARE(scene.item("mark")->x(), 108.0);
    QVERIFY(!scene.item("mark")->property("on").toBool());
}

void tst_QDeclarativePathView::applyRange()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlightRangeMode: PathView.ApplyRange; preferredHighlightBegin: 0.2; "
                                "preferredHighlightEnd: 0.4\n"
                                "highlight: Rectangle { objectName: 'mark'; width: 4; height: 4 }")));
    QCOMPARE(shown(scene), QStringLiteral("e10 a30 b50 c70 d90"));
    // The highlight pushes the rows at the end of the range, by a little more than it is over it.
    scene.evaluate("view.currentIndex = 1");
    QCOMPARE(shown(scene), QStringLiteral("a30 b50 c70 d90 e110"));
    QCOMPARE(scene.item("mark")->x(), 48.0);
    scene.evaluate("view.currentIndex = 2");
    QCOMPARE(shown(scene), QStringLiteral("b30 c50 d70 e90 a110"));
    QCOMPARE(scene.item("mark")->x(), 48.0);
    // Towards earlier rows it takes them back to the start.
    scene.evaluate("view.currentIndex = 1");
    QCOMPARE(scene.item("mark")->x(), 28.0);
}

void tst_QDeclarativePathView::changes_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("rows");
    const QByteArray strict;
    const QByteArray free = "highlightRangeMode: PathView.NoHighlightRange; offset: 3"; // c is at the start
    QTest::newRow("appended") << strict << "letters.append({ t: 'f' })"
                              << "a10 b27 c43 d60 e77 f94";
    QTest::newRow("before the current") << strict << "letters.insert(0, { t: 'f' })"
                                        << "f10 a27 b43 c60 d77 e94";
    QTest::newRow("current removed") << strict << "letters.remove(0)"
                                     << "b10 c35 d60 e85";
    QTest::newRow("other removed") << strict << "letters.remove(2)"
                                   << "a10 b35 d60 e85";
    QTest::newRow("current moved") << strict << "letters.move(0, 2, 1)"
                                   << "b10 c30 a50 d70 e90";
    QTest::newRow("others moved") << strict << "letters.move(3, 1, 2)"
                                  << "a10 d30 e50 b70 c90";
    QTest::newRow("free, after the start") << free << "letters.append({ t: 'f' })"
                                           << "c10 d27 e43 f60 a77 b94";
    QTest::newRow("free, between current and start") << free << "letters.insert(1, { t: 'f' })"
                                                     << "b10 c27 d43 e60 a77 f94";
    QTest::newRow("free, start removed") << free << "letters.remove(2)"
                                         << "d10 e35 a60 b85";
    QTest::newRow("free, removed before") << free << "letters.remove(0)"
                                          << "c10 d35 e60 b85";
    QTest::newRow("value changed") << strict << "letters.setProperty(0, 't', 'x')"
                                   << "x10 b30 c50 d70 e90";
    QTest::newRow("cleared") << strict << "letters.clear()" << QString();
    QTest::newRow("cleared and filled") << strict << "letters.clear(); letters.append({ t: 'f' })"
                                        << "f10";
}

void tst_QDeclarativePathView::changes()
{
    QFETCH(QByteArray, mode);
    QFETCH(QString, script);
    WatchedScene scene;
    QVERIFY(scene.load(withView(mode)));
    const QPointer<QGraphicsObject> kept = scene.item("rowd");
    const bool clears = script.contains(QStringLiteral("clear"));
    scene.evaluate(script.toLatin1().constData());
    QTEST(shown(scene), "rows");
    QVERIFY(clears || kept == scene.item("rowd"));
    QCOMPARE(scene.item("view")->property("count"), scene.evaluate("letters.count"));
}

void tst_QDeclarativePathView::currentFollows_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("log");
    QTest::newRow("inserted before") << "letters.insert(1, { t: 'f' })"
                                     << "count 6 index 3";
    QTest::newRow("inserted at") << "letters.insert(2, { t: 'f' })"
                                 << "count 6 index 3";
    QTest::newRow("inserted after") << "letters.insert(3, { t: 'f' })"
                                    << "count 6";
    QTest::newRow("removed before") << "letters.remove(0)"
                                    << "count 4 index 1";
    QTest::newRow("removed itself") << "letters.remove(2)"
                                    << "count 4";
    QTest::newRow("moved") << "letters.move(2, 4, 1)"
                           << "index 4";
    QTest::newRow("moved over") << "letters.move(0, 4, 1)"
                                << "index 1";
    QTest::newRow("cleared") << "letters.clear()"
                             << "count 0 index 0";
    QTest::newRow("other model") << "view.model = 2"
                                 << "count 2 index 1";
}

void tst_QDeclarativePathView::currentFollows()
{
    QFETCH(QString, script);
    WatchedScene scene;
    QVERIFY(scene.load(withView("currentIndex: 2")));
    scene.evaluate("root.log = ''");
    scene.evaluate(script.toLatin1().constData());
    QTEST(scene.value("log").toString().trimmed(), "log");
}

void tst_QDeclarativePathView::emptied()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: { letters.clear(); view.currentIndex = 1 }")));
    scene.evaluate("root.log = ''");
    for (int i = 0; i < 3; ++i)
        scene.evaluate("letters.append({ t: 'n' + letters.count + '_' })");
    QCOMPARE(scene.value("log").toString(), QStringLiteral(" count 1 count 2 count 3"));
    QCOMPARE(scene.value("current").toInt(), 1);
    QCOMPARE(shown(scene), QStringLiteral("n1_10 n2_43 n0_77"));
}

void tst_QDeclarativePathView::models_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("count");
    QTest::newRow("number") << "3" << 3;
    QTest::newRow("list") << "['x', 'y']" << 2;
    QTest::newRow("nothing") << "null" << 0;
    QTest::newRow("below zero") << "-4" << 0;
    QTest::newRow("items") << "items" << 2;
}

void tst_QDeclarativePathView::models()
{
    QFETCH(QString, model);
    QFETCH(int, count);
    WatchedScene scene;
    QVERIFY(scene.load(withView("VisualItemModel { id: items; Item { property string label: 'x'; z: 7 } "
                                "Item { property string label: 'y' } }\n"
                                "Component { id: plain; Item { property string label: 'p' } }")));
    scene.evaluate(("view.delegate = plain; view.model = " + model).toLatin1().constData());
    QCOMPARE(scene.item("view")->property("count").toInt(), count);
    QCOMPARE(shown(scene).split(QLatin1Char(' '), Qt::SkipEmptyParts).count(), count);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativePathView::changedFromDelegate()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        withView("Component.onCompleted: view.delegate = busy\n"
                 "Component { id: busy; Item { property string label: t; width: 10\n"
                 "Component.onCompleted: if (letters.count < 7) letters.insert(0, { t: 'z' }) } }")));
    QCOMPARE(scene.item("view")->property("count").toInt(), 7);
    QCOMPARE(shown(scene).split(QLatin1Char(' ')).count(), 7);
}

void tst_QDeclarativePathView::refusesWhatIsNotVisual()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component { id: nothing; QtObject { } }\n"
                                "Component { id: something; Item { property string label: 's' } }")));
    scene.evaluate("view.delegate = nothing; view.offset = 1; view.offset = 2");
    QCOMPARE(scene.warnings, QStringList{QStringLiteral("QML Component: Delegate must be of Item type")});
    QCOMPARE(shown(scene), QString());
    scene.evaluate("view.delegate = something");
    QCOMPARE(shown(scene).split(QLatin1Char(' ')).count(), 5);
}

void tst_QDeclarativePathView::destroyedPath()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlight: Item { }")));
    auto *path = scene.item("view")->property("path").value<QObject *>();
    QVERIFY(path);
    delete path;
    scene.evaluate("view.offset = 2; view.currentIndex = 3; letters.remove(0)");
    scene.item("rowb")->setProperty("width", 20);
    scene.press({30, 20});
    scene.release({30, 20});
    QCOMPARE(scene.item("view")->property("count").toInt(), 4);
}

void tst_QDeclarativePathView::destroyedItem()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("VisualItemModel { id: items; Item { objectName: 'gone' } Item { } }\n"
                                "Component.onCompleted: view.model = items")));
    delete scene.item("gone");
    scene.evaluate("view.model = 2");
    QCOMPARE(scene.item("view")->property("count").toInt(), 2);
}

void tst_QDeclarativePathView::dragSnaps()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: highlightMoveDuration = 60")));
    QGraphicsObject *view = scene.item("view");
    scene.drag({{30, 20}, {35, 20}});
    QVERIFY(!view->property("moving").toBool());
    scene.move({42, 20});
    QVERIFY(view->property("moving").toBool());
    QCOMPARE(view->property("offset").toReal(), 0.0);
    scene.move({54, 20});
    scene.move({55, 20});
    // The rows follow from where the drag was recognised.
    QCOMPARE(scene.item("rowa")->x(), 18.0);
    QVERIFY(qAbs(view->property("offset").toReal() - 0.65) < 0.02);
    QCOMPARE(scene.value("current").toInt(), 4);
    QVERIFY(scene.letRest());
    scene.release({55, 20});
    QTRY_VERIFY(!view->property("moving").toBool());
    QCOMPARE(view->property("offset").toReal(), 1.0);
    QCOMPARE(scene.value("log").toString().section(QStringLiteral("started"), 1).simplified(),
             QStringLiteral("index 4 ended"));
}

void tst_QDeclarativePathView::dragWithoutRange()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("highlightRangeMode: PathView.NoHighlightRange")));
    scene.drag({{30, 20}, {42, 20}, {54, 20}, {55, 20}});
    QVERIFY(scene.letRest());
    scene.release({55, 20});
    QVERIFY(qAbs(scene.item("view")->property("offset").toReal() - 0.65) < 0.02);
    QCOMPARE(scene.value("log").toString(), QStringLiteral(" count 5 started ended"));
}

void tst_QDeclarativePathView::dragRoundTheCorner()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 140; height: 140; PathView { id: view; objectName: 'view'\n"
                       "anchors.fill: parent; model: 4; dragMargin: 10\n"
                       "highlightRangeMode: PathView.NoHighlightRange\n"
                       "path: Path { startX: 20; startY: 20; PathLine { x: 120; y: 20 } PathLine { x: 120; "
                       "y: 120 } PathLine { x: 20; y: 120 } PathLine { x: 20; y: 20 } }\n"
                       "delegate: Item { width: 10; height: 10 } } }"));
    scene.drag({{20, 60}, {20, 45}, {20, 30}, {30, 20}, {45, 20}});
    QVERIFY(scene.letRest());
    scene.release({45, 20});
    QVERIFY(qAbs(scene.item("view")->property("offset").toReal() - 0.5) < 0.02);
}

void tst_QDeclarativePathView::dragStartsOnItemsOrNearThePath_data()
{
    QTest::addColumn<qreal>("margin");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<bool>("starts");
    QTest::newRow("on an item") << 0.0 << QPoint(30, 20) << true;
    QTest::newRow("on the path") << 0.0 << QPoint(41, 20) << false;
    QTest::newRow("near the path") << 12.0 << QPoint(41, 30) << true;
    QTest::newRow("too far away") << 12.0 << QPoint(41, 35) << false;
}

void tst_QDeclarativePathView::dragStartsOnItemsOrNearThePath()
{
    QFETCH(qreal, margin);
    QFETCH(QPoint, from);
    WatchedScene scene;
    QVERIFY(scene.load(withView("")));
    scene.item("view")->setProperty("dragMargin", margin);
    scene.drag({from, from + QPoint(12, 0), from + QPoint(25, 0)});
    QTEST(scene.item("view")->property("moving").toBool(), "starts");
    scene.release(from + QPoint(25, 0));
}

void tst_QDeclarativePathView::clickStaysWithTheDelegate()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: view.delegate = button\n"
                                "Component { id: button; Item { width: 10; height: 10; MouseArea {\n"
                                "anchors.fill: parent; onClicked: root.log += ' clicked' + index\n"
                                "onCanceled: root.log += ' canceled' + index } } }")));
    scene.evaluate("root.log = ''");
    scene.drag({{30, 20}, {33, 20}});
    scene.release({33, 20});
    QCOMPARE(scene.value("log").toString(), QStringLiteral(" clicked1"));
    scene.drag({{30, 20}, {45, 20}, {51, 20}, {52, 20}});
    QVERIFY(scene.letRest());
    scene.release({52, 20});
    QTRY_COMPARE(scene.value("log").toString(), QStringLiteral(" clicked1 started canceled1 ended"));
}

void tst_QDeclarativePathView::flick()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("flickDeceleration: 1000")));
    QGraphicsObject *view = scene.item("view");
    scene.drag({{30, 20}, {42, 20}, {50, 20}, {60, 20}});
    scene.release({60, 20});
    QVERIFY(view->property("flicking").toBool());
    QVERIFY(view->property("moving").toBool());
    QTRY_VERIFY(!view->property("moving").toBool());
    const qreal offset = view->property("offset").toReal();
    QCOMPARE(offset, std::round(offset));
    QCOMPARE(scene.value("current").toInt(), (5 - int(offset)) % 5);
    QString log = scene.value("log").toString().section(QStringLiteral("started"), 1);
    log.remove(QRegularExpression(QStringLiteral("index \\d")));
    QCOMPARE(log.simplified(), QStringLiteral("flick flicked ended"));
}

void tst_QDeclarativePathView::pressStopsFlick()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("dragMargin: 40; flickDeceleration: 10")));
    QGraphicsObject *view = scene.item("view");
    scene.drag({{30, 20}, {42, 20}, {50, 20}, {60, 20}});
    scene.release({60, 20});
    QVERIFY(view->property("flicking").toBool());
    scene.press({60, 20});
    QVERIFY(!view->property("flicking").toBool());
    QVERIFY(view->property("moving").toBool());
    const qreal stopped = view->property("offset").toReal();
    QVERIFY(scene.letRest());
    QCOMPARE(view->property("offset").toReal(), stopped);
    scene.release({60, 20});
    QTRY_VERIFY(!view->property("moving").toBool());
    const qreal offset = view->property("offset").toReal();
    QCOMPARE(offset, std::round(offset));
}

void tst_QDeclarativePathView::notInteractive()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("interactive: false")));
    scene.drag({{30, 20}, {42, 20}, {60, 20}});
    scene.release({60, 20});
    QCOMPARE(scene.item("view")->property("offset").toReal(), 0.0);
    scene.evaluate("view.interactive = true");
    scene.drag({{30, 20}, {42, 20}, {60, 20}});
    QVERIFY(scene.item("view")->property("moving").toBool());
    scene.evaluate("view.interactive = false");
    scene.move({80, 20});
    QVERIFY(!scene.item("view")->property("moving").toBool());
    QCOMPARE(scene.item("view")->property("offset").toReal(), 1.0);
}

void tst_QDeclarativePathView::goesIdle()
{
    WatchedScene scene;
    QVERIFY(scene.load(withView("Component.onCompleted: highlightMoveDuration = 60")));
    scene.evaluate("view.currentIndex = 2");
    QTRY_COMPARE(scene.item("view")->property("offset").toReal(), 3.0);
    QTest::qWait(50);
    const PaintLog log(scene.view().viewport());
    QSignalSpy moves(scene.item("view"), SIGNAL(offsetChanged()));
    QVERIFY(scene.letRest());
    QCOMPARE(log.count(scene.view().viewport()->rect()), 0);
    QCOMPARE(moves.count(), 0);
}

QTEST_MAIN(tst_QDeclarativePathView)
#include "tst_qdeclarativepathview.moc"
