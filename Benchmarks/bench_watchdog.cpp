// What scripts cost while a watchdog would interrupt them, against the same without one, in processor time.

#include "Measure.h"

#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeView>
#include <QtDeclarative/QDeclarativeWatchdog>

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsObject>

#include <memory>

namespace {

constexpr int pairs = 31;

/** Counts events down, each after a pass through the event loop, and has a script run at each. */
class Countdown : public QObject
{
public:
    explicit Countdown(QObject *root)
        : m_root(root)
    {
    }

    void run(int passes)
    {
        m_passes = passes;
        QEventLoop loop;
        m_loop = &loop;
        startTimer(0);
        loop.exec();
    }

protected:
    void timerEvent(QTimerEvent *event) override
    {
        QMetaObject::invokeMethod(m_root, "step");
        if (--m_passes > 0)
            return;
        killTimer(event->timerId());
        m_loop->quit();
    }

private:
    QObject *const m_root;
    QEventLoop *m_loop = nullptr;
    int m_passes = 0;
};

/** Returns the processor time that @p work takes in all threads, with a watchdog or without, in milliseconds.
 */
template <typename Work>
double measure(QDeclarativeEngine *engine, bool isWatched, Work work)
{
    std::unique_ptr<QDeclarativeWatchdog> watchdog(isWatched ? new QDeclarativeWatchdog(engine) : nullptr);
    if (watchdog)
        watchdog->setTimeout(5000);
    const double before = processSeconds();
    work();
    return (processSeconds() - before) * 1e3;
}

template <typename Work>
void row(const char *what, double goal, QDeclarativeEngine *engine, Work work)
{
    compareMeasured(
        what, "ms", pairs, goal, [&] { return measure(engine, true, work); },
        [&] { return measure(engine, false, work); });
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    QFile scene(folder.filePath(QStringLiteral("Scene.qml")));
    if (!scene.open(QIODevice::WriteOnly)
        || scene.write("import QtQuick 1.0\nItem { property int steps: 0; function step() { ++steps }\n"
                       "function work() { for (var i = 0; i < 300000; ++i) ++steps } }\n")
            < 0)
        return 1;
    scene.close();
    QDeclarativeView view(QUrl::fromLocalFile(scene.fileName()));
    QObject *const root = view.rootObject();
    if (!root)
        return 1;
    row("10,000 events, a script at each", 1.1, view.engine(), [root] { Countdown(root).run(10000); });
    row("a script of 300,000 steps", 1.03, view.engine(),
        [root] { QMetaObject::invokeMethod(root, "work"); });
    return 0;
}
