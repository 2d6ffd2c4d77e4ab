#include "CatalogueName.h"

#include "shared/Content.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

QString CatalogueName::of(const QString &locale, const QString &suffix)
{
    return QString("Vidtips_%1.%2").arg(locale, suffix);
}

QString CatalogueName::localeOf(const QString &fileName)
{
    return QFileInfo(fileName).completeBaseName().section('_', 1);
}

QStringList CatalogueName::localesIn(const Content &content)
{
    QStringList locales;
    for (const ControlFile &file : content.controlFiles()) {
        if (file.isAdmitted && !file.locale().isEmpty())
            locales << QLocale(file.locale()).name();
    }
    for (const Package &package : content.packages()) {
        const QDir folder(package.path + '/' + Content::catalogues.defaultPath);
        for (const QString &name : folder.entryList({of("*", "qm"), of("*", "ts")}, QDir::Files))
            locales << QLocale(localeOf(name)).name();
    }
    locales.removeDuplicates();
    locales.removeAll("C");
    locales.sort();
    return locales;
}
