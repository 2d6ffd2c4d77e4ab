#pragma once

#include <QtCore/QString>

namespace Vidtips {

/** Returns where in a package the full user interface is, unless content or settings say otherwise. */
inline QString defaultFullInterface()
{
    return QStringLiteral("ui/VidtipsUI.qml");
}

/** Returns where in a package the simple user interface is, unless content or settings say otherwise. */
inline QString defaultSimpleInterface()
{
    return QStringLiteral("ui/SimpleTooltip.qml");
}

} // namespace Vidtips
