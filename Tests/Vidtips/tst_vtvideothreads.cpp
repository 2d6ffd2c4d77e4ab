#include <Vidtips/VTVideoComponent.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "MessageRecorder.h"
#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>

#include <algorithm>
#include <functional>
#include <random>

using namespace Vidtips;

namespace {

constexpr int lives = 1000;
constexpr int livesAtATime = 4;
constexpr unsigned seed = 15082;

int threadCount()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

struct Step
{
    const char *name;
    std::function<void(VTVideoComponent *)> take;
    int taken = 0;
};

} // namespace

/** The threads of many items, which are destroyed at whatever moment of their lives. */
class tst_VTVideoThreads : public QObject
{
    Q_OBJECT

private slots:
    void noThreadOutlivesItsItem();

private:
    VTVideoComponent *newItem();
    void destroyOne();
    void report() const;

    QGraphicsScene *scene = nullptr;
    std::mt19937 random{seed};
    QVector<VTVideoComponent *> alive;
    qint64 slowestEnd = 0;
    QVector<Step> steps{
        {"names a clip", [](VTVideoComponent *item) { item->setSource("clip.mp4"); }},
        {"names another clip", [](VTVideoComponent *item) { item->setSource("longer.mp4"); }},
        {"names a clip that cannot be opened", [](VTVideoComponent *item) { item->setSource("broken.mp4"); }},
        {"names nothing", [](VTVideoComponent *item) { item->setSource(QString()); }},
        {"plays", [](VTVideoComponent *item) { item->play(); }},
        {"rewinds", [](VTVideoComponent *item) { item->rewindToStart(); }},
        {"moves", [this](VTVideoComponent *item) { item->setPosition(random() % 60); }},
        {"enters the scene",
         [this](VTVideoComponent *item) {
             if (!item->scene())
                 scene->addItem(item);
         }},
        {"leaves the scene",
         [](VTVideoComponent *item) {
             if (item->scene())
                 item->scene()->removeItem(item);
         }},
        {"is painted", [](VTVideoComponent *) { QCoreApplication::processEvents(); }},
        {"decodes for a while",
         [](VTVideoComponent *item) {
             auto *const source = item->findChild<VTVideoSourceFFMPEG *>("FFMPEG");
             const quint64 frames = source->loadedFrameCount();
             Q_UNUSED(QTest::qWaitFor([=] { return source->loadedFrameCount() > frames; }, 20))
         }},
    };
};

// Half of them named a clip in a scene from the start, as content does; some live for a moment only.
VTVideoComponent *tst_VTVideoThreads::newItem()
{
    auto *const item = new VTVideoComponent;
    if (random() % 2) {
        scene->addItem(item);
        item->setSource("longer.mp4");
    }
    for (auto count = random() % 6; count > 0; --count) {
        Step &step = steps[int(random() % unsigned(steps.size()))];
        step.take(item);
        ++step.taken;
    }
    return item;
}

void tst_VTVideoThreads::destroyOne()
{
    VTVideoComponent *const item = alive.takeAt(int(random() % unsigned(alive.size())));
    QElapsedTimer timer;
    timer.start();
    delete item;
    slowestEnd = std::max(slowestEnd, timer.elapsed());
}

void tst_VTVideoThreads::report() const
{
    for (const Step &step : steps)
        qInfo("%4d times an item %s", step.taken, step.name);
    qInfo("seed %u, %d items, the slowest took %lld ms to end", seed, lives, slowestEnd);
}

void tst_VTVideoThreads::noThreadOutlivesItsItem()
{
    const TestPackages packages;
    packages.writeUserInterface("Clips");
    packages.writeControl("Clips", "tips.xml", R"(<vidtip key="cut" title="Cut"/>)");
    packages.write("Clips.vidtips/Resources/clip.mp4", TestClips::read(TestClips::h264()));
    packages.write("Clips.vidtips/Resources/longer.mp4", TestClips::read(TestClips::unevenWidth()));
    packages.write("Clips.vidtips/Resources/broken.mp4", "This is no clip.\n");
    const TestSession session({packages.path()});
    QWidget button;
    QVERIFY(session.host->show("cut", QPoint(10, 20), &button));
    scene = session.view()->scene();
    const int threadsBefore = threadCount();
    {
        MessageRecorder log;
        for (int i = 0; i < lives; ++i) {
            alive << newItem();
            if (alive.size() == livesAtATime)
                destroyOne();
        }
        while (!alive.isEmpty())
            destroyOne();
        QCOMPARE(log.texts().filter("did not quit"), QStringList());
        QVERIFY(!log.texts().filter("Could not open media at").isEmpty());
    }
    // Threads that ended before may have been counted still.
    QTRY_VERIFY(threadCount() <= threadsBefore);
    report();
    for (const Step &step : std::as_const(steps))
        QVERIFY2(step.taken > 0, step.name);
}

QTEST_MAIN(tst_VTVideoThreads)
#include "tst_vtvideothreads.moc"
