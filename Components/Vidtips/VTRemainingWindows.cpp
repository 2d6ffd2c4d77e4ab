#include "VTRemainingWindows_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace Vidtips {

namespace {

void deleteRemainingWindows();

struct RemainingWindows
{
    // The library may be unloaded before the application ends.
    ~RemainingWindows() { qRemovePostRoutine(deleteRemainingWindows); }

    QList<QPointer<QWidget>> windows;
};

Q_GLOBAL_STATIC(RemainingWindows, remaining)

void deleteRemainingWindows()
{
    if (!remaining.exists())
        return;
    while (!remaining->windows.isEmpty())
        delete remaining->windows.takeFirst().data();
}

} // namespace

void VTRemainingWindows::add(QWidget *window)
{
    if (remaining.isDestroyed())
        return;
    remaining->windows.removeAll(nullptr);
    remaining->windows.append(window);
    qRemovePostRoutine(deleteRemainingWindows);
    qAddPostRoutine(deleteRemainingWindows);
}

} // namespace Vidtips
