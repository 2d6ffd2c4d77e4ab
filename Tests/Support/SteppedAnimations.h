#pragma once

#include "Patience.h"

#include <QtCore/QAnimationDriver>
#include <QtCore/QDeadlineTimer>

/**
 * Once installed, animations go on by the same time with every picture, and only while they are told to: on a
 * busy machine there are fewer pictures a second, and not other ones.
 */
class SteppedAnimations : public QAnimationDriver
{
public:
    static constexpr int interval = 16; // ms

    qint64 elapsed() const override { return m_elapsed; }

    /** Lets one interval pass for the animations that run. */
    void goOn()
    {
        if (!isRunning())
            return;
        m_elapsed += interval;
        advance();
    }

    /** Goes on until @p isSo, which it may be already; returns whether it has come to that. */
    template <typename Predicate>
    bool goOnUntil(const Predicate &isSo)
    {
        const QDeadlineTimer deadline(Patience::longest);
        while (!isSo() && !deadline.hasExpired()) {
            QTest::qWait(1);
            goOn();
        }
        return isSo();
    }

protected:
    void start() override
    {
        m_elapsed = 0;
        QAnimationDriver::start();
    }

private:
    qint64 m_elapsed = 0;
};
