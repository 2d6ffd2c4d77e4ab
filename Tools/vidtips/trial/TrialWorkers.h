#pragma once

#include "TrialFindings.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <functional>
#include <memory>
#include <vector>

class Content;
struct PreviewSettings;

QT_BEGIN_NAMESPACE
class QProcess;
QT_END_NAMESPACE

/**
 * Has tips shown by several processes of this program at once, each of which shows a slice of them. A tip
 * that ends its process, or never lets it go on, is a finding; another process then shows the rest.
 */
class TrialWorkers : public QObject
{
    Q_OBJECT

public:
    using Progress = std::function<void(int done, int total)>;

    /** Workers are this program with @p arguments, of which the first is the command, and a slice. */
    TrialWorkers(const QVector<TrialTip> &plan, const QStringList &arguments);
    ~TrialWorkers() override;

    /** A worker that says nothing for @p milliseconds is ended; a minute by itself. */
    void setPatience(int milliseconds) { m_patience = milliseconds; }

    /** Returns what was found once every tip was shown. @p problem is set where no worker can be started. */
    TrialFindings run(const Progress &progress, QString &problem);

    /** Is a worker: shows the tips of @p plan that @p slice names, and writes to the standard output what it
     * finds. */
    static int work(const Content &content, const QVector<TrialTip> &plan, const PreviewSettings &settings,
                    const QString &slice);

private:
    struct Worker;

    void start(Worker &worker, int from);
    void read(Worker &worker);
    void readLine(Worker &worker, const QByteArray &line);
    void conclude(Worker &worker);
    void giveUp(Worker &worker, const QString &message);
    void lookForStuckOnes();
    int count() const;

    const QVector<TrialTip> m_plan;
    const QStringList m_arguments;
    TrialFindings m_findings;
    QString m_problem;
    int m_patience = 60 * 1000;
    int m_done = 0;
    int m_running = 0;
    Progress m_progress;
    std::vector<std::unique_ptr<Worker>> m_workers;
};
