#pragma once

#include "AttachSettings.h"

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QVector>

/**
 * Another program, started with the module that makes tips in it. It has the tool's input, output and
 * environment, and gets the signals that end the tool.
 */
class ProgramRun : private QProcess
{
public:
    ProgramRun() = default;

    /** Starts the program at @p path; returns what is wrong, or nothing. */
    QString start(const QString &path, const QStringList &arguments, AttachSettings settings);

    /** Waits for the program's end, so many milliseconds or without an end for -1; tells whether it came. */
    bool wait(int milliseconds = -1);

    /** Asks the program to end, and ends it where it does not. */
    void end();

    /**
     * Returns the exit code of the program that has ended. Where a signal ended it, the same one ends the
     * tool.
     */
    int result() const;

    /** Returns what the module has reported so far, in order; nothing where no program has loaded it. */
    QVector<QJsonObject> reports() const;

    /** Returns what to tell of @p command, which has ended without reports. */
    static QString untaken(const QString &command);

    /** Returns the folder of the tool's module; empty where it is not installed. */
    static QString pluginFolder();

protected:
    void setupChildProcess() override;

private:
    QTemporaryDir m_folder;
    QString reportFile() const { return m_folder.filePath("report"); }
};
