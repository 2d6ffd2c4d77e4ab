#include "ToolRefusal.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

/** Runs the command that makes packages. */
class tst_NewCommand : public QObject
{
    Q_OBJECT

private slots:
    void newPackagesAreClean_data();
    void newPackagesAreClean();
    void newPackagesUseASharedInterface();
    void newLeavesNothingBehind();
    void refusesBadUse_data();
    void refusesBadUse();
};

void tst_NewCommand::newPackagesAreClean_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("plain") << QStringList{};
    QTest::newRow("to translate") << QStringList{"--locale", "de", "--locale", "fr_FR"};
}

void tst_NewCommand::newPackagesAreClean()
{
    QFETCH(QStringList, options);
    const TestPackages packages;
    const ToolRun made(QStringList{"new", "Mine.2"} + options, packages.path());
    QVERIFY2(made.exitCode == 0, qPrintable(made.errors));
    QStringList files = packages.files("Mine.2.vidtips");
    QCOMPARE(files.filter("l10n"),
             options.isEmpty() ? QStringList()
                               : QStringList({"l10n/Vidtips_de_DE.ts", "l10n/Vidtips_fr_FR.ts"}));
    for (const QString &file : files) {
        if (!file.startsWith("l10n"))
            QVERIFY2(made.output.contains("Mine.2.vidtips/" + file + '\n'), qPrintable(file));
    }
    const ToolRun checked({"check", "Mine.2.vidtips"}, packages.path());
    QCOMPARE(checked.output, QString("1 package, 1 control file: nothing found\n"));
    for (const QStringList &kind : {QStringList{}, QStringList{"--simple"}}) {
        const ToolRun seen(QStringList{"preview", "--delay", "0", "--screenshot", "tip.png", "Mine.2.vidtips"}
                               + kind,
                           packages.path());
        QCOMPARE(seen.errors, QString());
        QCOMPARE(seen.exitCode, 0);
        QVERIFY(QImage(packages.filePath("tip.png")).height() > 20);
    }
}

void tst_NewCommand::newPackagesUseASharedInterface()
{
    const TestPackages packages;
    QVERIFY(QDir().mkpath(packages.filePath("Data")));
    QCOMPARE(ToolRun({"new", "Shared", "--directory", "Data"}, packages.path()).exitCode, 0);
    QCOMPARE(ToolRun({"new", "Tools", "--directory", "Data", "--search", "Shared"}, packages.path()).exitCode,
             0);
    QCOMPARE(packages.files("Data/Tools.vidtips"),
             QStringList({"Control/Tools.en_US.xml", "Resources/first.png"}));
    QCOMPARE(ToolRun({"check", "Data"}, packages.path()).output,
             QString("2 packages, 2 control files: nothing found\n"));
}

void tst_NewCommand::newLeavesNothingBehind()
{
    const TestPackages packages;
    packages.write("Tools.vidtips", "a file");
    const ToolRun run({"new", "Tools"}, packages.path());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(TestPackages::read(packages.filePath("Tools.vidtips")), QByteArray("a file"));
    // Every file system bounds the length of a name, the suffix counted.
    const ToolRun tooLong({"new", QString(250, 'x')}, packages.path());
    QCOMPARE(tooLong.exitCode, 2);
    QCOMPARE(packages.files(), QStringList{"Tools.vidtips"});
}

void tst_NewCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("new without a name", {"new"}, "new needs one name; see \"vidtips new --help\"");
    row("new with two names", {"new", "A", "B"}, "new needs one name; see \"vidtips new --help\"");
    row("name with a slash", {"new", "../A"},
        "\"../A\" cannot be a package's name: use letters, digits, \"-\", \"_\" and \".\"");
    row("name with its suffix", {"new", "A.vidtips"}, "leave out \".vidtips\": the package's name is \"A\"");
    row("new in a missing folder", {"new", "--directory", "missing", "A"}, "no such folder: missing");
    row("new in a file", {"new", "--directory", "file.txt", "A"}, "not a folder: file.txt");
    row("new that is there", {"new", "Tools"}, "there is a package already: ./Tools.vidtips");
    row("new for no locale", {"new", "--locale", "german", "A"}, "Qt knows no locale \"german\"");
    row("new sharing nothing", {"new", "--search", "a b", "A"},
        "\"a b\" cannot be a package's name: use letters, digits, \"-\", \"_\" and \".\"");
}

void tst_NewCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

QTEST_GUILESS_MAIN(tst_NewCommand)

#include "tst_newcommand.moc"
