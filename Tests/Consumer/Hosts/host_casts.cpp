// What a host does with the scene that QML made: finds objects, casts graphics items, puts effects and
// widgets in.

#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <QtTest/QtTest>
#include <QtWidgets/QGraphicsBlurEffect>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsWidget>

class Dial : public QGraphicsWidget
{
    Q_OBJECT

public:
    explicit Dial(QGraphicsItem *parent = 0)
        : QGraphicsWidget(parent)
    {
    }
};

class Marker : public QGraphicsObject
{
    Q_OBJECT

public:
    QRectF boundingRect() const { return QRectF(0, 0, 5, 5); }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) { }
};

class host_casts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void castsGraphicsItems();
    void findsWhatIsMade_data();
    void findsWhatIsMade();
    void effect();
    void widgetIsAnchored_data();
    void widgetIsAnchored();
    void itemIsAnchoredToAWidget();
    void childrenOfOwnItems();

private:
    QUrl write(const QByteArray &qml);

    QTemporaryDir m_folder;
};

QUrl host_casts::write(const QByteArray &qml)
{
    QFile file(m_folder.filePath("root.qml"));
    if (!file.open(QFile::WriteOnly) || file.write("import QtQuick 1.0\nimport Host 1.0\n" + qml) < 0)
        qFatal("no file");
    return QUrl::fromLocalFile(file.fileName());
}

void host_casts::initTestCase()
{
    qmlRegisterType<Dial>("Host", 1, 0, "Dial");
    qmlRegisterType<Marker>("Host", 1, 0, "Marker");
    qmlRegisterType<QGraphicsBlurEffect>("Host", 1, 0, "Blur");
}

void host_casts::castsGraphicsItems()
{
    QDeclarativeView view(write("Item { width: 50; height: 50; Rectangle { width: 20; height: 20 } }"));
    QGraphicsItem *item = view.scene()->itemAt(5, 5, QTransform());
    QVERIFY(item);
    QVERIFY(qobject_cast<QDeclarativeItem *>(item));
    QVERIFY(qobject_cast<QDeclarativeItem *>(view.rootObject()));
    QVERIFY(!qobject_cast<QGraphicsWidget *>(item));
    QVERIFY(!qobject_cast<QDeclarativeItem *>(static_cast<QGraphicsItem *>(0)));
    QGraphicsRectItem rect;
    QVERIFY(!qobject_cast<QDeclarativeItem *>(static_cast<QGraphicsItem *>(&rect)));
}

void host_casts::findsWhatIsMade_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::newRow("Loader") << QByteArray("Item { Loader { sourceComponent: Item { objectName: 'made' } } }");
    QTest::newRow("Repeater") << QByteArray("Item { Repeater { model: 2; Item { objectName: 'made' } } }");
    QTest::newRow("deeper") << QByteArray("Item { Row { Repeater { model: 1; Item { Loader { sourceComponent:"
                                          "Row { Rectangle { objectName: 'made' } } } } } } }");
}

void host_casts::findsWhatIsMade()
{
    QFETCH(QByteArray, qml);
    QDeclarativeView view(write(qml));
    QVERIFY(view.rootObject());
    QVERIFY(view.rootObject()->findChild<QDeclarativeItem *>("made"));
}

void host_casts::effect()
{
    QDeclarativeView view(write("Rectangle { width: 50; height: 50; effect: Blur { blurRadius: 3 } }"));
    QVERIFY(view.rootObject());
    QGraphicsBlurEffect *blur = qobject_cast<QGraphicsBlurEffect *>(view.rootObject()->graphicsEffect());
    QVERIFY(blur);
    QCOMPARE(blur->blurRadius(), 3.0);
}

void host_casts::widgetIsAnchored_data()
{
    QTest::addColumn<QByteArray>("anchors");
    QTest::addColumn<QRectF>("before");
    QTest::addColumn<QRectF>("after");
    QTest::newRow("fill") << QByteArray("anchors.fill: parent; anchors.margins: 10") << QRectF(10, 10, 80, 40)
                          << QRectF(10, 10, 60, 40);
    QTest::newRow("edges") << QByteArray(
        "size: '20x20'; anchors { right: parent.right; bottom: parent.bottom }")
                           << QRectF(80, 40, 20, 20) << QRectF(60, 40, 20, 20);
    QTest::newRow("centre") << QByteArray("size: '20x20'; anchors.centerIn: parent") << QRectF(40, 20, 20, 20)
                            << QRectF(30, 20, 20, 20);
}

void host_casts::widgetIsAnchored()
{
    QFETCH(QByteArray, anchors);
    for (const char *type : {"Dial", "QGraphicsWidget"}) {
        QDeclarativeView view(write(QByteArray("Item { width: 100; height: 60; ") + type
                                    + " { objectName: 'w'; " + anchors + " } }"));
        QVERIFY(view.rootObject());
        QGraphicsWidget *widget = view.rootObject()->findChild<QGraphicsWidget *>("w");
        QVERIFY(widget);
        QTEST(widget->geometry(), "before");
        view.rootObject()->setProperty("width", 80);
        QTEST(widget->geometry(), "after");
    }
}

void host_casts::itemIsAnchoredToAWidget()
{
    QDeclarativeView view(
        write("Item { width: 100; height: 60\n"
              "Dial { id: dial; x: 10; size: '30x20' }\n"
              "Item { objectName: 'i'; anchors.left: dial.right; anchors.top: dial.bottom } }"));
    QVERIFY(view.rootObject());
    QDeclarativeItem *item = view.rootObject()->findChild<QDeclarativeItem *>("i");
    QVERIFY(item);
    QCOMPARE(item->pos(), QPointF(40, 20));
}

void host_casts::childrenOfOwnItems()
{
    QDeclarativeView view(
        write("Item { width: 20; height: 20; Marker { objectName: 'm'; Item {} Rectangle {} } }"));
    QVERIFY(view.rootObject());
    Marker *marker = view.rootObject()->findChild<Marker *>("m");
    QVERIFY(marker);
    QCOMPARE(marker->childItems().count(), 2);
}

QTEST_MAIN(host_casts)
#include "host_casts.moc"
