#include <Vidtips/VTScrollBarComponent.h>

#include "MetaMembers.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QScrollBar>

#include <cmath>
#include <limits>

class tst_VTScrollBarComponent : public QObject
{
    Q_OBJECT

private slots:
    void membersInDeclaredOrder();
    void hostsAScrollBarInAProxy();
    void goesWithItsScrollBar();
    void valuesAreCutToHundredths_data();
    void valuesAreCutToHundredths();
    void settersAlwaysEmit();
    void positionIsWidenedBeforeScaling_data();
    void positionIsWidenedBeforeScaling();
    void positionStaysInRange_data();
    void positionStaysInRange();
    void setPositionEmitsTwiceForAChange();
    void setPositionExternalEmitsForAChangeOnly();
    void dragEmitsOnce();
    void clampingByTheRangeEmits();
    void orientationTurnsTheScrollBar();
    void scrollBarWidthIsTheThickness();
    void updateDimensionsTakesTheItemsSize_data();
    void updateDimensionsTakesTheItemsSize();
    void invokableByName();
    void visibilityReachesTheScrollBar();
    void opacityReachesTheScrollBar_data();
    void opacityReachesTheScrollBar();
    void itemChangeReturnsTheValue();
    void paintsInAScene();
};

static QScrollBar *scrollBarOf(const VTScrollBarComponent &item)
{
    const QList<QGraphicsItem *> children = item.childItems();
    const auto *proxy =
        children.size() == 1 ? qgraphicsitem_cast<QGraphicsProxyWidget *>(children.at(0)) : nullptr;
    auto *scrollBar = proxy ? qobject_cast<QScrollBar *>(proxy->widget()) : nullptr;
    if (!scrollBar)
        qFatal("the item holds no scroll bar");
    return scrollBar;
}

void tst_VTScrollBarComponent::membersInDeclaredOrder()
{
    const QMetaObject &meta = VTScrollBarComponent::staticMetaObject;
    QCOMPARE(meta.className(), "VTScrollBarComponent");
    QCOMPARE(ownProperties(meta),
             (QList<QByteArray>{"float start rw startChanged", "float end rw endChanged",
                                "float position rw positionChanged",
                                "bool orientHorizontal rw orientHorizontalChanged",
                                "float scrollBarWidth r scrollBarWidthChanged"}));
    const char *kinds[] = {"method ", "signal ", "slot ", "constructor "};
    QList<QByteArray> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods << kinds[method.methodType()] + method.methodSignature() + ' '
                + method.parameterNames().join(',');
    }
    QCOMPARE(methods,
             (QList<QByteArray>{"signal startChanged() ", "signal endChanged() ", "signal positionChanged() ",
                                "signal orientHorizontalChanged() ", "signal scrollBarWidthChanged() ",
                                "slot scrollBarPositionChanged(int) value", "method updateDimensions() ",
                                "method setPositionExternal(float) value"}));
}

void tst_VTScrollBarComponent::hostsAScrollBarInAProxy()
{
    const VTScrollBarComponent item;
    const QScrollBar *scrollBar = scrollBarOf(item);
    QVERIFY(!scrollBar->parent());
    QCOMPARE(scrollBar->graphicsProxyWidget()->parentItem(), &item);
    QVERIFY(!item.orientHorizontal());
    QCOMPARE(item.start(), 0.0f);
    QCOMPARE(item.end(), 0.99f);
    QCOMPARE(item.position(), 0.0f);
}

void tst_VTScrollBarComponent::goesWithItsScrollBar()
{
    QDeclarativeItem parent;
    auto *item = new VTScrollBarComponent(&parent);
    QCOMPARE(item->parentItem(), &parent);
    const QPointer<QScrollBar> scrollBar = scrollBarOf(*item);
    const QPointer<QGraphicsProxyWidget> proxy = scrollBar->graphicsProxyWidget();
    delete item;
    QVERIFY(!scrollBar);
    QVERIFY(!proxy);
}

void tst_VTScrollBarComponent::valuesAreCutToHundredths_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<float>("expected");
    QTest::newRow("one") << 1.0f << 1.0f;
    QTest::newRow("zero") << 0.0f << 0.0f;
    QTest::newRow("cut, not rounded") << 0.015f << 0.01f;
    QTest::newRow("just below one") << 0.999f << 0.99f;
    QTest::newRow("negative, towards zero") << -0.015f << -0.01f;
    QTest::newRow("negative, below a step") << -0.009f << 0.0f;
    QTest::newRow("float below the decimal") << 0.29f << 0.28f;
    QTest::newRow("beyond the integers") << 1e30f << float(std::numeric_limits<int>::max() / 100.0);
    QTest::newRow("below the integers") << -1e30f << float(std::numeric_limits<int>::min() / 100.0);
    QTest::newRow("infinity") << std::numeric_limits<float>::infinity()
                              << float(std::numeric_limits<int>::max() / 100.0);
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 0.0f;
}

void tst_VTScrollBarComponent::valuesAreCutToHundredths()
{
    QFETCH(float, value);
    QFETCH(float, expected);
    VTScrollBarComponent item;
    item.setStart(value);
    QCOMPARE(item.start(), expected);
    VTScrollBarComponent other;
    other.setStart(-1e30f);
    other.setEnd(value);
    QCOMPARE(other.end(), expected);
}

void tst_VTScrollBarComponent::settersAlwaysEmit()
{
    VTScrollBarComponent item;
    QSignalSpy start(&item, &VTScrollBarComponent::startChanged);
    QSignalSpy end(&item, &VTScrollBarComponent::endChanged);
    QSignalSpy orientation(&item, &VTScrollBarComponent::orientHorizontalChanged);
    QSignalSpy position(&item, &VTScrollBarComponent::positionChanged);
    QSignalSpy width(&item, &VTScrollBarComponent::scrollBarWidthChanged);
    for (int i = 0; i < 2; ++i) {
        item.setStart(0.0f);
        item.setEnd(5.0f);
        item.setOrientHorizontal(true);
    }
    QCOMPARE(start.count(), 2);
    QCOMPARE(end.count(), 2);
    QCOMPARE(orientation.count(), 2);
    QCOMPARE(position.count(), 0);
    QCOMPARE(width.count(), 0);
}

void tst_VTScrollBarComponent::positionIsWidenedBeforeScaling_data()
{
    QTest::addColumn<float>("position");
    QTest::addColumn<int>("value");
    QTest::newRow("0.29") << 0.29f << 28;
    QTest::newRow("0.3") << 0.3f << 30;
    QTest::newRow("0.57") << 0.57f << 56;
    QTest::newRow("0.25") << 0.25f << 25;
}

void tst_VTScrollBarComponent::positionIsWidenedBeforeScaling()
{
    QFETCH(float, position);
    QFETCH(int, value);
    VTScrollBarComponent item;
    item.setPosition(position);
    QCOMPARE(scrollBarOf(item)->value(), value);
    QCOMPARE(item.position(), float(value / 100.0));
}

void tst_VTScrollBarComponent::positionStaysInRange_data()
{
    QTest::addColumn<float>("position");
    QTest::addColumn<float>("expected");
    QTest::newRow("inside") << 2.5f << 2.5f;
    QTest::newRow("above") << 7.0f << 4.0f;
    QTest::newRow("below") << -7.0f << 1.0f;
}

void tst_VTScrollBarComponent::positionStaysInRange()
{
    QFETCH(float, position);
    VTScrollBarComponent item;
    item.setStart(1.0f);
    item.setEnd(4.0f);
    item.setPosition(position);
    QTEST(item.position(), "expected");
}

void tst_VTScrollBarComponent::setPositionEmitsTwiceForAChange()
{
    VTScrollBarComponent item;
    QSignalSpy changed(&item, &VTScrollBarComponent::positionChanged);
    item.setPosition(0.5f);
    QCOMPARE(changed.count(), 2);
    item.setPosition(0.5f);
    QCOMPARE(changed.count(), 3);
    item.setPosition(0.501f);
    QCOMPARE(changed.count(), 4);
}

void tst_VTScrollBarComponent::setPositionExternalEmitsForAChangeOnly()
{
    VTScrollBarComponent item;
    QSignalSpy changed(&item, &VTScrollBarComponent::positionChanged);
    item.setPositionExternal(0.5f);
    QCOMPARE(changed.count(), 1);
    item.setPositionExternal(0.5f);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(item.position(), 0.5f);
}

void tst_VTScrollBarComponent::dragEmitsOnce()
{
    VTScrollBarComponent item;
    QSignalSpy changed(&item, &VTScrollBarComponent::positionChanged);
    scrollBarOf(item)->setSliderPosition(42);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(item.position(), 0.42f);
    item.scrollBarPositionChanged(-1);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(item.position(), 0.42f);
}

void tst_VTScrollBarComponent::clampingByTheRangeEmits()
{
    VTScrollBarComponent item;
    item.setPosition(0.9f);
    QSignalSpy changed(&item, &VTScrollBarComponent::positionChanged);
    item.setEnd(0.5f);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(item.position(), 0.5f);
}

void tst_VTScrollBarComponent::orientationTurnsTheScrollBar()
{
    VTScrollBarComponent item;
    item.setOrientHorizontal(true);
    QVERIFY(item.orientHorizontal());
    QCOMPARE(scrollBarOf(item)->orientation(), Qt::Horizontal);
    item.setOrientHorizontal(false);
    QVERIFY(!item.orientHorizontal());
    QCOMPARE(scrollBarOf(item)->orientation(), Qt::Vertical);
}

void tst_VTScrollBarComponent::scrollBarWidthIsTheThickness()
{
    VTScrollBarComponent item;
    item.setSize({30, 120});
    item.updateDimensions();
    QCOMPARE(item.scrollBarWidth(), 30.0f);
    item.setOrientHorizontal(true);
    QCOMPARE(item.scrollBarWidth(), 120.0f);
}

void tst_VTScrollBarComponent::updateDimensionsTakesTheItemsSize_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("whole") << QSizeF(20, 100) << QSize(20, 100);
    QTest::newRow("cut") << QSizeF(20.9, 99.99) << QSize(20, 99);
    QTest::newRow("negative") << QSizeF(-5, 10) << QSize(0, 10);
    QTest::newRow("huge") << QSizeF(20, 1e300) << QSize(20, QWIDGETSIZE_MAX - 1);
}

void tst_VTScrollBarComponent::updateDimensionsTakesTheItemsSize()
{
    QFETCH(QSizeF, size);
    VTScrollBarComponent item;
    const QSize before = scrollBarOf(item)->size();
    item.setSize(size);
    QCOMPARE(scrollBarOf(item)->size(), before);
    item.updateDimensions();
    QTEST(scrollBarOf(item)->size(), "expected");
    const QSize updated = scrollBarOf(item)->size();
    scrollBarOf(item)->resize(1000, 1000);
    QCOMPARE(scrollBarOf(item)->size(), updated);
}

void tst_VTScrollBarComponent::invokableByName()
{
    VTScrollBarComponent item;
    item.setSize({12, 34});
    QVERIFY(QMetaObject::invokeMethod(&item, "updateDimensions"));
    QVERIFY(QMetaObject::invokeMethod(&item, "setPositionExternal", Q_ARG(float, 0.25f)));
    QCOMPARE(scrollBarOf(item)->size(), QSize(12, 34));
    QCOMPARE(item.position(), 0.25f);
    QVERIFY(item.setProperty("position", 0.75));
    QCOMPARE(item.property("position").toFloat(), 0.75f);
    QVERIFY(!item.setProperty("scrollBarWidth", 1));
}

void tst_VTScrollBarComponent::visibilityReachesTheScrollBar()
{
    QGraphicsScene scene;
    auto *item = new VTScrollBarComponent;
    scene.addItem(item);
    const QScrollBar *scrollBar = scrollBarOf(*item);
    QVERIFY(scrollBar->isVisible());
    item->setVisible(false);
    QVERIFY(!scrollBar->isVisible());
    QVERIFY(!scrollBar->graphicsProxyWidget()->isVisible());
    item->setVisible(true);
    QVERIFY(scrollBar->isVisible());
    QVERIFY(scrollBar->graphicsProxyWidget()->isVisible());
}

void tst_VTScrollBarComponent::opacityReachesTheScrollBar_data()
{
    QTest::addColumn<qreal>("opacity");
    QTest::newRow("half") << 0.5;
    QTest::newRow("none") << 0.0;
    QTest::newRow("a quarter") << 0.25;
}

void tst_VTScrollBarComponent::opacityReachesTheScrollBar()
{
    QFETCH(qreal, opacity);
    QGraphicsScene scene;
    auto *item = new VTScrollBarComponent;
    scene.addItem(item);
    QScrollBar *scrollBar = scrollBarOf(*item);
    QCOMPARE(scrollBar->windowOpacity(), 1.0);
    item->setOpacity(opacity);
    // Widgets keep their opacity in steps of 1/255.
    QVERIFY(qAbs(scrollBar->windowOpacity() - opacity) <= 1.0 / 255);
    QCOMPARE(item->opacity(), opacity);
    item->setOpacity(1.0);
    QCOMPARE(scrollBar->windowOpacity(), 1.0);
}

void tst_VTScrollBarComponent::itemChangeReturnsTheValue()
{
    class Exposed : public VTScrollBarComponent
    {
    public:
        using VTScrollBarComponent::itemChange;
    } item;
    QScrollBar *scrollBar = scrollBarOf(item);
    QCOMPARE(item.itemChange(QGraphicsItem::ItemOpacityChange, 0.0), QVariant(0.0));
    QCOMPARE(scrollBar->windowOpacity(), 0.0);
    QCOMPARE(item.itemChange(QGraphicsItem::ItemVisibleChange, false), QVariant(false));
    QVERIFY(scrollBar->isHidden());
    QCOMPARE(item.itemChange(QGraphicsItem::ItemVisibleChange, 1), QVariant(1));
    QVERIFY(!scrollBar->isHidden());
    QCOMPARE(item.itemChange(QGraphicsItem::ItemToolTipChange, "x"), QVariant("x"));
}

void tst_VTScrollBarComponent::paintsInAScene()
{
    QGraphicsScene scene;
    auto *item = new VTScrollBarComponent;
    scene.addItem(item);
    item->setSize({20, 60});
    item->updateDimensions();
    const auto render = [&scene] {
        QImage image(20, 60, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        scene.render(&painter, QRectF(0, 0, 20, 60), QRectF(0, 0, 20, 60));
        return image;
    };
    const QImage shown = render();
    QVERIFY(shown.pixelColor(10, 30) != QColor(Qt::magenta));
    item->setVisible(false);
    QCOMPARE(render().pixelColor(10, 30), QColor(Qt::magenta));
    item->setVisible(true);
    QCOMPARE(render(), shown);
}

QTEST_MAIN(tst_VTScrollBarComponent)
#include "tst_vtscrollbarcomponent.moc"
