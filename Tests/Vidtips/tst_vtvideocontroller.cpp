#include "PushedSource.h"

#include <cmath>
#include <limits>

using namespace Vidtips;

namespace {

constexpr quint64 wrapped = std::numeric_limits<quint64>::max();
const QUrl clip("file:///clips/a.mp4");

// A source whose thread runs but turns to another clip only when the test says so.
class HesitantSource : public PushedSource
{
public:
    explicit HesitantSource(int frames)
        : PushedSource(frames)
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

} // namespace

/** What the controller knows and answers; its thread is another test. */
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

QTEST_MAIN(tst_VTVideoController)
#include "tst_vtvideocontroller.moc"
