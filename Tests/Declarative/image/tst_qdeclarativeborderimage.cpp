#include "MessageRecorder.h"
#include "QmlScene.h"

#include <QtTest/QSignalSpy>

enum Status { Null, Ready, Loading, Error };

class tst_QDeclarativeBorderImage : public QObject
{
    Q_OBJECT

private slots:
    void keepsCorners();
    void tileModes_data();
    void tileModes();
    void description();
    void descriptionErrors_data();
    void descriptionErrors();
    void missingPicture();
    void statusSignals();
    void borderLargerThanPicture();
    void manyTiles();
    void mirror();
};

/** A red frame of 4 pixels around a middle whose columns are blue and green in turn. */
static QImage frame()
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::red);
    for (int y = 4; y < 12; ++y) {
        for (int x = 4; x < 12; ++x)
            image.setPixelColor(x, y, x % 8 < 4 ? Qt::green : Qt::blue);
    }
    return image;
}

static QByteArray scene(const QByteArray &properties)
{
    return "import QtQuick 1.1\nItem { id: root; width: 100; height: 100; property int statuses: 0\n"
           "BorderImage { objectName: \"b\"; "
        + properties + " } }";
}

static const char borders[] = "border { left: 4; top: 4; right: 4; bottom: 4 } ";

void tst_QDeclarativeBorderImage::keepsCorners()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    scene.load(::scene(QByteArray("source: \"frame.png\"; width: 80; height: 60; ") + borders));
    const QImage picture = scene.picture();
    QCOMPARE(picture.pixelColor(3, 3), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(4, 4), QColor(Qt::blue));
    QCOMPARE(picture.pixelColor(39, 30), QColor(Qt::blue));
    QCOMPARE(picture.pixelColor(41, 30), QColor(Qt::green));
    QCOMPARE(picture.pixelColor(75, 55), QColor(Qt::green));
    QCOMPARE(picture.pixelColor(76, 30), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(30, 56), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(80, 30), QColor(Qt::white));
    // Without a border all of it stretches.
    scene.run(QStringLiteral("with (children[0].border) { left = top = right = bottom = 0 }"));
    QCOMPARE(scene.pixel(15, 30), QColor(Qt::red));
}

void tst_QDeclarativeBorderImage::tileModes_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<int>("runs"); // of one colour along the middle
    QTest::newRow("Stretch") << QByteArray("Stretch") << 2;
    QTest::newRow("Repeat") << QByteArray("Repeat") << 5;
    QTest::newRow("Round") << QByteArray("Round") << 6;
}

void tst_QDeclarativeBorderImage::tileModes()
{
    QFETCH(QByteArray, mode);
    QFETCH(int, runs);
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    scene.load(::scene(QByteArray("source: \"frame.png\"; width: 28; height: 28; ") + borders
                       + "horizontalTileMode: BorderImage." + mode));
    const QImage picture = scene.picture();
    int seen = 1;
    for (int x = 5; x < 24; ++x)
        seen += picture.pixelColor(x, 14) != picture.pixelColor(x - 1, 14);
    QCOMPARE(seen, runs);
}

void tst_QDeclarativeBorderImage::description()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    scene.addFile(QStringLiteral("frame.sci"),
                  QByteArray("border.left: 1\r\nborder.top : 2\nborder.right:3\n# a remark\nborder.bottom: "
                             "4\nsource: \"frame.png\"\nhorizontalTileRule: Round\nverticalTileRule: "
                             "\"Repeat\"\nunknown: 1\n"));
    scene.load(::scene("source: \"frame.sci\"; border.left: 9"));
    QDeclarativeItem *image = scene.find("b");
    QCOMPARE(image->property("status").toInt(), int(Ready));
    QCOMPARE(image->width(), 16.0);
    QCOMPARE(image->property("source").toUrl(), scene.url(QStringLiteral("frame.sci")));
    QCOMPARE(
        scene.run(QStringLiteral("with (children[0].border) [left, top, right, bottom].join()")).toString(),
        QStringLiteral("1,2,3,4"));
    QCOMPARE(scene.run(QStringLiteral("children[0].horizontalTileMode == BorderImage.Round")),
             QVariant(true));
    QCOMPARE(scene.run(QStringLiteral("children[0].verticalTileMode == BorderImage.Repeat")), QVariant(true));
}

void tst_QDeclarativeBorderImage::descriptionErrors_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    const QByteArray whole = "border.left: 1\nborder.top: 1\nborder.right: 1\nborder.bottom: 1\n";
    QTest::newRow("missing file") << QByteArray() << QStringLiteral("device not open");
    QTest::newRow("no picture") << whole << QString();
    QTest::newRow("no border") << QByteArray("source: frame.png\n") << QString();
    QTest::newRow("a border missing") << QByteArray("border.left: 1\nsource: frame.png\n") << QString();
    QTest::newRow("negative border") << whole + "border.left: -4\nsource: frame.png\n" << QString();
    QTest::newRow("no text") << QByteArray("\0\1\2\377\376:\n:::", 11) << QString();
    QTest::newRow("rule that does not exist")
        << QByteArray("horizontalTileRule: Sideways\n")
        << QStringLiteral("QDeclarativeGridScaledImage: Invalid tile rule specified. Using Stretch.");
    QTest::newRow("endless") << QByteArray(10 * 1024 * 1024, 'x') + "\n" + whole + "source: frame.png"
                             << QString();
    QTest::newRow("picture missing") << whole + "source: lost.png"
                                     << QStringLiteral("QML BorderImage: Cannot open: ");
}

void tst_QDeclarativeBorderImage::descriptionErrors()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    if (!content.isEmpty())
        scene.addFile(QStringLiteral("frame.sci"), content);
    QStringList texts;
    {
        MessageRecorder messages;
        scene.load(::scene("source: \"frame.sci\"; width: 20; height: 20"));
        texts = messages.texts();
    }
    QCOMPARE(scene.find("b")->property("status").toInt(), int(Error));
    QCOMPARE(texts.count(), message.isEmpty() ? 0 : 1);
    if (!message.isEmpty())
        QVERIFY2(texts.at(0).contains(message), qPrintable(texts.at(0)));
    QCOMPARE(scene.pixel(10, 10), QColor(Qt::white));
}

void tst_QDeclarativeBorderImage::missingPicture()
{
    QmlScene scene;
    MessageRecorder messages;
    scene.load(::scene("source: \"lost.png\""));
    QCOMPARE(scene.find("b")->property("status").toInt(), int(Error));
    QCOMPARE(scene.find("b")->property("progress").toReal(), 1.0);
    QCOMPARE(messages.texts().count(), 2);
    QVERIFY(messages.texts().at(0).endsWith(QLatin1String("QML BorderImage: Cannot open: ")
                                            + scene.url(QStringLiteral("lost.png")).toString()));
}

void tst_QDeclarativeBorderImage::statusSignals()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    scene.addFile(
        QStringLiteral("frame.sci"),
        QByteArray("border.left: 1\nborder.top: 1\nborder.right: 1\nborder.bottom: 1\nsource: frame.png"));
    scene.load(::scene("onStatusChanged: root.statuses++"));
    const auto count = [&scene](const char *source) {
        scene.root()->setProperty("statuses", 0);
        scene.run(QStringLiteral("children[0].source = \"%1\"").arg(QLatin1String(source)));
        return scene.root()->property("statuses").toInt();
    };
    QCOMPARE(count("frame.png"), 3);
    QCOMPARE(count("frame.sci"), 2);
    QCOMPARE(count(""), 2);
    QCOMPARE(scene.find("b")->property("status").toInt(), int(Null));
    QCOMPARE(scene.find("b")->width(), 0.0);
}

void tst_QDeclarativeBorderImage::borderLargerThanPicture()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    scene.load(::scene("source: \"frame.png\"; width: 50; height: 50\n"
                       "border { left: 100000; top: 2147483647; right: 100000; bottom: -7 }"));
    QCOMPARE(scene.pixel(1, 1), QColor(Qt::red));
    scene.run(QStringLiteral("children[0].width = 3; children[0].height = 3"));
    scene.picture();
}

void tst_QDeclarativeBorderImage::manyTiles()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame().copy(4, 4, 1, 1));
    scene.load(::scene("source: \"frame.png\"; width: 1e6; height: 1e6\n"
                       "horizontalTileMode: BorderImage.Repeat; verticalTileMode: BorderImage.Repeat"));
    QCOMPARE(scene.pixel(50, 50), QColor(Qt::blue));
}

void tst_QDeclarativeBorderImage::mirror()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("frame.png"), frame());
    scene.load(::scene(QByteArray("source: \"frame.png\"; width: 80; height: 60; mirror: true; ") + borders));
    QCOMPARE(scene.pixel(30, 30), QColor(Qt::green));
    QCOMPARE(scene.pixel(50, 30), QColor(Qt::blue));
}

QTEST_MAIN(tst_QDeclarativeBorderImage)
#include "tst_qdeclarativeborderimage.moc"
