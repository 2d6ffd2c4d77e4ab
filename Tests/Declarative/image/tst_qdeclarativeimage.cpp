#include "DocumentServer.h"
#include "MessageRecorder.h"
#include "Patience.h"
#include "PictureScene.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtTest/QSignalSpy>

/** Paints the name that it is asked for, a colour, in the size that it is asked for. */
class ColorProvider : public QDeclarativeImageProvider
{
public:
    ColorProvider()
        : QDeclarativeImageProvider(QQmlImageProviderBase::Image)
    {
    }

    QImage requestImage(const QString &id, QSize *size, const QSize &requested) override
    {
        if (!QColor::isValidColor(id))
            return {};
        QImage image(requested.isValid() ? requested : QSize(12, 8), QImage::Format_RGB32);
        image.fill(QColor(id));
        *size = image.size();
        return image;
    }
};

class tst_QDeclarativeImage : public QObject
{
    Q_OBJECT

private slots:
    void loads();
    void signalOrder();
    void failures_data();
    void failures();
    void recovers();
    void asynchronous();
    void network();
    void networkFailure();
    void provider();
    void sourceSize_data();
    void sourceSize();
    void fillModes_data();
    void fillModes();
    void cropPaintsBeyondUnlessClipped();
    void mirror();
    void smooth();
    void fitFollowsOneSide();
    void cache();
    void replacedWhileLoading();
    void deletedWhileLoading();
    void newMembersAreOf11_data();
    void newMembersAreOf11();
};

static QByteArray png(const QImage &image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

/** Returns the PNG @p data with another size in its header, whose checksum is right. */
static QByteArray claiming(QByteArray data, const QByteArray &size)
{
    data.replace(16, 8, size);
    quint32 crc = 0xffffffff;
    for (int i = 12; i < 29; ++i) {
        crc ^= quint8(data.at(i));
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? (crc >> 1) ^ 0xedb88320 : crc >> 1;
    }
    crc = qToBigEndian(~crc);
    return data.replace(29, 4, reinterpret_cast<const char *>(&crc), 4);
}

void tst_QDeclarativeImage::loads()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; source: \"blocks.png\" }"));
    const QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->property("status").toInt(), int(Ready));
    QCOMPARE(image->property("progress").toReal(), 1.0);
    QCOMPARE(image->property("sourceSize").toSize(), QSize(20, 10));
    QCOMPARE(sizeOf(image), QSizeF(20, 10));
    QCOMPARE(scene.picture().copy(0, 0, 20, 10), blocks(20, 10));
}

void tst_QDeclarativeImage::signalOrder()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(
        ::scene("Image { onSourceChanged: root.note(\"source\"); onWidthChanged: root.note(\"width\")\n"
                "onHeightChanged: root.note(\"height\"); onStatusChanged: root.note(\"status\" + status)\n"
                "onProgressChanged: root.note(\"progress\" + progress)\n"
                "onSourceSizeChanged: root.note(\"sourceSize\")\n"
                "onPaintedGeometryChanged: root.note(\"painted\") }"));
    QCOMPARE(scene.root()->property("log").toStringList(), QStringList());
    scene.run(QStringLiteral("children[0].source = \"blocks.png\""));
    QCOMPARE(scene.root()->property("log").toStringList().join(QLatin1Char(' ')),
             QStringLiteral("source width painted height painted painted sourceSize status1 progress1"));
    scene.root()->setProperty("log", QStringList());
    scene.run(QStringLiteral("children[0].source = \"\""));
    QCOMPARE(scene.root()->property("log").toStringList().join(QLatin1Char(' ')),
             QStringLiteral("source width painted height painted painted progress0 status0"));
}

void tst_QDeclarativeImage::failures_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    const QByteArray whole = png(blocks(64, 64));
    const QByteArray huge = claiming(whole, QByteArray::fromHex("0000f0000000f000"));
    QTest::newRow("missing") << QByteArray() << QStringLiteral("QML Image: Cannot open: %1");
    QTest::newRow("text") << QByteArray("no picture at all")
                          << QStringLiteral("QML Image: Error decoding: %1: Unsupported image format");
    QTest::newRow("cut off") << whole.left(50)
                             << QStringLiteral("QML Image: Error decoding: %1: Unable to read image data");
    QTest::newRow("claims 61440 x 61440")
        << huge
        << QStringLiteral(
               "QML Image: Error decoding: %1: Image too large: 3774.9 megapixels, where 64 are the most");
    QTest::newRow("vector of absurd size")
        << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"200000\" height=\"200000\"/>")
        << QStringLiteral(
               "QML Image: Error decoding: %1: Image too large: 40000.0 megapixels, where 64 are the most");
}

void tst_QDeclarativeImage::failures()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QmlScene scene;
    if (!content.isEmpty())
        scene.addFile(QStringLiteral("broken"), content);
    QStringList texts;
    {
        MessageRecorder messages;
        scene.load(::scene("Image { objectName: \"i\"; source: \"broken\" }"));
        texts = messages.texts();
    }
    const QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->property("status").toInt(), int(Error));
    QCOMPARE(image->property("progress").toReal(), 1.0);
    QCOMPARE(sizeOf(image), QSizeF(0, 0));
    QVERIFY(!texts.isEmpty());
    const QString expected = message.arg(scene.url(QStringLiteral("broken")).toString());
    QVERIFY2(texts.last().endsWith(expected), qPrintable(texts.join(QLatin1Char('\n'))));
    QCOMPARE(scene.pixel(1, 1), QColor(Qt::white));
}

void tst_QDeclarativeImage::recovers()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    {
        MessageRecorder messages;
        scene.load(::scene("Image { objectName: \"i\"; source: \"missing\"; width: 5 }"));
        QCOMPARE(messages.texts().count(), 1);
    }
    scene.run(QStringLiteral("children[0].source = \"blocks.png\""));
    QCOMPARE(scene.find("i")->property("status").toInt(), int(Ready));
    QCOMPARE(sizeOf(scene.find("i")), QSizeF(5, 10));
}

void tst_QDeclarativeImage::asynchronous()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; source: \"blocks.png\"; asynchronous: true }"));
    const QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->property("status").toInt(), int(Loading));
    QCOMPARE(image->property("progress").toReal(), 0.0);
    QCOMPARE(sizeOf(image), QSizeF(0, 0));
    QTRY_COMPARE(image->property("status").toInt(), int(Ready));
    QCOMPARE(image->property("progress").toReal(), 1.0);
    QCOMPARE(sizeOf(image), QSizeF(20, 10));
}

void tst_QDeclarativeImage::network()
{
    const DocumentServer server("200 OK", png(blocks(20, 10)));
    QmlScene scene;
    scene.load(::scene("Image { objectName: \"i\"; source: \"" + server.url("a.png") + "\" }"));
    const QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->property("status").toInt(), int(Loading));
    QTRY_COMPARE(image->property("status").toInt(), int(Ready));
    QCOMPARE(scene.picture().copy(0, 0, 20, 10), blocks(20, 10));
}

void tst_QDeclarativeImage::networkFailure()
{
    const DocumentServer server("404 Not Found", QByteArray());
    QmlScene scene;
    MessageRecorder messages;
    scene.load(::scene("Image { objectName: \"i\"; source: \"" + server.url("b.png") + "\" }"));
    QTRY_COMPARE(scene.find("i")->property("status").toInt(), int(Error));
    QCOMPARE(messages.texts().count(), 1);
    QVERIFY(messages.texts().at(0).contains(QString::fromLatin1(server.url("b.png"))));
}

void tst_QDeclarativeImage::provider()
{
    QmlScene scene;
    scene.view().engine()->addImageProvider(QStringLiteral("colors"), new ColorProvider);
    MessageRecorder messages;
    scene.load(::scene("Image { objectName: \"i\"; source: \"image://colors/red\" }\n"
                       "Image { objectName: \"sized\"; y: 50; source: \"image://colors/blue\"; sourceSize: "
                       "Qt.size(40, 30) }\n"
                       "Image { objectName: \"none\"; source: \"image://colors/nocolour\" }\n"
                       "Image { objectName: \"nobody\"; source: \"image://nobody/x\" }"));
    QCOMPARE(sizeOf(scene.find("i")), QSizeF(12, 8));
    QCOMPARE(scene.pixel(3, 3), QColor(Qt::red));
    QCOMPARE(sizeOf(scene.find("sized")), QSizeF(40, 30));
    QCOMPARE(scene.pixel(39, 79), QColor(Qt::blue));
    QCOMPARE(scene.find("none")->property("status").toInt(), int(Error));
    QCOMPARE(scene.find("nobody")->property("status").toInt(), int(Error));
    QCOMPARE(messages.texts().count(), 2);
}

void tst_QDeclarativeImage::sourceSize_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QSize>("wanted");
    QTest::addColumn<QSizeF>("size");
    const QString bitmap = QStringLiteral("blocks.png"), vector = QStringLiteral("shape.svg");
    QTest::newRow("width") << bitmap << QSize(10, 0) << QSizeF(10, 5);
    QTest::newRow("height") << bitmap << QSize(0, 2) << QSizeF(4, 2);
    QTest::newRow("both, distorted") << bitmap << QSize(4, 10) << QSizeF(4, 10);
    QTest::newRow("not enlarged") << bitmap << QSize(100, 0) << QSizeF(20, 10);
    QTest::newRow("each side not enlarged") << bitmap << QSize(8, 100) << QSizeF(8, 10);
    QTest::newRow("vector enlarged") << vector << QSize(80, 0) << QSizeF(80, 48);
    QTest::newRow("vector distorted") << vector << QSize(30, 60) << QSizeF(30, 60);
}

void tst_QDeclarativeImage::sourceSize()
{
    QFETCH(QString, file);
    QFETCH(QSize, wanted);
    QFETCH(QSizeF, size);
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    QFile svg(galleryFile("shape.svg").toLocalFile());
    QVERIFY(svg.open(QIODevice::ReadOnly));
    scene.addFile(QStringLiteral("shape.svg"), svg.readAll());
    scene.load(::scene("Image { objectName: \"i\"; source: \"" + file.toLatin1() + "\" }"));
    QDeclarativeItem *image = scene.find("i");
    const QSizeF natural = sizeOf(image);
    QSignalSpy changed(image, SIGNAL(sourceSizeChanged()));
    image->setProperty("sourceSize", wanted);
    QVERIFY(changed.count() >= 1);
    QCOMPARE(image->property("sourceSize").toSize(), wanted);
    QCOMPARE(sizeOf(image), size);
    QVERIFY(!scene.picture().copy(0, 0, int(size.width()), int(size.height())).isNull());
    scene.run(QStringLiteral("children[0].sourceSize = undefined"));
    QCOMPARE(sizeOf(image), natural);
}

void tst_QDeclarativeImage::fillModes_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QSizeF>("painted");
    QTest::addColumn<QColor>("corner"); // at 1, 1
    QTest::addColumn<QColor>("right"); // at 38, 1
    QTest::addColumn<QColor>("below"); // at 1, 38
    const QColor white(Qt::white), red(Qt::red), green(Qt::green), blue(Qt::blue), black(Qt::black);
    QTest::newRow("Stretch") << QByteArray("Stretch") << QSizeF(40, 40) << red << green << blue;
    QTest::newRow("Fit") << QByteArray("PreserveAspectFit") << QSizeF(40, 20) << white << white << white;
    QTest::newRow("Crop") << QByteArray("PreserveAspectCrop") << QSizeF(80, 40) << red << green << blue;
    QTest::newRow("Tile") << QByteArray("Tile") << QSizeF(40, 40) << red << green << blue;
    QTest::newRow("TileVertically") << QByteArray("TileVertically") << QSizeF(40, 40) << red << green << blue;
    QTest::newRow("TileHorizontally")
        << QByteArray("TileHorizontally") << QSizeF(40, 40) << red << green << blue;
}

void tst_QDeclarativeImage::fillModes()
{
    QFETCH(QByteArray, mode);
    QFETCH(QSizeF, painted);
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; width: 40; height: 40; clip: true; source: "
                       "\"blocks.png\"; fillMode: Image."
                       + mode + " }"));
    const QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->property("paintedWidth").toReal(), painted.width());
    QCOMPARE(image->property("paintedHeight").toReal(), painted.height());
    const QImage picture = scene.picture();
    QTEST(picture.pixelColor(1, 1), "corner");
    QTEST(picture.pixelColor(38, 1), "right");
    QTEST(picture.pixelColor(1, 38), "below");
    QCOMPARE(picture.pixelColor(41, 1), QColor(Qt::white));
    // What tells tiled from stretched.
    const bool tilesAcross = mode == "Tile" || mode == "TileHorizontally";
    const bool tilesDown = mode == "Tile" || mode == "TileVertically";
    if (mode.startsWith("Tile")) {
        QCOMPARE(picture.pixelColor(22, 1), QColor(tilesAcross ? Qt::red : Qt::green));
        QCOMPARE(picture.pixelColor(1, 12), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(1, 6), QColor(tilesDown ? Qt::blue : Qt::red));
    }
}

void tst_QDeclarativeImage::cropPaintsBeyondUnlessClipped()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; x: 30; width: 10; height: 10; source: \"blocks.png\"\n"
                       "fillMode: Image.PreserveAspectCrop }"));
    QCOMPARE(scene.pixel(26, 2), QColor(Qt::red));
    QCOMPARE(scene.find("i")->boundingRect(), QRectF(-5, 0, 20, 10));
    scene.find("i")->setClip(true);
    QCOMPARE(scene.pixel(26, 2), QColor(Qt::white));
    QCOMPARE(scene.pixel(31, 2), QColor(Qt::red));
}

void tst_QDeclarativeImage::mirror()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; source: \"blocks.png\"; mirror: true }"));
    QCOMPARE(scene.picture().copy(0, 0, 20, 10), blocks(20, 10).mirrored(true, false));
    scene.find("i")->setProperty("mirror", false);
    QCOMPARE(scene.picture().copy(0, 0, 20, 10), blocks(20, 10));
}

void tst_QDeclarativeImage::smooth()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(2, 2));
    scene.load(::scene("Image { objectName: \"i\"; width: 40; height: 40; source: \"blocks.png\" }"));
    QCOMPARE(scene.pixel(18, 2), QColor(Qt::red));
    scene.find("i")->setSmooth(true);
    QVERIFY(scene.pixel(18, 2) != QColor(Qt::red));
}

void tst_QDeclarativeImage::fitFollowsOneSide()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; width: 10; source: \"blocks.png\"; fillMode: "
                       "Image.PreserveAspectFit }"));
    QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->height(), 5.0);
    image->setWidth(100);
    QCOMPARE(image->height(), 10.0);
    image->resetWidth();
    image->setHeight(5);
    QCOMPARE(image->width(), 10.0);
}

void tst_QDeclarativeImage::cache()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("Image { objectName: \"i\"; source: \"blocks.png\" }\n"
                       "Image { y: 50; objectName: \"fresh\"; cache: false }"));
    QCOMPARE(scene.find("fresh")->property("cache").toBool(), false);
    scene.addFile(QStringLiteral("blocks.png"), blocks(30, 30));
    scene.run(QStringLiteral("children[1].source = \"blocks.png\""));
    QCOMPARE(sizeOf(scene.find("i")), QSizeF(20, 10));
    QCOMPARE(sizeOf(scene.find("fresh")), QSizeF(30, 30));
}

void tst_QDeclarativeImage::replacedWhileLoading()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("one.png"), blocks(20, 10));
    scene.addFile(QStringLiteral("two.png"), blocks(10, 20));
    scene.load(::scene("Image { objectName: \"i\"; source: \"one.png\"; asynchronous: true }"));
    scene.run(QStringLiteral("children[0].source = \"two.png\""));
    QTRY_COMPARE(scene.find("i")->property("status").toInt(), int(Ready));
    QCOMPARE(sizeOf(scene.find("i")), QSizeF(10, 20));
    scene.run(QStringLiteral("children[0].source = \"one.png\"; children[0].source = \"\""));
    QCOMPARE(scene.find("i")->property("status").toInt(), int(Null));
    QCOMPARE(sizeOf(scene.find("i")), QSizeF(0, 0));
}

void tst_QDeclarativeImage::deletedWhileLoading()
{
    const DocumentServer server("200 OK", png(blocks(20, 10)));
    QmlScene scene;
    scene.load(::scene("Image { objectName: \"i\"; source: \"" + server.url("gone.png")
                       + "\" }\n"
                         "AnimatedImage { objectName: \"a\"; source: \""
                       + server.url("gone.gif")
                       + "\" }\n"
                         "BorderImage { objectName: \"b\"; source: \""
                       + server.url("gone.sci")
                       + "\" }\n"
                         "Image { objectName: \"kept\"; source: \""
                       + server.url("kept.png") + "\" }"));
    for (const char *name : {"i", "a", "b"})
        delete scene.find(name);
    QTRY_COMPARE(scene.find("kept")->property("status").toInt(), int(Ready));
}

void tst_QDeclarativeImage::newMembersAreOf11_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::newRow("mirror") << QByteArray("mirror: true");
    QTest::newRow("cache") << QByteArray("cache: false");
    QTest::newRow("onMirrorChanged") << QByteArray("onMirrorChanged: {}");
}

void tst_QDeclarativeImage::newMembersAreOf11()
{
    QFETCH(QByteArray, member);
    QmlScene scene;
    for (const QByteArray &type : {QByteArray("Image"), QByteArray("BorderImage")}) {
        QQmlComponent old(scene.view().engine());
        old.setData("import QtQuick 1.0\n" + type + " { " + member + " }", QUrl());
        QVERIFY(old.isError());
        QQmlComponent fresh(scene.view().engine());
        fresh.setData("import QtQuick 1.1\n" + type + " { " + member + " }", QUrl());
        QVERIFY2(!fresh.isError(), qPrintable(fresh.errorString()));
    }
}

QTEST_MAIN(tst_QDeclarativeImage)
#include "tst_qdeclarativeimage.moc"
