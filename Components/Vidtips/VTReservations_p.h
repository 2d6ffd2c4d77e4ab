#pragma once

#include <QtCore/QList>
#include <QtCore/QPointer>

namespace Vidtips {

class VTWidget;
class VTXmlElement;

/** The windows that were handed over to the host: tips that users keep. Who destroys one need not say so. */
class VTReservations
{
public:
    /** Adds @p window, which is not owned. */
    void add(VTWidget *window);

    /** Returns the windows that there are still, last first. What is done with one may destroy others. */
    QList<QPointer<VTWidget>> windows();

    /** Returns the content with @p key of the window that was added first with it, or null. */
    VTXmlElement *contentWithKey(const QString &key) const;

    /** Raises every window. */
    void raise();

    /** Makes every window stay on top, or not, and shows it. */
    void setStayOnTop(bool on);

    /** Sees to it that no window outlives the application object. */
    void deleteWithApplication();

private:
    QList<QPointer<VTWidget>> m_windows;
};

} // namespace Vidtips
