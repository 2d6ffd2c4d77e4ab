#pragma once

#include <QtCore/QAbstractAnimation>

#include <memory>

class PreviewStage;

/**
 * The time that tips live in while one exists: their animations and timers go on as it is told to pass, which
 * takes no longer than their work, and stand still otherwise. One at a time, on the GUI thread, made before
 * the stage. Clips have a time of their own.
 */
class StageClock : public QAnimationDriver
{
    Q_OBJECT

public:
    /** Milliseconds in which a user interface has done what it does once it is loaded. */
    static constexpr int untilSeen = 60;

    StageClock();
    ~StageClock() override;

    /**
     * Lets @p milliseconds pass for the tip on @p stage. It stands still while files of the tip are being
     * loaded, for a few seconds at most.
     */
    void pass(const PreviewStage &stage, int milliseconds);

    /** Goes on with the real time, which clips are played by, until they have begun; not for long, as they
     * may not.
     */
    void passUntilClipsPlay(const PreviewStage &stage);

    qint64 elapsed() const override { return m_elapsed; }

protected:
    void start() override;

private:
    void step(int milliseconds);

    qint64 m_elapsed = 0;
    const std::unique_ptr<QAbstractAnimation> m_unrest;
};
