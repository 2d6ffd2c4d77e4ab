#include <Vidtips/VTPixels_p.h>
#include <Vidtips/VTVideoFrameCache.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "MessageRecorder.h"
#include "SignalCounter.h"
#include "TestClips.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QPointer>
#include <QtCore/QSemaphore>
#include <QtCore/QSet>
#include <QtCore/QtMath>
#include <QtTest/QTest>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <limits>
#include <memory>
#include <thread>

using namespace Vidtips;

namespace {

// Runs the steps of the thread in the test's own thread, one at a time.
class Source : public VTVideoSourceFFMPEG
{
public:
    Source()
        : VTVideoSourceFFMPEG(nullptr)
    {
    }
    ~Source() override { quit(); }
    bool load(const QString &path)
    {
        changeSetSource(QUrl::fromLocalFile(path));
        return loadSource();
    }
    using VTVideoSourceFFMPEG::loadSource;
    using VTVideoSourceFFMPEG::processActionQueue;
    using VTVideoSourceFFMPEG::setMemoryLimit;
};

// Notes what actions are applied, in order and when.
class ObservedSource : public VTVideoSourceFFMPEG
{
public:
    ObservedSource()
        : VTVideoSourceFFMPEG(nullptr)
    {
        m_timer.start();
    }
    ~ObservedSource() override { quit(); }
    void changeSetAction(Action action) override
    {
        {
            const QMutexLocker locker(&m_lock);
            m_actions << action;
            m_times << m_timer.elapsed();
        }
        VTVideoSourceFFMPEG::changeSetAction(action);
    }
    // Not shared copies: the race run does not see the count of references that these are told apart by.
    QVector<int> actions() const
    {
        const QMutexLocker locker(&m_lock);
        return {m_actions.cbegin(), m_actions.cend()};
    }
    QVector<qint64> times() const
    {
        const QMutexLocker locker(&m_lock);
        return {m_times.cbegin(), m_times.cend()};
    }
    using VTVideoSourceFFMPEG::insertCache;
    using VTVideoSourceFFMPEG::loadSource;

private:
    mutable QMutex m_lock;
    QVector<int> m_actions;
    QVector<qint64> m_times;
    QElapsedTimer m_timer;
};

// Decodes on the source's thread; the destructor ends it.
struct Playback
{
    explicit Playback(const QString &path, VTVideoSourceFFMPEG *decoder = new Source)
        : source(decoder)
        , ended(decoder, &VTVideoSource::streamEnded)
    {
        source->setSource(QUrl::fromLocalFile(path));
        source->start();
    }
    bool finish()
    {
        return QTest::qWaitFor([this] { return ended.count() > 0; }, 30000);
    }
    std::unique_ptr<VTVideoSourceFFMPEG> source;
    SignalCounter ended;
};

// The pictures that the ffmpeg command decodes, as packed RGB.
QByteArray reference(const QString &path, const QStringList &options = {})
{
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg",
                 QStringList{"-v", "error", "-nostdin", "-i", path, "-map", "0:v:0", "-vsync", "passthrough"}
                     + options
                     + QStringList{"-f", "rawvideo", "-pix_fmt", "rgb24", "-sws_flags", "bicubic", "-"});
    ffmpeg.waitForFinished(60000);
    return ffmpeg.readAllStandardOutput();
}

QByteArray packed(const QImage &image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    QByteArray bytes;
    for (int y = 0; y < rgb.height(); ++y)
        bytes.append(reinterpret_cast<const char *>(rgb.constScanLine(y)), rgb.width() * 3);
    return bytes;
}

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

int threadCount()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

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
    void failures_data();
    void failures();
    void failureIsReportedUnlocked();
    void endIsAnnouncedUnlocked();
    void unallocatablePictureFailsTheOpen();
    void memoryRunsOutAnywhere();
    void emptySourceCloses();
    void truncatedClipEndsEarly();
    void hostileSizes_data();
    void hostileSizes();
    void memoryLimitEndsTheClip();
    void equalPicturesShareTheirPixels();
    void pictureThatDiffersAnywhereIsAnother_data();
    void pictureThatDiffersAnywhereIsAnother();
    void memoryLimitCountsDifferentPictures();
    void everyColourIsConvertedAsByTheCommand();
    void sizeAndTimingStayAfterTheEnd();
    void secondClipReplacesTheFirst();
    void failedOpenKeepsTheClock();
    void closeWhileDecoding();
    void changeSetPositionWhileClosed();
    void changeSetPositionWhileClosedResetsTheClock();
    void changeSetPositionSeeksInItsDirection_data();
    void changeSetPositionSeeksInItsDirection();
    void seekStartsAgain();
    void changeSetPositionDropsWhatTheDecoderHolds();
    void changeSetPositionWhileOpen_data();
    void changeSetPositionWhileOpen();
    void stopEndsTheThread();
    void closeActionClosesAndIdles();
    void seekWithoutMediaIdles();
    void decodeWithoutMediaIdles();
    void actionsOfAClip_data();
    void actionsOfAClip();
    void decodesIntoAKeptCache();
    void restsBetweenPasses_data();
    void restsBetweenPasses();
    void requestToQuitEndsTheRest();
    void destroyedAtAnyMoment_data();
    void destroyedAtAnyMoment();
    void destroyedWhileItOpens();
    void destroyedWithoutBeingStarted();
    void destroyedWithoutBeingToldToQuit();
    void widening_data();
    void widening();
};

void tst_VTVideoSourceFFMPEG::freshSource()
{
    Source source;
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
    Source source;
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
    Source source;
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
    Source source;
    const double before = double(QDateTime::currentMSecsSinceEpoch()) / 1000;
    const double time = source.getTime();
    const double after = double(QDateTime::currentMSecsSinceEpoch() + 1) / 1000;
    QVERIFY(before <= time && time <= after);
}

void tst_VTVideoSourceFFMPEG::openReportsTheClip()
{
    Source source;
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
    Source source;
    QVERIFY(source.load(TestClips::vp8()));
    QCOMPARE(source.duration(), 0.4);
}

void tst_VTVideoSourceFFMPEG::failures_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("message");
    const QString folder = TestClips::folder().path();
    const auto row = [](const char *name, const QString &path, const QString &message) {
        QTest::newRow(name) << QUrl::fromLocalFile(path) << message.arg(path);
    };
    const QString notOpened = "Could not open media at: %1";
    row("missing", folder + "/none.mp4", notOpened);
    row("missing, with a placeholder", folder + "/%1 \"quoted\".mp4", notOpened);
    row("zero bytes", TestClips::empty(), notOpened);
    row("folder", folder, notOpened);
    row("device", "/dev/zero", notOpened);
    row("text", TestClips::write("text.mp4", "This is no clip.\n"), notOpened);
    row("sound only", TestClips::audioOnly(), "Could not find a video stream in %1");
    row("no decoder", TestClips::unknownCodec(), "Could not find a video stream in %1");
    row("no codec headers", TestClips::missingCodecHeaders(), "Could not open codec for stream in: %1");
    row("no stream", TestClips::paddingOnly(), "Could not find any stream information in media at: %1");
    row("no pictures", TestClips::withoutPictures(false), "Could not get a swscale context for %1");
    row("no pictures beside sound", TestClips::withoutPictures(true),
        "Could not get a swscale context for %1");
    QTest::newRow("not local") << QUrl("http://localhost:1/clip.mp4") << "Could not open media at: ";
}

void tst_VTVideoSourceFFMPEG::failures()
{
    QFETCH(QUrl, url);
    QFETCH(QString, message);
    MessageRecorder log;
    Source source;
    source.changeSetSource(url);
    QVERIFY(!source.loadSource());
    QVERIFY(!source.isOpen());
    QCOMPARE(log.texts(), QStringList{message});
    QVERIFY(log.allHaveContext());
    for (int pass = 0; pass < 4; ++pass)
        source.processActionQueue();
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QCOMPARE(source.frameWidth(), 200.0);
}

// Whoever takes the message may wait for another thread that uses the source.
void tst_VTVideoSourceFFMPEG::failureIsReportedUnlocked()
{
    static QPointer<VTVideoSource> reporter;
    const auto source = std::make_unique<Source>();
    reporter = source.get();
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
            std::thread([] { reporter->changeSetPosition(0); }).join();
            reporter->setObjectName("reported");
        });
    QVERIFY(!source->load(TestClips::empty()));
    qInstallMessageHandler(before);
    QCOMPARE(source->objectName(), QString("reported"));
}

// A receiver may wait for another thread that uses the source.
void tst_VTVideoSourceFFMPEG::endIsAnnouncedUnlocked()
{
    Source source;
    QSemaphore announced;
    connect(
        &source, &VTVideoSource::streamEnded, this,
        [&] {
            std::thread([&] { source.close(); }).join();
            announced.release();
        },
        Qt::DirectConnection);
    QVERIFY(source.load(TestClips::h264()));
    source.start();
    QVERIFY(announced.tryAcquire(1, 30000));
}

void tst_VTVideoSourceFFMPEG::unallocatablePictureFailsTheOpen()
{
    const QString path = TestClips::large();
    MessageRecorder log;
    Source source;
    // Enough for the decoder, not for a packed picture of 26 million bytes.
    av_max_alloc(20 << 20);
    const bool opened = source.load(path);
    av_max_alloc(std::numeric_limits<int>::max());
    QVERIFY(!opened);
    QCOMPARE(log.texts(), QStringList{"Could not allocate rgb frame in " + path});
    QVERIFY(!source.isOpen());
}

// Wherever memory runs out, the open fails with one of its messages or the clip opens.
void tst_VTVideoSourceFFMPEG::memoryRunsOutAnywhere()
{
    const QString path = TestClips::h264();
    QStringList seen;
    for (size_t limit = 64; limit < (1 << 20); limit += limit / 8) {
        MessageRecorder log;
        Source source;
        av_max_alloc(limit);
        const bool opened = source.load(path);
        source.close();
        av_max_alloc(std::numeric_limits<int>::max());
        QCOMPARE(log.texts().size(), opened ? 0 : 1);
        seen << log.texts();
    }
    QVERIFY(seen.contains("Could not open media at: " + path));
}

void tst_VTVideoSourceFFMPEG::emptySourceCloses()
{
    MessageRecorder log;
    Source source;
    QVERIFY(source.load(TestClips::h264()));
    source.clearChanges();
    source.changeSetAction(VTVideoSource::Load);
    source.changeSetSource(QUrl());
    QVERIFY(!source.loadSource());
    QVERIFY(!source.isOpen());
    source.processActionQueue();
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QCOMPARE(log.texts(), QStringList());
}

void tst_VTVideoSourceFFMPEG::truncatedClipEndsEarly()
{
    Playback playback(TestClips::truncated());
    QVERIFY(playback.finish());
    QVERIFY(playback.source->loadedFrameCount() > 2);
    QVERIFY(playback.source->loadedFrameCount() < 15);
    QVERIFY(!playback.source->isOpen());
}

void tst_VTVideoSourceFFMPEG::hostileSizes_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("16 Ki") << 16000 << 16000;
    QTest::newRow("64 Ki") << 65535 << 65535;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << std::numeric_limits<int>::max();
    QTest::newRow("negative") << -160 << -1;
    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("wide") << std::numeric_limits<int>::max() << 1;
}

// The container claims a size that its few bytes of picture data cannot have.
void tst_VTVideoSourceFFMPEG::hostileSizes()
{
    QFETCH(int, width);
    QFETCH(int, height);
    MessageRecorder log;
    Playback playback(TestClips::claimingSize(width, height));
    QTRY_VERIFY_WITH_TIMEOUT(playback.ended.count() == 1 || !log.texts().isEmpty(), 30000);
    QVERIFY(playback.source->loadedFrameCount() <= 3);
    QTRY_COMPARE(playback.source->action(), VTVideoSource::Idle);
}

void tst_VTVideoSourceFFMPEG::memoryLimitEndsTheClip()
{
    auto *const source = new Source;
    source->setMemoryLimit(160 * 120 * 4 * 5 + 100);
    Playback playback(TestClips::h264(), source);
    QVERIFY(playback.finish());
    QTRY_COMPARE(source->action(), VTVideoSource::Idle);
    QCOMPARE(playback.ended.count(), 1);
    QCOMPARE(source->loadedFrameCount(), quint64(5));
    QVERIFY(!source->isOpen());
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
    auto *const source = new Source;
    source->setMemoryLimit(64 * 48 * 4 * 2);
    Playback playback(TestClips::still(), source);
    QVERIFY(playback.finish());
    // Before the picture that might be a third one, at the sixth frame, it ends.
    QCOMPARE(source->loadedFrameCount(), quint64(6));
    auto *const tight = new Source;
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

void tst_VTVideoSourceFFMPEG::failedOpenKeepsTheClock()
{
    Source source;
    QVERIFY(source.load(TestClips::h264()));
    QVERIFY(!source.load(TestClips::audioOnly()));
    QCOMPARE(source.frameWidth(), 160.0);
    QCOMPARE(source.frameRate(), 25.0);
    QCOMPARE(source.loadedFrameCount(), quint64(0));
}

void tst_VTVideoSourceFFMPEG::closeWhileDecoding()
{
    Playback playback(TestClips::large());
    QTRY_VERIFY(playback.source->isOpen());
    playback.source->close();
    QVERIFY(!playback.source->isOpen());
    QTRY_COMPARE(playback.source->action(), VTVideoSource::Idle);
    QVERIFY(playback.source->loadedFrameCount() <= 3);
}

void tst_VTVideoSourceFFMPEG::changeSetPositionWhileClosed()
{
    Playback playback(TestClips::h264());
    QVERIFY(playback.finish());
    QVERIFY(playback.source->progress() > 0.0);
    SignalCounter moved(playback.source.get(), &VTVideoSource::positionChanged);
    playback.source->changeSetPosition(0);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(playback.source->progress(), 0.0);
}

void tst_VTVideoSourceFFMPEG::changeSetPositionWhileClosedResetsTheClock()
{
    Playback playback(TestClips::h264());
    QVERIFY(playback.finish());
    playback.source->changeSetPosition(7);
    QVERIFY(playback.source->setSource(QUrl::fromLocalFile(TestClips::oddSize())));
    QTRY_COMPARE(playback.ended.count(), 2);
    QCOMPARE(playback.source->getFrame(0).pts(), 0.0);
}

void tst_VTVideoSourceFFMPEG::changeSetPositionSeeksInItsDirection_data()
{
    QTest::addColumn<QVector<quint64>>("indexes");
    QTest::addColumn<int>("picture");
    QTest::newRow("forwards") << QVector<quint64>{13} << 20;
    QTest::newRow("to where it is") << QVector<quint64>{13, 13} << 20;
    QTest::newRow("backwards") << QVector<quint64>{25, 13} << 10;
}

// Between two key pictures, the one that lies on in the direction of the seek.
void tst_VTVideoSourceFFMPEG::changeSetPositionSeeksInItsDirection()
{
    QFETCH(QVector<quint64>, indexes);
    QFETCH(int, picture);
    Source source;
    QVERIFY(source.load(TestClips::rareKeyPictures()));
    for (quint64 index : indexes)
        source.changeSetPosition(index);
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    source.start();
    QTRY_COMPARE(ended.count(), 1);
    const int pictureBytes = 160 * 120 * 3;
    QCOMPARE(packed(source.getFrame(0)),
             reference(TestClips::rareKeyPictures()).mid(picture * pictureBytes, pictureBytes));
}

void tst_VTVideoSourceFFMPEG::seekStartsAgain()
{
    Source source;
    QVERIFY(source.load(TestClips::rareKeyPictures()));
    source.clearChanges();
    source.changeSetPosition(13);
    source.setAction(VTVideoSource::Seek);
    source.setAction(VTVideoSource::Decode);
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    source.start();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(source.loadedFrameCount(), quint64(30));
    QCOMPARE(packed(source.getFrame(0)), reference(TestClips::rareKeyPictures()).left(160 * 120 * 3));
}

// Decoders give a picture some packets late.
void tst_VTVideoSourceFFMPEG::changeSetPositionDropsWhatTheDecoderHolds()
{
    ObservedSource source;
    source.changeSetSource(QUrl::fromLocalFile(TestClips::rareKeyPictures()));
    QVERIFY(source.loadSource());
    source.clearChanges();
    source.setAction(VTVideoSource::Decode);
    source.setAction(VTVideoSource::Idle);
    source.start();
    QTRY_COMPARE(source.actions(), (QVector<int>{VTVideoSource::Decode, VTVideoSource::Idle}));
    QCOMPARE(source.loadedFrameCount(), quint64(1));
    source.changeSetPosition(13);
    source.setAction(VTVideoSource::Decode);
    QTRY_VERIFY(source.loadedFrameCount() > 1);
    const int pictureBytes = 160 * 120 * 3;
    QCOMPARE(packed(source.getFrame(1)),
             reference(TestClips::rareKeyPictures()).mid(20 * pictureBytes, pictureBytes));
}

void tst_VTVideoSourceFFMPEG::changeSetPositionWhileOpen_data()
{
    QTest::addColumn<quint64>("index");
    QTest::addColumn<double>("firstTime");
    QTest::addColumn<int>("frames");
    QTest::newRow("start") << quint64(0) << 0.0 << 12;
    QTest::newRow("key frame") << quint64(4) << 4 / 25.0 << 8;
    QTest::newRow("past the end") << quint64(4000) << 4000 / 25.0 << 0;
    QTest::newRow("past the last time stamp") << (quint64(1) << 54) << 18014398509481984.0 / 25.0 << 0;
    QTest::newRow("largest") << std::numeric_limits<quint64>::max() << 18446744073709551615.0 / 25.0 << 0;
}

// The clock goes where it is told, whatever picture the demuxer then finds.
void tst_VTVideoSourceFFMPEG::changeSetPositionWhileOpen()
{
    QFETCH(quint64, index);
    QFETCH(double, firstTime);
    QFETCH(int, frames);
    Source source;
    QVERIFY(source.load(TestClips::h264()));
    SignalCounter moved(&source, &VTVideoSource::positionChanged);
    source.changeSetPosition(index);
    QCOMPARE(moved.count(), 1);
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    source.start();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(source.loadedFrameCount(), quint64(frames));
    if (frames > 0)
        QCOMPARE(source.getFrame(0).pts(), firstTime);
    if (index == 4)
        QCOMPARE(packed(source.getFrame(0)),
                 reference(TestClips::h264()).mid(4 * 160 * 120 * 3, 160 * 120 * 3));
}

void tst_VTVideoSourceFFMPEG::stopEndsTheThread()
{
    Source source;
    source.start();
    source.setAction(VTVideoSource::Stop);
    QVERIFY(source.wait(10000));
    QVERIFY(!source.shouldQuit());
}

void tst_VTVideoSourceFFMPEG::closeActionClosesAndIdles()
{
    Source source;
    QVERIFY(source.load(TestClips::h264()));
    source.clearChanges();
    SignalCounter changed(&source, &VTVideoSource::actionChanged);
    source.setAction(VTVideoSource::Close);
    source.start();
    QTRY_COMPARE(changed.count(), 2);
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QVERIFY(!source.isOpen());
}

void tst_VTVideoSourceFFMPEG::seekWithoutMediaIdles()
{
    Source source;
    SignalCounter changed(&source, &VTVideoSource::actionChanged);
    source.setAction(VTVideoSource::Seek);
    source.start();
    QTRY_VERIFY(changed.count() >= 2);
    QCOMPARE(source.action(), VTVideoSource::Idle);
}

void tst_VTVideoSourceFFMPEG::decodeWithoutMediaIdles()
{
    Source source;
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    SignalCounter changed(&source, &VTVideoSource::actionChanged);
    source.setAction(VTVideoSource::Decode);
    source.start();
    QTRY_VERIFY(changed.count() >= 2);
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QCOMPARE(ended.count(), 0);
}

void tst_VTVideoSourceFFMPEG::actionsOfAClip_data()
{
    using Actions = QVector<int>;
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<int>("posted");
    QTest::addColumn<Actions>("expected");
    const int load = VTVideoSource::Load;
    const int close = VTVideoSource::Close;
    const int seek = VTVideoSource::Seek;
    const int decode = VTVideoSource::Decode;
    const int idle = VTVideoSource::Idle;
    const QUrl missing = QUrl::fromLocalFile("/missing.mp4");
    QTest::newRow("load nothing") << QUrl() << load << Actions{load, idle};
    QTest::newRow("load a missing clip") << missing << load << Actions{load, decode, idle, idle, idle};
    QTest::newRow("close") << QUrl() << close << Actions{close, idle};
    QTest::newRow("seek without a clip") << QUrl() << seek << Actions{seek, idle};
    QTest::newRow("decode without a clip") << QUrl() << decode << Actions{decode, idle, idle};
}

// Each change is applied on a pass of its own, the last one too.
void tst_VTVideoSourceFFMPEG::actionsOfAClip()
{
    QFETCH(QUrl, url);
    QFETCH(int, posted);
    QFETCH(QVector<int>, expected);
    MessageRecorder log;
    ObservedSource source;
    source.changeSetSource(url);
    source.setAction(VTVideoSource::Action(posted));
    source.start();
    QTRY_COMPARE(source.actions(), expected);
}

void tst_VTVideoSourceFFMPEG::decodesIntoAKeptCache()
{
    const QUrl url = QUrl::fromLocalFile(TestClips::h264());
    ObservedSource source;
    auto *const cache = new VTVideoFrameCache(url.toString());
    source.insertCache(url.toString(), cache);
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    source.setSource(url);
    source.start();
    QTRY_COMPARE(ended.count(), 1);
    source.quit();
    QCOMPARE(cache->length(), quint64(12));
}

void tst_VTVideoSourceFFMPEG::restsBetweenPasses_data()
{
    QTest::addColumn<int>("action");
    QTest::newRow("idle") << int(VTVideoSource::Idle);
    QTest::newRow("seek") << int(VTVideoSource::Seek);
}

// Every pass applies one change, which shows when the passes are.
void tst_VTVideoSourceFFMPEG::restsBetweenPasses()
{
    QFETCH(int, action);
    ObservedSource source;
    source.changeSetSource(QUrl::fromLocalFile(TestClips::h264()));
    QVERIFY(source.loadSource());
    source.clearChanges();
    for (int i = 0; i < 4; ++i)
        source.setAction(VTVideoSource::Action(action));
    source.start();
    QTRY_COMPARE(source.times().size(), 4);
    const qint64 time = source.times().constLast() - source.times().constFirst();
    QVERIFY2(time >= 290, qPrintable(QString::number(time)));
    // Long enough for more passes, which find nothing else to do.
    QTest::qWait(250);
    QCOMPARE(source.actions(), QVector<int>(4, action));
}

// The quickest of some ends, as a busy machine may hold up any of them.
void tst_VTVideoSourceFFMPEG::requestToQuitEndsTheRest()
{
    qint64 quickest = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 20; ++i) {
        Source source;
        QSemaphore applied;
        connect(
            &source, &VTVideoSource::actionChanged, this, [&] { applied.release(); }, Qt::DirectConnection);
        source.setAction(VTVideoSource::Idle);
        source.start();
        applied.acquire();
        QElapsedTimer timer;
        timer.start();
        source.setShouldQuit();
        QVERIFY(source.wait(10000));
        quickest = qMin(quickest, timer.elapsed());
    }
    QVERIFY2(quickest < 50, qPrintable(QString::number(quickest)));
}

void tst_VTVideoSourceFFMPEG::destroyedAtAnyMoment_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("frames");
    QTest::newRow("at once") << TestClips::large() << -1;
    QTest::newRow("while its clip fails to open") << TestClips::empty() << -1;
    QTest::newRow("when it decodes") << TestClips::large() << 1;
    QTest::newRow("after the end") << TestClips::h264() << 12;
}

void tst_VTVideoSourceFFMPEG::destroyedAtAnyMoment()
{
    QFETCH(QString, path);
    QFETCH(int, frames);
    const int threadsBefore = threadCount();
    MessageRecorder log;
    QElapsedTimer timer;
    {
        Playback playback(path);
        QTRY_VERIFY(int(playback.source->loadedFrameCount()) >= frames);
        timer.start();
    }
    QVERIFY(timer.elapsed() < 5000);
    // Threads that ended before may have been counted still.
    QTRY_VERIFY(threadCount() <= threadsBefore);
    QVERIFY(log.texts().filter("did not quit").isEmpty());
}

// What is given up is no failure of the clip, and nothing is said about it.
void tst_VTVideoSourceFFMPEG::destroyedWhileItOpens()
{
    const QString path = TestClips::slowToOpen();
    QVERIFY(!path.isEmpty());
    MessageRecorder log;
    QElapsedTimer timer;
    {
        auto *const source = new Source;
        SignalCounter begun(source, &VTVideoSource::sourceChanged);
        Playback playback(path, source);
        QTRY_COMPARE(begun.count(), 1);
        timer.start();
    }
    const qint64 time = timer.elapsed();
    QVERIFY(QFile::remove(path));
    QVERIFY(time < 5000);
    QCOMPARE(log.texts(), QStringList());
}

void tst_VTVideoSourceFFMPEG::destroyedWithoutBeingStarted()
{
    Source source;
    QVERIFY(source.load(TestClips::h264()));
}

void tst_VTVideoSourceFFMPEG::destroyedWithoutBeingToldToQuit()
{
    const int threadsBefore = threadCount();
    {
        VTVideoSourceFFMPEG source(nullptr);
        source.start();
    }
    QTRY_VERIFY(threadCount() <= threadsBefore);
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

QTEST_GUILESS_MAIN(tst_VTVideoSourceFFMPEG)
#include "tst_vtvideosourceffmpeg.moc"
