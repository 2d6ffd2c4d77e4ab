#pragma once

#include "VTPlacement.h"

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

namespace Vidtips {

class VTWidget;

/**
 * Stands a tip that is a popup on one of the application's windows, and sees to it that it can be seen whole:
 * it comes up once more where it has to be elsewhere, as a popup that is on the screen cannot be moved.
 */
class VTTipPopup
{
public:
    /** Stands @p tip, which owns the object. */
    explicit VTTipPopup(VTWidget *tip);

    /** Is told that the tip has been asked for within @p around, on @p footing; that may be null. */
    void ask(const VTPlacement::Surroundings &around, QWidget *footing);

    /**
     * Puts the tip where it belongs, before it comes up or where it is on the screen already. Returns false
     * where it has nothing to stand on; the host is told so, once.
     */
    bool stand();

    /** Is told that the tip on the screen has another size; what grows, grows where it is, and is looked at
     * then. */
    void handleResize();

    /** Tells whether the tip is hidden only to come up elsewhere. */
    bool isMoving() const { return m_isMoving; }

private:
    Q_DISABLE_COPY(VTTipPopup)
    void settle();
    void moveTo(const QPoint &place);
    void refuse() const;

    VTWidget *const m_tip;
    VTPlacement::Surroundings m_around;
    QPointer<QWidget> m_footing;
    QPoint m_place;
    QTimer m_settling;
    bool m_isMoving = false;
};

} // namespace Vidtips
