#include "MessageRecorder.h"
#include "PushedSource.h"

#include <cmath>
#include <ctime>
#include <limits>
#include <thread>

using namespace Vidtips;

namespace {

constexpr quint64 wrapped = std::numeric_limits<quint64>::max();

const QUrl clip("file:///clips/a.mp4");

// Is asked whether it is open where the thread decides how a loop goes on, and notes what position is seen
// then.
class LoopedSource : public PushedSource
{
public:
    LoopedSource()
        : PushedSource(3, 100.0)
    {
    }
    bool isOpen() override
    {
        if (controller && controller->position() >= loadedFrameCount())
            wasPastItsEnd = true;
        return false;
    }

    VTVideoController *controller = nullptr;
    std::atomic<bool> wasPastItsEnd{false};
};

// Makes the thread of the player hang where it announces a still frame.
void hang(Player *player, bool canBeTerminated, QSemaphore *hangs, const std::atomic<bool> *isHeld)
{
    struct Protection : QThread
    {
        using QThread::setTerminationEnabled;
    };
    QObject::connect(
        player->controller, &VTVideoController::displayFrame, player->controller,
        [=] {
            Protection::setTerminationEnabled(canBeTerminated);
            hangs->release();
            while (*isHeld)
                QThread::msleep(10);
        },
        Qt::DirectConnection);
    player->controller->start();
}

} // namespace

/** What the controller's thread announces and when, and how it ends. */
class tst_VTVideoControllerThread : public QObject
{
    Q_OBJECT

private slots:
    void waits_data();
    void waits();
    void stillFrameIsAnnouncedOnce();
    void stillFrameWaitsUntilItIsAvailable();
    void nullFrameIsAnnouncedAgainAndAgain();
    void waitingTakesNoProcessorTime_data();
    void waitingTakesNoProcessorTime();
    void playsEveryFrameAtItsRate();
    void pausesAfterTheLastFrame();
    void loopsOverItsFrames();
    void loopIsNeverPastItsEnd();
    void loopWaitsForTheDecoder();
    void playingBeforeTheFirstFrameWraps();
    void pauseEndsALongWait();
    void signalsAreEmittedUnlocked();
    void shouldQuitGivesUpOnABusyLock();
    void quitBeforeTheThreadRuns();
    void quitInEveryState_data();
    void quitInEveryState();
    void pauseKeepsTheShownFrame();
    void moveMakesOneFrameDue();
    void endedStreamAnnouncesTheFrameAgain_data();
    void endedStreamAnnouncesTheFrameAgain();
    void quitReportsAThreadThatDoesNotEnd();
    void deletesItselfWhenFinished();
};

void tst_VTVideoControllerThread::waits_data()
{
    QTest::addColumn<quint64>("dueFrames");
    QTest::addColumn<double>("rate");
    QTest::addColumn<QDateTime>("last");
    QTest::addColumn<double>("expected");
    const QDateTime now(QDate(2020, 3, 1), QTime(0, 0, 0, 10));
    QTest::newRow("one frame") << quint64(1) << 25.0 << now.addMSecs(-40) << 0.04;
    QTest::newRow("a millisecond is a long time") << quint64(5) << 25.0 << now.addMSecs(-1) << 0.04;
    QTest::newRow("no time has passed") << quint64(5) << 25.0 << now << 0.2;
    QTest::newRow("nothing was shown yet") << quint64(3) << 50.0 << QDateTime() << 0.06;
    QTest::newRow("nothing is due") << quint64(0) << 25.0 << now << 0.04;
    QTest::newRow("a day has passed") << quint64(9) << 25.0 << now.addDays(-1) << 0.04;
    QTest::newRow("over midnight") << quint64(9) << 25.0 << now.addMSecs(-20) << 0.04;
    QTest::newRow("over midnight, more frames than that")
        << quint64(512500) << 25.0 << now.addMSecs(-20) << 500.0;
    QTest::newRow("more frames than that") << quint64(50000) << 25.0 << now.addMSecs(-1) << 1000.0;
    QTest::newRow("the clock was set back") << quint64(1) << 25.0 << now.addMSecs(2) << 2000.04;
}

void tst_VTVideoControllerThread::waits()
{
    QFETCH(quint64, dueFrames);
    QFETCH(double, rate);
    QFETCH(QDateTime, last);
    QFETCH(double, expected);
    const QDateTime now(QDate(2020, 3, 1), QTime(0, 0, 0, 10));
    QCOMPARE(VTVideoController::presentationWait(dueFrames, rate, last, now), expected);
}

void tst_VTVideoControllerThread::stillFrameIsAnnouncedOnce()
{
    Player player(5);
    Recorder recorder(player.controller);
    player.controller->start();
    QTRY_COMPARE(recorder.count("display"), 1);
    player.controller->setPosition(3);
    QTRY_COMPARE(recorder.count("display"), 2);
    // Long enough for more passes of the thread, which find nothing to announce.
    QTest::qWait(350);
    QCOMPARE(recorder.count("display"), 2);
    // The thread may announce the frame before who has asked for it has heard of the position.
    QCOMPARE(recorder.names().size(), recorder.count("display") + recorder.count("position"));
    QCOMPARE(recorder.count("position"), 1);
    QCOMPARE(player.controller->currentFrame().pts(), 3.0);
}

void tst_VTVideoControllerThread::stillFrameWaitsUntilItIsAvailable()
{
    Player player;
    Recorder recorder(player.controller);
    player.controller->start();
    QTest::qWait(150);
    QCOMPARE(recorder.count("display"), 0);
    player.source.push(1);
    QTRY_COMPARE(recorder.count("display"), 1);
    QTest::qWait(350);
    QCOMPARE(recorder.count("display"), 1);
}

// It is announced until it can be shown, but not without a rest.
void tst_VTVideoControllerThread::nullFrameIsAnnouncedAgainAndAgain()
{
    Player player;
    player.source.pushFrame(VTVideoFrame());
    Recorder recorder(player.controller);
    player.controller->start();
    QTRY_VERIFY(recorder.count("display") >= 4);
    const QVector<qint64> times = recorder.times("display");
    QVERIFY2(times.at(3) - times.at(0) >= 290, qPrintable(QString::number(times.at(3) - times.at(0))));
}

void tst_VTVideoControllerThread::waitingTakesNoProcessorTime_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("paused") << false;
    QTest::newRow("playing") << true;
}

void tst_VTVideoControllerThread::waitingTakesNoProcessorTime()
{
    QFETCH(bool, plays);
    Player player(3, 0.1);
    Recorder recorder(player.controller);
    if (plays)
        player.controller->play();
    player.controller->start();
    QTRY_COMPARE(recorder.count("display"), 1);
    const std::clock_t before = std::clock();
    QTest::qWait(1000);
    QVERIFY2(std::clock() - before < CLOCKS_PER_SEC / 10, qPrintable(QString::number(std::clock() - before)));
}

void tst_VTVideoControllerThread::playsEveryFrameAtItsRate()
{
    Player player(8);
    Recorder recorder(player.controller);
    player.controller->play();
    player.controller->start();
    QTRY_COMPARE(recorder.count("state"), 2);
    QCOMPARE(recorder.count("display"), 8);
    QCOMPARE(recorder.count("position"), 8);
    const QVector<qint64> times = recorder.times("display");
    for (int i = 1; i < times.size(); ++i)
        QVERIFY2(times.at(i) - times.at(i - 1) >= 39,
                 qPrintable(QString::number(times.at(i) - times.at(i - 1))));
    QVERIFY(!player.controller->lastFrameDisplayTime().isNull());
}

void tst_VTVideoControllerThread::pausesAfterTheLastFrame()
{
    Player player(3, 1000.0);
    player.controller->play();
    player.controller->start();
    QTRY_COMPARE(player.controller->state(), VTVideoController::Paused);
    QCOMPARE(player.controller->position(), quint64(3));
    Recorder recorder(player.controller);
    player.controller->play();
    QTRY_COMPARE(recorder.count("display"), 3);
}

void tst_VTVideoControllerThread::loopsOverItsFrames()
{
    Player player(3, 100.0);
    VTVideoController *const controller = player.controller;
    controller->setLooping(true);
    QVERIFY(controller->isLooping());
    QMutex lock;
    QVector<quint64> positions;
    connect(
        controller, &VTVideoController::positionChanged, controller,
        [&] {
            const QMutexLocker locker(&lock);
            positions << controller->position();
        },
        Qt::DirectConnection);
    const auto count = [&] {
        const QMutexLocker locker(&lock);
        return positions.size();
    };
    controller->play();
    controller->start();
    QTRY_VERIFY(count() >= 7);
    controller->quit();
    QCOMPARE(positions.mid(0, 7), (QVector<quint64>{1, 2, 0, 1, 2, 0, 1}));
}

// The position may be read at any moment.
void tst_VTVideoControllerThread::loopIsNeverPastItsEnd()
{
    LoopedSource source;
    const std::unique_ptr<VTVideoController> controller(new VTVideoController(&source, nullptr));
    source.controller = controller.get();
    controller->setLooping(true);
    controller->play();
    Recorder recorder(controller.get());
    controller->start();
    QTRY_VERIFY(recorder.count("position") >= 7);
    controller->quit();
    QVERIFY(!source.wasPastItsEnd);
}

// Which may have more frames; the last one is known when the media is closed.
void tst_VTVideoControllerThread::loopWaitsForTheDecoder()
{
    Player player(3, 100.0);
    player.source.isDecoding = true;
    player.controller->setLooping(true);
    player.controller->play();
    player.controller->start();
    QTRY_COMPARE(player.controller->position(), quint64(3));
    QTest::qWait(250);
    QCOMPARE(player.controller->position(), quint64(3));
    QCOMPARE(player.controller->state(), VTVideoController::Playing);
    player.source.push(1);
    QTRY_COMPARE(player.controller->position(), quint64(4));
    Q_EMIT player.source.streamEnded();
    QCOMPARE(player.controller->state(), VTVideoController::Playing);
    player.source.isDecoding = false;
    QTRY_VERIFY(player.controller->position() < 3);
}

void tst_VTVideoControllerThread::playingBeforeTheFirstFrameWraps()
{
    Player player;
    player.controller->play();
    QCOMPARE(player.controller->position(), wrapped);
    player.controller->start();
    player.source.push(2);
    QTest::qWait(150);
    QCOMPARE(player.controller->state(), VTVideoController::Playing);
    QCOMPARE(player.controller->position(), wrapped);
    // Nothing is about to be presented.
    QCOMPARE(player.source.asked.available(), 0);
}

void tst_VTVideoControllerThread::pauseEndsALongWait()
{
    Player player(3, 0.001);
    Recorder recorder(player.controller);
    player.controller->play();
    player.controller->start();
    QTRY_COMPARE(recorder.count("display"), 1);
    player.controller->pause();
    player.controller->setPosition(0);
    QTRY_COMPARE(recorder.count("display"), 2);
}

// A receiver may wait for another thread that uses the controller.
void tst_VTVideoControllerThread::signalsAreEmittedUnlocked()
{
    Player player(4, 1000.0);
    std::atomic<int> received{0};
    VTVideoController *const controller = player.controller;
    const auto useFromAnotherThread = [&] {
        std::thread([&] {
            controller->state();
            controller->getFrame(0);
        }).join();
        ++received;
    };
    for (auto signal : {&VTVideoController::displayFrame, &VTVideoController::stateChanged,
                        &VTVideoController::positionChanged, &VTVideoController::loadProgressChanged})
        connect(controller, signal, controller, useFromAnotherThread, Qt::DirectConnection);
    controller->setPosition(1);
    controller->streamEnded();
    controller->start();
    QTRY_VERIFY(received >= 4);
    controller->play();
    QTRY_COMPARE(controller->state(), VTVideoController::Paused);
    controller->quit();
}

void tst_VTVideoControllerThread::shouldQuitGivesUpOnABusyLock()
{
    Player player(3);
    player.source.isBlocked = true;
    player.controller->play();
    player.controller->start();
    // The thread asks for the frame rate under its lock.
    player.source.asked.acquire();
    player.controller->setShouldQuit();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!player.controller->shouldQuit());
    const qint64 waited = timer.elapsed();
    QVERIFY2(waited >= 95, qPrintable(QString::number(waited)));
    player.source.isBlocked = false;
    QVERIFY(player.controller->wait(10000));
    QVERIFY(player.controller->shouldQuit());
}

void tst_VTVideoControllerThread::quitBeforeTheThreadRuns()
{
    MessageRecorder log;
    Player player(3);
    Recorder recorder(player.controller);
    player.controller->setShouldQuit();
    player.controller->start();
    QVERIFY(player.controller->wait(10000));
    QCOMPARE(recorder.names(), QStringList());
    player.controller->quit();
    QCOMPARE(log.texts(), QStringList());
}

void tst_VTVideoControllerThread::quitInEveryState_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<double>("rate");
    QTest::addColumn<bool>("plays");
    QTest::newRow("paused") << 3 << 25.0 << false;
    QTest::newRow("playing") << 1000 << 25.0 << true;
    QTest::newRow("playing a slow clip") << 3 << 0.001 << true;
    QTest::newRow("playing at no rate") << 3 << 0.0 << true;
    QTest::newRow("playing at a rate that is no number") << 1000 << std::nan("") << true;
    QTest::newRow("playing without frames") << 0 << 25.0 << true;
}

void tst_VTVideoControllerThread::quitInEveryState()
{
    QFETCH(int, frames);
    QFETCH(double, rate);
    QFETCH(bool, plays);
    MessageRecorder log;
    Player player(frames, rate);
    Recorder recorder(player.controller);
    if (plays)
        player.controller->play();
    player.controller->start();
    QTRY_VERIFY(frames == 0 || recorder.count("display") > 0);
    QElapsedTimer timer;
    timer.start();
    player.controller->quit();
    QVERIFY(timer.elapsed() < 5000);
    QVERIFY(player.controller->isFinished());
    QCOMPARE(log.texts(), QStringList());
}

// The frame on display was announced by playing it; the pause has nothing to add.
void tst_VTVideoControllerThread::pauseKeepsTheShownFrame()
{
    Player player(3, 0.001);
    Recorder recorder(player.controller);
    player.controller->play();
    player.controller->start();
    QTRY_COMPARE(recorder.count("position"), 1);
    player.controller->pause();
    QTest::qWait(350);
    QCOMPARE(recorder.count("display"), 1);
}

// Where the display went does not count as frames that were missed: the first one is shown for its own time.
void tst_VTVideoControllerThread::moveMakesOneFrameDue()
{
    Player player(1000, 10.0);
    Recorder recorder(player.controller);
    player.controller->setPosition(600);
    player.controller->play();
    player.controller->start();
    // Those before it would take a minute.
    QTRY_VERIFY_WITH_TIMEOUT(recorder.count("display") >= 2, 50000);
    const QVector<qint64> times = recorder.times("display");
    QVERIFY(times.at(1) - times.at(0) >= 99);
}

void tst_VTVideoControllerThread::endedStreamAnnouncesTheFrameAgain_data()
{
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("stream ended") << false;
    QTest::newRow("source loaded") << true;
}

void tst_VTVideoControllerThread::endedStreamAnnouncesTheFrameAgain()
{
    QFETCH(bool, isLoaded);
    Player player(3);
    Recorder recorder(player.controller);
    player.controller->start();
    QTRY_COMPARE(recorder.count("display"), 1);
    if (isLoaded)
        player.controller->sourceLoaded();
    else
        player.controller->streamEnded();
    QTRY_COMPARE(recorder.count("display"), 2);
}

// All waits run side by side, as each takes its full ten seconds.
void tst_VTVideoControllerThread::quitReportsAThreadThatDoesNotEnd()
{
    MessageRecorder log;
    Player terminated(3);
    Player immortal(3);
    Player deleted(3);
    QSemaphore hangs;
    std::atomic<bool> isHeld{true};
    hang(&terminated, true, &hangs, &isHeld);
    hang(&immortal, false, &hangs, &isHeld);
    hang(&deleted, false, &hangs, &isHeld);
    hangs.acquire(3);
    std::thread first([&] { terminated.controller->quit(); });
    std::thread second([&] { immortal.controller->quit(); });
    std::thread third([&] { delete deleted.controller; });
    first.join();
    second.join();
    QVERIFY(terminated.controller->isFinished());
    QVERIFY(immortal.controller->isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(log.texts().size(), 5, 30000);
    isHeld = false;
    QVERIFY(immortal.controller->wait(10000));
    // The destructor goes on waiting, as a thread must not outlive what it works on.
    third.join();
    const QString late = "VTVideoController did not quit in a timely fashion";
    const QString never = "VTVideoController did not quit at all";
    QCOMPARE(log.texts(), (QStringList{late, late, late, never, never}));
    QVERIFY(log.allHaveContext());
}

void tst_VTVideoControllerThread::deletesItselfWhenFinished()
{
    PushedSource source(3);
    const QPointer<VTVideoController> controller(new VTVideoController(&source, this));
    controller->start();
    controller->setShouldQuit();
    QTRY_VERIFY(!controller);
}

QTEST_MAIN(tst_VTVideoControllerThread)
#include "tst_vtvideocontrollerthread.moc"
