#include "HarvestRun.h"

#include "attach/ProgramRun.h"
#include "shared/Console.h"

#include <QtCore/QElapsedTimer>

#include <csignal>

namespace {

constexpr int lookEvery = 100; // milliseconds
constexpr int grace = 60; // seconds: after the wait, for walking through many windows on a busy machine

} // namespace

QString HarvestRun::harvest(const QString &program, const QStringList &command, int wait, Console &console)
{
    if (!m_folder.isValid())
        return QString("cannot write to the folder for temporary files: %1").arg(m_folder.errorString());
    AttachSettings settings;
    settings.harvestFolder = m_folder.path();
    settings.harvestWait = wait * 1000;
    ProgramRun run;
    QString problem = run.start(program, command.mid(1), settings);
    if (!problem.isEmpty())
        return problem;
    problem = follow(run, command.constFirst(), wait, console);
    console.progress(1, 1, QString());
    // What was started may only have started the program itself.
    if (m_process > 0 && !run.wait(0))
        ::kill(pid_t(m_process), SIGTERM);
    run.end();
    return problem;
}

QString HarvestRun::follow(ProgramRun &run, const QString &name, int wait, Console &console)
{
    QElapsedTimer time;
    time.start();
    const QString noWindow = QString("%1 has opened no window within %2 seconds").arg(name).arg(wait);
    for (;;) {
        const bool hasEnded = run.wait(lookEvery);
        const QVector<QJsonObject> reports = run.reports();
        while (m_taken < reports.size()) {
            if (takes(reports.at(m_taken++), console))
                return m_isWithoutWindow ? noWindow : m_problem;
        }
        if (hasEnded)
            return m_taken > 0 ? QString("%1 has ended before its windows were up").arg(name)
                               : ProgramRun::untaken(name);
        if (time.hasExpired((wait + grace) * 1000) || (m_taken == 0 && time.hasExpired(wait * 1000)))
            return noWindow;
        console.progress(int(time.elapsed() / 1000), wait + grace, "seconds");
    }
}

// Tells whether the report is the last one.
bool HarvestRun::takes(const QJsonObject &report, Console &console)
{
    const QString event = report.value("event").toString();
    const QString window = report.value("window").toString();
    if (event == "loaded")
        m_process = qint64(report.value("process").toDouble());
    if (event == "waiting" && !window.isEmpty())
        console.note(
            QString("vidtips: waiting for a window with menus or tool bars; there is \"%1\"").arg(window));
    if (event == "steppedBack")
        m_problem = "the program has no widgets";
    // Who does not answer a program's first question gets the commands of the question.
    if (event == "harvested" && !report.value("isMain").toBool())
        console.note("vidtips: no window with menus or tool bars has come, so the commands are those of the "
                     "windows that there are: answer what the program asks first, and harvest again");
    if (event == "harvested")
        m_problem = report.value("problem").toString();
    m_isWithoutWindow = event == "noWindow";
    return m_isWithoutWindow || event == "steppedBack" || event == "harvested";
}
