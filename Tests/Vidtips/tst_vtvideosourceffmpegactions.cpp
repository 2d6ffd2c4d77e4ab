#include <Vidtips/VTVideoFrameCache.h>

#include "MessageRecorder.h"
#include "SteppedSource.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QSemaphore>

using namespace Vidtips;

namespace {

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

int threadCount()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

/** What a source does on its thread: changes, seeking, and its end. */
class tst_VTVideoSourceFFMPEGActions : public QObject
{
    Q_OBJECT

private slots:
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
};

void tst_VTVideoSourceFFMPEGActions::closeWhileDecoding()
{
    Playback playback(TestClips::large());
    // Who comes late finds everything decoded.
    QTRY_VERIFY(playback.source->isOpen() || playback.ended.count() > 0);
    playback.source->close();
    QVERIFY(!playback.source->isOpen());
    QTRY_COMPARE(playback.source->action(), VTVideoSource::Idle);
    QVERIFY(playback.source->loadedFrameCount() <= 3);
}

void tst_VTVideoSourceFFMPEGActions::changeSetPositionWhileClosed()
{
    Playback playback(TestClips::h264());
    QVERIFY(playback.finish());
    QVERIFY(playback.source->progress() > 0.0);
    SignalCounter moved(playback.source.get(), &VTVideoSource::positionChanged);
    playback.source->changeSetPosition(0);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(playback.source->progress(), 0.0);
}

void tst_VTVideoSourceFFMPEGActions::changeSetPositionWhileClosedResetsTheClock()
{
    Playback playback(TestClips::h264());
    QVERIFY(playback.finish());
    playback.source->changeSetPosition(7);
    QVERIFY(playback.source->setSource(QUrl::fromLocalFile(TestClips::oddSize())));
    QTRY_COMPARE(playback.ended.count(), 2);
    QCOMPARE(playback.source->getFrame(0).pts(), 0.0);
}

void tst_VTVideoSourceFFMPEGActions::changeSetPositionSeeksInItsDirection_data()
{
    QTest::addColumn<QVector<quint64>>("indexes");
    QTest::addColumn<int>("picture");
    QTest::newRow("forwards") << QVector<quint64>{13} << 20;
    QTest::newRow("to where it is") << QVector<quint64>{13, 13} << 20;
    QTest::newRow("backwards") << QVector<quint64>{25, 13} << 10;
}

// Between two key pictures, the one that lies on in the direction of the seek.
void tst_VTVideoSourceFFMPEGActions::changeSetPositionSeeksInItsDirection()
{
    QFETCH(QVector<quint64>, indexes);
    QFETCH(int, picture);
    SteppedSource source;
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

void tst_VTVideoSourceFFMPEGActions::seekStartsAgain()
{
    SteppedSource source;
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
void tst_VTVideoSourceFFMPEGActions::changeSetPositionDropsWhatTheDecoderHolds()
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

void tst_VTVideoSourceFFMPEGActions::changeSetPositionWhileOpen_data()
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
void tst_VTVideoSourceFFMPEGActions::changeSetPositionWhileOpen()
{
    QFETCH(quint64, index);
    QFETCH(double, firstTime);
    QFETCH(int, frames);
    SteppedSource source;
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

void tst_VTVideoSourceFFMPEGActions::stopEndsTheThread()
{
    SteppedSource source;
    source.start();
    source.setAction(VTVideoSource::Stop);
    QVERIFY(source.wait(10000));
    QVERIFY(!source.shouldQuit());
}

void tst_VTVideoSourceFFMPEGActions::closeActionClosesAndIdles()
{
    SteppedSource source;
    QVERIFY(source.load(TestClips::h264()));
    source.clearChanges();
    SignalCounter changed(&source, &VTVideoSource::actionChanged);
    source.setAction(VTVideoSource::Close);
    source.start();
    QTRY_COMPARE(changed.count(), 2);
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QVERIFY(!source.isOpen());
}

void tst_VTVideoSourceFFMPEGActions::seekWithoutMediaIdles()
{
    SteppedSource source;
    SignalCounter changed(&source, &VTVideoSource::actionChanged);
    source.setAction(VTVideoSource::Seek);
    source.start();
    QTRY_VERIFY(changed.count() >= 2);
    QCOMPARE(source.action(), VTVideoSource::Idle);
}

void tst_VTVideoSourceFFMPEGActions::decodeWithoutMediaIdles()
{
    SteppedSource source;
    SignalCounter ended(&source, &VTVideoSource::streamEnded);
    SignalCounter changed(&source, &VTVideoSource::actionChanged);
    source.setAction(VTVideoSource::Decode);
    source.start();
    QTRY_VERIFY(changed.count() >= 2);
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QCOMPARE(ended.count(), 0);
}

void tst_VTVideoSourceFFMPEGActions::actionsOfAClip_data()
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
void tst_VTVideoSourceFFMPEGActions::actionsOfAClip()
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

void tst_VTVideoSourceFFMPEGActions::decodesIntoAKeptCache()
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

void tst_VTVideoSourceFFMPEGActions::restsBetweenPasses_data()
{
    QTest::addColumn<int>("action");
    QTest::newRow("idle") << int(VTVideoSource::Idle);
    QTest::newRow("seek") << int(VTVideoSource::Seek);
}

// Every pass applies one change, which shows when the passes are.
void tst_VTVideoSourceFFMPEGActions::restsBetweenPasses()
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
void tst_VTVideoSourceFFMPEGActions::requestToQuitEndsTheRest()
{
    qint64 quickest = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 20; ++i) {
        SteppedSource source;
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

void tst_VTVideoSourceFFMPEGActions::destroyedAtAnyMoment_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("frames");
    QTest::newRow("at once") << TestClips::large() << -1;
    QTest::newRow("while its clip fails to open") << TestClips::empty() << -1;
    QTest::newRow("when it decodes") << TestClips::large() << 1;
    QTest::newRow("after the end") << TestClips::h264() << 12;
}

void tst_VTVideoSourceFFMPEGActions::destroyedAtAnyMoment()
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
void tst_VTVideoSourceFFMPEGActions::destroyedWhileItOpens()
{
    const QString path = TestClips::slowToOpen();
    QVERIFY(!path.isEmpty());
    MessageRecorder log;
    QElapsedTimer timer;
    {
        auto *const source = new SteppedSource;
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

void tst_VTVideoSourceFFMPEGActions::destroyedWithoutBeingStarted()
{
    SteppedSource source;
    QVERIFY(source.load(TestClips::h264()));
}

void tst_VTVideoSourceFFMPEGActions::destroyedWithoutBeingToldToQuit()
{
    const int threadsBefore = threadCount();
    {
        VTVideoSourceFFMPEG source(nullptr);
        source.start();
    }
    QTRY_VERIFY(threadCount() <= threadsBefore);
}

QTEST_MAIN(tst_VTVideoSourceFFMPEGActions)
#include "tst_vtvideosourceffmpegactions.moc"
