#pragma once

#include "Patience.h"

#include <Vidtips/VTVideoController.h>
#include <Vidtips/VTVideoSource.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QPointer>
#include <QtCore/QSemaphore>
#include <QtTest/QTest>

#include <atomic>
#include <memory>

/** A source whose frames the test pushes; its thread never runs. */
class PushedSource : public Vidtips::VTVideoSource
{
public:
    explicit PushedSource(int frames = 0, double rate = 25.0)
        : VTVideoSource(nullptr)
        , rate(rate)
    {
        setupSource();
        push(frames);
    }
    void push(int frames)
    {
        for (int i = 0; i < frames; ++i) {
            Vidtips::VTVideoFrame frame(2, 2, QImage::Format_RGB32, 0);
            frame.setPts(double(loadedFrameCount()));
            pushFrame(frame);
        }
    }
    void close() override { ++closed; }
    bool isOpen() override { return isDecoding; }
    double getTime() override { return 0; }
    void changeSetPosition(quint64) override { }
    double duration() override { return 0; }
    double timeBase() override { return 0; }
    double frameRate() override
    {
        asked.release();
        while (isBlocked)
            QThread::msleep(10);
        return rate;
    }
    double frameWidth() const override { return 320; }
    double frameHeight() const override { return 240; }

    std::atomic<double> rate;
    std::atomic<bool> isBlocked{false};
    std::atomic<bool> isDecoding{false};
    QSemaphore asked;
    int closed = 0;
};

/** The controller deletes itself when its thread has finished, so it is never on the stack. The source
 * outlives it. */
struct Player
{
    explicit Player(int frames = 0, double rate = 25.0)
        : source(frames, rate)
        , controller(new Vidtips::VTVideoController(&source, nullptr))
    {
    }
    ~Player() { delete controller; }

    PushedSource source;
    QPointer<Vidtips::VTVideoController> controller;
};

/** Notes in which order and when the controller's signals are emitted, in the thread that emits them. */
class Recorder
{
public:
    explicit Recorder(Vidtips::VTVideoController *controller)
    {
        m_notes->timer.start();
        note(controller, &Vidtips::VTVideoController::displayFrame, "display");
        note(controller, &Vidtips::VTVideoController::stateChanged, "state");
        note(controller, &Vidtips::VTVideoController::positionChanged, "position");
        note(controller, &Vidtips::VTVideoController::widthChanged, "width");
        note(controller, &Vidtips::VTVideoController::heightChanged, "height");
        note(controller, &Vidtips::VTVideoController::loadProgressChanged, "load");
    }
    QStringList names() const
    {
        const QMutexLocker locker(&m_notes->lock);
        return m_notes->names;
    }
    int count(const QString &name) const { return names().count(name); }
    QVector<qint64> times(const QString &name) const
    {
        const QMutexLocker locker(&m_notes->lock);
        QVector<qint64> found;
        for (int i = 0; i < m_notes->names.size(); ++i) {
            if (m_notes->names.at(i) == name)
                found << m_notes->times.at(i);
        }
        return found;
    }

private:
    // Shared with the emission that may go on when the recorder is destroyed.
    struct Notes
    {
        QMutex lock;
        QStringList names;
        QVector<qint64> times;
        QElapsedTimer timer;
    };

    void note(Vidtips::VTVideoController *controller, void (Vidtips::VTVideoController::*signal)(),
              const QString &name)
    {
        QObject::connect(
            controller, signal, controller,
            [notes = m_notes, name] {
                const QMutexLocker locker(&notes->lock);
                notes->names << name;
                notes->times << notes->timer.elapsed();
            },
            Qt::DirectConnection);
    }
    const std::shared_ptr<Notes> m_notes = std::make_shared<Notes>();
};
