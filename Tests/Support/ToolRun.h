#pragma once

#include "TestPaths.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QStringList>

#include <unistd.h>

/** One run of the command-line tool: what it wrote and how it ended. */
class ToolRun
{
public:
    /** The path of the tool. */
    static QString tool() { return TestPaths::built("bin/vidtips"); }

    /** Runs the tool with @p arguments in the folder @p folder, in an environment without a display. */
    explicit ToolRun(const QStringList &arguments, const QString &folder = QString(),
                     const QStringList &extraEnvironment = {})
        : ToolRun(tool(), arguments, folder, extraEnvironment)
    {
    }

    /** Runs the tool as somebody for whom files can be unreadable, which for root in full power nothing is.
     */
    static ToolRun unprivileged(const QStringList &arguments, const QString &folder)
    {
        if (geteuid() != 0)
            return ToolRun(arguments, folder);
        // Still root, who alone may reach what lies in root's own folder.
        const QString powers("-dac_override,-dac_read_search");
        return ToolRun("setpriv",
                       QStringList{"--inh-caps", powers, "--bounding-set", powers, tool()} + arguments,
                       folder);
    }

    /** Runs the tool on a terminal, which shows what it writes to both streams. */
    static ToolRun onTerminal(const QStringList &arguments, const QString &folder,
                              const QStringList &extraEnvironment = {})
    {
        const QString command = QString("stty cols 80; exec '%1' %2").arg(tool(), arguments.join(' '));
        return ToolRun("script", {"-qec", command, "/dev/null"}, folder, extraEnvironment);
    }

    QJsonDocument json() const { return QJsonDocument::fromJson(output.toUtf8()); }

    /** The findings of a check with --json. */
    QJsonArray findings() const { return json().object().value("findings").toArray(); }

    QStringList codes() const
    {
        QStringList codes;
        for (const QJsonValue finding : findings())
            codes << finding.toObject().value("code").toString();
        return codes;
    }

    bool isFinished = false;
    int exitCode = -1;
    QString output;
    QString errors;

private:
    ToolRun(const QString &program, const QStringList &arguments, const QString &folder,
            const QStringList &extraEnvironment = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(display);
        for (const QString &setting : extraEnvironment)
            environment.insert(setting.section('=', 0, 0), setting.section('=', 1));
        process.setProcessEnvironment(environment);
        if (!folder.isEmpty())
            process.setWorkingDirectory(folder);
        process.start(program, arguments);
        isFinished = process.waitForFinished(100000) && process.exitStatus() == QProcess::NormalExit;
        exitCode = process.exitCode();
        output = QString::fromUtf8(process.readAllStandardOutput());
        errors = QString::fromUtf8(process.readAllStandardError());
    }
};
