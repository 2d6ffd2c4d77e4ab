#include <Vidtips/VTPixels_p.h>

#include "SteppedSource.h"

#include <QtCore/QSet>

extern "C" {
#include <libavutil/log.h>
}

using namespace Vidtips;

namespace {

// The index of the first pixel that is not the widened source, or -1.
int firstWrongPixel(const QByteArray &source, const QVector<quint32> &target)
{
    for (int i = 0; i < target.size(); ++i) {
        const auto byte = [&](int offset) { return quint32(uchar(source.at(3 * i + offset))); };
        if (target.at(i) != 0xFF000000u + byte(0) * 65536 + byte(1) * 256 + byte(2))
            return i;
    }
    return -1;
}

} // namespace

/** What a source makes of clips: their pictures, timed and shared. */
class tst_VTVideoSourceFFMPEG : public QObject
{
    Q_OBJECT

private slots:
    void freshSource();
    void silencesFFmpeg();
    void clipsDecodeToTheirPictures_data();
    void clipsDecodeToTheirPictures();
    void changedSizeIsScaled();
    void changedFormatIsFollowed_data();
    void changedFormatIsFollowed();
    void repeatedFieldsStretchTheClock();
    void slowClipIsTimedByItsRate();
    void getTimeIsTheWallClock();
    void openReportsTheClip();
    void durationOfTheContainer();
    void equalPicturesShareTheirPixels();
    void pictureThatDiffersAnywhereIsAnother_data();
    void pictureThatDiffersAnywhereIsAnother();
    void memoryLimitCountsDifferentPictures();
    void everyColourIsConvertedAsByTheCommand();
    void sizeAndTimingStayAfterTheEnd();
    void secondClipReplacesTheFirst();
    void widening_data();
    void widening();
};

void tst_VTVideoSourceFFMPEG::freshSource()
{
    SteppedSource source;
    QCOMPARE(source.objectName(), QString("FFMPEG"));
    QVERIFY(!source.isOpen());
    QCOMPARE(source.frameWidth(), 200.0);
    QCOMPARE(source.frameHeight(), 150.0);
    QCOMPARE(source.duration(), 0.0);
    QCOMPARE(source.timeBase(), 0.0);
    QCOMPARE(source.frameRate(), 0.0);
    QCOMPARE(source.progress(), 0.0);
    QCOMPARE(source.position(), quint64(0));
}

void tst_VTVideoSourceFFMPEG::silencesFFmpeg()
{
    SteppedSource source;
    QVERIFY(source.load(TestClips::h264()));
    QCOMPARE(av_log_get_level(), AV_LOG_QUIET);
}

void tst_VTVideoSourceFFMPEG::clipsDecodeToTheirPictures_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("count");
    QTest::newRow("H.264") << TestClips::h264() << QSize(160, 120) << 12;
    QTest::newRow("H.264 with B-frames") << TestClips::h264WithBFrames() << QSize(160, 120) << 30;
    QTest::newRow("VP8") << TestClips::vp8() << QSize(160, 120) << 10;
    QTest::newRow("VP9") << TestClips::vp9() << QSize(160, 120) << 10;
    QTest::newRow("AV1") << TestClips::av1() << QSize(160, 120) << 10;
    QTest::newRow("GIF") << TestClips::gif() << QSize(160, 120) << 10;
    QTest::newRow("MPEG-4") << TestClips::mpeg4() << QSize(160, 120) << 15;
    QTest::newRow("odd size, 4:4:4") << TestClips::oddSize() << QSize(161, 91) << 5;
    QTest::newRow("uneven width") << TestClips::unevenWidth() << QSize(360, 200) << 60;
    for (int width : {34, 40, 48, 56, 64, 66, 352, 360})
        QTest::addRow("%d pixels wide", width) << TestClips::ofWidth(width) << QSize(width, 96) << 5;
    QTest::newRow("one pixel") << TestClips::onePixel() << QSize(1, 1) << 2;
    QTest::newRow("large") << TestClips::large() << QSize(4096, 2160) << 3;
    QTest::newRow("named colour matrix") << TestClips::bt709() << QSize(160, 120) << 5;
    QTest::newRow("beside sound") << TestClips::withAudio() << QSize(64, 48) << 20;
}

void tst_VTVideoSourceFFMPEG::clipsDecodeToTheirPictures()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);
    QFETCH(int, count);
    QVERIFY(QFileInfo::exists(path));
    Playback playback(path);
    QVERIFY(playback.finish());
    QTRY_COMPARE(playback.source->action(), VTVideoSource::Idle);
    QCOMPARE(playback.ended.count(), 1);
    QVERIFY(!playback.source->isOpen());
    QCOMPARE(int(playback.source->loadedFrameCount()), count);
    QCOMPARE(playback.source->position(), quint64(0));

    const QByteArray pictures = reference(path);
    const int pictureBytes = size.width() * size.height() * 3;
    QCOMPARE(pictures.size(), pictureBytes * count);
    double time = 0.0;
    for (int i = 0; i < count; ++i, time += 1.0 / 25) {
        const VTVideoFrame frame = playback.source->getFrame(uint(i));
        QCOMPARE(frame.size(), size);
        QCOMPARE(frame.format(), QImage::Format_RGB32);
        QCOMPARE(frame.bytesPerLine(), size.width() * 4);
        QVERIFY2(frame.pts() == time, qPrintable(QString("%1: %2").arg(i).arg(frame.pts())));
        QVERIFY2(packed(frame) == pictures.mid(i * pictureBytes, pictureBytes),
                 qPrintable(QString::number(i)));
    }
}

// Every picture has the size that the clip was opened with.
void tst_VTVideoSourceFFMPEG::changedSizeIsScaled()
{
    const QString path = TestClips::changedSize();
    Playback playback(path);
    QVERIFY(playback.finish());
    QCOMPARE(playback.source->loadedFrameCount(), quint64(10));
    // The stream says nothing of its length.
    QCOMPARE(playback.source->duration(), 0.0);
    QCOMPARE(playback.source->progress(), 0.0);
    const QSize size(int(playback.source->frameWidth()), int(playback.source->frameHeight()));
    QVERIFY(size == QSize(160, 120) || size == QSize(128, 96));
    const QString filter = QString("scale=%1:%2:flags=bicubic").arg(size.width()).arg(size.height());
    const QByteArray pictures = reference(path, {"-vf", filter});
    const int pictureBytes = size.width() * size.height() * 3;
    QCOMPARE(pictures.size(), 10 * pictureBytes);
    for (int i = 0; i < 10; ++i)
        QVERIFY2(packed(playback.source->getFrame(uint(i))) == pictures.mid(i * pictureBytes, pictureBytes),
                 qPrintable(QString::number(i)));
}

void tst_VTVideoSourceFFMPEG::changedFormatIsFollowed_data()
{
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("second");
    const QStringList plain{"-pix_fmt", "yuv420p"};
    const QStringList bt709 = plain + QStringList{"-colorspace", "bt709"};
    QTest::newRow("format") << plain << QStringList{"-pix_fmt", "yuv444p"};
    QTest::newRow("matrix") << bt709 << plain + QStringList{"-colorspace", "smpte240m"};
    QTest::newRow("matrix is named") << plain << bt709;
    QTest::newRow("range") << plain + QStringList{"-color_range", "tv"}
                           << plain + QStringList{"-color_range", "pc"};
}

// Each part of a stream is shown as it would be by itself.
void tst_VTVideoSourceFFMPEG::changedFormatIsFollowed()
{
    QFETCH(QStringList, first);
    QFETCH(QStringList, second);
    QStringList parts;
    for (const QStringList &options : {first, second})
        parts << TestClips::part(options.join(QString()), options);
    const QByteArray pictures = reference(parts.at(0)) + reference(parts.at(1));
    const QString path =
        TestClips::write("joined.h264", TestClips::read(parts.at(0)) + TestClips::read(parts.at(1)));
    Playback playback(path);
    QVERIFY(playback.finish());
    QCOMPARE(playback.source->loadedFrameCount(), quint64(10));
    const int pictureBytes = 160 * 120 * 3;
    QCOMPARE(pictures.size(), 10 * pictureBytes);
    for (int i = 0; i < 10; ++i)
        QVERIFY2(packed(playback.source->getFrame(uint(i))) == pictures.mid(i * pictureBytes, pictureBytes),
                 qPrintable(QString::number(i)));
}

// Fields that are to be shown again stretch a picture by half a frame each.
void tst_VTVideoSourceFFMPEG::repeatedFieldsStretchTheClock()
{
    const QString path = TestClips::repeatedFields();
    const QVector<int> repeats = TestClips::repeatsOf(path);
    QVERIFY(repeats.contains(1) && repeats.contains(0));
    Playback playback(path);
    QVERIFY(playback.finish());
    QCOMPARE(int(playback.source->loadedFrameCount()), repeats.size());
    const double frameDelay = 1.0 / playback.source->frameRate();
    double time = 0.0;
    for (int i = 0; i < repeats.size(); ++i) {
        QVERIFY2(playback.source->getFrame(uint(i)).pts() == time, qPrintable(QString::number(i)));
        time = time + frameDelay + repeats.at(i) * frameDelay * 0.5;
    }
}

void tst_VTVideoSourceFFMPEG::slowClipIsTimedByItsRate()
{
    SteppedSource source;
    QVERIFY(source.load(TestClips::slow()));
    QCOMPARE(source.frameRate(), 0.5);
    source.changeSetPosition(1);
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    source.start();
    QTRY_COMPARE(ended.count(), 1);
    QVERIFY(source.loadedFrameCount() >= 2);
    QCOMPARE(source.getFrame(0).pts(), 2.0);
    QCOMPARE(source.getFrame(1).pts(), 4.0);
}

void tst_VTVideoSourceFFMPEG::getTimeIsTheWallClock()
{
    SteppedSource source;
    const double before = double(QDateTime::currentMSecsSinceEpoch()) / 1000;
    const double time = source.getTime();
    const double after = double(QDateTime::currentMSecsSinceEpoch() + 1) / 1000;
    QVERIFY(before <= time && time <= after);
}

void tst_VTVideoSourceFFMPEG::openReportsTheClip()
{
    SteppedSource source;
    SignalCounter loaded(&source, &VTVideoSource::sourceLoaded);
    QVERIFY(source.load(TestClips::h264()));
    QCOMPARE(loaded.count(), 1);
    QVERIFY(source.isOpen());
    QCOMPARE(source.frameWidth(), 160.0);
    QCOMPARE(source.frameHeight(), 120.0);
    QCOMPARE(source.frameRate(), 25.0);
    QCOMPARE(source.duration(), 0.48);
    QCOMPARE(source.timeBase(), 0.02);
    source.close();
    QVERIFY(!source.isOpen());
}

// Matroska's streams have no length of their own.
void tst_VTVideoSourceFFMPEG::durationOfTheContainer()
{
    SteppedSource source;
    QVERIFY(source.load(TestClips::vp8()));
    QCOMPARE(source.duration(), 0.4);
}

// Five pictures of each of two colours, as raw pixels.
void tst_VTVideoSourceFFMPEG::equalPicturesShareTheirPixels()
{
    const QString path = TestClips::still();
    Playback playback(path);
    QVERIFY(playback.finish());
    QCOMPARE(playback.source->loadedFrameCount(), quint64(10));
    QSet<qint64> pictures;
    for (uint i = 0; i < 10; ++i) {
        const VTVideoFrame frame = playback.source->getFrame(i);
        pictures << frame.cacheKey();
        QCOMPARE(frame.pts(), playback.source->getFrame(0).pts() + i / 25.0);
        QCOMPARE(frame.pixelColor(5, 5).red() > 128, i < 5);
    }
    QCOMPARE(pictures.size(), 2);
}

void tst_VTVideoSourceFFMPEG::pictureThatDiffersAnywhereIsAnother_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("bytes");
    QTest::newRow("planes") << "yuv420p" << 22 * 18 * 3 / 2;
    QTest::newRow("packed") << "bgr24" << 22 * 18 * 3;
    QTest::newRow("grey") << "gray" << 22 * 18;
}

// One byte of every second picture differs, each time another one, until each of them did.
void tst_VTVideoSourceFFMPEG::pictureThatDiffersAnywhereIsAnother()
{
    QFETCH(QString, format);
    QFETCH(int, bytes);
    const QString path = TestClips::withOneByteChanged(format, QSize(22, 18), bytes);
    QVERIFY(!path.isEmpty());
    Playback playback(path);
    QVERIFY(playback.finish());
    const int count = int(playback.source->loadedFrameCount());
    QCOMPARE(count, 2 * bytes);
    for (int i = 1; i < count; ++i)
        QVERIFY2(playback.source->getFrame(uint(i)).cacheKey()
                     != playback.source->getFrame(uint(i - 1)).cacheKey(),
                 qPrintable(QString::number(i)));
}

void tst_VTVideoSourceFFMPEG::memoryLimitCountsDifferentPictures()
{
    auto *const source = new SteppedSource;
    source->setMemoryLimit(64 * 48 * 4 * 2);
    Playback playback(TestClips::still(), source);
    QVERIFY(playback.finish());
    // Before the picture that might be a third one, at the sixth frame, it ends.
    QCOMPARE(source->loadedFrameCount(), quint64(6));
    auto *const tight = new SteppedSource;
    tight->setMemoryLimit(64 * 48 * 4 * 5);
    Playback whole(TestClips::still(), tight);
    QVERIFY(whole.finish());
    QCOMPARE(tight->loadedFrameCount(), quint64(10));
}

// The scaler has functions of its own for usual clips, with the pixels of which the image is filled directly.
void tst_VTVideoSourceFFMPEG::everyColourIsConvertedAsByTheCommand()
{
    const QString path = TestClips::everyColour();
    QVERIFY(!path.isEmpty());
    Playback playback(path);
    QVERIFY(playback.finish());
    const QByteArray pictures = reference(path);
    const int pictureBytes = 1024 * 1024 * 3;
    QCOMPARE(pictures.size(), pictureBytes * int(playback.source->loadedFrameCount()));
    QCOMPARE(playback.source->loadedFrameCount(), quint64(16));
    for (int i = 0; i < 16; ++i)
        QVERIFY2(packed(playback.source->getFrame(uint(i))) == pictures.mid(i * pictureBytes, pictureBytes),
                 qPrintable(QString::number(i)));
}

void tst_VTVideoSourceFFMPEG::sizeAndTimingStayAfterTheEnd()
{
    Playback playback(TestClips::h264());
    QVERIFY(playback.finish());
    QCOMPARE(playback.source->frameWidth(), 160.0);
    QCOMPARE(playback.source->frameHeight(), 120.0);
    QCOMPARE(playback.source->frameRate(), 25.0);
    QCOMPARE(playback.source->duration(), 0.48);
    QVERIFY(qAbs(playback.source->progress() - 11.0 / 12) < 1e-9);
}

void tst_VTVideoSourceFFMPEG::secondClipReplacesTheFirst()
{
    Playback playback(TestClips::h264());
    QVERIFY(playback.finish());
    QVERIFY(playback.source->setSource(QUrl::fromLocalFile(TestClips::oddSize())));
    QTRY_COMPARE(playback.ended.count(), 2);
    QCOMPARE(playback.source->loadedFrameCount(), quint64(5));
    QCOMPARE(playback.source->frameWidth(), 161.0);
    // The clock goes on from the first clip: only a change of position sets it back.
    QVERIFY(qAbs(playback.source->getFrame(0).pts() - 0.48) < 1e-9);
}

void tst_VTVideoSourceFFMPEG::widening_data()
{
    QTest::addColumn<int>("count");
    for (int count : {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 161, 4096})
        QTest::addRow("%d pixels", count) << count;
}

void tst_VTVideoSourceFFMPEG::widening()
{
    QFETCH(int, count);
    QByteArray source(count * 3, '\0');
    for (int i = 0; i < source.size(); ++i)
        source[i] = char(i * 151 + 7);
    QVector<quint32> target(count);
    // A copy of exactly this size on the heap lets an address checker see a read past the end.
    const std::unique_ptr<uchar[]> exact(new uchar[size_t(source.size())]);
    std::copy(source.cbegin(), source.cend(), exact.get());
    widenPixels(exact.get(), target.data(), count);
    QCOMPARE(firstWrongPixel(source, target), -1);
}

QTEST_MAIN(tst_VTVideoSourceFFMPEG)
#include "tst_vtvideosourceffmpeg.moc"
