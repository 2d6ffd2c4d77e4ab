#include "shared/Console.h"
#include "trial/TrialWorkers.h"

#include <QtCore/QThread>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <cstdlib>

// This program is its own worker: what the first argument says becomes of each, as it shows the third tip or
// any.
namespace {

void tell(const char *format, int number)
{
    std::printf(format, number);
    std::putchar('\n');
    std::fflush(stdout);
}

int work(const QString &behaviour, const QString &slice)
{
    constexpr int tips = 64;
    if (behaviour == "nothing")
        return ExitBadInput;
    for (int i = slice.section('/', 2, 2).toInt(); i < tips; i += slice.section('/', 1, 1).toInt()) {
        tell(R"({"tip":%d})", i);
        if (behaviour == "crash" && (i == 3 || i == 63))
            std::abort();
        if (behaviour == "hang" && i == 3)
            QThread::sleep(100000);
        if (i % 2 == 0)
            tell(R"({"code":"VT902","file":"/ui/Tip.qml","line":%d,"column":1,"message":"cut"})", i % 4 + 1);
    }
    tell(R"({"end":%d})", 1);
    return ExitFine;
}

QVector<TrialTip> plan()
{
    QVector<TrialTip> tips;
    for (int i = 0; i < 64; ++i)
        tips.append({QString("key%1").arg(i), "en_US", false, false, "/ui/Bad.qml"});
    return tips;
}

QStringList lines(const TrialFindings &found)
{
    Findings findings;
    found.addTo(findings);
    QStringList lines;
    const QVector<Finding> sorted = findings.sorted();
    for (const Finding &finding : sorted)
        lines << QString("%1:%2 %3").arg(finding.code).arg(finding.position.line).arg(finding.message);
    return lines;
}

} // namespace

/** Shows tips by several processes. */
class tst_TrialWorkers : public QObject
{
    Q_OBJECT

private slots:
    void gathersWhatAllFind();
    void goesOnAfterACrash();
    void endsWhatNeverEnds();
    void saysWhenNoneWorks();
    void hasNothingToShow();
};

void tst_TrialWorkers::gathersWhatAllFind()
{
    QVector<int> progress;
    QString problem;
    TrialWorkers workers(plan(), {"fine"});
    const TrialFindings found = workers.run(
        [&](int done, int total) {
            progress << done;
            QCOMPARE(total, 64);
        },
        problem);
    QCOMPARE(problem, QString());
    QCOMPARE(lines(found),
             QStringList({"VT902:1 cut (\"key0\", en_US, and 15 other tips)",
                          "VT902:3 cut (\"key2\", en_US, and 15 other tips)"}));
    QCOMPARE(progress.size(), 65);
    for (int i = 0; i < progress.size(); ++i)
        QCOMPARE(progress.at(i), i);
}

void tst_TrialWorkers::goesOnAfterACrash()
{
    QString problem;
    TrialWorkers workers(plan(), {"crash"});
    const QStringList found = lines(workers.run([](int, int) {}, problem));
    QCOMPARE(problem, QString());
    QCOMPARE(found,
             QStringList({"VT900:0 showing the tip ends the program (\"key3\", en_US, and another tip)",
                          "VT902:1 cut (\"key0\", en_US, and 15 other tips)",
                          "VT902:3 cut (\"key2\", en_US, and 15 other tips)"}));
}

void tst_TrialWorkers::endsWhatNeverEnds()
{
    QString problem;
    TrialWorkers workers(plan(), {"hang"});
    workers.setPatience(4000);
    QCOMPARE(lines(workers.run([](int, int) {}, problem)),
             QStringList({"VT900:0 showing the tip does not come to an end (\"key3\", en_US)",
                          "VT902:1 cut (\"key0\", en_US, and 15 other tips)",
                          "VT902:3 cut (\"key2\", en_US, and 15 other tips)"}));
    QCOMPARE(problem, QString());
}

void tst_TrialWorkers::saysWhenNoneWorks()
{
    QString problem;
    TrialWorkers workers(plan(), {"nothing"});
    QCOMPARE(lines(workers.run([](int, int) {}, problem)), QStringList());
    QCOMPARE(problem, QString("a process that shows tips ended before it has shown one"));
}

void tst_TrialWorkers::hasNothingToShow()
{
    QString problem;
    TrialWorkers workers({}, {"crash"});
    QCOMPARE(lines(workers.run([](int, int) {}, problem)), QStringList());
    QCOMPARE(problem, QString());
}

int main(int argc, char *argv[])
{
    const QString second = QString::fromLocal8Bit(argc > 2 ? argv[2] : "");
    if (second == "--slice")
        return work(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argc > 3 ? argv[3] : ""));
    QCoreApplication application(argc, argv);
    tst_TrialWorkers test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_trialworkers.moc"
