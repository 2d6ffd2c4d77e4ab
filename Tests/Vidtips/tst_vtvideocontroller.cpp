#include <Vidtips/VTVideoController.h>
#include <Vidtips/VTVideoSource.h>

#include "MessageRecorder.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QPointer>
#include <QtCore/QSemaphore>
#include <QtTest/QTest>

#include <atomic>
#include <cmath>
#include <ctime>
#include <limits>
#include <memory>
#include <thread>

using namespace Vidtips;

namespace {

constexpr quint64 wrapped = std::numeric_limits<quint64>::max();
const QUrl clip("file:///clips/a.mp4");

// A source whose frames the test pushes; its thread never runs.
class Source : public VTVideoSource
{
public:
    explicit Source(int frames = 0, double rate = 25.0)
        : VTVideoSource(nullptr)
        , rate(rate)
    {
        setupSource();
        push(frames);
    }
    void push(int frames)
    {
        for (int i = 0; i < frames; ++i) {
            VTVideoFrame frame(2, 2, QImage::Format_RGB32, 0);
            frame.setPts(double(loadedFrameCount()));
            pushFrame(frame);
        }
    }
    void close() override { ++closed; }
    bool isOpen() override { return isDecoding; }
    double getTime() override { return 0; }
    void changeSetPosition(quint64) override { }
    double duration() override { return 0; }
    double timeBase() override { return 0; }
    double frameRate() override
    {
        asked.release();
        while (isBlocked)
            QThread::msleep(10);
        return rate;
    }
    double frameWidth() const override { return 320; }
    double frameHeight() const override { return 240; }

    std::atomic<double> rate;
    std::atomic<bool> isBlocked{false};
    std::atomic<bool> isDecoding{false};
    QSemaphore asked;
    int closed = 0;
};

// A source whose thread runs but turns to another clip only when the test says so.
class HesitantSource : public Source
{
public:
    explicit HesitantSource(int frames)
        : Source(frames)
    {
        clearChanges();
        start();
    }
    ~HesitantSource() override { quit(); }
    void run() override
    {
        while (!shouldQuit())
            msleep(5);
    }
    void turn()
    {
        processActionQueue();
        setupSource();
    }
};

// The controller deletes itself when its thread has finished, so it is never on the stack. The source
// outlives it.
struct Player
{
    explicit Player(int frames = 0, double rate = 25.0)
        : source(frames, rate)
        , controller(new VTVideoController(&source, nullptr))
    {
    }
    ~Player() { delete controller; }

    Source source;
    QPointer<VTVideoController> controller;
};

// Notes in which order and when the controller's signals are emitted, in the thread that emits them.
class Recorder
{
public:
    explicit Recorder(VTVideoController *controller)
    {
        m_notes->timer.start();
        note(controller, &VTVideoController::displayFrame, "display");
        note(controller, &VTVideoController::stateChanged, "state");
        note(controller, &VTVideoController::positionChanged, "position");
        note(controller, &VTVideoController::widthChanged, "width");
        note(controller, &VTVideoController::heightChanged, "height");
        note(controller, &VTVideoController::loadProgressChanged, "load");
    }
    QStringList names() const
    {
        const QMutexLocker locker(&m_notes->lock);
        return m_notes->names;
    }
    int count(const QString &name) const { return names().count(name); }
    QVector<qint64> times(const QString &name) const
    {
        const QMutexLocker locker(&m_notes->lock);
        QVector<qint64> found;
        for (int i = 0; i < m_notes->names.size(); ++i) {
            if (m_notes->names.at(i) == name)
                found << m_notes->times.at(i);
        }
        return found;
    }

private:
    // Shared with the emission that may go on when the recorder is destroyed.
    struct Notes
    {
        QMutex lock;
        QStringList names;
        QVector<qint64> times;
        QElapsedTimer timer;
    };

    void note(VTVideoController *controller, void (VTVideoController::*signal)(), const QString &name)
    {
        QObject::connect(
            controller, signal, controller,
            [notes = m_notes, name] {
                const QMutexLocker locker(&notes->lock);
                notes->names << name;
                notes->times << notes->timer.elapsed();
            },
            Qt::DirectConnection);
    }
    const std::shared_ptr<Notes> m_notes = std::make_shared<Notes>();
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

class tst_VTVideoController : public QObject
{
    Q_OBJECT

private slots:
    void metaObjectOrder();
    void freshController();
    void withoutSource();
    void runsWithoutSource_data();
    void runsWithoutSource();
    void setSourceResets();
    void setSourceHasItsFrameAnnounced();
    void setSourceHidesTheFramesBefore();
    void setSourceComparesWithTheOneNamedLast();
    void setSourceRefused_data();
    void setSourceRefused();
    void playRewindsAtTheEnd_data();
    void playRewindsAtTheEnd();
    void settersSignalAlsoWhenNothingChanges();
    void setPositionClamps_data();
    void setPositionClamps();
    void setProgressTruncates_data();
    void setProgressTruncates();
    void progressOfThePosition();
    void loadProgressOfTheCounts();
    void currentFrameFollowsThePosition();
    void getFrameNarrowsTheIndex();
    void forwardsToTheSource();
    void streamEndedPausesUnlessScrubbing_data();
    void streamEndedPausesUnlessScrubbing();
    void sourceLoadedAnnouncesTheSize();
    void sourceSignalsAreConnected();
    void lastFrameDisplayTimeIsStored();
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

void tst_VTVideoController::metaObjectOrder()
{
    const QMetaObject &meta = VTVideoController::staticMetaObject;
    QByteArrayList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        names << meta.method(i).methodSignature();
        QCOMPARE(meta.method(i).methodType(), names.size() <= 6 ? QMetaMethod::Signal : QMetaMethod::Slot);
    }
    QCOMPARE(names,
             (QByteArrayList{"displayFrame()", "stateChanged()", "positionChanged()", "widthChanged()",
                             "heightChanged()", "loadProgressChanged()", "streamEnded()", "sourceLoaded()"}));
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
}

void tst_VTVideoController::freshController()
{
    Player player;
    QCOMPARE(player.controller->objectName(), QString("Controller"));
    QCOMPARE(player.controller->state(), VTVideoController::Paused);
    QCOMPARE(int(VTVideoController::Playing), 1);
    QCOMPARE(player.controller->position(), quint64(0));
    QVERIFY(!player.controller->isScrubbing());
    QVERIFY(!player.controller->shouldQuit());
    QVERIFY(player.controller->lastFrameDisplayTime().isNull());
}

void tst_VTVideoController::withoutSource()
{
    VTVideoController controller(nullptr, nullptr);
    controller.play();
    QCOMPARE(controller.state(), VTVideoController::Playing);
    QVERIFY(!controller.setSource(clip));
    controller.setProgress(0.5);
    QCOMPARE(controller.position(), wrapped);
    QCOMPARE(controller.progress(), 0.0);
    QCOMPARE(controller.loadProgress(), 0.0);
    QCOMPARE(controller.frameCount(), quint64(0));
    QCOMPARE(controller.frameWidth() + controller.frameHeight(), 0.0);
    QVERIFY(controller.source().isEmpty());
    QVERIFY(controller.currentFrame().isNull());
    controller.close();
}

void tst_VTVideoController::runsWithoutSource_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("paused") << false;
    QTest::newRow("playing") << true;
}

void tst_VTVideoController::runsWithoutSource()
{
    QFETCH(bool, plays);
    const std::unique_ptr<VTVideoController> controller(new VTVideoController(nullptr, nullptr));
    Recorder recorder(controller.get());
    if (plays)
        controller->play();
    controller->start();
    QTRY_COMPARE(recorder.count("state"), plays ? 2 : 0);
    QTest::qWait(150);
    QCOMPARE(recorder.names(), plays ? (QStringList{"state", "state"}) : QStringList());
}

void tst_VTVideoController::setSourceResets()
{
    Player player(5);
    player.controller->setPosition(3);
    player.controller->setState(VTVideoController::Playing);
    Recorder recorder(player.controller);
    QVERIFY(player.controller->setSource(clip));
    QCOMPARE(player.controller->position(), quint64(0));
    QCOMPARE(player.controller->state(), VTVideoController::Paused);
    QCOMPARE(recorder.names(), (QStringList{"state", "load", "position", "state"}));
    QVERIFY(player.controller->source().isEmpty());
}

void tst_VTVideoController::setSourceHasItsFrameAnnounced()
{
    Player player(5);
    VTVideoController *const controller = player.controller;
    // The frame before it may have been announced meanwhile.
    connect(controller, &VTVideoController::stateChanged, controller,
            [=] { controller->setNeedFrame(false); });
    QVERIFY(controller->setSource(clip));
    Recorder recorder(controller);
    controller->start();
    QTRY_COMPARE(recorder.count("display"), 1);
}

void tst_VTVideoController::setSourceHidesTheFramesBefore()
{
    HesitantSource source(5);
    const std::unique_ptr<VTVideoController> controller(new VTVideoController(&source, nullptr));
    QVERIFY(controller->setSource(clip));
    Recorder recorder(controller.get());
    controller->start();
    // Longer than a still frame waits to be announced.
    QTest::qWait(250);
    QCOMPARE(recorder.names(), QStringList());
    QCOMPARE(controller->frameCount(), quint64(0));
    QVERIFY(controller->currentFrame().isNull());
    QVERIFY(controller->getFrame(0).isNull());
    QCOMPARE(controller->progress(), 0.0);
    QVERIFY(std::isnan(controller->loadProgress()));
    source.turn();
    source.push(2);
    QTRY_COMPARE(recorder.names(), QStringList{"display"});
    QCOMPARE(controller->frameCount(), quint64(2));
    QVERIFY(!controller->currentFrame().isNull());
}

// Each of them is opened once, and the one that was named last at the end.
void tst_VTVideoController::setSourceComparesWithTheOneNamedLast()
{
    const QUrl other("file:///clips/b.mp4");
    HesitantSource source(5);
    const std::unique_ptr<VTVideoController> controller(new VTVideoController(&source, nullptr));
    QVERIFY(controller->setSource(clip));
    QVERIFY(!controller->setSource(clip));
    QVERIFY(controller->setSource(other));
    QVERIFY(controller->setSource(clip));
    QVERIFY(!controller->setSource(clip));
    QList<QUrl> turnedTo;
    for (int i = 0; i < 3; ++i) {
        source.turn();
        source.push(1);
        turnedTo << source.source();
        // Frames of the first turn are those of the right clip, too.
        QCOMPARE(controller->frameCount(), quint64(turnedTo.constLast() == clip ? 1 : 0));
    }
    QCOMPARE(turnedTo, (QList<QUrl>{clip, other, clip}));
    source.clearChanges();
    QVERIFY(controller->setSource(other));
    source.clearChanges();
    QVERIFY(controller->setSource(other));
}

void tst_VTVideoController::setSourceRefused_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<int>("before");
    QTest::newRow("empty") << 5 << QUrl() << 3;
    QTest::newRow("empty, at the start") << 5 << QUrl() << 0;
    QTest::newRow("current") << 5 << clip << 3;
    QTest::newRow("current, no frames") << 0 << clip << 0;
}

void tst_VTVideoController::setSourceRefused()
{
    QFETCH(int, frames);
    QFETCH(QUrl, url);
    QFETCH(int, before);
    Player player(frames);
    player.source.changeSetSource(clip);
    if (before > 0)
        player.controller->setPosition(quint64(before));
    player.controller->setState(VTVideoController::Playing);
    Recorder recorder(player.controller);
    QVERIFY(!player.controller->setSource(url));
    QCOMPARE(player.controller->state(), VTVideoController::Paused);
    QCOMPARE(player.controller->position(), quint64(before));
    QCOMPARE(recorder.names(), (QStringList{"state", "load", "position", "state"}));
    QCOMPARE(player.controller->source(), clip);
}

void tst_VTVideoController::playRewindsAtTheEnd_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<quint64>("expected");
    QTest::addColumn<QStringList>("emitted");
    QTest::newRow("start") << 0 << quint64(0) << QStringList{"state"};
    QTest::newRow("last frame") << 4 << quint64(4) << QStringList{"state"};
    QTest::newRow("past the last frame") << 5 << quint64(0) << QStringList{"position", "state"};
}

void tst_VTVideoController::playRewindsAtTheEnd()
{
    QFETCH(int, position);
    QFETCH(quint64, expected);
    QFETCH(QStringList, emitted);
    // A position past the end comes about when a shorter clip replaces a longer one.
    Player player(10);
    player.controller->setPosition(quint64(position));
    player.source.changeSetSource(clip);
    player.source.setupSource();
    player.source.push(5);
    Recorder recorder(player.controller);
    player.controller->play();
    QCOMPARE(player.controller->position(), expected);
    QCOMPARE(player.controller->state(), VTVideoController::Playing);
    QCOMPARE(recorder.names(), emitted);
}

void tst_VTVideoController::settersSignalAlsoWhenNothingChanges()
{
    Player player(3);
    Recorder recorder(player.controller);
    player.controller->pause();
    player.controller->setState(VTVideoController::Paused);
    player.controller->setPosition(0);
    QCOMPARE(recorder.names(), (QStringList{"state", "state", "position"}));
}

void tst_VTVideoController::setPositionClamps_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<quint64>("given");
    QTest::addColumn<quint64>("expected");
    QTest::newRow("inside") << 5 << quint64(2) << quint64(2);
    QTest::newRow("first") << 5 << quint64(0) << quint64(0);
    QTest::newRow("one past the end") << 5 << quint64(5) << quint64(4);
    QTest::newRow("far past the end") << 5 << quint64(10) << quint64(4);
    QTest::newRow("largest") << 5 << wrapped << quint64(4);
    QTest::newRow("no frames") << 0 << quint64(0) << wrapped;
    QTest::newRow("no frames, beyond") << 0 << quint64(7) << wrapped;
}

void tst_VTVideoController::setPositionClamps()
{
    QFETCH(int, frames);
    QFETCH(quint64, given);
    QFETCH(quint64, expected);
    Player player(frames);
    Recorder recorder(player.controller);
    player.controller->setPosition(given);
    QCOMPARE(player.controller->position(), expected);
    QCOMPARE(recorder.names(), QStringList{"position"});
}

void tst_VTVideoController::setProgressTruncates_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<quint64>("expected");
    QTest::newRow("start") << 0.0 << quint64(0);
    QTest::newRow("half") << 0.5 << quint64(4);
    QTest::newRow("nearly all") << 0.99 << quint64(8);
    QTest::newRow("end") << 1.0 << quint64(8);
    QTest::newRow("beyond") << 1e300 << quint64(8);
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << quint64(8);
    QTest::newRow("a little below") << -0.1 << quint64(0);
    QTest::newRow("below wraps") << -0.5 << quint64(8);
    QTest::newRow("far below") << -1e300 << quint64(8);
    QTest::newRow("no number") << std::nan("") << quint64(8);
}

void tst_VTVideoController::setProgressTruncates()
{
    QFETCH(double, progress);
    QFETCH(quint64, expected);
    Player player(9);
    player.controller->setProgress(progress);
    QCOMPARE(player.controller->position(), expected);
}

void tst_VTVideoController::progressOfThePosition()
{
    Player player;
    QCOMPARE(player.controller->progress(), 0.0);
    player.source.push(8);
    player.controller->setPosition(2);
    QCOMPARE(player.controller->progress(), 0.25);
}

void tst_VTVideoController::loadProgressOfTheCounts()
{
    Player player;
    QVERIFY(std::isnan(player.controller->loadProgress()));
    player.source.push(1);
    QCOMPARE(player.controller->loadProgress(), 1.0);
}

void tst_VTVideoController::currentFrameFollowsThePosition()
{
    Player player(5);
    player.controller->setPosition(3);
    QCOMPARE(player.controller->currentFrame().pts(), 3.0);
    QCOMPARE(player.controller->position(), quint64(3));
}

void tst_VTVideoController::getFrameNarrowsTheIndex()
{
    Player player(5);
    QCOMPARE(player.controller->getFrame(2).pts(), 2.0);
    QVERIFY(player.controller->getFrame(5).isNull());
    QCOMPARE(player.controller->getFrame((quint64(1) << 32) + 2).pts(), 2.0);
}

void tst_VTVideoController::forwardsToTheSource()
{
    Player player(5);
    QCOMPARE(player.controller->frameCount(), quint64(5));
    QCOMPARE(player.controller->frameWidth(), 320.0);
    QCOMPARE(player.controller->frameHeight(), 240.0);
    player.controller->close();
    QCOMPARE(player.source.closed, 1);
}

void tst_VTVideoController::streamEndedPausesUnlessScrubbing_data()
{
    QTest::addColumn<bool>("scrubbing");
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("emitted");
    QTest::newRow("watching") << false << int(VTVideoController::Paused) << QStringList{"state", "load"};
    QTest::newRow("scrubbing") << true << int(VTVideoController::Playing) << QStringList{"load"};
}

void tst_VTVideoController::streamEndedPausesUnlessScrubbing()
{
    QFETCH(bool, scrubbing);
    QFETCH(int, state);
    QFETCH(QStringList, emitted);
    Player player(5);
    player.controller->setScrubbing(scrubbing);
    QCOMPARE(player.controller->isScrubbing(), scrubbing);
    player.controller->play();
    Recorder recorder(player.controller);
    player.controller->streamEnded();
    QCOMPARE(int(player.controller->state()), state);
    QCOMPARE(recorder.names(), emitted);
}

void tst_VTVideoController::sourceLoadedAnnouncesTheSize()
{
    Player player;
    Recorder recorder(player.controller);
    player.controller->sourceLoaded();
    QCOMPARE(recorder.names(), (QStringList{"width", "height", "load"}));
}

void tst_VTVideoController::sourceSignalsAreConnected()
{
    Player player(3);
    Recorder recorder(player.controller);
    Q_EMIT player.source.streamEnded();
    QCOMPARE(recorder.names(), (QStringList{"state", "load"}));
    Q_EMIT player.source.sourceLoaded();
    QCOMPARE(recorder.names().mid(2), (QStringList{"width", "height", "load"}));
    Q_EMIT player.source.loadProgressChanged();
    QCOMPARE(recorder.names().mid(5), QStringList{"load"});
}

void tst_VTVideoController::lastFrameDisplayTimeIsStored()
{
    Player player;
    const QDateTime time(QDate(2020, 2, 29), QTime(12, 0));
    player.controller->setLastFrameDisplayTime(time);
    QCOMPARE(player.controller->lastFrameDisplayTime(), time);
}

void tst_VTVideoController::waits_data()
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

void tst_VTVideoController::waits()
{
    QFETCH(quint64, dueFrames);
    QFETCH(double, rate);
    QFETCH(QDateTime, last);
    QFETCH(double, expected);
    const QDateTime now(QDate(2020, 3, 1), QTime(0, 0, 0, 10));
    QCOMPARE(VTVideoController::presentationWait(dueFrames, rate, last, now), expected);
}

void tst_VTVideoController::stillFrameIsAnnouncedOnce()
{
    Player player(5);
    Recorder recorder(player.controller);
    player.controller->start();
    QTRY_COMPARE(recorder.count("display"), 1);
    player.controller->setPosition(3);
    QTRY_COMPARE(recorder.count("display"), 2);
    // Long enough for more passes of the thread, which find nothing to announce.
    QTest::qWait(350);
    QCOMPARE(recorder.names(), (QStringList{"display", "position", "display"}));
    QCOMPARE(player.controller->currentFrame().pts(), 3.0);
}

void tst_VTVideoController::stillFrameWaitsUntilItIsAvailable()
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
void tst_VTVideoController::nullFrameIsAnnouncedAgainAndAgain()
{
    Player player;
    player.source.pushFrame(VTVideoFrame());
    Recorder recorder(player.controller);
    player.controller->start();
    QTRY_VERIFY(recorder.count("display") >= 4);
    const QVector<qint64> times = recorder.times("display");
    QVERIFY2(times.at(3) - times.at(0) >= 290, qPrintable(QString::number(times.at(3) - times.at(0))));
}

void tst_VTVideoController::waitingTakesNoProcessorTime_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("paused") << false;
    QTest::newRow("playing") << true;
}

void tst_VTVideoController::waitingTakesNoProcessorTime()
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

void tst_VTVideoController::playsEveryFrameAtItsRate()
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

void tst_VTVideoController::pausesAfterTheLastFrame()
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

void tst_VTVideoController::loopsOverItsFrames()
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

// Which may have more frames; the last one is known when the media is closed.
void tst_VTVideoController::loopWaitsForTheDecoder()
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

void tst_VTVideoController::playingBeforeTheFirstFrameWraps()
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

void tst_VTVideoController::pauseEndsALongWait()
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
void tst_VTVideoController::signalsAreEmittedUnlocked()
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

void tst_VTVideoController::shouldQuitGivesUpOnABusyLock()
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
    QVERIFY2(waited >= 95 && waited < 200, qPrintable(QString::number(waited)));
    player.source.isBlocked = false;
    QVERIFY(player.controller->wait(10000));
    QVERIFY(player.controller->shouldQuit());
}

void tst_VTVideoController::quitBeforeTheThreadRuns()
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

void tst_VTVideoController::quitInEveryState_data()
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

void tst_VTVideoController::quitInEveryState()
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
void tst_VTVideoController::pauseKeepsTheShownFrame()
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
void tst_VTVideoController::moveMakesOneFrameDue()
{
    Player player(5, 1.0);
    Recorder recorder(player.controller);
    player.controller->setPosition(2);
    player.controller->play();
    player.controller->start();
    QTRY_VERIFY(recorder.count("display") >= 2);
    const QVector<qint64> times = recorder.times("display");
    QVERIFY(times.at(1) - times.at(0) >= 990);
    QVERIFY(times.at(1) - times.at(0) < 1900);
}

void tst_VTVideoController::endedStreamAnnouncesTheFrameAgain_data()
{
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("stream ended") << false;
    QTest::newRow("source loaded") << true;
}

void tst_VTVideoController::endedStreamAnnouncesTheFrameAgain()
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
void tst_VTVideoController::quitReportsAThreadThatDoesNotEnd()
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

void tst_VTVideoController::deletesItselfWhenFinished()
{
    Source source(3);
    const QPointer<VTVideoController> controller(new VTVideoController(&source, this));
    controller->start();
    controller->setShouldQuit();
    QTRY_VERIFY(!controller);
}

QTEST_GUILESS_MAIN(tst_VTVideoController)
#include "tst_vtvideocontroller.moc"
