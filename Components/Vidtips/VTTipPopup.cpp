#include "VTTipPopup_p.h"

#include "VTManager.h"
#include "VTView.h"
#include "VTWidget.h"
#include "VTWindowKind_p.h"

namespace Vidtips {

namespace {

/** Milliseconds without another size, after which a tip is taken to have grown. */
constexpr int settledInterval = 120;

} // namespace

VTTipPopup::VTTipPopup(VTWidget *tip)
    : m_tip(tip)
{
    m_settling.setSingleShot(true);
    m_settling.setInterval(settledInterval);
    QObject::connect(&m_settling, &QTimer::timeout, &m_settling, [this] { settle(); });
}

void VTTipPopup::ask(const VTPlacement::Surroundings &around, QWidget *footing)
{
    m_around = around;
    m_footing = footing;
}

bool VTTipPopup::stand()
{
    m_settling.stop();
    if (!m_footing) {
        refuse();
        return false;
    }
    moveTo(VTWindowKind::place(m_tip->size(), m_footing, m_around));
    return true;
}

void VTTipPopup::handleResize()
{
    m_settling.start();
}

void VTTipPopup::settle()
{
    const bool isShown = m_tip->isVisible() && m_tip->windowType() == Qt::ToolTip && m_footing;
    const QRect popup(m_place, m_tip->size());
    if (isShown && !VTWindowKind::isWellPlaced(popup, m_footing, m_around))
        moveTo(VTWindowKind::place(popup.size(), m_footing, m_around));
}

void VTTipPopup::moveTo(const QPoint &place)
{
    const bool wasVisible = m_tip->isVisible();
    if (wasVisible && place == m_place)
        return;
    m_place = place;
    // Whoever watches the window may answer by anything.
    const QPointer<VTWidget> guard(m_tip);
    m_isMoving = true;
    if (wasVisible)
        m_tip->hide();
    if (guard)
        m_tip->move(place);
    if (guard && wasVisible)
        m_tip->show();
    if (guard)
        m_isMoving = false;
}

void VTTipPopup::refuse() const
{
    static bool isTold = false;
    const QPointer<VTView> view(m_tip->view());
    if (!isTold && m_tip->manager()) {
        isTold = true;
        m_tip->manager()->handleMessage(
            VTMessageWarning,
            QStringLiteral(
                "No tip is shown, as on Wayland each has to stand on a window of the application, and "
                "none is active or under the pointer"));
    }
    // It has heard that there is content.
    if (view)
        view->notification(VTNotificationHidden, QStringLiteral("hide"));
}

} // namespace Vidtips
