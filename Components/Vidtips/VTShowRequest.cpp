#include "VTShowRequest_p.h"

#include "VTShowLog_p.h"

#include <QtWidgets/QWidget>

namespace Vidtips {

QWidget *VTShowRequest::widget() const
{
    return qobject_cast<QWidget *>(object.data());
}

QRect VTShowRequest::place() const
{
    const QWidget *const command = widget();
    if (rect.isValid() || !command)
        return rect;
    return {command->mapToGlobal(QPoint(0, 0)), command->size()};
}

void VTShowRequest::log(const QString &decision) const
{
    qCDebug(showLog, "\"%s\" at %d,%d for %s: %s", qUtf8Printable(key), position.x(), position.y(),
            qUtf8Printable(describe(object)), qUtf8Printable(decision));
}

} // namespace Vidtips
