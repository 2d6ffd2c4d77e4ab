#include "TestPackage.h"
#include "TestPaths.h"
#include "ToolRefusal.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

/** Runs the tool for what it says of itself, and with what no command takes. */
class tst_CommandTable : public QObject
{
    Q_OBJECT

private slots:
    void helpsWithEveryCommand_data();
    void helpsWithEveryCommand();
    void tellsItsVersion();
    void refusesBadUse_data();
    void refusesBadUse();
    void fallsSilentWithoutAReader_data();
    void fallsSilentWithoutAReader();
    void describesItselfInAManualPage();
};

void tst_CommandTable::helpsWithEveryCommand_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command :
         {"check", "explain", "keys", "preview", "strings", "schema", "new", "clip", "attach", "harvest"})
        QTest::newRow(command) << command;
}

void tst_CommandTable::helpsWithEveryCommand()
{
    QFETCH(QString, command);
    const ToolRun overview({"--help"});
    QCOMPARE(overview.exitCode, 0);
    QVERIFY(overview.output.contains("\n    " + command + ' '));
    const ToolRun run({command, "--help"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors, QString());
    for (const char *section :
         {"NAME\n", "SYNOPSIS\n", "DESCRIPTION\n", "OPTIONS\n", "EXIT STATUS\n", "EXAMPLES\n"})
        QVERIFY2(run.output.contains(section), section);
    QVERIFY(run.output.contains("        vidtips " + command));
    QVERIFY2(!run.output.contains('\033'), "colours in a pipe");
    QCOMPARE(ToolRun({"help", command}).output, run.output);
}

void tst_CommandTable::tellsItsVersion()
{
    const ToolRun run({"--version"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(QRegularExpression("^vidtips \\d+\\.\\d+\\.\\d+\n$").match(run.output).hasMatch());
}

void tst_CommandTable::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("nothing", {}, "a command is missing; see \"vidtips --help\"");
    row("misspelt command", {"chek"}, "there is no command \"chek\"; did you mean \"check\"?");
    row("unknown command", {"frobnicate"}, "there is no command \"frobnicate\"; see \"vidtips --help\"");
    row("help for an unknown command", {"help", "frobnicate"},
        "there is no command \"frobnicate\"; see \"vidtips --help\"");
}

void tst_CommandTable::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

void tst_CommandTable::fallsSilentWithoutAReader_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("error");
    // The shell's $0 is the tool.
    QTest::newRow("closed pipe") << "(\"$0\" explain; echo $? >&2) | true"
                                 << QByteArray("vidtips: cannot write the output: Broken pipe\n2\n");
    QTest::newRow("full disk") << "\"$0\" explain > /dev/full; echo $? >&2"
                               << QByteArray(
                                      "vidtips: cannot write the output: No space left on device\n2\n");
    QTest::newRow("closed output") << "\"$0\" explain >&-; echo $? >&2"
                                   << QByteArray(
                                          "vidtips: cannot write the output: Bad file descriptor\n2\n");
}

void tst_CommandTable::fallsSilentWithoutAReader()
{
    QFETCH(QString, command);
    QFETCH(QByteArray, error);
    // "true" may read nothing and still be there while the tool writes, so the pipe is closed first.
    command.replace("(\"$0\"", "(sleep 0.3; \"$0\"");
    QProcess shell;
    shell.start("sh", {"-c", command, ToolRun::tool()});
    QVERIFY(shell.waitForFinished(60000));
    QCOMPARE(shell.readAllStandardError(), error);
}

void tst_CommandTable::describesItselfInAManualPage()
{
    const QString page =
        QString::fromUtf8(TestPackages::read(TestPaths::built("Tools/vidtips.1"))).replace("\\-", "-");
    for (const char *command :
         {"check", "explain", "keys", "preview", "strings", "schema", "new", "clip", "attach", "harvest"}) {
        QVERIFY2(page.contains(QString("\n.SH %1\n").arg(QString(command).toUpper())), command);
        static const QRegularExpression option("^    (--[a-z-]+)", QRegularExpression::MultilineOption);
        auto options = option.globalMatch(ToolRun({command, "--help"}).output);
        while (options.hasNext()) {
            const QString name = options.next().captured(1);
            QVERIFY2(page.contains("\\fB" + name + "\\fR"), qPrintable(name));
        }
    }
    static const QRegularExpression request("\n['.](?!TH|SH|TP|PP|RS|RE|EX|EE|B)");
    QVERIFY(!page.contains(request));
}

QTEST_GUILESS_MAIN(tst_CommandTable)

#include "tst_commandtable.moc"
