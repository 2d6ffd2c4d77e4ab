#pragma once

#include <QtCore/QObject>

QT_BEGIN_NAMESPACE
class QPropertyAnimation;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/** How a tip's window fades in and out. Showing and hiding it is up to the window. */
class VTTipFade : public QObject
{
    Q_OBJECT

public:
    /** How opaque a window is at the start of a fade-in. */
    static constexpr qreal faint = 0.1;

    /** Fades @p window, which owns it. */
    explicit VTTipFade(QWidget *window);

    /** Fades the window in, from faint to opaque, within @p duration milliseconds, more than 0. */
    void fadeIn(int duration);

    /** Fades the window out, from how opaque it is, within @p duration milliseconds, more than 0. */
    void fadeOut(int duration);

    /** Tells whether a fade is running, or has ended in a fade-out of which fadedOut() will tell. */
    bool isAtWork() const;

    /** Tells whether a fade-out is running, or has ended and fadedOut() will tell. */
    bool fadesOut() const;

    /** Ends any fade and leaves the window as opaque as it is. Nothing is signalled. */
    void stop();

    /** Ends any fade and makes the window opaque. Nothing is signalled. */
    void cancel();

Q_SIGNALS:
    /** A fade-out has come to its end, and the event loop was reached since. */
    void fadedOut();

private:
    Q_DISABLE_COPY(VTTipFade)
    bool isRunning() const;
    void fade(qreal from, qreal to, int duration);
    void handleFinished();

    QWidget *const m_window;
    QPropertyAnimation *const m_animation;
    bool m_isOut = false;
};

} // namespace Vidtips
