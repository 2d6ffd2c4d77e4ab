#include "VTTipOwner_p.h"

#include "VTWidget.h"
#include "VTWindowKind_p.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

namespace Vidtips {

QWidget *VTTipOwner::lastingWindow(const QWidget *widget)
{
    QWidget *window = widget->window();
    while (window->windowType() == Qt::Popup && window->parentWidget())
        window = window->parentWidget()->window();
    return window->windowType() == Qt::Popup ? QApplication::activeWindow() : window;
}

QWidget *VTTipOwner::window() const
{
    QWidget *const window = m_reference ? lastingWindow(m_reference) : nullptr;
    return window == m_tip ? nullptr : window;
}

QWidget *VTTipOwner::footing() const
{
    return VTWindowKind::footing(m_reference ? window() : QApplication::activeModalWidget(), m_tip);
}

// A modal window blocks every other one except those that belong to it, and window managers keep a window
// above the one that it belongs to, whatever that is above itself.
void VTTipOwner::join() const
{
    leaveMinimised();
    if (m_tip->parentWidget())
        return;
    const QWidget *const window = footing();
    QWindow *const handle = window ? window->windowHandle() : nullptr;
    // A window that is on its way from the screen cannot change over to another owner.
    if (m_tip->windowHandle() && !m_tip->isVisible() && m_tip->windowHandle()->transientParent() != handle)
        m_tip->destroy();
    if (!m_tip->windowHandle())
        m_tip->create();
    // A click into a tip leaves the keyboard where it is. The widget's own flags are not touched.
    m_tip->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    m_tip->windowHandle()->setTransientParent(handle);
}

// A window manager that minimises a tip with its window may say so after the tip was hidden. A native window
// that leaves that state would come onto the screen at once, and one that kept it would take its owner along.
void VTTipOwner::leaveMinimised() const
{
    if (m_tip->isVisible() || !m_tip->isMinimized() || !m_tip->isWindow())
        return;
    m_tip->destroy();
    m_tip->setWindowState(m_tip->windowState() & ~Qt::WindowMinimized);
}

// The window system learns of it only when a window is shown.
bool VTTipOwner::isJoined() const
{
    if (!m_reference || !m_tip->windowHandle() || m_tip->parentWidget())
        return true;
    const QWidget *const window = lastingWindow(m_reference);
    return m_tip->windowHandle()->transientParent() == (window ? window->windowHandle() : nullptr);
}

} // namespace Vidtips
