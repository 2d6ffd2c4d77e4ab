#include "ItemScene.h"

#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsWidget>

#include <memory>

/** Item as an author of items in C++ knows it, and what the recorded scenes leave out. */
class tst_QDeclarativeItem : public QObject
{
    Q_OBJECT

private slots:
    void ownership();
    void sizes();
    void notANumber();
    void geometryChangedOfSubclass();
    void componentCompleteOrder();
    void mapping_data();
    void mapping();
    void childAtSkipsHidden();
    void childrenRectFollows();
    void childrenRectLetsGo();
    void dataTakesObjects();
    void transformOriginFollowsSize_data();
    void transformOriginFollowsSize();
    void keepMouseGrab();
    void parentChanged();
    void mirroringIsInherited();
    void paintsOnlyWhenItHasContents();
    void dynamicObjects();
};

/** Counts what its base tells it. */
class CountingItem : public QDeclarativeItem
{
    Q_OBJECT

public:
    using QDeclarativeItem::heightValid;
    using QDeclarativeItem::isComponentComplete;
    using QDeclarativeItem::setImplicitHeight;
    using QDeclarativeItem::setImplicitWidth;
    using QDeclarativeItem::widthValid;

    explicit CountingItem(QDeclarativeItem *parent = nullptr)
        : QDeclarativeItem(parent)
    {
    }

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        painter->fillRect(boundingRect(), Qt::red);
    }

    QVector<QRectF> geometries;
    bool wasIncomplete = false;
    bool completed = false;

protected:
    void classBegin() override
    {
        QDeclarativeItem::classBegin();
        wasIncomplete = !isComponentComplete();
    }
    void componentComplete() override
    {
        QDeclarativeItem::componentComplete();
        completed = isComponentComplete() && width() == 20;
    }
    void geometryChanged(const QRectF &now, const QRectF &before) override
    {
        QDeclarativeItem::geometryChanged(now, before);
        geometries.append(now);
    }
};

void tst_QDeclarativeItem::ownership()
{
    auto parent = std::make_unique<QDeclarativeItem>();
    const QPointer<QDeclarativeItem> child = new QDeclarativeItem(parent.get());
    QCOMPARE(child->parentItem(), parent.get());
    QCOMPARE(child->QObject::parent(), parent.get());
    auto second = std::make_unique<QDeclarativeItem>(parent.get());
    second.reset();
    QCOMPARE(parent->childItems().count(), 1);
    parent.reset();
    QVERIFY(!child);
}

void tst_QDeclarativeItem::sizes()
{
    CountingItem item;
    QSignalSpy width(&item, &QDeclarativeItem::widthChanged);
    QSignalSpy implicit(&item, &QDeclarativeItem::implicitWidthChanged);
    item.setImplicitWidth(30);
    item.setImplicitHeight(10);
    QCOMPARE(item.boundingRect(), QRectF(0, 0, 30, 10));
    QVERIFY(!item.widthValid() && !item.heightValid());
    item.setWidth(50);
    QVERIFY(item.widthValid());
    item.setImplicitWidth(40);
    QCOMPARE(item.width(), 50.0);
    QCOMPARE(item.implicitWidth(), 40.0);
    item.resetWidth();
    QCOMPARE(item.width(), 40.0);
    QVERIFY(!item.widthValid());
    item.setSize(QSizeF(3, 4));
    QVERIFY(item.widthValid() && item.heightValid());
    QCOMPARE(width.count(), 5);
    QCOMPARE(implicit.count(), 2);
}

void tst_QDeclarativeItem::notANumber()
{
    CountingItem item;
    item.setSize(QSizeF(10, 20));
    item.geometries.clear();
    item.setWidth(qQNaN());
    item.setHeight(qQNaN());
    item.setX(qQNaN());
    QCOMPARE(item.boundingRect(), QRectF(0, 0, 10, 20));
    QCOMPARE(item.pos(), QPointF());
    QVERIFY(item.geometries.isEmpty());
}

void tst_QDeclarativeItem::geometryChangedOfSubclass()
{
    CountingItem item;
    item.setX(5);
    item.setPos(5, 6);
    item.setWidth(7);
    item.setWidth(7);
    item.setSize(QSizeF(8, 9));
    QCOMPARE(item.geometries, (QVector<QRectF>{{5, 0, 0, 0}, {5, 6, 0, 0}, {5, 6, 7, 0}, {5, 6, 8, 9}}));
}

void tst_QDeclarativeItem::componentCompleteOrder()
{
    qmlRegisterType<CountingItem>("Test", 1, 0, "CountingItem");
    ItemScene scene("CountingItem { width: half * 2; property real half: 10 }", "import Test 1.0");
    const auto *item = qobject_cast<CountingItem *>(scene.root());
    QVERIFY(item->wasIncomplete);
    QVERIFY(item->completed);
    QVERIFY(CountingItem().isComponentComplete());
}

void tst_QDeclarativeItem::mapping_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("warning");
    QTest::newRow("to an item") << QByteArray("a.mapToItem(b, 1, 2)") << "-9,-18" << QString();
    QTest::newRow("from an item") << QByteArray("a.mapFromItem(b, 1, 2)") << "11,22" << QString();
    QTest::newRow("to the scene") << QByteArray("b.mapToItem(null, 1, 2)") << "16,27" << QString();
    QTest::newRow("from the scene") << QByteArray("b.mapFromItem(null, 16, 27)") << "1,2" << QString();
    QTest::newRow("to a text") << QByteArray("a.mapToItem('x', 1, 2)") << "undefined"
                               << "mapToItem() given argument \"x\" which is neither null nor an Item";
    QTest::newRow("from nothing")
        << QByteArray("a.mapFromItem(undefined, 1, 2)") << "undefined"
        << "mapFromItem() given argument \"undefined\" which is neither null nor an Item";
}

void tst_QDeclarativeItem::mapping()
{
    QFETCH(QByteArray, call);
    QFETCH(QString, result);
    QFETCH(QString, warning);
    ItemScene scene("Item { width: 10; height: 10\n"
                    "Item { id: a; x: 5; y: 5 }\nItem { id: b; x: 15; y: 25 }\n"
                    "function text(p) { return p ? p.x + ',' + p.y : '' + p } }");
    QCOMPARE(scene.run(QString::fromLatin1("text(" + call + ")")).toString(), result);
    QCOMPARE(scene.warnings.count(), warning.isEmpty() ? 0 : 1);
    QVERIFY(scene.warnings.isEmpty() || scene.warnings.first().endsWith(warning));
}

void tst_QDeclarativeItem::childAtSkipsHidden()
{
    ItemScene scene("Item { width: 10; height: 10\n"
                    "Item { objectName: 'below'; width: 10; height: 10 }\n"
                    "Item { objectName: 'above'; width: 5; height: 5 } }");
    QCOMPARE(scene.root()->childAt(2, 2), scene.item("above"));
    QCOMPARE(scene.root()->childAt(7, 7), scene.item("below"));
    scene.item("below")->setZValue(1);
    QCOMPARE(scene.root()->childAt(2, 2), scene.item("below"));
    scene.item("below")->setVisible(false);
    QCOMPARE(scene.root()->childAt(2, 2), scene.item("above"));
    QVERIFY(!scene.root()->childAt(7, 7));
}

void tst_QDeclarativeItem::childrenRectLetsGo()
{
    QDeclarativeItem parent;
    std::vector<std::unique_ptr<QDeclarativeItem>> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(std::make_unique<QDeclarativeItem>(&parent));
        children.back()->setPos(10 + i, 20 - i);
        children.back()->setSize(QSizeF(5, 5));
    }
    const auto rect = [&parent] { return parent.property("childrenRect").toRectF(); };
    QCOMPARE(rect(), QRectF(10, 17, 8, 8));
    children.pop_back();
    QCOMPARE(rect(), QRectF(10, 18, 7, 7));
    children.erase(children.begin());
    QCOMPARE(rect(), QRectF(11, 18, 6, 6));
    children.front()->setX(qQNaN());
    children.front()->setX(30);
    QCOMPARE(rect(), QRectF(12, 18, 23, 6));
    children.front()->setParentItem(nullptr);
    QCOMPARE(rect(), QRectF(12, 18, 5, 5));
    children.clear();
    QCOMPARE(rect(), QRectF(12, 18, 0, 0));
}

void tst_QDeclarativeItem::childrenRectFollows()
{
    QDeclarativeItem parent;
    const auto rect = [&parent] { return parent.property("childrenRect").toRectF(); };
    QCOMPARE(rect(), QRectF());
    QSignalSpy changed(&parent, &QDeclarativeItem::childrenRectChanged);
    auto first = std::make_unique<QDeclarativeItem>(&parent);
    first->setSize(QSizeF(10, 10));
    auto second = std::make_unique<QDeclarativeItem>(&parent);
    second->setPos(20, 30);
    second->setSize(QSizeF(5, 5));
    QCOMPARE(rect(), QRectF(0, 0, 25, 35));
    first->setPos(-4, 2);
    QCOMPARE(rect(), QRectF(-4, 2, 29, 33));
    second.reset();
    QCOMPARE(rect(), QRectF(-4, 2, 10, 10));
    QGraphicsWidget widget(&parent);
    widget.setGeometry(0, 0, 40, 50);
    QCOMPARE(rect(), QRectF(-4, 0, 44, 50));
    QCOMPARE(changed.last().first().toRectF(), rect());
}

void tst_QDeclarativeItem::dataTakesObjects()
{
    QDeclarativeItem item;
    auto *resource = new QObject;
    auto *child = new QDeclarativeItem;
    auto data = item.data();
    data.append(&data, resource);
    data.append(&data, child);
    data.append(&data, nullptr);
    QCOMPARE(resource->parent(), &item);
    QCOMPARE(child->parentItem(), &item);
    QCOMPARE(data.count(&data), 2);
    QCOMPARE(data.at(&data, 0), resource);
    QCOMPARE(data.at(&data, 1), child);
    QVERIFY(!data.at(&data, 2));
}

void tst_QDeclarativeItem::transformOriginFollowsSize_data()
{
    QTest::addColumn<int>("origin");
    QTest::addColumn<QPointF>("point");
    for (int i = 0; i < 9; ++i)
        QTest::addRow("%d", i) << i << QPointF(20 * (i % 3), 10 * (i / 3));
}

void tst_QDeclarativeItem::transformOriginFollowsSize()
{
    QFETCH(int, origin);
    QFETCH(QPointF, point);
    QDeclarativeItem item;
    item.setTransformOrigin(QDeclarativeItem::TransformOrigin(origin));
    item.setSize(QSizeF(4, 2));
    item.setRotation(90);
    item.setSize(QSizeF(40, 20));
    QCOMPARE(item.property("transformOriginPoint").toPointF(), point);
    QCOMPARE(item.QGraphicsItem::mapToParent(point), point);
}

void tst_QDeclarativeItem::keepMouseGrab()
{
    QDeclarativeItem item;
    QVERIFY(!item.keepMouseGrab());
    item.setKeepMouseGrab(true);
    QVERIFY(item.keepMouseGrab());
}

void tst_QDeclarativeItem::parentChanged()
{
    QDeclarativeItem first, second;
    auto *item = new QDeclarativeItem(&first);
    QSignalSpy changed(item, QOverload<QDeclarativeItem *>::of(&QDeclarativeItem::parentChanged));
    item->setParentItem(&second);
    item->setParentItem(&second);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().value<QDeclarativeItem *>(), &second);
    item->setParentItem(nullptr);
    QCOMPARE(changed.count(), 2);
    item->setParentItem(&first);
}

void tst_QDeclarativeItem::mirroringIsInherited()
{
    ItemScene scene(
        "Item { id: root; width: 10; height: 10; property bool turned: true; property bool pass: true\n"
        "LayoutMirroring.enabled: turned; LayoutMirroring.childrenInherit: pass\n"
        "property bool inner: deep.LayoutMirroring.enabled\n"
        "Item { id: middle; LayoutMirroring.enabled: false; Item { id: deep } } }");
    QVERIFY(scene.root()->property("inner").toBool());
    QVERIFY(!scene.run(QStringLiteral("middle.LayoutMirroring.enabled")).toBool());
    scene.root()->setProperty("pass", false);
    QVERIFY(!scene.root()->property("inner").toBool());
    scene.root()->setProperty("pass", true);
    QVERIFY(scene.root()->property("inner").toBool());
    scene.root()->setProperty("turned", false);
    QVERIFY(!scene.root()->property("inner").toBool());
    scene.root()->setProperty("turned", true);
    scene.run(QStringLiteral("deep.parent = null"));
    QVERIFY(!scene.root()->property("inner").toBool());
    QVERIFY(scene.warnings.isEmpty());
}

void tst_QDeclarativeItem::paintsOnlyWhenItHasContents()
{
    qmlRegisterType<CountingItem>("Test", 1, 0, "CountingItem");
    ItemScene scene(
        "Item { width: 20; height: 20; CountingItem { objectName: 'item'; width: 10; height: 10 } }",
        "import Test 1.0");
    QVERIFY(scene.picture().pixelColor(5, 5) != QColor(Qt::red));
    scene.item("item")->setFlag(QGraphicsItem::ItemHasNoContents, false);
    QCOMPARE(scene.picture().pixelColor(5, 5), QColor(Qt::red));
    QVERIFY(scene.picture().pixelColor(15, 15) != QColor(Qt::red));
}

void tst_QDeclarativeItem::dynamicObjects()
{
    ItemScene scene(
        "Item { id: root; width: 10; height: 10; property Item made; property int gone: 0\n"
        "Component { id: maker; Item { width: 3; Component.onDestruction: root.gone++ } }\n"
        "function make() { made = maker.createObject(root); return made.parent == root }\n"
        "function text() { made = Qt.createQmlObject('import QtQuick 1.0; Item { width: 4 }', root, 't');\n"
        "  return made.parent == root } }");
    QVERIFY(scene.run(QStringLiteral("make()")).toBool());
    QCOMPARE(scene.root()->childItems().count(), 1);
    scene.run(QStringLiteral("made.destroy()"));
    QTRY_COMPARE(scene.root()->property("gone").toInt(), 1);
    QCOMPARE(scene.root()->childItems().count(), 0);
    QVERIFY(scene.run(QStringLiteral("text()")).toBool());
    QCOMPARE(scene.run(QStringLiteral("made.width")).toInt(), 4);
    QVERIFY(scene.warnings.isEmpty());
}

QTEST_MAIN(tst_QDeclarativeItem)
#include "tst_qdeclarativeitem.moc"
