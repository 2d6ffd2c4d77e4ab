#include "MessageRecorder.h"
#include "SteppedSource.h"

#include <QtCore/QPointer>
#include <QtCore/QSemaphore>

extern "C" {
#include <libavutil/mem.h>
}

#include <limits>
#include <thread>

using namespace Vidtips;

/** What a source makes of clips that are broken or too large. */
class tst_VTVideoSourceFFMPEGFailures : public QObject
{
    Q_OBJECT

private slots:
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
    void failedOpenKeepsTheClock();
};

void tst_VTVideoSourceFFMPEGFailures::failures_data()
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

void tst_VTVideoSourceFFMPEGFailures::failures()
{
    QFETCH(QUrl, url);
    QFETCH(QString, message);
    MessageRecorder log;
    SteppedSource source;
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
void tst_VTVideoSourceFFMPEGFailures::failureIsReportedUnlocked()
{
    static QPointer<VTVideoSource> reporter;
    const auto source = std::make_unique<SteppedSource>();
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
void tst_VTVideoSourceFFMPEGFailures::endIsAnnouncedUnlocked()
{
    SteppedSource source;
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

void tst_VTVideoSourceFFMPEGFailures::unallocatablePictureFailsTheOpen()
{
    const QString path = TestClips::large();
    MessageRecorder log;
    SteppedSource source;
    // Enough for the decoder, not for a packed picture of 26 million bytes.
    av_max_alloc(20 << 20);
    const bool opened = source.load(path);
    av_max_alloc(std::numeric_limits<int>::max());
    QVERIFY(!opened);
    QCOMPARE(log.texts(), QStringList{"Could not allocate rgb frame in " + path});
    QVERIFY(!source.isOpen());
}

// Wherever memory runs out, the open fails with one of its messages or the clip opens.
void tst_VTVideoSourceFFMPEGFailures::memoryRunsOutAnywhere()
{
    const QString path = TestClips::h264();
    QStringList seen;
    for (size_t limit = 64; limit < (1 << 20); limit += limit / 8) {
        MessageRecorder log;
        SteppedSource source;
        av_max_alloc(limit);
        const bool opened = source.load(path);
        source.close();
        av_max_alloc(std::numeric_limits<int>::max());
        QCOMPARE(log.texts().size(), opened ? 0 : 1);
        seen << log.texts();
    }
    QVERIFY(seen.contains("Could not open media at: " + path));
}

void tst_VTVideoSourceFFMPEGFailures::emptySourceCloses()
{
    MessageRecorder log;
    SteppedSource source;
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

void tst_VTVideoSourceFFMPEGFailures::truncatedClipEndsEarly()
{
    Playback playback(TestClips::truncated());
    QVERIFY(playback.finish());
    QVERIFY(playback.source->loadedFrameCount() > 2);
    QVERIFY(playback.source->loadedFrameCount() < 15);
    QVERIFY(!playback.source->isOpen());
}

void tst_VTVideoSourceFFMPEGFailures::hostileSizes_data()
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
void tst_VTVideoSourceFFMPEGFailures::hostileSizes()
{
    QFETCH(int, width);
    QFETCH(int, height);
    MessageRecorder log;
    Playback playback(TestClips::claimingSize(width, height));
    QTRY_VERIFY_WITH_TIMEOUT(playback.ended.count() == 1 || !log.texts().isEmpty(), 30000);
    QVERIFY(playback.source->loadedFrameCount() <= 3);
    QTRY_COMPARE(playback.source->action(), VTVideoSource::Idle);
}

void tst_VTVideoSourceFFMPEGFailures::memoryLimitEndsTheClip()
{
    auto *const source = new SteppedSource;
    source->setMemoryLimit(160 * 120 * 4 * 5 + 100);
    Playback playback(TestClips::h264(), source);
    QVERIFY(playback.finish());
    QTRY_COMPARE(source->action(), VTVideoSource::Idle);
    QCOMPARE(playback.ended.count(), 1);
    QCOMPARE(source->loadedFrameCount(), quint64(5));
    QVERIFY(!source->isOpen());
}

void tst_VTVideoSourceFFMPEGFailures::failedOpenKeepsTheClock()
{
    SteppedSource source;
    QVERIFY(source.load(TestClips::h264()));
    QVERIFY(!source.load(TestClips::audioOnly()));
    QCOMPARE(source.frameWidth(), 160.0);
    QCOMPARE(source.frameRate(), 25.0);
    QCOMPARE(source.loadedFrameCount(), quint64(0));
}

QTEST_MAIN(tst_VTVideoSourceFFMPEGFailures)
#include "tst_vtvideosourceffmpegfailures.moc"
