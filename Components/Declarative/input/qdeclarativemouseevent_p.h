#pragma once

#include "engine/qdeclarativerounding_p.h"

#include <QtCore/QObject>
#include <QtCore/QPointF>

/** What a mouse handler is told of the event; only valid during the handler. */
class QDeclarativeMouseEvent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int x READ x CONSTANT)
    Q_PROPERTY(int y READ y CONSTANT)
    Q_PROPERTY(int button READ button CONSTANT)
    Q_PROPERTY(int buttons READ buttons CONSTANT)
    Q_PROPERTY(int modifiers READ modifiers CONSTANT)
    Q_PROPERTY(bool wasHeld READ wasHeld CONSTANT)
    Q_PROPERTY(bool isClick READ isClick CONSTANT)
    Q_PROPERTY(bool accepted READ isAccepted WRITE setAccepted)

public:
    QDeclarativeMouseEvent(const QPointF &position, Qt::MouseButton button, Qt::MouseButtons buttons,
                           Qt::KeyboardModifiers modifiers, bool isClick = false, bool wasHeld = false);

    int x() const { return QDeclarativeRounding::truncated(m_position.x()); }
    int y() const { return QDeclarativeRounding::truncated(m_position.y()); }
    int button() const { return m_button; }
    int buttons() const { return m_buttons; }
    int modifiers() const { return m_modifiers; }
    bool wasHeld() const { return m_wasHeld; }
    bool isClick() const { return m_isClick; }
    bool isAccepted() const { return m_accepted; }
    void setAccepted(bool accepted) { m_accepted = accepted; }

private:
    const QPointF m_position;
    const Qt::MouseButton m_button;
    const Qt::MouseButtons m_buttons;
    const Qt::KeyboardModifiers m_modifiers;
    const bool m_isClick;
    const bool m_wasHeld;
    bool m_accepted = true;
};
