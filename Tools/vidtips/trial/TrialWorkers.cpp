#include "TrialWorkers.h"

#include "Trial.h"
#include "shared/Console.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <cstdio>

namespace {

constexpr int fewestTips = 16; // that another process is worth
constexpr int lookEvery = 1000; // milliseconds

bool write(QFile &output, const QJsonObject &object)
{
    return output.write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n') > 0 && output.flush();
}

} // namespace

struct TrialWorkers::Worker
{
    int slice = 0;
    int tip = -1; ///< The number of the one that is being shown.
    int next = 0; ///< The number from which on none was begun.
    QElapsedTimer silence;
    QByteArray unread;
    QProcess *process = nullptr;
};

TrialWorkers::TrialWorkers(const QVector<TrialTip> &plan, const QStringList &arguments)
    : m_plan(plan)
    , m_arguments(arguments)
{
}

TrialWorkers::~TrialWorkers() = default;

int TrialWorkers::count() const
{
    return qBound(1, m_plan.size() / fewestTips, QThread::idealThreadCount());
}

TrialFindings TrialWorkers::run(const Progress &progress, QString &problem)
{
    m_progress = progress;
    QEventLoop loop;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [this] { lookForStuckOnes(); });
    look.start(lookEvery);
    const int workers = m_plan.isEmpty() ? 0 : count();
    for (int slice = 0; slice < workers; ++slice) {
        m_workers.push_back(std::make_unique<Worker>());
        m_workers.back()->slice = slice;
        start(*m_workers.back(), slice);
    }
    while (m_running > 0)
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    progress(m_plan.size(), m_plan.size());
    problem = m_problem;
    return m_findings;
}

void TrialWorkers::start(Worker &worker, int from)
{
    ++m_running;
    worker.tip = -1;
    worker.next = from;
    worker.unread.clear();
    worker.silence.start();
    QProcess *const process = new QProcess(this);
    worker.process = process;
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(process, &QProcess::readyReadStandardOutput, this, [this, &worker] { read(worker); });
    connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, &worker] { conclude(worker); });
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        m_problem = QString("cannot start %1: %2").arg(process->program(), process->errorString());
        --m_running;
    });
    const QString slice = QString("%1/%2/%3").arg(worker.slice).arg(count()).arg(from);
    process->start(QCoreApplication::applicationFilePath(),
                   QStringList{m_arguments.value(0), "--slice", slice} + m_arguments.mid(1));
}

void TrialWorkers::read(Worker &worker)
{
    worker.silence.start();
    worker.unread += worker.process->readAllStandardOutput();
    for (int end = worker.unread.indexOf('\n'); end >= 0; end = worker.unread.indexOf('\n')) {
        readLine(worker, worker.unread.left(end));
        worker.unread.remove(0, end + 1);
    }
}

void TrialWorkers::readLine(Worker &worker, const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (object.contains("tip")) {
        worker.tip = qBound(0, object.value("tip").toInt(), m_plan.size() - 1);
        worker.next = worker.tip + count();
        m_progress(m_done++, m_plan.size());
    } else if (object.contains("end")) {
        worker.tip = -1;
        worker.next = m_plan.size();
    } else if (worker.tip >= 0) {
        m_findings.add(TrialFindings::fromJson(object), m_plan.at(worker.tip), worker.tip);
    }
}

void TrialWorkers::conclude(Worker &worker)
{
    const bool isKilled = worker.silence.hasExpired(m_patience);
    read(worker);
    --m_running;
    if (worker.next >= m_plan.size() && worker.tip < 0)
        return;
    if (worker.tip < 0) {
        m_problem = "a process that shows tips ended before it has shown one";
        return;
    }
    giveUp(worker, isKilled ? "showing the tip does not come to an end" : "showing the tip ends the program");
    if (worker.next < m_plan.size())
        start(worker, worker.next);
}

void TrialWorkers::giveUp(Worker &worker, const QString &message)
{
    const TrialTip &tip = m_plan.at(worker.tip);
    m_findings.add({"VT900", tip.userInterface, {}, message}, tip, worker.tip);
}

void TrialWorkers::lookForStuckOnes()
{
    for (const auto &worker : m_workers) {
        if (worker->silence.hasExpired(m_patience))
            worker->process->kill();
    }
}

int TrialWorkers::work(const Content &content, const QVector<TrialTip> &plan, const PreviewSettings &settings,
                       const QString &slice)
{
    QFile output;
    const int step = slice.section('/', 1, 1).toInt();
    if (step < 1 || !output.open(stdout, QIODevice::WriteOnly))
        return ExitBadInput;
    bool isHeard = true;
    Trial trial(content, settings, [&](const Finding &finding) {
        isHeard = isHeard && write(output, TrialFindings::toJson(finding));
    });
    for (int i = slice.section('/', 2, 2).toInt(); i < plan.size() && isHeard; i += step) {
        isHeard = write(output, {{"tip", i}});
        trial.show(plan.at(i));
    }
    return isHeard && write(output, {{"end", true}}) ? ExitFine : ExitBadInput;
}
