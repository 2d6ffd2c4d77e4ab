#include "Places.h"

#include <QtCore/QDir>

QString Places::shown(const QString &path)
{
    const QString relative = QDir(QDir::current().canonicalPath()).relativeFilePath(path);
    return relative.isEmpty() ? "." : relative.startsWith("..") ? path : relative;
}

QString Places::shown(const QString &path, Position position)
{
    QString text = shown(path);
    if (position.line > 0)
        text += QString(":%1").arg(position.line);
    if (position.line > 0 && position.column > 0)
        text += QString(":%1").arg(position.column);
    return text;
}
