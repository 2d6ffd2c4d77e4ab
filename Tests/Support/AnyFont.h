#pragma once

#include <QtCore/QDirIterator>
#include <QtCore/QStandardPaths>

/** Returns the path of any font file of the machine; nothing where there is none. */
inline QString anyFont()
{
    const QStringList folders =
        QStandardPaths::standardLocations(QStandardPaths::FontsLocation) + QStringList("/usr/share/fonts");
    for (const QString &folder : folders) {
        QDirIterator walk(folder, {"*.ttf"}, QDir::Files, QDirIterator::Subdirectories);
        if (walk.hasNext())
            return walk.next();
    }
    return {};
}
