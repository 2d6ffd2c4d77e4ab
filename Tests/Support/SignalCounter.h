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
    {
        QObject::connect(sender, signal, [count = m_count] { ++*count; });
    }

    int count() const { return *m_count; }

private:
    Q_DISABLE_COPY(SignalCounter)

    // Shared with the connection, which stays as long as the sender: another thread may emit at any time.
    const std::shared_ptr<std::atomic<int>> m_count = std::make_shared<std::atomic<int>>(0);
};
