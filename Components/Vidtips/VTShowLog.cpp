#include "VTShowLog_p.h"

#include <QtCore/QObject>

namespace Vidtips {

// Debug messages of a category are on unless it begins above them.
Q_LOGGING_CATEGORY(showLog, "vidtips.show", QtInfoMsg)

QString describe(const QObject *object)
{
    if (!object)
        return QStringLiteral("no object");
    const QString className = QString::fromLatin1(object->metaObject()->className());
    if (object->objectName().isEmpty())
        return className;
    return QStringLiteral("%1 \"%2\"").arg(className, object->objectName());
}

} // namespace Vidtips
