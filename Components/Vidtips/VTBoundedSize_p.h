#pragma once

#include <QtCore/QSize>
#include <QtCore/QVariant>
#include <QtWidgets/QWidget>

namespace Vidtips {

/** Returns the size that a setting holds, within what can be added to a place on a screen without overflow.
 */
inline QSize boundedSize(const QVariant &setting)
{
    const QSize largest(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    return setting.toSize().boundedTo(largest).expandedTo(-1 * largest);
}

} // namespace Vidtips
