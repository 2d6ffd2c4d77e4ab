#include "StageClock.h"

#include "PreviewStage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

namespace {

constexpr int frame = 20; // milliseconds
constexpr int longestLoading = 3000; // milliseconds
constexpr int longestStart = 300; // milliseconds: most clips begin at once
constexpr int lookEvery = 10; // milliseconds

// Some work follows from work that is done then.
void finishWork()
{
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

void waitForFiles(const PreviewStage &stage, const QElapsedTimer &clock)
{
    QTimer alarm;
    alarm.start(lookEvery);
    while (stage.isLoading() && clock.elapsed() < longestLoading)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

// Where all that runs only waits for its time, Qt sets an alarm by the real clock instead of asking the
// driver.
class Unrest : public QAbstractAnimation
{
public:
    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int) override { }
};

} // namespace

StageClock::StageClock()
    : m_unrest(std::make_unique<Unrest>())
{
    install();
    m_unrest->start();
}

StageClock::~StageClock()
{
    m_unrest->stop();
    uninstall();
}

// Qt adds to this the time from which it counts.
void StageClock::start()
{
    m_elapsed = 0;
    QAnimationDriver::start();
}

void StageClock::pass(const PreviewStage &stage, int milliseconds)
{
    QElapsedTimer loading;
    loading.start();
    step(0);
    for (int left = milliseconds; left > 0; left -= frame) {
        waitForFiles(stage, loading);
        step(qMin(left, frame));
    }
    waitForFiles(stage, loading);
}

void StageClock::passUntilClipsPlay(const PreviewStage &stage)
{
    QTimer alarm;
    alarm.start(lookEvery);
    QElapsedTimer clock;
    clock.start();
    for (qint64 now = 0, last = 0; now < longestStart && stage.isClipAtStart(); now = clock.elapsed()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        step(int(now - last));
        last = now;
    }
}

void StageClock::step(int milliseconds)
{
    m_elapsed += milliseconds;
    advance();
    finishWork();
}
