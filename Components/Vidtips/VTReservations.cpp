#include "VTReservations_p.h"

#include "VTTipContent_p.h"
#include "VTWidget.h"

#include <QtGui/QWindow>

#include <algorithm>

namespace Vidtips {

namespace {

// Changing the flags of a widget hides it, and a window manager forgets the state of a window that is hidden,
// at times only after that is shown again.
void setOnTop(QWidget *window, bool on)
{
    QWindow *const handle = window->windowHandle();
    if (!handle) {
        window->setWindowFlag(Qt::WindowStaysOnTopHint, on);
        return;
    }
    const Qt::WindowFlags rest = window->windowFlags() & ~Qt::WindowStaysOnTopHint;
    window->overrideWindowFlags(on ? rest | Qt::WindowStaysOnTopHint : rest);
    handle->setFlag(Qt::WindowStaysOnTopHint, on);
}

} // namespace

void VTReservations::add(VTWidget *window)
{
    // The windows that users have closed since.
    m_windows.removeAll(nullptr);
    m_windows.append(window);
}

QList<QPointer<VTWidget>> VTReservations::windows()
{
    m_windows.removeAll(nullptr);
    QList<QPointer<VTWidget>> windows = m_windows;
    std::reverse(windows.begin(), windows.end());
    return windows;
}

VTXmlElement *VTReservations::contentWithKey(const QString &key) const
{
    for (const QPointer<VTWidget> &window : m_windows) {
        if (hasKey(contentOf(window), key))
            return contentOf(window);
    }
    return nullptr;
}

void VTReservations::raise()
{
    const QList<QPointer<VTWidget>> raised = windows();
    for (const QPointer<VTWidget> &window : raised) {
        if (window)
            window->raise();
    }
}

void VTReservations::setStayOnTop(bool on)
{
    const QList<QPointer<VTWidget>> changed = windows();
    for (const QPointer<VTWidget> &window : changed) {
        if (window)
            setOnTop(window, on);
        if (window)
            window->show();
    }
}

void VTReservations::deleteWithApplication()
{
    const QList<QPointer<VTWidget>> remaining = windows();
    for (const QPointer<VTWidget> &window : remaining)
        window->deleteWithApplication();
}

} // namespace Vidtips
