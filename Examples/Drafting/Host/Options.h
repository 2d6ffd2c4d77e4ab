#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

/** How the application starts; every option can be changed at run time by its menu, but for the data paths.
 */
struct Options
{
    Q_DECLARE_TR_FUNCTIONS(Options)

public:
    QString language = QStringLiteral("en");
    QString appearance = QStringLiteral("light");
    QStringList dataPaths;
    bool rightToLeft = false;
    bool reserveInContainer = false;
    bool simpleTips = false;
    bool tipsOff = false;
    bool modifierOnly = false;
    bool motion = true;
    bool fallback = true;
    bool fullScreen = false;
    bool sample = true;
    bool debugMessages = false;
    bool trace = false;
    int idleInterval = -1;

    /** Reads the command line; shows the help or the error and ends the process where that is asked for. */
    static Options parse(const QCoreApplication &application);

    /** The folder with the content packages and the translations. */
    static QString shareFolder();
};
