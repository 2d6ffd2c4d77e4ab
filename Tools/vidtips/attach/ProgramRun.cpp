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
std::atomic<int> receivedSignal{0};

// Also one that came before it was known whom it is for.
void passSignalOn()
{
    const pid_t program = runningProgram;
    const int signal = program ? receivedSignal.exchange(0) : 0;
    if (signal)
        kill(program, signal);
}

extern "C" void takeSignal(int signal)
{
    receivedSignal = signal;
    passSignalOn();
}

using SignalHandler = void (*)(int);

struct GuardedSignal
{
    int number;
    SignalHandler guard;
    SignalHandler before;
};

// What the terminal sends reaches the program by itself; the tool waits for what it makes of that.
GuardedSignal guardedSignals[] = {{SIGINT, SIG_IGN, SIG_DFL},
                                  {SIGQUIT, SIG_IGN, SIG_DFL},
                                  {SIGTERM, takeSignal, SIG_DFL},
                                  {SIGHUP, takeSignal, SIG_DFL}};

// What is ignored stays so: the program is to ignore it, too.
void guardSignals()
{
    receivedSignal = 0;
    for (GuardedSignal &signal : guardedSignals) {
        signal.before = std::signal(signal.number, signal.guard);
        if (signal.before == SIG_IGN)
            std::signal(signal.number, SIG_IGN);
    }
}

void unguardSignals()
{
    runningProgram = 0;
    for (const GuardedSignal &signal : guardedSignals)
        std::signal(signal.number, signal.before);
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
    guardSignals();
    QProcess::start(path, arguments);
    if (!waitForStarted(-1)) {
        unguardSignals();
        return QString("cannot start %1: %2").arg(path, errorString());
    }
    runningProgram = pid_t(processId());
    passSignalOn();
    return {};
}

// Runs in the new process, before the program does.
void ProgramRun::setupChildProcess()
{
    unguardSignals();
}

bool ProgramRun::wait(int milliseconds)
{
    if (state() != NotRunning)
        waitForFinished(milliseconds);
    if (state() != NotRunning)
        return false;
    unguardSignals();
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
