#include <Vidtips/VTStyledRectangleComponent.h>

#include "MetaMembers.h"

#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsRectItem>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolTip>

using Vidtips::VTStyledRectangleComponent;

class tst_VTStyledRectangleComponent : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void membersInDeclaredOrder();
    void startsAsAWidget();
    void elements_data();
    void elements();
    void unknownElementsChangeNothing_data();
    void unknownElementsChangeNothing();
    void toolTipStyleAlwaysEmitsBothSignals();
    void textColorFollowsStyleAndPalette();
    void nestedInWindowColoursPaintsNothing_data();
    void nestedInWindowColoursPaintsNothing();
    void paintsWindowColoursBeyondItsEdge();
    void paintsToolTipColoursWithinItsEdge_data();
    void paintsToolTipColoursWithinItsEdge();
    void usesThePaintersPen();
    void roundsToWholePixels();

private:
    QPalette m_toolTipPalette;
};

static const QColor windowColor(10, 20, 30);
static const QColor windowTextColor(200, 100, 50);
static const QColor tipColor(240, 230, 10);
static const QColor blank(Qt::white);
static const QColor edge(Qt::black);

/** Renders the 40 x 40 area at (-10, -10), one pixel for each unit. */
static QImage render(QGraphicsScene &scene)
{
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(blank);
    QPainter painter(&image);
    scene.render(&painter, QRectF(0, 0, 40, 40), QRectF(-10, -10, 40, 40));
    return image;
}

/** Returns the smallest rectangle, in scene units, outside which the image is blank. */
static QRect paintedRect(const QImage &image)
{
    QRect painted;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != blank)
                painted |= QRect(x, y, 1, 1);
        }
    }
    return painted.isNull() ? painted : painted.translated(-10, -10);
}

static QColor colorAt(const QImage &image, int x, int y)
{
    return image.pixelColor(x + 10, y + 10);
}

/** A blank picture to paint items on, its origin at (10, 10). */
class Canvas
{
public:
    Canvas()
        : image(40, 40, QImage::Format_RGB32)
    {
        image.fill(blank);
        painter.begin(&image);
        painter.translate(10, 10);
    }

    QImage image;
    QPainter painter;
};

static void paintDirectly(VTStyledRectangleComponent &item, QPainter &painter)
{
    item.paint(&painter, nullptr, nullptr);
}

void tst_VTStyledRectangleComponent::initTestCase()
{
    m_toolTipPalette = QToolTip::palette();
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Inactive, QPalette::Window, Qt::cyan);
    palette.setColor(QPalette::Active, QPalette::Window, windowColor);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, Qt::cyan);
    palette.setColor(QPalette::Active, QPalette::WindowText, windowTextColor);
    QApplication::setPalette(palette);
    QPalette tips = m_toolTipPalette;
    tips.setColor(QPalette::All, QPalette::ToolTipBase, tipColor);
    QToolTip::setPalette(tips);
}

void tst_VTStyledRectangleComponent::cleanup()
{
    QPalette tips = m_toolTipPalette;
    tips.setColor(QPalette::All, QPalette::ToolTipBase, tipColor);
    QToolTip::setPalette(tips);
}

void tst_VTStyledRectangleComponent::membersInDeclaredOrder()
{
    const QMetaObject &meta = VTStyledRectangleComponent::staticMetaObject;
    QCOMPARE(ownProperties(meta),
             (QList<QByteArray>{"QString element rw elementChanged", "QColor textColor r textColorChanged",
                                "bool toolTipStyle rw toolTipStyleChanged"}));
    QList<QByteArray> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods << meta.method(i).methodSignature();
    QCOMPARE(methods, (QList<QByteArray>{"elementChanged()", "textColorChanged()", "toolTipStyleChanged()"}));
}

void tst_VTStyledRectangleComponent::startsAsAWidget()
{
    const VTStyledRectangleComponent item;
    QCOMPARE(item.element(), QStringLiteral("PE_Widget"));
    QCOMPARE(item.elementType(), 41);
    QVERIFY(!item.toolTipStyle());
    QVERIFY(!item.flags().testFlag(QGraphicsItem::ItemHasNoContents));
}

void tst_VTStyledRectangleComponent::elements_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("PE_Widget") << 41;
    QTest::newRow("PE_Frame") << 0;
}

void tst_VTStyledRectangleComponent::elements()
{
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    VTStyledRectangleComponent item;
    QSignalSpy changed(&item, &VTStyledRectangleComponent::elementChanged);
    item.setElement(name);
    item.setElement(name);
    QCOMPARE(item.element(), name);
    QTEST(item.elementType(), "type");
    QCOMPARE(changed.count(), 2);
}

void tst_VTStyledRectangleComponent::unknownElementsChangeNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("other element") << "PE_FrameMenu";
    QTest::newRow("other case") << "pe_widget";
    QTest::newRow("blank") << "PE_Widget ";
    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
}

void tst_VTStyledRectangleComponent::unknownElementsChangeNothing()
{
    QFETCH(QString, name);
    VTStyledRectangleComponent item;
    item.setElement("PE_Frame");
    QSignalSpy changed(&item, &VTStyledRectangleComponent::elementChanged);
    item.setElement(name);
    QCOMPARE(item.element(), QStringLiteral("PE_Frame"));
    QCOMPARE(item.elementType(), 0);
    QCOMPARE(changed.count(), 0);
}

void tst_VTStyledRectangleComponent::toolTipStyleAlwaysEmitsBothSignals()
{
    VTStyledRectangleComponent item;
    QStringList order;
    connect(&item, &VTStyledRectangleComponent::toolTipStyleChanged, this,
            [&] { order << (item.toolTipStyle() ? "style on" : "style off"); });
    connect(&item, &VTStyledRectangleComponent::textColorChanged, this, [&] { order << "text"; });
    for (const bool style : {false, true, true})
        item.setToolTipStyle(style);
    QCOMPARE(order, (QStringList{"style off", "text", "style on", "text", "style on", "text"}));
}

void tst_VTStyledRectangleComponent::textColorFollowsStyleAndPalette()
{
    VTStyledRectangleComponent item;
    QCOMPARE(item.textColor(), windowTextColor);
    item.setToolTipStyle(true);
    QCOMPARE(item.textColor(), QColor(Qt::black));
    item.setToolTipStyle(false);
    QCOMPARE(item.textColor(), windowTextColor);
}

void tst_VTStyledRectangleComponent::nestedInWindowColoursPaintsNothing_data()
{
    QTest::addColumn<bool>("isDeclarative");
    QTest::newRow("in an item") << true;
    QTest::newRow("in another graphics item") << false;
}

void tst_VTStyledRectangleComponent::nestedInWindowColoursPaintsNothing()
{
    QFETCH(bool, isDeclarative);
    QGraphicsScene scene;
    QGraphicsItem *parent =
        isDeclarative ? static_cast<QGraphicsItem *>(new QDeclarativeItem) : new QGraphicsRectItem;
    parent->setFlag(QGraphicsItem::ItemHasNoContents);
    scene.addItem(parent);
    auto *item = new VTStyledRectangleComponent;
    static_cast<QGraphicsItem *>(item)->setParentItem(parent);
    item->setSize({12, 8});
    QVERIFY(paintedRect(render(scene)).isNull());
    item->setToolTipStyle(true);
    QCOMPARE(paintedRect(render(scene)), QRect(0, 0, 13, 9));
}

void tst_VTStyledRectangleComponent::paintsWindowColoursBeyondItsEdge()
{
    QGraphicsScene scene;
    auto *item = new VTStyledRectangleComponent;
    scene.addItem(item);
    item->setSize({12, 8});
    item->paint(nullptr, nullptr, nullptr);
    Canvas canvas;
    paintDirectly(*item, canvas.painter);
    // A pen of one pixel draws the outline of a rectangle one pixel wider and higher.
    QCOMPARE(paintedRect(canvas.image), QRect(-1, -1, 15, 11));
    QCOMPARE(colorAt(canvas.image, -1, -1), edge);
    QCOMPARE(colorAt(canvas.image, 13, 9), edge);
    QCOMPARE(colorAt(canvas.image, 0, 0), windowColor);
    QCOMPARE(colorAt(canvas.image, 12, 8), windowColor);
    QCOMPARE(colorAt(render(scene), 5, 5), windowColor);
}

void tst_VTStyledRectangleComponent::paintsToolTipColoursWithinItsEdge_data()
{
    QTest::addColumn<QBrush>("brush");
    QTest::newRow("colour") << QBrush(tipColor);
    QTest::newRow("other colour") << QBrush(QColor(1, 2, 3));
    QTest::newRow("pattern") << QBrush(tipColor, Qt::HorPattern);
}

void tst_VTStyledRectangleComponent::paintsToolTipColoursWithinItsEdge()
{
    QFETCH(QBrush, brush);
    QPalette tips = QToolTip::palette();
    tips.setBrush(QPalette::All, QPalette::ToolTipBase, brush);
    QToolTip::setPalette(tips);
    VTStyledRectangleComponent item;
    item.setSize({12, 8});
    item.setToolTipStyle(true);
    Canvas canvas;
    Canvas expected;
    paintDirectly(item, canvas.painter);
    QCOMPARE(canvas.painter.brush(), brush);
    expected.painter.setBrush(brush);
    expected.painter.drawRect(0, 0, 12, 8);
    QCOMPARE(canvas.image, expected.image);
}

void tst_VTStyledRectangleComponent::usesThePaintersPen()
{
    VTStyledRectangleComponent item;
    item.setSize({12, 8});
    Canvas canvas;
    canvas.painter.setPen(Qt::red);
    paintDirectly(item, canvas.painter);
    QCOMPARE(colorAt(canvas.image, -1, -1), QColor(Qt::red));
    QCOMPARE(canvas.painter.pen().color(), QColor(Qt::red));
    canvas.image.fill(blank);
    canvas.painter.setPen(Qt::NoPen);
    paintDirectly(item, canvas.painter);
    QCOMPARE(paintedRect(canvas.image), QRect(-1, -1, 14, 10));
}

void tst_VTStyledRectangleComponent::roundsToWholePixels()
{
    VTStyledRectangleComponent item;
    item.setToolTipStyle(true);
    item.setSize({11.6, 8.4});
    Canvas canvas;
    canvas.painter.setPen(Qt::NoPen);
    paintDirectly(item, canvas.painter);
    QCOMPARE(paintedRect(canvas.image), QRect(0, 0, 12, 8));
}

QTEST_MAIN(tst_VTStyledRectangleComponent)
#include "tst_vtstyledrectanglecomponent.moc"
