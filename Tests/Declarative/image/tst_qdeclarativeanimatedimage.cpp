#include "DocumentServer.h"
#include "MessageRecorder.h"
#include "Patience.h"
#include "PictureScene.h"

#include <QtTest/QSignalSpy>

/** How AnimatedImage plays a picture, and what it makes of one that is broken. */
class tst_QDeclarativeAnimatedImage : public QObject
{
    Q_OBJECT

private slots:
    void animation();
    void animationStartsAt_data();
    void animationStartsAt();
    void animationThatEnds();
    void animationFromNetwork();
    void animationReplacedByItsHandler();
    void brokenAnimation();
};

void tst_QDeclarativeAnimatedImage::animation()
{
    QmlScene scene;
    scene.load(::scene("AnimatedImage { objectName: \"i\"; source: \"" + galleryFile("anim.gif").toEncoded()
                       + "\" }"));
    QDeclarativeItem *image = scene.find("i");
    QCOMPARE(image->property("status").toInt(), int(Ready));
    QCOMPARE(sizeOf(image), QSizeF(20, 20));
    QVERIFY(image->property("frameCount").toInt() > 1);
    QVERIFY(image->property("playing").toBool());
    QCOMPARE(image->property("currentFrame").toInt(), 0);
    const QImage first = scene.picture();
    QSignalSpy frames(image, SIGNAL(frameChanged()));
    QTRY_VERIFY(frames.count() > 1);
    image->setProperty("paused", true);
    QVERIFY(image->property("paused").toBool());
    frames.clear();
    QVERIFY(!frames.wait(300));
    image->setProperty("currentFrame", 1);
    QCOMPARE(image->property("currentFrame").toInt(), 1);
    QVERIFY(scene.picture() != first);
    image->setProperty("paused", false);
    QVERIFY(frames.wait());
    QSignalSpy playing(image, SIGNAL(playingChanged()));
    image->setProperty("playing", false);
    QVERIFY(!image->property("playing").toBool());
    QCOMPARE(playing.count(), 1);
}

void tst_QDeclarativeAnimatedImage::animationStartsAt_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("frame");
    QTest::newRow("the first frame") << QByteArray("") << 0;
    QTest::newRow("a frame") << QByteArray("currentFrame: 2; paused: true") << 2;
    QTest::newRow("a frame, not playing") << QByteArray("currentFrame: 2; playing: false") << 2;
    QTest::newRow("beyond the last frame") << QByteArray("currentFrame: 99; playing: false") << 0;
    QTest::newRow("before the first frame") << QByteArray("currentFrame: -9; playing: false") << 0;
}

void tst_QDeclarativeAnimatedImage::animationStartsAt()
{
    QFETCH(QByteArray, properties);
    QmlScene scene;
    scene.load(::scene("AnimatedImage { objectName: \"i\"; source: \"" + galleryFile("anim.gif").toEncoded()
                       + "\"; " + properties + " }"));
    QTEST(scene.find("i")->property("currentFrame").toInt(), "frame");
    const QRgb colors[] = {0xffc82828, 0xff288c3c, 0xff283cbe, 0xffffffff};
    QFETCH(int, frame);
    QCOMPARE(scene.pixel(10, 10).rgb(), colors[frame]);
}

void tst_QDeclarativeAnimatedImage::animationThatEnds()
{
    QmlScene scene;
    scene.load(::scene("AnimatedImage { objectName: \"i\"; source: \"" + galleryFile("once.gif").toEncoded()
                       + "\" }"));
    QTRY_VERIFY(!scene.find("i")->property("playing").toBool());
    QCOMPARE(scene.find("i")->property("currentFrame").toInt(),
             scene.find("i")->property("frameCount").toInt() - 1);
}

void tst_QDeclarativeAnimatedImage::animationFromNetwork()
{
    QFile gif(galleryFile("anim.gif").toLocalFile());
    QVERIFY(gif.open(QIODevice::ReadOnly));
    const DocumentServer server("200 OK", gif.readAll());
    QmlScene scene;
    scene.load(::scene("AnimatedImage { objectName: \"i\"; source: \"" + server.url("anim.gif") + "\" }"));
    QCOMPARE(scene.find("i")->property("status").toInt(), int(Loading));
    QTRY_COMPARE(scene.find("i")->property("status").toInt(), int(Ready));
    QSignalSpy frames(scene.find("i"), SIGNAL(frameChanged()));
    QVERIFY(frames.wait());
}

void tst_QDeclarativeAnimatedImage::animationReplacedByItsHandler()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("blocks.png"), blocks(20, 10));
    scene.load(::scene("AnimatedImage { objectName: \"i\"; source: \"" + galleryFile("anim.gif").toEncoded()
                       + "\"; onFrameChanged: if (currentFrame == 1) source = \"blocks.png\" }"));
    QTRY_COMPARE(sizeOf(scene.find("i")), QSizeF(20, 10));
    QCOMPARE(scene.picture().copy(0, 0, 20, 10), blocks(20, 10));
}

void tst_QDeclarativeAnimatedImage::brokenAnimation()
{
    QmlScene scene;
    scene.addFile(QStringLiteral("broken.gif"), QByteArray("GIF89a and nothing else"));
    MessageRecorder messages;
    scene.load(::scene("AnimatedImage { objectName: \"i\"; source: \"broken.gif\" }\n"
                       "AnimatedImage { objectName: \"lost\"; source: \"lost.gif\" }"));
    for (const char *name : {"i", "lost"}) {
        QCOMPARE(scene.find(name)->property("status").toInt(), int(Error));
        QVERIFY(!scene.find(name)->property("playing").toBool());
        QCOMPARE(scene.find(name)->property("frameCount").toInt(), 0);
    }
    QCOMPARE(messages.texts().count(), 2);
    QVERIFY(messages.texts().at(0).contains(QLatin1String("Error Reading Animated Image File")));
}

QTEST_MAIN(tst_QDeclarativeAnimatedImage)

#include "tst_qdeclarativeanimatedimage.moc"
