#include "attach/ProgramRun.h"

#include <QtTest/QtTest>

#include <csignal>
#include <unistd.h>

namespace {

constexpr int slowest = 100000; // milliseconds

/** A run whose starter is asked to end before the program runs. */
class InterruptedRun : public ProgramRun
{
protected:
    void setupChildProcess() override
    {
        ProgramRun::setupChildProcess();
        ::kill(getppid(), SIGTERM);
    }
};

QString startShell(ProgramRun &run, const QString &script)
{
    return run.start("/bin/sh", {"-c", script}, AttachSettings());
}

} // namespace

/** Runs a program, with the signals that are for it. */
class tst_ProgramRun : public QObject
{
    Q_OBJECT

private slots:
    void passesOnWhatComesWhileItStarts();
    void leavesSignalsAsTheyWere_data();
    void leavesSignalsAsTheyWere();
};

void tst_ProgramRun::passesOnWhatComesWhileItStarts()
{
    InterruptedRun run;
    QCOMPARE(startShell(run, "exec sleep 100"), QString());
    QVERIFY(run.wait(slowest));
}

void tst_ProgramRun::leavesSignalsAsTheyWere_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("INT") << SIGINT;
    QTest::newRow("QUIT") << SIGQUIT;
    QTest::newRow("TERM") << SIGTERM;
    QTest::newRow("HUP") << SIGHUP;
}

// As a program that was started by nohup expects.
void tst_ProgramRun::leavesSignalsAsTheyWere()
{
    QFETCH(int, number);
    const auto before = std::signal(number, SIG_IGN);
    ProgramRun run;
    const QString problem = startShell(run, QString("kill -%1 $$ $PPID; exit 3").arg(number));
    const bool hasEnded = run.wait(slowest);
    const auto after = std::signal(number, before);
    QCOMPARE(problem, QString());
    QVERIFY(hasEnded);
    QCOMPARE(run.result(), 3);
    QVERIFY(after == SIG_IGN);
}

QTEST_GUILESS_MAIN(tst_ProgramRun)
#include "tst_programrun.moc"
