#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace Vidtips {

/**
 * Returns @p text with each placeholder "%(name)s" replaced by the property of that name; see
 * VTManager::interpolate().
 */
QString interpolated(const QString &text, const QMap<QString, QVariant> &properties);

} // namespace Vidtips
