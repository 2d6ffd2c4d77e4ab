#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

class Console;
class ProgramRun;

/** One run of a program whose commands are listed. */
class HarvestRun
{
public:
    /**
     * Starts @p program, which @p command names, with the arguments after that, and ends it when its commands
     * are listed in folder(). Its windows may take @p wait seconds. Returns what is wrong, or nothing.
     */
    QString harvest(const QString &program, const QStringList &command, int wait, Console &console);

    /** The folder that the list and the icons are in, as long as this lives. */
    QString folder() const { return m_folder.path(); }

private:
    QString follow(ProgramRun &run, const QString &name, int wait, Console &console);
    bool takes(const QJsonObject &report, Console &console);

    QTemporaryDir m_folder;
    QString m_problem;
    int m_taken = 0; ///< Reports.
    qint64 m_process = 0;
    bool m_isWithoutWindow = false;
};
