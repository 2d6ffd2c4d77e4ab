#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/** How tips are previewed. */
struct PreviewSettings
{
    QStringList folders; ///< Data paths or packages, as for the other commands.
    QString locale;
    QString keyData; ///< Path of the key-data file; empty for the one that lies beside the packages.
    QMap<QString, QString> properties; ///< What a host would set for placeholders in texts.
    bool isSimple = false;
    bool isDark = false;
    bool isRestricted = false; ///< Content reaches nothing outside its packages.
};
