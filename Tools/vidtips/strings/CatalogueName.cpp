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

QStringList CatalogueName::foldersOf(const Content &content, const Package &package)
{
    const FileCategory &catalogues = Content::catalogues;
    QStringList folders{package.path + '/' + catalogues.defaultPath};
    const auto add = [&](const XmlNode *node) {
        const QString named = node ? node->attribute(catalogues.attribute) : QString();
        if (!named.isEmpty())
            folders << QDir::cleanPath(QDir(package.path).absoluteFilePath(named));
    };
    for (const ControlFile &file : content.controlFiles()) {
        if (file.package != package.path)
            continue;
        add(file.document.root());
        for (const XmlNode *entry : file.entries())
            add(entry);
    }
    folders.removeDuplicates();
    return folders;
}

QStringList CatalogueName::localesIn(const Content &content)
{
    QStringList locales;
    for (const ControlFile &file : content.controlFiles()) {
        if (file.isAdmitted && !file.locale().isEmpty())
            locales << QLocale(file.locale()).name();
    }
    for (const Package &package : content.packages()) {
        for (const QString &folder : foldersOf(content, package)) {
            for (const QString &name : QDir(folder).entryList({of("*", "qm"), of("*", "ts")}, QDir::Files))
                locales << QLocale(localeOf(name)).name();
        }
    }
    locales.removeDuplicates();
    locales.removeAll("C");
    locales.sort();
    return locales;
}
