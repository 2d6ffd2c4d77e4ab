#include "CatalogueName.h"

#include <QtCore/QFileInfo>

QString CatalogueName::of(const QString &locale, const QString &suffix)
{
    return QString("Vidtips_%1.%2").arg(locale, suffix);
}

QString CatalogueName::localeOf(const QString &fileName)
{
    return QFileInfo(fileName).completeBaseName().section('_', 1);
}
