#include "qdeclarativemouseevent_p.h"

QDeclarativeMouseEvent::QDeclarativeMouseEvent(const QPointF &position, Qt::MouseButton button,
                                               Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                                               bool isClick, bool wasHeld)
    : m_position(position)
    , m_button(button)
    , m_buttons(buttons)
    , m_modifiers(modifiers)
    , m_isClick(isClick)
    , m_wasHeld(wasHeld)
{
}
