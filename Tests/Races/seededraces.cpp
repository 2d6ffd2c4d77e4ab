// Programs with a fault that the race checker must report, and one without any, in which it must not. They
// show that the checker sees through Qt's locks, threads and events, and into the library.
//
//   seededraces NAME    runs one of them
//   seededraces         lists them, each with the report that it must bring about

#include <Vidtips/VTVideoFrameCache.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QMutex>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>

#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>

namespace {

constexpr int rounds = 1000;

using Work = std::function<void()>;

// Runs both pieces of work on threads of their own, one beside the other.
void runBeside(const Work &first, const Work &second)
{
    const std::unique_ptr<QThread> one(QThread::create(first));
    const std::unique_ptr<QThread> other(QThread::create(second));
    one->start();
    other->start();
    one->wait();
    other->wait();
}

void repeat(const Work &work)
{
    for (int i = 0; i < rounds; ++i)
        work();
}

void withoutLocks()
{
    int counter = 0;
    const Work count = [&] { repeat([&] { ++counter; }); };
    runBeside(count, count);
}

void lockOnOneSide()
{
    int counter = 0;
    QMutex lock;
    runBeside(
        [&] {
            repeat([&] {
                const QMutexLocker locker(&lock);
                ++counter;
            });
        },
        [&] { repeat([&] { ++counter; }); });
}

void locksThatDiffer()
{
    int counter = 0;
    QMutex lock;
    QRecursiveMutex other;
    runBeside(
        [&] {
            repeat([&] {
                const QMutexLocker locker(&lock);
                ++counter;
            });
        },
        [&] {
            repeat([&] {
                const QMutexLocker locker(&other);
                ++counter;
            });
        });
}

// One after the other, so that nothing waits for ever; the order alone is the fault.
void locksInBothOrders()
{
    QRecursiveMutex first;
    QRecursiveMutex second;
    const auto takeBoth = [](QRecursiveMutex *one, QRecursiveMutex *other) {
        const std::unique_ptr<QThread> thread(QThread::create([=] {
            const QMutexLocker locker(one);
            const QMutexLocker inner(other);
        }));
        thread->start();
        thread->wait();
    };
    takeBoth(&first, &second);
    takeBoth(&second, &first);
}

// A cache has no lock of its own: whoever shares one must bring it.
void sharedCache()
{
    Vidtips::VTVideoFrameCache cache(QStringLiteral("clip"));
    const Vidtips::VTVideoFrame frame(2, 2, QImage::Format_RGB32, 0);
    runBeside([&] { repeat([&] { cache.addFrame(frame); }); }, [&] { repeat([&] { cache.length(); }); });
}

// Qt's event loop calls both: what is left out of Qt itself must not cover what it calls.
void calledByQt()
{
    int counter = 0;
    QThread threads[2];
    QObject receivers[2];
    for (int i = 0; i < 2; ++i) {
        receivers[i].moveToThread(&threads[i]);
        QMetaObject::invokeMethod(
            &receivers[i],
            [&counter] {
                repeat([&counter] { ++counter; });
                QThread::currentThread()->quit();
            },
            Qt::QueuedConnection);
    }
    for (QThread &thread : threads)
        thread.start();
    for (QThread &thread : threads)
        thread.wait();
}

void countUnderLocks()
{
    int counter = 0;
    QRecursiveMutex lock;
    const Work count = [&] {
        repeat([&] {
            const QMutexLocker locker(&lock);
            if (lock.tryLock(100)) {
                ++counter;
                lock.unlock();
            }
        });
    };
    runBeside(count, count);
    std::printf("%d\n", counter);
}

void handOverBySemaphore()
{
    int value = 0;
    QSemaphore isReady;
    runBeside(
        [&] {
            value = 1;
            isReady.release();
        },
        [&] {
            isReady.acquire();
            ++value;
        });
    std::printf("%d\n", value);
}

void handOverBySignal()
{
    int value = 0;
    QObject sender;
    QObject receiver;
    QObject::connect(&sender, &QObject::objectNameChanged, &receiver, [&value] {
        ++value;
        QCoreApplication::quit();
    });
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        repeat([&] { ++value; });
        sender.setObjectName(QStringLiteral("done"));
    }));
    thread->start();
    QCoreApplication::exec();
    std::printf("%d\n", value);
    thread->wait();
}

void nothingWrong()
{
    countUnderLocks();
    handOverBySemaphore();
    handOverBySignal();
}

struct Program
{
    const char *name;
    const char *report;
    void (*run)();
};

constexpr Program programs[] = {
    {"without-locks", "data race", &withoutLocks},
    {"lock-on-one-side", "data race", &lockOnOneSide},
    {"locks-that-differ", "data race", &locksThatDiffer},
    {"locks-in-both-orders", "lock-order-inversion", &locksInBothOrders},
    {"shared-cache", "data race", &sharedCache},
    {"called-by-qt", "data race", &calledByQt},
    {"nothing-wrong", "", &nothingWrong},
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    for (const Program &program : programs) {
        if (argc < 2)
            std::printf("%s\t%s\n", program.name, program.report);
        else if (std::strcmp(argv[1], program.name) == 0)
            program.run();
    }
}
