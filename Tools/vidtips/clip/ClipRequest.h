#pragma once

#include "ClipRecipe.h"

#include <QtCore/QCommandLineOption>
#include <QtCore/QList>

QT_BEGIN_NAMESPACE
class QCommandLineParser;
QT_END_NAMESPACE

/** What the command line asks for: a recording or a window, and a clip with its poster. */
struct ClipRequest
{
    static constexpr double recordedLength = 6.0; ///< Seconds that a window is recorded where none are named.
    static constexpr double bytesPerKilobyte = 1024.0;

    QString recording;
    QString window; ///< What to record; empty where there is a recording.
    double wait = 0.0; ///< Seconds until the window is recorded.
    QString clip;
    QString poster; ///< Empty for none.
    ClipWishes wishes;
    qint64 fileSize = 0; ///< Bytes that the clip's file may take.
    bool isForced = false; ///< Whether files that exist are replaced.

    static QList<QCommandLineOption> options();

    /** Reads @p arguments; returns what is wrong with them, or nothing. */
    QString read(const QCommandLineParser &arguments);

private:
    QString readFiles(const QCommandLineParser &arguments);
    QString readWishes(const QCommandLineParser &arguments);
    QString problemWithTargets() const;
};
