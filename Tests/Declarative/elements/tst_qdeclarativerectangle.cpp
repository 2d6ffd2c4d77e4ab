#include "QmlScene.h"

#include <QtCore/qmath.h>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>

class tst_QDeclarativeRectangle : public QObject
{
    Q_OBJECT

private slots:
    void borderGeometry_data();
    void borderGeometry();
    void borderShowsOnceSet_data();
    void borderShowsOnceSet();
    void radiusIsLimited();
    void roundedCornersShowWhatIsBehind();
    void gradientRunsDown();
    void gradientUpdatesRepaint();
    void deletedGradientGivesTheColor();
    void unknownColorIsRefused();
    void repaintsOnlyItself();
    void linesOnScaledScreens_data();
    void linesOnScaledScreens();
    void bordersOnScaledScreens_data();
    void bordersOnScaledScreens();
    void hostileSizes_data();
    void hostileSizes();
};

static QByteArray scene(const QByteArray &properties)
{
    return "import QtQuick 1.0\nItem { width: 100; height: 100\n"
           "Rectangle { objectName: \"r\"; x: 20; y: 20; width: 20; height: 20; "
        + properties + " } }";
}

/** The rectangle that encloses what is painted. */
static QRect paintedRect(const QImage &image)
{
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white))
                all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

void tst_QDeclarativeRectangle::borderGeometry_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QRect>("painted");
    QTest::newRow("none") << 0 << QRect(20, 20, 20, 20);
    QTest::newRow("1 has its spare pixel right and below") << 1 << QRect(20, 20, 21, 21);
    QTest::newRow("2") << 2 << QRect(19, 19, 22, 22);
    QTest::newRow("3") << 3 << QRect(19, 19, 23, 23);
    QTest::newRow("4") << 4 << QRect(18, 18, 24, 24);
    QTest::newRow("wider than the rectangle") << 30 << QRect(5, 5, 50, 50);
    QTest::newRow("negative") << -3 << QRect(20, 20, 20, 20);
}

void tst_QDeclarativeRectangle::borderGeometry()
{
    QFETCH(int, width);
    QFETCH(QRect, painted);
    QmlScene scene;
    scene.load(
        ::scene("color: \"black\"; border.color: \"red\"; border.width: " + QByteArray::number(width)));
    QCOMPARE(paintedRect(scene.picture()), painted);
    const QDeclarativeItem *item = scene.find("r");
    QCOMPARE(item->boundingRect().translated(20, 20).toRect(), painted);
    QCOMPARE(scene.pixel(painted.left(), painted.bottom() - 3), QColor(width > 0 ? Qt::red : Qt::black));
}

void tst_QDeclarativeRectangle::borderShowsOnceSet_data()
{
    QTest::addColumn<QByteArray>("border");
    QTest::addColumn<bool>("shows");
    QTest::newRow("nothing set") << QByteArray() << false;
    QTest::newRow("width set") << QByteArray("border.width: 1") << true;
    QTest::newRow("color set") << QByteArray("border.color: \"black\"") << true;
    QTest::newRow("color set, width 0") << QByteArray("border.color: \"black\"; border.width: 0") << false;
    QTest::newRow("transparent") << QByteArray("border.color: \"transparent\"") << false;
}

void tst_QDeclarativeRectangle::borderShowsOnceSet()
{
    QFETCH(QByteArray, border);
    QFETCH(bool, shows);
    QmlScene scene;
    scene.load(::scene("color: \"red\"; " + border));
    QCOMPARE(scene.pixel(20, 30), QColor(shows ? Qt::black : Qt::red));
}

void tst_QDeclarativeRectangle::radiusIsLimited()
{
    QmlScene scene;
    scene.load(::scene("color: \"red\"; radius: 99"));
    QImage half = scene.picture();
    scene.run(QStringLiteral("children[0].radius = 10"));
    QCOMPARE(scene.picture(), half);
    scene.run(QStringLiteral("children[0].radius = -4"));
    QCOMPARE(scene.pixel(20, 20), QColor(Qt::red));
}

void tst_QDeclarativeRectangle::roundedCornersShowWhatIsBehind()
{
    QmlScene scene;
    scene.load(::scene("color: \"red\"; radius: 8; border.color: \"blue\"; border.width: 2"));
    QCOMPARE(scene.pixel(19, 19), QColor(Qt::white));
    QCOMPARE(scene.pixel(20, 20), QColor(Qt::white));
    QCOMPARE(scene.pixel(30, 19), QColor(Qt::blue));
    QCOMPARE(scene.pixel(30, 30), QColor(Qt::red));
    // Another rectangle of the same look but another size shares what is painted from.
    scene.run(QStringLiteral("children[0].width = 60"));
    QCOMPARE(scene.pixel(50, 19), QColor(Qt::blue));
    QCOMPARE(scene.pixel(79, 20), QColor(Qt::white));
}

static const char gradient[] =
    "gradient: Gradient { id: g; objectName: \"g\"\n"
    "GradientStop { id: first; objectName: \"first\"; position: 0; color: \"#ff0000\" }\n"
    "GradientStop { position: 1; color: \"#0000ff\" } }";

void tst_QDeclarativeRectangle::gradientRunsDown()
{
    QmlScene scene;
    scene.load(::scene(gradient));
    QVERIFY(scene.pixel(30, 20).red() > 240);
    QVERIFY(scene.pixel(30, 39).blue() > 240);
    QCOMPARE(scene.pixel(20, 30), scene.pixel(39, 30));
}

void tst_QDeclarativeRectangle::gradientUpdatesRepaint()
{
    QmlScene scene;
    scene.load(::scene(gradient));
    scene.view().show();
    QVERIFY(QTest::qWaitForWindowExposed(&scene.view()));
    scene.picture();
    QSignalSpy changed(scene.view().scene(), &QGraphicsScene::changed);
    scene.find<QObject>("first")->setProperty("color", QColor(Qt::green));
    QTRY_VERIFY(changed.count() > 0);
    QVERIFY(scene.pixel(30, 20).green() > 240);
}

void tst_QDeclarativeRectangle::deletedGradientGivesTheColor()
{
    QmlScene scene;
    scene.load(::scene("color: \"lime\"; border.width: 1; " + QByteArray(gradient)));
    scene.picture();
    delete scene.find<QObject>("g");
    QCOMPARE(scene.pixel(30, 30), QColor(Qt::green));
    QVERIFY(scene.find("r")->property("gradient").value<QObject *>() == nullptr);
}

void tst_QDeclarativeRectangle::unknownColorIsRefused()
{
    QmlScene scene;
    scene.load(::scene("color: \"red\""));
    QSignalSpy changed(scene.find("r"), SIGNAL(colorChanged()));
    scene.run(QStringLiteral("children[0].color = \"nosuchcolour\""));
    QCOMPARE(scene.find("r")->property("color").value<QColor>(), QColor(Qt::red));
    QCOMPARE(changed.count(), 0);
    scene.run(QStringLiteral("children[0].color = \"blue\""));
    QCOMPARE(changed.count(), 1);
}

void tst_QDeclarativeRectangle::repaintsOnlyItself()
{
    QmlScene scene;
    scene.load(::scene("color: \"red\"; border.width: 4"));
    scene.view().show();
    QVERIFY(QTest::qWaitForWindowExposed(&scene.view()));
    QSignalSpy changed(scene.view().scene(), &QGraphicsScene::changed);
    QTRY_VERIFY(!changed.wait(20));
    scene.run(QStringLiteral("children[0].color = \"blue\""));
    QTRY_VERIFY(changed.count() > 0);
    for (const QList<QVariant> &arguments : qAsConst(changed)) {
        const auto regions = arguments.at(0).value<QList<QRectF>>();
        for (const QRectF &region : regions)
            QVERIFY(QRectF(16, 16, 28, 28).contains(region));
    }
    // The same value again is no reason to paint.
    changed.clear();
    scene.run(QStringLiteral("children[0].color = \"blue\""));
    QVERIFY(!changed.wait(50));
}

/** The scene on a screen of that scale. */
static QImage scaledPicture(QmlScene &scene, qreal scale)
{
    QImage image((QSizeF(100, 100) * scale).toSize(), QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene.view().scene()->render(&painter, QRectF(0, 0, 100, 100), QRectF(0, 0, 100, 100));
    return image;
}

/** The lengths of the runs of black pixels in row @p y. */
static QList<int> blackRuns(const QImage &image, int y)
{
    QList<int> runs;
    bool isInside = false;
    for (int x = 0; x < image.width(); ++x) {
        const bool isBlack = image.pixelColor(x, y) == QColor(Qt::black);
        if (isBlack && !isInside)
            runs.append(0);
        if (isBlack)
            ++runs.last();
        isInside = isBlack;
    }
    return runs;
}

void tst_QDeclarativeRectangle::linesOnScaledScreens_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<int>("width");
    QTest::newRow("1") << 1.0 << 1;
    QTest::newRow("1.25") << 1.25 << 1;
    QTest::newRow("1.5") << 1.5 << 1;
    QTest::newRow("1.75") << 1.75 << 1;
    QTest::newRow("2") << 2.0 << 2;
    QTest::newRow("2.5") << 2.5 << 2;
}

// Lines are as wide as each other, wherever the pixels lie.
void tst_QDeclarativeRectangle::linesOnScaledScreens()
{
    QFETCH(qreal, scale);
    QFETCH(int, width);
    QmlScene scene;
    scene.load(
        "import QtQuick 1.0\nItem { width: 100; height: 100\n"
        "Repeater { model: 9; Rectangle { x: 3 + 11 * index; width: 1; height: 100; color: \"black\" } }\n"
        "}");
    QCOMPARE(blackRuns(scaledPicture(scene, scale), 10), QVector<int>(9, width).toList());
    // What is wider covers all of its place, so that neighbours leave no gap.
    scene.run(
        QStringLiteral("for (var i = 0; i < 9; ++i) { children[i].width = 11; children[i].x = 11 * i }"));
    QCOMPARE(blackRuns(scaledPicture(scene, scale), 10), QList<int>{qRound(99 * scale)});
}

void tst_QDeclarativeRectangle::bordersOnScaledScreens_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("width");
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
        const QByteArray name = QByteArray::number(scale);
        QTest::newRow("1 at " + name) << scale << QByteArray("border.width: 1") << qFloor(scale);
        QTest::newRow("2 at " + name) << scale << QByteArray("border.width: 2") << qFloor(2 * scale);
        QTest::newRow("rounded at " + name)
            << scale << QByteArray("border.width: 1; radius: 6") << qFloor(scale);
        QTest::newRow("smooth at " + name)
            << scale << QByteArray("border.width: 1; smooth: true") << qFloor(scale);
    }
}

void tst_QDeclarativeRectangle::bordersOnScaledScreens()
{
    QFETCH(qreal, scale);
    QFETCH(QByteArray, properties);
    QFETCH(int, width);
    QmlScene scene;
    scene.load(::scene("color: \"yellow\"; border.color: \"black\"; " + properties));
    for (int x = 20; x < 30; ++x) {
        scene.run(QStringLiteral("children[0].x = %1").arg(x));
        const QImage picture = scaledPicture(scene, scale);
        const int middle = qRound(30 * scale);
        QCOMPARE(blackRuns(picture, middle), (QList<int>{width, width}));
        QCOMPARE(blackRuns(picture.transformed(QTransform(0, 1, 1, 0, 0, 0)), qRound((x + 10) * scale)),
                 (QList<int>{width, width}));
    }
}

void tst_QDeclarativeRectangle::hostileSizes_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QRgb>("middle");
    const QRgb red = qRgb(255, 0, 0), white = qRgb(255, 255, 255), black = qRgb(0, 0, 0);
    QTest::newRow("huge") << QByteArray("width: 1e9; height: 1e9") << red;
    QTest::newRow("huge and round") << QByteArray("x: -1e6; y: -1e6; width: 2e6; height: 2e6; radius: 1e9")
                                    << red;
    QTest::newRow("huge with a border") << QByteArray("width: 1e9; height: 1e9; border.width: 3") << red;
    QTest::newRow("huge border") << QByteArray("width: 20; height: 20; border.width: 100000") << black;
    QTest::newRow("largest border") << QByteArray("width: 20; height: 20; border.width: 2147483647") << black;
    QTest::newRow("within a wide border")
        << QByteArray("x: -300; y: -300; width: 700; height: 700; border.width: 300") << red;
    QTest::newRow("negative") << QByteArray("width: -5; height: -5; border.width: 1") << white;
    QTest::newRow("empty") << QByteArray("width: 0; radius: 4") << white;
    QTest::newRow("not a number") << QByteArray("width: 0 / 0; radius: 0 / 0; height: 30") << red;
    QTest::newRow("less than a pixel") << QByteArray("width: 0.4; height: 0.4; border.width: 1") << white;
}

void tst_QDeclarativeRectangle::hostileSizes()
{
    QFETCH(QByteArray, properties);
    QFETCH(QRgb, middle);
    QmlScene scene;
    scene.load("import QtQuick 1.0\nItem { width: 100; height: 100\n"
               "Rectangle { width: 20; height: 20; color: \"red\" }\n"
               "Rectangle { color: \"red\"; "
               + properties + " } }");
    const QColor seen = scene.pixel(50, 50);
    if (QTest::currentDataTag() == QByteArray("not a number"))
        QCOMPARE(scene.pixel(5, 5).rgb(), middle);
    else
        QCOMPARE(seen.rgb(), middle);
}

QTEST_MAIN(tst_QDeclarativeRectangle)
#include "tst_qdeclarativerectangle.moc"
