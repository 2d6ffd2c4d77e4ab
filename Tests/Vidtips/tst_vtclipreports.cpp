#include <Vidtips/VTClipReports_p.h>

#include <QtCore/QThread>
#include <QtTest/QTest>

#include <thread>
#include <vector>

using namespace Vidtips;

class tst_VTClipReports : public QObject
{
    Q_OBJECT

private slots:
    void takenInTheirOrderAndOnce();
    void receiverMayTake();
    void manyThreads();
};

void tst_VTClipReports::takenInTheirOrderAndOnce()
{
    VTClipReports reports;
    QVERIFY(reports.take().isEmpty());
    reports.add(QUrl("file:///a.mp4"), QString());
    reports.add(QUrl("file:///b.mp4"), "it is broken");
    reports.add(QUrl("file:///a.mp4"), "it is gone");
    const QList<VTClipReport> taken = reports.take();
    QCOMPARE(taken.size(), 3);
    QCOMPARE(taken.at(0).clip, QUrl("file:///a.mp4"));
    QCOMPARE(taken.at(0).problem, QString());
    QCOMPARE(taken.at(1).clip, QUrl("file:///b.mp4"));
    QCOMPARE(taken.at(1).problem, QString("it is broken"));
    QCOMPARE(taken.at(2).problem, QString("it is gone"));
    QVERIFY(reports.take().isEmpty());
}

// The report is there when the signal says so, on the thread that added it, and no lock is held.
void tst_VTClipReports::receiverMayTake()
{
    VTClipReports reports;
    QList<VTClipReport> taken;
    const QThread *toldOn = nullptr;
    connect(
        &reports, &VTClipReports::added, &reports,
        [&] {
            toldOn = QThread::currentThread();
            taken += reports.take();
        },
        Qt::DirectConnection);
    const QThread *addedOn = nullptr;
    std::thread([&] {
        addedOn = QThread::currentThread();
        reports.add(QUrl("file:///a.mp4"), "it is broken");
    }).join();
    QCOMPARE(taken.size(), 1);
    QVERIFY(toldOn && toldOn != thread());
    QCOMPARE(toldOn, addedOn);
}

void tst_VTClipReports::manyThreads()
{
    constexpr int threadCount = 4;
    constexpr int each = 500;
    VTClipReports reports;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&reports, i] {
            for (int report = 0; report < each; ++report)
                reports.add(QUrl(QString::number(i)), QString::number(report));
        });
    }
    QList<VTClipReport> taken;
    while (taken.size() < threadCount * each / 2)
        taken += reports.take();
    for (std::thread &thread : threads)
        thread.join();
    taken += reports.take();
    QCOMPARE(taken.size(), threadCount * each);
    QVector<int> next(threadCount, 0);
    for (const VTClipReport &report : qAsConst(taken))
        QCOMPARE(report.problem.toInt(), next[report.clip.toString().toInt()]++);
}

QTEST_GUILESS_MAIN(tst_VTClipReports)
#include "tst_vtclipreports.moc"
