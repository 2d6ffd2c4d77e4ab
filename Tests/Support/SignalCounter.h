#pragma once

#include <QtCore/QObject>

#include <atomic>
#include <memory>

/** Counts how often a signal is emitted, on whichever thread; a QSignalSpy serves the thread it is read on
 * only. */
class SignalCounter
{
public:
    /** Counts @p signal of @p sender from now on. */
    template <typename Sender, typename Signal>
    SignalCounter(const Sender *sender, Signal signal)
        : m_connection(QObject::connect(sender, signal, [count = m_count] { ++*count; }))
    {
    }
    ~SignalCounter() { QObject::disconnect(m_connection); }

    int count() const { return *m_count; }

private:
    Q_DISABLE_COPY(SignalCounter)

    // Shared with the emission that may go on in another thread when the counter is destroyed.
    const std::shared_ptr<std::atomic<int>> m_count = std::make_shared<std::atomic<int>>(0);
    QMetaObject::Connection m_connection;
};
