#include "VTTipKeeping_p.h"

#include "VTManager.h"
#include "VTTipContainer_p.h"
#include "VTTipContent_p.h"
#include "VTTipOwner_p.h"
#include "VTView.h"
#include "VTWidget.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

namespace Vidtips {

namespace {

/** Like QWidget::isAncestorOf(), and across windows. */
bool isOwnedBy(const QWidget *widget, const QWidget *owner)
{
    while (widget && widget != owner)
        widget = widget->parentWidget();
    return widget;
}

// Menus and the lists of combo boxes take every key for as long as they are open.
void closePopups()
{
    while (QWidget *const popup = QApplication::activePopupWidget()) {
        if (!popup->close())
            return;
    }
}

} // namespace

bool VTTipKeeping::canMoveInto(QWidget *container) const
{
    if (!container || container == m_tip || m_tip->isAncestorOf(container))
        return false;
    const QString obstacle = VTTipContainer(container).obstacle();
    if (obstacle.isEmpty())
        return true;
    if (VTManager *const manager = m_tip->manager())
        manager->handleMessage(
            VTMessageWarning,
            QStringLiteral(
                "A kept tip becomes a window by itself, as the one of createWindow() cannot take it in: %1")
                .arg(obstacle));
    return false;
}

// A host that owns its window by the active one may have hit upon this very tip.
void VTTipKeeping::prepare(QWidget *container) const
{
    if (isOwnedBy(container, m_tip))
        container->setParent(VTTipOwner(m_tip, m_reference).window(), container->windowFlags());
}

void VTTipKeeping::moveInto(VTTipContainer container, const QPoint &position) const
{
    container.take(m_tip);
    const VTXmlElement *const content = contentOf(m_tip);
    container.setTitle(content ? content->attribute(QStringLiteral("title")) : QString());
    m_tip->contentResized();
    m_tip->show();
    const QPointer<VTWidget> guard(m_tip);
    container.reveal(position);
    if (guard)
        takeFocus();
}

// The user has just asked for it: the keyboard is for the kept tip.
void VTTipKeeping::takeFocus() const
{
    const QPointer<VTWidget> guard(m_tip);
    closePopups();
    if (guard && guard->view())
        guard->view()->setFocus();
    if (guard)
        guard->activateWindow();
}

void VTTipKeeping::becomeWindow(const QPoint &position) const
{
    m_tip->setAttribute(Qt::WA_DeleteOnClose);
    m_tip->setParent(VTTipOwner(m_tip, m_reference).window(),
                     Qt::Tool | Qt::WindowTitleHint | Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint
                         | Qt::WindowCloseButtonHint);
    m_tip->setWindowModality(Qt::NonModal);
    const QObject *const content = contentOf(m_tip);
    m_tip->setWindowTitle(content ? content->property("title").toString() : QString());
    m_tip->move(position);
    m_tip->show();
    // It was the tip that had to be above everything. The widget's own flags are not touched.
    if (m_tip->windowHandle())
        m_tip->windowHandle()->setFlag(Qt::WindowStaysOnTopHint, false);
    takeFocus();
}

} // namespace Vidtips
