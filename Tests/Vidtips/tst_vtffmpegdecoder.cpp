#include <Vidtips/VTFFmpegDecoder_p.h>

#include "TestClips.h"

#include <QtTest/QTest>

#include <memory>

using namespace Vidtips;

/** The decoder by itself; the pictures that it gives are compared in the tests of the source. */
class tst_VTFFmpegDecoder : public QObject
{
    Q_OBJECT

private slots:
    void factsOfAClip();
    void problems_data();
    void problems();
    void opensUsualFormatsOnly_data();
    void opensUsualFormatsOnly();
    void nextClipTakesItsPlace();
    void picturesToTheEnd();
    void equalPicturesShareTheirPixels();
    void seeksBack();
    void givesUpWhenAsked();
};

static int goOn(void *)
{
    return 0;
}

static int giveUp(void *asked)
{
    ++*static_cast<int *>(asked);
    return 1;
}

/** Decodes until there is a picture; null at the end. */
static QImage nextPicture(VTVideoDecoder &decoder)
{
    QImage picture;
    int repeats = 0;
    VTVideoDecoder::Outcome outcome = VTVideoDecoder::Outcome::Nothing;
    while (outcome == VTVideoDecoder::Outcome::Nothing)
        outcome = decoder.nextPicture(&picture, &repeats);
    return outcome == VTVideoDecoder::Outcome::Picture ? picture : QImage();
}

void tst_VTFFmpegDecoder::factsOfAClip()
{
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QVERIFY(!decoder.isOpen());
    QCOMPARE(decoder.open(TestClips::h264()), nullptr);
    QVERIFY(decoder.isOpen());
    const VTClipFacts facts = decoder.facts();
    QCOMPARE(facts.width, 160);
    QCOMPARE(facts.height, 120);
    QCOMPARE(facts.frameRate, 25.0);
    QCOMPARE(facts.duration, 12 / 25.0);
    decoder.close();
    QVERIFY(!decoder.isOpen());
    decoder.close();
}

void tst_VTFFmpegDecoder::problems_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("problem");
    QTest::newRow("missing") << "/does/not/exist.mp4" << QByteArray("Could not open media at: %1");
    QTest::newRow("no name") << QString() << QByteArray("Could not open media at: %1");
    QTest::newRow("a folder") << QDir::tempPath() << QByteArray("Could not open media at: %1");
    QTest::newRow("a protocol") << "concat:" + TestClips::h264() << QByteArray("Could not open media at: %1");
    QTest::newRow("empty") << TestClips::empty() << QByteArray("Could not open media at: %1");
    QTest::newRow("sound only") << TestClips::audioOnly()
                                << QByteArray("Could not find a video stream in %1");
}

void tst_VTFFmpegDecoder::problems()
{
    QFETCH(QString, path);
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QCOMPARE(decoder.open(TestClips::h264()), nullptr);
    QTEST(QByteArray(decoder.open(path)), "problem");
    QVERIFY(!decoder.isOpen());
}

void tst_VTFFmpegDecoder::opensUsualFormatsOnly_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isUsual");
    QTest::newRow("H.264 in MP4") << TestClips::h264() << true;
    QTest::newRow("with sound") << TestClips::withAudio() << true;
    QTest::newRow("VP8 in WebM") << TestClips::vp8() << true;
    QTest::newRow("VP9 in WebM") << TestClips::vp9() << true;
    QTest::newRow("MPEG-4 in AVI") << TestClips::mpeg4() << true;
    QTest::newRow("another codec") << TestClips::onePicture() << false;
    const QStringList mpeg4 = TestClips::moving("64x48", 3, {"-c:v", "mpeg4"});
    QTest::newRow("another container") << TestClips::make("other.nut", mpeg4) << false;
    QTest::newRow("picture") << TestClips::make("one.png", TestClips::moving("64x48", 1, {})) << false;
    const QByteArray clip = TestClips::h264().toUtf8();
    QTest::newRow("list of segments") << TestClips::write(
        "list.m3u8",
        "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + clip + "\n#EXT-X-ENDLIST\n")
                                      << false;
    QTest::newRow("list of clips") << TestClips::write(
        "list.ffconcat", "ffconcat version 1.0\nfile " + QFileInfo(clip).fileName().toUtf8())
                                   << false;
}

void tst_VTFFmpegDecoder::opensUsualFormatsOnly()
{
    QFETCH(const QString, path);
    QFETCH(const bool, isUsual);
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QCOMPARE(decoder.open(path), nullptr);
    QVERIFY(!nextPicture(decoder).isNull());
    decoder.setRestricted(true);
    const QByteArray problem = decoder.open(path);
    QCOMPARE(problem,
             isUsual ? QByteArray()
                     : QByteArray("Restricted content is refused the format of the clip at: %1"));
    QCOMPARE(isUsual, decoder.isOpen() && !nextPicture(decoder).isNull());
    decoder.setRestricted(false);
    QCOMPARE(decoder.open(path), nullptr);
}

void tst_VTFFmpegDecoder::nextClipTakesItsPlace()
{
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QCOMPARE(decoder.open(TestClips::h264()), nullptr);
    QCOMPARE(nextPicture(decoder).size(), QSize(160, 120));
    QCOMPARE(decoder.open(TestClips::oddSize()), nullptr);
    QCOMPARE(decoder.facts().width, 161);
    QCOMPARE(nextPicture(decoder).size(), QSize(161, 91));
}

void tst_VTFFmpegDecoder::picturesToTheEnd()
{
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QCOMPARE(decoder.open(TestClips::h264WithBFrames()), nullptr);
    int count = 0;
    for (QImage picture = nextPicture(decoder); !picture.isNull(); picture = nextPicture(decoder)) {
        QCOMPARE(picture.depth(), 32);
        ++count;
    }
    QCOMPARE(count, 30);
    // The end stays the end.
    QVERIFY(nextPicture(decoder).isNull());
}

void tst_VTFFmpegDecoder::equalPicturesShareTheirPixels()
{
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QCOMPARE(decoder.open(TestClips::plain("red")), nullptr);
    const QImage first = nextPicture(decoder);
    const QImage second = nextPicture(decoder);
    QVERIFY(!second.isNull());
    QCOMPARE(second.cacheKey(), first.cacheKey());
    QCOMPARE(decoder.open(TestClips::h264()), nullptr);
    const QImage moving = nextPicture(decoder);
    QVERIFY(nextPicture(decoder) != moving);
    QVERIFY(nextPicture(decoder).constBits() != moving.constBits());
}

void tst_VTFFmpegDecoder::seeksBack()
{
    VTFFmpegDecoder decoder(&goOn, nullptr);
    QCOMPARE(decoder.open(TestClips::mpeg4()), nullptr);
    const QImage first = nextPicture(decoder);
    nextPicture(decoder);
    QVERIFY(nextPicture(decoder) != first);
    decoder.seek(0.0, true);
    QVERIFY(nextPicture(decoder) == first);
}

void tst_VTFFmpegDecoder::givesUpWhenAsked()
{
    int asked = 0;
    VTFFmpegDecoder decoder(&giveUp, &asked);
    QVERIFY(decoder.open(TestClips::h264()));
    QVERIFY(asked > 0);
    QVERIFY(!decoder.isOpen());
}

QTEST_GUILESS_MAIN(tst_VTFFmpegDecoder)
#include "tst_vtffmpegdecoder.moc"
