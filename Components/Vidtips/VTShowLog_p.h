#pragma once

#include <QtCore/QLoggingCategory>
#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Vidtips {

/** The category "vidtips.show": why a tip is shown, is not shown or goes, a line for each decision. Off by
 * default. */
Q_DECLARE_LOGGING_CATEGORY(showLog)

/** Returns the class and name of @p object, which may be null, for a line of the log. */
QString describe(const QObject *object);

} // namespace Vidtips
