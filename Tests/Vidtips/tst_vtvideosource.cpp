#include <Vidtips/VTVideoFrameCache.h>
#include <Vidtips/VTVideoSource.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "MessageRecorder.h"

#include <QtCore/QPointer>
#include <QtCore/QSemaphore>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <limits>
#include <thread>

using namespace Vidtips;

namespace {

// A source without a decoder, which records what its changes call.
class Source : public VTVideoSource
{
public:
    Source()
        : VTVideoSource(nullptr)
    {
    }
    bool isOpen() override { return false; }
    double getTime() override { return 0; }
    void changeSetPosition(quint64) override { }
    double duration() override { return 0; }
    double timeBase() override { return 0; }
    double frameRate() override { return 0; }
    double frameWidth() const override { return 0; }
    double frameHeight() const override { return 0; }
    void changeSetAction(Action action) override
    {
        calls << QString("action %1").arg(int(action));
        VTVideoSource::changeSetAction(action);
    }
    void changeSetSource(const QUrl &url) override
    {
        calls << "source " + url.toString();
        VTVideoSource::changeSetSource(url);
    }
    using VTVideoSource::insertCache;
    using VTVideoSource::loadSource;
    using VTVideoSource::processActionQueue;

    QStringList calls;
};

// A source whose thread heeds no request to end: it sleeps until it is terminated, or not even that ends it.
class StubbornSource : public Source
{
public:
    explicit StubbornSource(bool canBeTerminated)
        : m_canBeTerminated(canBeTerminated)
    {
    }
    void run() override
    {
        setTerminationEnabled(m_canBeTerminated);
        started.release();
        while (!release.tryAcquire())
            msleep(10);
    }
    QSemaphore started;
    QSemaphore release;

private:
    bool m_canBeTerminated;
};

class ObedientSource : public Source
{
public:
    void run() override
    {
        while (!shouldQuit())
            msleep(5);
    }
};

// A decoder whose thread hangs in the signal of its first change until it is let go.
class StubbornDecoder : public VTVideoSourceFFMPEG
{
public:
    explicit StubbornDecoder(QSemaphore *started, QSemaphore *release)
        : VTVideoSourceFFMPEG(nullptr)
    {
        connect(
            this, &VTVideoSource::actionChanged, this,
            [=] {
                setTerminationEnabled(false);
                started->release();
                release->acquire();
            },
            Qt::DirectConnection);
        setAction(Idle);
    }
};

const QUrl clip("file:///clips/a.mp4");
const QUrl otherClip("file:///clips/b.mp4");

VTVideoFrame frameAt(double pts)
{
    VTVideoFrame frame(2, 2, QImage::Format_RGB32, 0);
    frame.setPts(pts);
    return frame;
}

void applyAll(Source &source, int passes = 10)
{
    while (passes--)
        source.processActionQueue();
}

} // namespace

class tst_VTVideoSource : public QObject
{
    Q_OBJECT

private slots:
    void metaObjectHoldsTheSignalsInOrder();
    void freshSource();
    void actionValues();
    void changeSetActionStoresAndSignals_data();
    void changeSetActionStoresAndSignals();
    void setActionNeedsNoOtherLock();
    void setSourceJudgesTheAppliedSource_data();
    void setSourceJudgesTheAppliedSource();
    void changesAreAppliedOneAtATimeInOrder();
    void changeRecords();
    void clearChangesDropsAll();
    void closeKeepsTheSource();
    void loadSourceOfTheBase();
    void setupSourceMakesACache();
    void setupSourceWithoutSourceIdles();
    void setupSourceReplacesTheCache();
    void setupSourceUsesAnInsertedCache();
    void insertedCachesSurviveASwitch();
    void insertingAgainReplacesTheCache();
    void cachesGoWithTheirSource();
    void framesByIndex();
    void framesBeforeAnySource();
    void notifyStreamEndedSignals();
    void signalsAreEmittedUnlocked();
    void quitOfAThreadThatEnds_data();
    void quitOfAThreadThatEnds();
    void quitReportsAThreadThatDoesNotEnd();
    void destroyedWithUnappliedChanges();
};

void tst_VTVideoSource::metaObjectHoldsTheSignalsInOrder()
{
    const QMetaObject &meta = VTVideoSource::staticMetaObject;
    QByteArrayList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
        names << meta.method(i).methodSignature();
    }
    QCOMPARE(names,
             (QByteArrayList{"frameReady()", "sourceChanged()", "streamEnded()", "sourceLoaded()",
                             "actionChanged()", "positionChanged()", "loadProgressChanged()"}));
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
}

void tst_VTVideoSource::freshSource()
{
    Source source;
    QCOMPARE(source.action(), VTVideoSource::Idle);
    QVERIFY(source.source().isEmpty());
    QVERIFY(!source.shouldQuit());
    QVERIFY(!source.isRunning());
    source.setShouldQuit();
    QVERIFY(source.shouldQuit());
}

void tst_VTVideoSource::actionValues()
{
    QCOMPARE(int(VTVideoSource::Stop), 0);
    QCOMPARE(int(VTVideoSource::Load), 1);
    QCOMPARE(int(VTVideoSource::Close), 2);
    QCOMPARE(int(VTVideoSource::Seek), 3);
    QCOMPARE(int(VTVideoSource::Decode), 4);
    QCOMPARE(int(VTVideoSource::Idle), 5);
    QCOMPARE(sizeof(VTVideoSource::Action), sizeof(qint32));
}

void tst_VTVideoSource::changeSetActionStoresAndSignals_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("signalCount");
    QTest::newRow("none") << -1 << 5 << 0;
    QTest::newRow("stop") << 0 << 0 << 1;
    QTest::newRow("decode") << 4 << 4 << 1;
    QTest::newRow("the same again") << 5 << 5 << 1;
}

void tst_VTVideoSource::changeSetActionStoresAndSignals()
{
    QFETCH(int, action);
    QFETCH(int, expected);
    QFETCH(int, signalCount);
    Source source;
    QSignalSpy changed(&source, &VTVideoSource::actionChanged);
    source.changeSetAction(VTVideoSource::Action(action));
    QCOMPARE(int(source.action()), expected);
    QCOMPARE(changed.count(), signalCount);
}

// A receiver that is called while the state lock could be held must be able to let another thread post.
void tst_VTVideoSource::setActionNeedsNoOtherLock()
{
    Source source;
    source.setAction(VTVideoSource::Decode);
    connect(
        &source, &VTVideoSource::actionChanged, this,
        [&] {
            std::thread([&] {
                source.setAction(VTVideoSource::Idle);
                source.setSource(clip);
            }).join();
        },
        Qt::DirectConnection);
    source.processActionQueue();
    QCOMPARE(source.action(), VTVideoSource::Decode);
    disconnect(&source, nullptr, this, nullptr);
    source.processActionQueue();
    QCOMPARE(source.action(), VTVideoSource::Idle);
}

void tst_VTVideoSource::setSourceJudgesTheAppliedSource_data()
{
    QTest::addColumn<QUrl>("current");
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<bool>("expected");
    QTest::newRow("first") << QUrl() << clip << true;
    QTest::newRow("another") << otherClip << clip << true;
    QTest::newRow("current") << clip << clip << false;
    QTest::newRow("empty") << clip << QUrl() << false;
    QTest::newRow("empty text") << QUrl() << QUrl(QString()) << false;
    QTest::newRow("not valid") << QUrl() << QUrl("http://[broken") << false;
}

void tst_VTVideoSource::setSourceJudgesTheAppliedSource()
{
    QFETCH(QUrl, current);
    QFETCH(QUrl, url);
    QFETCH(bool, expected);
    Source source;
    source.changeSetSource(current);
    source.calls.clear();
    QCOMPARE(source.setSource(url), expected);
    // The same once more: what waits in the queue is not the current source yet.
    QCOMPARE(source.setSource(url), expected);
    QCOMPARE(source.source(), current);
    applyAll(source);
    const QString applied = "source " + url.toString();
    QCOMPARE(source.calls,
             expected ? (QStringList{applied, "action 1", applied, "action 1"}) : QStringList());
}

void tst_VTVideoSource::changesAreAppliedOneAtATimeInOrder()
{
    Source source;
    source.setAction(VTVideoSource::Decode);
    QVERIFY(source.setSource(clip));
    source.setAction(VTVideoSource::Idle);
    source.processActionQueue();
    QCOMPARE(source.calls, QStringList{"action 4"});
    source.processActionQueue();
    QCOMPARE(source.calls, (QStringList{"action 4", "source " + clip.toString(), "action 1"}));
    QCOMPARE(source.action(), VTVideoSource::Load);
    QCOMPARE(source.source(), clip);
    source.processActionQueue();
    QCOMPARE(source.action(), VTVideoSource::Idle);
    source.processActionQueue();
    QCOMPARE(source.calls.size(), 4);
}

void tst_VTVideoSource::changeRecords()
{
    Source source;
    VTVideoSourceChange none(VTVideoSource::Action(-1));
    QCOMPARE(none.type(), 1);
    none.apply(&source);
    none.apply(nullptr);
    QCOMPARE(source.action(), VTVideoSource::Idle);
    VTVideoSourceSourceChange change(clip);
    QCOMPARE(change.type(), 3);
    QCOMPARE(change.action, VTVideoSource::Load);
    QCOMPARE(change.url, clip);
    VTVideoSourceChange &base = change;
    base.apply(nullptr);
    base.apply(&source);
    QCOMPARE(source.source(), clip);
    QCOMPARE(source.action(), VTVideoSource::Load);
}

void tst_VTVideoSource::clearChangesDropsAll()
{
    Source source;
    source.setAction(VTVideoSource::Decode);
    source.setSource(clip);
    source.clearChanges();
    applyAll(source);
    QCOMPARE(source.calls, QStringList());
}

void tst_VTVideoSource::closeKeepsTheSource()
{
    Source source;
    source.changeSetSource(clip);
    source.calls.clear();
    source.close();
    applyAll(source);
    QCOMPARE(source.calls, QStringList());
    QCOMPARE(source.source(), clip);
}

void tst_VTVideoSource::loadSourceOfTheBase()
{
    Source source;
    QSignalSpy loaded(&source, &VTVideoSource::sourceLoaded);
    QVERIFY(source.loadSource());
    QCOMPARE(loaded.count(), 1);
}

void tst_VTVideoSource::setupSourceMakesACache()
{
    Source source;
    source.changeSetSource(clip);
    source.calls.clear();
    QSignalSpy changed(&source, &VTVideoSource::sourceChanged);
    source.setupSource();
    QCOMPARE(changed.count(), 1);
    applyAll(source);
    QCOMPARE(source.calls, QStringList{"action 4"});
    source.pushFrame(frameAt(0.5));
    QCOMPARE(source.getFrame(0).pts(), 0.5);
}

void tst_VTVideoSource::setupSourceWithoutSourceIdles()
{
    Source source;
    QSignalSpy changed(&source, &VTVideoSource::sourceChanged);
    source.setupSource();
    QCOMPARE(changed.count(), 1);
    applyAll(source);
    QCOMPARE(source.calls, QStringList{"action 5"});
}

void tst_VTVideoSource::setupSourceReplacesTheCache()
{
    Source source;
    for (const QUrl &url : {clip, otherClip, clip}) {
        source.changeSetSource(url);
        source.setupSource();
        QCOMPARE(source.loadedFrameCount(), quint64(0));
        source.pushFrame(frameAt(0));
        QCOMPARE(source.loadedFrameCount(), quint64(1));
    }
}

void tst_VTVideoSource::setupSourceUsesAnInsertedCache()
{
    Source source;
    auto *const cache = new VTVideoFrameCache(clip.toString());
    cache->addFrame(frameAt(3));
    source.insertCache(clip.toString(), cache);
    QCOMPARE(source.loadedFrameCount(), quint64(0));
    source.changeSetSource(clip);
    source.calls.clear();
    QSignalSpy changed(&source, &VTVideoSource::sourceChanged);
    source.setupSource();
    QCOMPARE(changed.count(), 1);
    applyAll(source);
    QCOMPARE(source.calls, QStringList());
    QCOMPARE(source.getFrame(0).pts(), 3.0);
}

void tst_VTVideoSource::insertedCachesSurviveASwitch()
{
    Source source;
    const QPointer<VTVideoFrameCache> cache(new VTVideoFrameCache(clip.toString()));
    source.insertCache(clip.toString(), cache);
    for (const QUrl &url : {clip, otherClip, clip, clip}) {
        source.changeSetSource(url);
        source.setupSource();
        QVERIFY(cache);
    }
    source.pushFrame(frameAt(1));
    QCOMPARE(cache->length(), quint64(1));
}

void tst_VTVideoSource::insertingAgainReplacesTheCache()
{
    Source source;
    const QPointer<VTVideoFrameCache> first(new VTVideoFrameCache(clip.toString()));
    source.insertCache(clip.toString(), first);
    source.insertCache(clip.toString(), first);
    QVERIFY(first);
    const QPointer<VTVideoFrameCache> second(new VTVideoFrameCache(clip.toString()));
    source.insertCache(clip.toString(), second);
    QVERIFY(!first);
    source.changeSetSource(clip);
    source.setupSource();
    source.insertCache(clip.toString(), new VTVideoFrameCache(clip.toString()));
    QVERIFY(second);
    source.setupSource();
    QVERIFY(!second);
}

void tst_VTVideoSource::cachesGoWithTheirSource()
{
    const QPointer<VTVideoFrameCache> current(new VTVideoFrameCache(clip.toString()));
    const QPointer<VTVideoFrameCache> kept(new VTVideoFrameCache(clip.toString()));
    {
        Source source;
        source.insertCache(clip.toString(), current);
        source.changeSetSource(clip);
        source.setupSource();
        source.insertCache(clip.toString(), kept);
        QVERIFY(current);
    }
    QVERIFY(!current);
    QVERIFY(!kept);
}

void tst_VTVideoSource::framesByIndex()
{
    Source source;
    source.changeSetSource(clip);
    source.setupSource();
    for (int i = 0; i < 4; ++i) {
        source.pushFrame(frameAt(i));
        QVERIFY(source.isFrameAvailable(quint64(i)));
        QVERIFY(!source.isFrameAvailable(quint64(i) + 1));
        QCOMPARE(source.loadedFrameCount(), quint64(i) + 1);
        QCOMPARE(source.totalFrameCount(), source.loadedFrameCount());
    }
    QCOMPARE(source.getFrame(3).pts(), 3.0);
    QVERIFY(source.getFrame(4).isNull());
    QVERIFY(!source.isFrameAvailable(std::numeric_limits<quint64>::max()));
}

void tst_VTVideoSource::framesBeforeAnySource()
{
    Source source;
    source.pushFrame(frameAt(1));
    QVERIFY(!source.isFrameAvailable(0));
    QCOMPARE(source.loadedFrameCount(), quint64(0));
    QCOMPARE(source.totalFrameCount(), quint64(0));
    QVERIFY(source.getFrame(0).isNull());
    source.setupSource();
    QVERIFY(source.getFrame(0).isNull());
}

void tst_VTVideoSource::notifyStreamEndedSignals()
{
    Source source;
    QSignalSpy ended(&source, &VTVideoSource::streamEnded);
    source.notifyStreamEnded();
    QCOMPARE(ended.count(), 1);
}

// A receiver may wait for another thread that uses the source.
void tst_VTVideoSource::signalsAreEmittedUnlocked()
{
    Source source;
    int received = 0;
    const auto useFromAnotherThread = [&] {
        ++received;
        std::thread([&] {
            source.action();
            source.source();
            source.loadedFrameCount();
        }).join();
    };
    connect(&source, &VTVideoSource::actionChanged, this, useFromAnotherThread, Qt::DirectConnection);
    connect(&source, &VTVideoSource::sourceChanged, this, useFromAnotherThread, Qt::DirectConnection);
    connect(&source, &VTVideoSource::sourceLoaded, this, useFromAnotherThread, Qt::DirectConnection);
    connect(&source, &VTVideoSource::streamEnded, this, useFromAnotherThread, Qt::DirectConnection);
    source.setAction(VTVideoSource::Decode);
    source.processActionQueue();
    source.setupSource();
    source.loadSource();
    source.notifyStreamEnded();
    QCOMPARE(received, 4);
}

void tst_VTVideoSource::quitOfAThreadThatEnds_data()
{
    QTest::addColumn<bool>("started");
    QTest::newRow("never started") << false;
    QTest::newRow("started") << true;
}

void tst_VTVideoSource::quitOfAThreadThatEnds()
{
    QFETCH(bool, started);
    MessageRecorder log;
    ObedientSource source;
    if (started)
        source.start();
    source.quit();
    QVERIFY(source.shouldQuit());
    QVERIFY(!source.isRunning());
    QCOMPARE(log.texts(), QStringList());
}

// All waits run side by side, as each takes its full ten seconds.
void tst_VTVideoSource::quitReportsAThreadThatDoesNotEnd()
{
    MessageRecorder log;
    StubbornSource terminated(true);
    StubbornSource immortal(false);
    for (StubbornSource *source : {&terminated, &immortal}) {
        source->start();
        source->started.acquire();
    }
    QSemaphore hangs;
    QSemaphore release;
    auto *const deleted = new StubbornDecoder(&hangs, &release);
    deleted->start();
    hangs.acquire();
    std::thread first([&] { terminated.quit(); });
    std::thread second([&] { immortal.quit(); });
    std::thread third([&] { delete deleted; });
    first.join();
    QVERIFY(terminated.isFinished());
    second.join();
    QVERIFY(immortal.isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(log.texts().size(), 5, 30000);
    immortal.release.release();
    QVERIFY(immortal.wait(10000));
    // The destructor goes on waiting, as a thread must not outlive what it works on.
    release.release();
    third.join();
    const QString late = "VTVideoSource did not quit in a timely fashion";
    const QString never = "VTVideoSource did not quit at all";
    QCOMPARE(log.texts(), (QStringList{late, late, late, never, never}));
    QVERIFY(log.allHaveContext());
}

void tst_VTVideoSource::destroyedWithUnappliedChanges()
{
    Source source;
    source.setAction(VTVideoSource::Decode);
    source.setSource(clip);
}

QTEST_GUILESS_MAIN(tst_VTVideoSource)
#include "tst_vtvideosource.moc"
