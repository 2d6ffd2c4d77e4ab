#include "HostilePictures.h"
#include "MemoryPeak.h"
#include "MessageRecorder.h"
#include "Patience.h"
#include "QmlScene.h"

#include <QtGui/QImageReader>
#include <QtTest/QSignalSpy>

using namespace HostilePictures;

/** Pictures that claim sizes, in every element that shows pictures. */
class tst_QDeclarativePictureClaim : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void formats_data();
    void formats();
    void elements_data();
    void elements();
    void addresses_data();
    void addresses();
    void suffixIsFound();
    void requestedSizes_data();
    void requestedSizes();
    void providersAreNotAsked();
    void styleSheet();
    void limits_data();
    void limits();
    void ordinary_data();
    void ordinary();

private:
    static constexpr int side = 12000; // pixels; the decoders do not mind
    static constexpr int most = 300; // MiB, a fraction of what the claims come to
    const QString tooLarge = QStringLiteral(": Image too large: 144.0 megapixels, where 64 are the most");
};

namespace {

QByteArray sceneOf(const QByteArray &element)
{
    return "import QtQuick 1.1\nimport Qt.labs.particles 1.0\nItem { width: 9; height: 9; " + element + " }";
}

/** Elements that show the file "picture" once it is there. */
const QList<QPair<const char *, const char *>> pictureElements = {
    {"Image", "Image { source: 'picture' }"},
    {"Image of a size", "Image { source: 'picture'; sourceSize.width: 5; sourceSize.height: 5 }"},
    {"Image in the background", "Image { source: 'picture'; asynchronous: true; cache: false }"},
    {"BorderImage", "BorderImage { source: 'picture' }"},
    {"BorderImage, described", "BorderImage { source: 'picture.sci' }"},
    {"AnimatedImage", "AnimatedImage { source: 'picture' }"},
    {"AnimatedImage, not playing", "AnimatedImage { source: 'picture'; playing: false }"},
    {"Text", "Text { text: '<img src=\"picture\" width=\"4\" height=\"4\">' }"},
    {"Text of a style",
     "Text { text: '<table style=\"background-image: url(picture)\"><tr><td>a</td></tr></table>' }"},
    {"TextEdit", "TextEdit { textFormat: TextEdit.RichText; text: '<img src=\"picture\">' }"},
    {"Particles", "Particles { source: 'picture'; count: 3; width: 9; height: 9 }"},
};

const QByteArray description =
    "border.left: 1\nborder.right: 1\nborder.top: 1\nborder.bottom: 1\nsource: picture\n";

QStringList distinct(QStringList texts)
{
    texts.removeDuplicates();
    return texts;
}

} // namespace

void tst_QDeclarativePictureClaim::initTestCase()
{
    // What Qt loads and keeps for good at the first picture is no picture's.
    QmlScene scene;
    scene.addFile(QStringLiteral("picture"), saved(small(), "png"));
    scene.addFile(QStringLiteral("picture.sci"), description);
    for (const auto &element : pictureElements)
        scene.load(sceneOf(element.second));
    scene.picture();
}

void tst_QDeclarativePictureClaim::formats_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char *name, const QByteArray &content) { QTest::newRow(name) << content; };
    row("PNG", png(side, side));
    row("JPEG", jpeg(side, side));
    row("BMP", bmp(side, side));
    row("BMP, upside down", bmp(side, -side));
    row("PPM", ppm(side, side));
    row("XPM", xpm(side, side));
    row("GIF", gif(side, side));
    row("SVG", svg("width='12000' height='12000'"));
    row("SVG, of its view box", svg("viewBox='0 0 12000 12000'"));
    row("ICO of a PNG", ico({png(side, side)}));
    row("ICO of a bitmap", ico({icoBitmap(side, side)}));
    row("ICO, a later one", ico({png(8, 8), png(8, 8), png(side, side)}));
    const QByteArray inside = png(side, side);
    const QByteArray picture = shown(address("png", inside));
    row("SVG of a PNG", svg({}, picture));
    row("SVG of a PNG, by an entity",
        svg({}, "&x;",
            "<!DOCTYPE svg [<!ENTITY x \"<&#105;mage xmlns:xlink='http://www.w3.org/1999/xlink' xlink:href='"
                + address("png", inside) + "'/>\">]>"));
    row("SVG of an SVG of a PNG", svg({}, shown(address("svg", svg({}, picture)))));
    row("SVG of an ICO", svg({}, shown(address("ico", ico({inside})))));
    row("SVG of 100 of 4 megapixels", svg({}, shown(address("png", png(2000, 2000))).repeated(100)));
    if (QImageReader::supportedImageFormats().contains("webp"))
        row("WebP",
            QByteArray::fromHex(
                "524946461e000000574542505650384c110000002f1fce8713070000000000000000000000"));
}

void tst_QDeclarativePictureClaim::formats()
{
    QFETCH(QByteArray, content);
    QmlScene scene;
    const QUrl url = scene.addFile(QStringLiteral("picture"), content);
    const MemoryPeak peak;
    MessageRecorder messages;
    scene.load(sceneOf("Image { objectName: 'i'; source: 'picture' }"));
    QCOMPARE(messages.texts().count(), 1);
    const QString text = messages.texts().at(0);
    QVERIFY2(text.contains(QLatin1String("Scene1.qml:3:")), qPrintable(text));
    QVERIFY2(text.contains(QLatin1String("Error decoding: ") + url.toString()
                           + QLatin1String(": Image too large: ")),
             qPrintable(text));
    QVERIFY2(text.endsWith(QLatin1String("megapixels, where 64 are the most")), qPrintable(text));
    QCOMPARE(scene.find("i")->property("status").toInt(), 3);
    QVERIFY2(peak.growth() < most, qPrintable(QString::number(peak.growth())));
}

void tst_QDeclarativePictureClaim::elements_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QByteArray>("content");
    const QList<QPair<const char *, QByteArray>> files = {
        {"PNG", png(side, side)},
        {"JPEG", jpeg(side, side)},
        {"BMP", bmp(side, side)},
        {"PPM", ppm(side, side)},
        {"GIF", gif(side, side)},
        {"SVG", svg("viewBox='0 0 12000 12000'")},
        {"SVG of a PNG", svg({}, shown(address("png", png(side, side))))},
        {"ICO", ico({png(side, side)})},
    };
    for (const auto &element : pictureElements) {
        for (const auto &file : files)
            QTest::addRow("%s, %s", element.first, file.first) << QByteArray(element.second) << file.second;
    }
}

void tst_QDeclarativePictureClaim::elements()
{
    QFETCH(QByteArray, element);
    QFETCH(QByteArray, content);
    QmlScene scene;
    scene.addFile(QStringLiteral("picture"), content);
    scene.addFile(QStringLiteral("picture.sci"), description);
    const MemoryPeak peak;
    MessageRecorder messages;
    scene.load(sceneOf(element));
    scene.picture();
    QCOMPARE(distinct(messages.texts()).count(), 1);
    const QString text = messages.texts().at(0);
    QVERIFY2(text.contains(QLatin1String("Scene1.qml:3:")), qPrintable(text));
    QVERIFY2(text.endsWith(tooLarge), qPrintable(text));
    QVERIFY2(peak.growth() < most, qPrintable(QString::number(peak.growth())));
}

void tst_QDeclarativePictureClaim::addresses_data()
{
    QTest::addColumn<QByteArray>("element");
    for (const auto &element : pictureElements) {
        if (!QByteArray(element.second).contains(".sci"))
            QTest::newRow(element.first) << QByteArray(element.second);
    }
}

void tst_QDeclarativePictureClaim::addresses()
{
    QFETCH(QByteArray, element);
    QmlScene scene;
    const MemoryPeak peak;
    MessageRecorder messages;
    scene.load(sceneOf(element.replace("picture", address("png", png(side, side)))));
    scene.picture();
    QTRY_COMPARE(distinct(messages.texts()).count(), 1);
    const QString text = messages.texts().at(0);
    QVERIFY2(text.contains(QLatin1String("Scene1.qml:3:")), qPrintable(text));
    QVERIFY2(text.endsWith(tooLarge), qPrintable(text));
    QVERIFY2(peak.growth() < most, qPrintable(QString::number(peak.growth())));
}

void tst_QDeclarativePictureClaim::suffixIsFound()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("picture.png"), png(side, side));
    const MemoryPeak peak;
    MessageRecorder messages;
    scene.load(sceneOf("Image { source: 'picture' }"));
    QCOMPARE(messages.texts().count(), 1);
    QVERIFY2(messages.texts().at(0).endsWith(tooLarge), qPrintable(messages.texts().at(0)));
    QVERIFY(peak.growth() < most);
}

void tst_QDeclarativePictureClaim::requestedSizes_data()
{
    QTest::addColumn<QByteArray>("viewBox");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("small") << QByteArray("0 0 20000 20000") << QSize(20, 20) << true;
    QTest::newRow("width of a small one") << QByteArray("0 0 9 9") << QSize(20, 0) << true;
    QTest::newRow("both") << QByteArray("0 0 9 9") << QSize(20000, 20000) << false;
    QTest::newRow("width") << QByteArray("0 0 9 9") << QSize(20000, 0) << false;
    QTest::newRow("height") << QByteArray("0 0 9 9") << QSize(0, 20000) << false;
    QTest::newRow("width of a high one") << QByteArray("0 0 1 1000000") << QSize(100, 0) << false;
}

void tst_QDeclarativePictureClaim::requestedSizes()
{
    QFETCH(QByteArray, viewBox);
    QFETCH(QSize, size);
    QFETCH(bool, isShown);
    QmlScene scene;
    scene.addFile(QStringLiteral("picture.svg"), svg("viewBox='" + viewBox + '\''));
    const MemoryPeak peak;
    MessageRecorder messages;
    scene.load(sceneOf("Image { objectName: 'i'; source: 'picture.svg'; sourceSize.width: "
                       + QByteArray::number(size.width())
                       + "; sourceSize.height: " + QByteArray::number(size.height()) + " }"));
    QCOMPARE(scene.find("i")->property("status").toInt(), isShown ? 1 : 3);
    QCOMPARE(messages.texts().count(), isShown ? 0 : 1);
    QVERIFY(peak.growth() < most);
}

void tst_QDeclarativePictureClaim::providersAreNotAsked()
{
    QmlScene scene;
    MessageRecorder messages;
    scene.load(
        sceneOf("Image { source: 'image://nobody/x'; sourceSize.width: 12000; sourceSize.height: 12000 }"));
    QCOMPARE(messages.texts().count(), 1);
    QVERIFY2(messages.texts().at(0).endsWith(tooLarge), qPrintable(messages.texts().at(0)));
}

void tst_QDeclarativePictureClaim::styleSheet()
{
    QmlScene scene;
    scene.view().rootContext()->setContextProperty(QStringLiteral("view"), &scene.view());
    const QString path = scene.addFile(QStringLiteral("picture"), png(side, side)).toLocalFile();
    scene.load(sceneOf("function set(sheet) { view.styleSheet = sheet }"));
    const MemoryPeak peak;
    MessageRecorder messages;
    const QString sheet = QStringLiteral("QWidget { border-image: url(%1) }").arg(path);
    scene.run(QStringLiteral("set('%1')").arg(sheet));
    scene.picture();
    QCOMPARE(messages.texts().count(), 1);
    QVERIFY2(messages.texts().at(0).endsWith(tooLarge), qPrintable(messages.texts().at(0)));
    QCOMPARE(scene.view().styleSheet(), QString());
    QVERIFY(peak.growth() < most);
    scene.run(QStringLiteral("set('QWidget { color: red }')"));
    QCOMPARE(scene.view().styleSheet(), QStringLiteral("QWidget { color: red }"));
}

void tst_QDeclarativePictureClaim::limits_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("message");
    QTest::newRow("the usual, all of it") << 0 << QSize(8000, 8000) << QString();
    QTest::newRow("the usual, one more")
        << 0 << QSize(8000, 8001) << QStringLiteral("64.0 megapixels, where 64 are");
    QTest::newRow("below nothing") << -5 << QSize(8000, 8001)
                                   << QStringLiteral("64.0 megapixels, where 64 are");
    QTest::newRow("1") << 1 << QSize(1000, 1000) << QString();
    QTest::newRow("1, one more") << 1 << QSize(1001, 1000) << QStringLiteral("1.0 megapixels, where 1 are");
    QTest::newRow("100") << 100 << QSize(9000, 9000) << QString();
}

void tst_QDeclarativePictureClaim::limits()
{
    QFETCH(int, limit);
    QFETCH(QSize, size);
    QFETCH(QString, message);
    QmlScene scene;
    scene.view().engine()->setProperty("pictureLimit", limit);
    QCOMPARE(scene.view().engine()->pictureLimit(), limit);
    scene.addFile(QStringLiteral("picture"), png(size.width(), size.height()));
    MessageRecorder messages;
    scene.load(sceneOf("Image { source: 'picture' }"));
    QVERIFY(!messages.texts().isEmpty());
    // What may be decoded is, and found out not to be all there.
    const QString expected = message.isEmpty() ? QStringLiteral("Unable to read image data") : message;
    QVERIFY2(messages.texts().last().contains(expected), qPrintable(messages.texts().last()));
}

void tst_QDeclarativePictureClaim::ordinary_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("PNG") << saved(small(), "png");
    QTest::newRow("JPEG") << saved(small(), "jpeg");
    QTest::newRow("BMP") << saved(small(), "bmp");
    QTest::newRow("PPM") << saved(small(), "ppm");
    QTest::newRow("XPM") << saved(small(), "xpm");
    QTest::newRow("XBM") << saved(small(), "xbm");
    QTest::newRow("GIF") << gif(8, 8);
    QTest::newRow("ICO") << saved(small(), "ico");
    QTest::newRow("ICO of PNGs") << ico({saved(small(), "png"), saved(small(), "png")});
    QTest::newRow("SVG") << svg("width='8' height='8'", "<rect width='8' height='8'/>");
    QTest::newRow("SVG of a PNG") << svg("width='8' height='8'",
                                         shown(address("png", saved(small(), "png"))));
}

void tst_QDeclarativePictureClaim::ordinary()
{
    QFETCH(QByteArray, content);
    QmlScene scene;
    scene.addFile(QStringLiteral("picture"), content);
    scene.addFile(QStringLiteral("picture.sci"), description);
    MessageRecorder messages;
    for (const auto &element : pictureElements)
        scene.load(sceneOf(element.second));
    scene.load(sceneOf("Image { objectName: 'i'; source: 'picture' }"));
    QCOMPARE(messages.texts(), QStringList());
    QCOMPARE(scene.find("i")->property("status").toInt(), 1);
}

QTEST_MAIN(tst_QDeclarativePictureClaim)
#include "tst_qdeclarativepictureclaim.moc"
