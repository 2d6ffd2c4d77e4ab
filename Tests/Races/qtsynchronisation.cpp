// Tells ThreadSanitizer what Qt's synchronisation orders. Qt itself is built without the sanitizer, which
// therefore sees neither its locks nor the events that one thread posts to another, and would take everything
// they guard for a race. Linked into a program, these definitions stand in front of Qt's own and call them.

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QMutex>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>
#include <QtCore/private/qobject_p.h>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

// That a lock may be taken again by its holder is for Qt to judge.
constexpr unsigned lockKind = __tsan_mutex_write_reentrant;

template <typename Function>
Function original(const char *name)
{
    void *const symbol = dlsym(RTLD_NEXT, name);
    if (!symbol) {
        std::fprintf(stderr, "qtsynchronisation: this Qt has no %s\n", name);
        std::abort();
    }
    return reinterpret_cast<Function>(symbol);
}

void happensBefore(const void *object)
{
    __tsan_release(const_cast<void *>(object));
}

void happensAfter(const void *object)
{
    __tsan_acquire(const_cast<void *>(object));
}

// What a thread did before it emitted a signal is over when a queued receiver is called.
void signalBegins(QObject *sender, int, void **)
{
    happensBefore(sender);
}

// So is what the emission itself did when the end of the thread is seen, which finished() announces.
void signalEnds(QObject *sender, int)
{
    happensBefore(sender);
}

bool eventArrives(void **data)
{
    const auto *const receiver = static_cast<const QObject *>(data[0]);
    const auto *const event = static_cast<const QEvent *>(data[1]);
    happensAfter(receiver);
    if (event->type() == QEvent::MetaCall)
        happensAfter(static_cast<const QAbstractMetaCallEvent *>(event)->sender());
    return false;
}

const bool isInstalled = [] {
    static QSignalSpyCallbackSet callbacks{&signalBegins, nullptr, &signalEnds, nullptr};
    qt_register_signal_spy_callbacks(&callbacks);
    return QInternal::registerCallback(QInternal::EventNotifyCallback, &eventArrives);
}();

class Unlocked
{
public:
    explicit Unlocked(QMutex *lock)
        : m_lock(lock)
    {
        __tsan_mutex_pre_unlock(m_lock, 0);
        __tsan_mutex_post_unlock(m_lock, 0);
    }
    ~Unlocked()
    {
        __tsan_mutex_pre_lock(m_lock, lockKind);
        __tsan_mutex_post_lock(m_lock, lockKind, 1);
    }
    Q_DISABLE_COPY(Unlocked)

private:
    QMutex *const m_lock;
};

} // namespace

void QMutex::lock() noexcept
{
    static const auto lock = original<void (*)(QMutex *)>("_ZN6QMutex4lockEv");
    __tsan_mutex_pre_lock(this, lockKind);
    lock(this);
    __tsan_mutex_post_lock(this, lockKind, 1);
}

bool QMutex::tryLock(int timeout) noexcept
{
    static const auto tryLock = original<bool (*)(QMutex *, int)>("_ZN6QMutex7tryLockEi");
    constexpr unsigned kind = lockKind | __tsan_mutex_try_lock;
    __tsan_mutex_pre_lock(this, kind);
    const bool isLocked = tryLock(this, timeout);
    __tsan_mutex_post_lock(this, isLocked ? kind : kind | __tsan_mutex_try_lock_failed, 1);
    return isLocked;
}

void QMutex::unlock() noexcept
{
    static const auto unlock = original<void (*)(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_mutex_pre_unlock(this, 0);
    unlock(this);
    __tsan_mutex_post_unlock(this, 0);
}

// While it waits, the thread does not hold the lock.
bool QWaitCondition::wait(QMutex *lock, QDeadlineTimer deadline)
{
    static const auto wait = original<bool (*)(QWaitCondition *, QMutex *, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    const Unlocked unlocked(lock);
    return wait(this, lock, deadline);
}

bool QWaitCondition::wait(QMutex *lock, unsigned long milliseconds)
{
    static const auto wait =
        original<bool (*)(QWaitCondition *, QMutex *, unsigned long)>("_ZN14QWaitCondition4waitEP6QMutexm");
    const Unlocked unlocked(lock);
    return wait(this, lock, milliseconds);
}

void QSemaphore::acquire(int n)
{
    static const auto acquire = original<void (*)(QSemaphore *, int)>("_ZN10QSemaphore7acquireEi");
    acquire(this, n);
    happensAfter(this);
}

bool QSemaphore::tryAcquire(int n)
{
    static const auto tryAcquire = original<bool (*)(QSemaphore *, int)>("_ZN10QSemaphore10tryAcquireEi");
    const bool isAcquired = tryAcquire(this, n);
    happensAfter(this);
    return isAcquired;
}

void QSemaphore::release(int n)
{
    static const auto release = original<void (*)(QSemaphore *, int)>("_ZN10QSemaphore7releaseEi");
    happensBefore(this);
    release(this, n);
}

// A thread ends with its signal finished(), which counts as its last act.
bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto wait =
        original<bool (*)(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool hasEnded = wait(this, deadline);
    if (hasEnded)
        happensAfter(this);
    return hasEnded;
}

bool QThread::wait(unsigned long milliseconds)
{
    static const auto wait = original<bool (*)(QThread *, unsigned long)>("_ZN7QThread4waitEm");
    const bool hasEnded = wait(this, milliseconds);
    if (hasEnded)
        happensAfter(this);
    return hasEnded;
}

// Not through Qt: a thread that is terminated in a sleep of Qt's would leave the sanitizer's account of Qt
// open.
void QThread::msleep(unsigned long milliseconds)
{
    timespec left{time_t(milliseconds / 1000), long(milliseconds % 1000) * 1000000};
    while (nanosleep(&left, &left) < 0 && errno == EINTR) { }
}

bool QThread::isFinished() const
{
    static const auto isFinished = original<bool (*)(const QThread *)>("_ZNK7QThread10isFinishedEv");
    const bool hasEnded = isFinished(this);
    if (hasEnded)
        happensAfter(this);
    return hasEnded;
}

void QCoreApplication::postEvent(QObject *receiver, QEvent *event, int priority)
{
    static const auto post =
        original<void (*)(QObject *, QEvent *, int)>("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    happensBefore(receiver);
    post(receiver, event, priority);
}
