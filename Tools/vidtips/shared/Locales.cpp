#include "Locales.h"

#include <QtCore/QLocale>

QString Locales::problemWith(const QString &name)
{
    return QLocale(name) == QLocale::c() ? QString("Qt knows no locale \"%1\"").arg(name) : QString();
}
