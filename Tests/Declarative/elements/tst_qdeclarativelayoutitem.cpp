#include "WatchedScene.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsLinearLayout>
#include <QtWidgets/QGraphicsWidget>

/** LayoutItem in a graphics layout, and graphics widgets in QML. */
class tst_QDeclarativeLayoutItem : public QObject
{
    Q_OBJECT

private slots:
    void sizesAnnounce_data();
    void sizesAnnounce();
    void layoutPlaces();
    void layoutFollowsTheHints();
    void widgetHasChildren();
    void widgetHasItsSize();
};

static QGraphicsLayoutItem *layoutItem(WatchedScene *scene, const char *name)
{
    return qobject_cast<QGraphicsLayoutItem *>(scene->item(name));
}

void tst_QDeclarativeLayoutItem::sizesAnnounce_data()
{
    QTest::addColumn<QByteArray>("property");
    for (const char *name : {"minimumSize", "preferredSize", "maximumSize"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_QDeclarativeLayoutItem::sizesAnnounce()
{
    QFETCH(QByteArray, property);
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; LayoutItem { id: it; objectName: 'it' } }"));
    QSignalSpy changed(scene.item("it"), '2' + property + "Changed()");
    QVERIFY(changed.isValid());
    const QByteArray set = "it." + property + " = '30x40'";
    scene.evaluate(set.constData());
    scene.evaluate(set.constData());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(scene.item("it")->property(property).toSizeF(), QSizeF(30, 40));
    QCOMPARE(scene.warnings, QStringList());
}

static const char twoItems[] =
    "Item { width: 200; height: 100; QGraphicsWidget { objectName: 'frame'; width: 200; height: 100\n"
    "LayoutItem { id: a; objectName: 'a'; preferredSize: '50x100'; maximumSize: '50x100'\n"
    "Rectangle { objectName: 'fill'; anchors.fill: parent } }\n"
    "LayoutItem { objectName: 'b'; minimumSize: '10x10'; preferredSize: '100x100' } } }";

/** Lays the two items out and gives the layout its size; the widget owns the layout. */
static void layOut(WatchedScene *scene)
{
    auto *frame = qobject_cast<QGraphicsWidget *>(scene->item("frame"));
    auto *layout = new QGraphicsLinearLayout(Qt::Horizontal);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addItem(layoutItem(scene, "a"));
    layout->addItem(layoutItem(scene, "b"));
    frame->setLayout(layout);
    layout->activate();
}

void tst_QDeclarativeLayoutItem::layoutPlaces()
{
    WatchedScene scene;
    QVERIFY(scene.load(twoItems));
    layOut(&scene);
    QCOMPARE(scene.item("a")->property("width").toReal(), 50.0);
    QCOMPARE(scene.item("a")->property("height").toReal(), 100.0);
    QCOMPARE(scene.item("fill")->property("width").toReal(), 50.0);
    QCOMPARE(scene.item("b")->pos(), QPointF(60, 0));
    QCOMPARE(scene.item("b")->property("width").toReal(), 140.0);
}

void tst_QDeclarativeLayoutItem::layoutFollowsTheHints()
{
    WatchedScene scene;
    QVERIFY(scene.load(twoItems));
    layOut(&scene);
    scene.evaluate("a.preferredSize = '70x100'; a.maximumSize = '70x100'");
    QTRY_COMPARE(scene.item("a")->property("width").toReal(), 70.0);
    QTRY_COMPARE(scene.item("b")->x(), 80.0);
}

void tst_QDeclarativeLayoutItem::widgetHasChildren()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; QGraphicsWidget { id: widget; objectName: 'widget'\n"
                       "Item { objectName: 'first' } Item { } } }"));
    QCOMPARE(scene.evaluate("widget.children.length").toInt(), 2);
    QCOMPARE(scene.evaluate("widget.children[0].objectName").toString(), QStringLiteral("first"));
    QCOMPARE(scene.item("first")->parentItem(), scene.item("widget"));
}

void tst_QDeclarativeLayoutItem::widgetHasItsSize()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 50; height: 50; property real seen: widget.width\n"
                       "QGraphicsWidget { id: widget; x: 4; width: 30; height: 20; windowTitle: 'w' } }"));
    QCOMPARE(scene.value("seen").toReal(), 30.0);
    scene.evaluate("widget.width = 35");
    QCOMPARE(scene.value("seen").toReal(), 35.0);
    QCOMPARE(scene.evaluate("widget.geometry.x").toReal(), 4.0);
    QCOMPARE(scene.warnings, QStringList());
}

QTEST_MAIN(tst_QDeclarativeLayoutItem)
#include "tst_qdeclarativelayoutitem.moc"
