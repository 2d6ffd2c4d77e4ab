#include "VTTipFade_p.h"

#include <QtCore/QPropertyAnimation>
#include <QtWidgets/QWidget>

namespace Vidtips {

VTTipFade::VTTipFade(QWidget *window)
    : QObject(window)
    , m_window(window)
    , m_animation(new QPropertyAnimation(window, "windowOpacity", this))
{
    connect(m_animation, &QPropertyAnimation::finished, this, &VTTipFade::handleFinished);
}

void VTTipFade::fadeIn(int duration)
{
    fade(faint, 1.0, duration);
}

void VTTipFade::fadeOut(int duration)
{
    fade(m_window->windowOpacity(), 0.0, duration);
}

void VTTipFade::fade(qreal from, qreal to, int duration)
{
    m_animation->setDuration(duration);
    m_animation->setStartValue(from);
    m_animation->setEndValue(to);
    m_animation->start();
}

bool VTTipFade::isRunning() const
{
    return m_animation->state() != QAbstractAnimation::Stopped;
}

bool VTTipFade::isAtWork() const
{
    return m_isOut || isRunning();
}

bool VTTipFade::fadesOut() const
{
    return m_isOut || (isRunning() && m_animation->endValue().toReal() == 0.0);
}

// An animation that is stopped in its last moment says that it has finished.
void VTTipFade::stop()
{
    m_animation->stop();
    m_isOut = false;
}

void VTTipFade::cancel()
{
    stop();
    m_window->setWindowOpacity(1.0);
}

// All animations advance together, also when the QML starts one; it may be within a change of its state then,
// which could not be reset.
void VTTipFade::handleFinished()
{
    if (m_animation->endValue().toReal() != 0.0)
        return;
    m_isOut = true;
    const auto tellIfStillOut = [this] {
        if (m_isOut)
            Q_EMIT fadedOut();
    };
    QMetaObject::invokeMethod(this, tellIfStillOut, Qt::QueuedConnection);
}

} // namespace Vidtips
