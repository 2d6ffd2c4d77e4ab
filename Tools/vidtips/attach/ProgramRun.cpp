#include "ProgramRun.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>

#include <atomic>
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr int patience = 5000; // milliseconds: for a program that was asked to end

std::atomic<pid_t> runningProgram{0};

// What the terminal sends reaches the program by itself; the tool waits for what it makes of that.
constexpr int sharedSignals[] = {SIGINT, SIGQUIT};
constexpr int forwardedSignals[] = {SIGTERM, SIGHUP};

extern "C" void forwardSignal(int signal)
{
    if (const pid_t program = runningProgram)
        kill(program, signal);
}

void guardSignals(pid_t program)
{
    runningProgram = program;
    for (int signal : sharedSignals)
        std::signal(signal, SIG_IGN);
    for (int signal : forwardedSignals)
        std::signal(signal, program ? forwardSignal : SIG_DFL);
}

void dieBy(int signal)
{
    // One core file, that of the program, is enough.
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

} // namespace

QString ProgramRun::pluginFolder()
{
    const QDir own(QCoreApplication::applicationDirPath());
    for (const char *folder : {VIDTIPS_INSTALLED_PLUGINS, VIDTIPS_BUILT_PLUGINS}) {
        const QString path = QDir::cleanPath(own.filePath(folder));
        if (QFileInfo::exists(path + "/generic/" VIDTIPS_ATTACH_MODULE))
            return path;
    }
    return {};
}

QString ProgramRun::start(const QString &path, const QStringList &arguments, AttachSettings settings)
{
    const QString plugins = pluginFolder();
    if (plugins.isEmpty())
        return "the module that makes tips in other programs is not installed";
    QFile report(reportFile());
    if (!m_folder.isValid() || !report.open(QIODevice::WriteOnly))
        return QString("cannot write to the folder for temporary files: %1").arg(m_folder.errorString());
    settings.reportFile = report.fileName();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    settings.writeTo(environment, plugins);
    setProcessEnvironment(environment);
    setProcessChannelMode(ForwardedChannels);
    setInputChannelMode(ForwardedInputChannel);
    QProcess::start(path, arguments);
    if (!waitForStarted(-1))
        return QString("cannot start %1: %2").arg(path, errorString());
    guardSignals(pid_t(processId()));
    return {};
}

// Runs in the new process, before the program does.
void ProgramRun::setupChildProcess()
{
    for (int signal : sharedSignals)
        std::signal(signal, SIG_DFL);
}

bool ProgramRun::wait(int milliseconds)
{
    if (state() != NotRunning && !waitForFinished(milliseconds))
        return state() == NotRunning;
    runningProgram = 0;
    return true;
}

void ProgramRun::end()
{
    terminate();
    if (wait(patience))
        return;
    kill();
    wait();
}

int ProgramRun::result() const
{
    if (exitStatus() == CrashExit)
        dieBy(exitCode());
    return exitCode();
}

QVector<QJsonObject> ProgramRun::reports() const
{
    QFile file(reportFile());
    QVector<QJsonObject> reports;
    if (!file.open(QIODevice::ReadOnly))
        return reports;
    QByteArrayList lines = file.readAll().split('\n');
    // What follows the last end of a line is still being written.
    lines.removeLast();
    for (const QByteArray &line : qAsConst(lines))
        reports << QJsonDocument::fromJson(line).object();
    return reports;
}

QString ProgramRun::untaken(const QString &command)
{
    return QString("%1 has ended without loading the module for tips: it opens no windows of Qt 5 "
                   "itself, or its Qt is not " QT_VERSION_STR)
        .arg(command);
}
