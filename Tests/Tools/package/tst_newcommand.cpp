#include "ToolRefusal.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

namespace {

// The call that the tool's last line proposes.
QStringList callIn(const QString &output)
{
    return output.trimmed().section("See it: vidtips ", 1).split(' ');
}

QString errorsOfPreview(const QStringList &call, const QString &folder)
{
    return ToolRun(call + QStringList{"--delay", "0", "--screenshot", "tip.png"}, folder).errors;
}

} // namespace

/** Runs the command that makes packages. */
class tst_NewCommand : public QObject
{
    Q_OBJECT

private slots:
    void newPackagesAreClean_data();
    void newPackagesAreClean();
    void newPackagesUseASharedInterface();
    void saysThatTheSharedPackageIsMissing();
    void saysThatThereIsNothingToTranslate();
    void addsTips_data();
    void addsTips();
    void refusesTips_data();
    void refusesTips();
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
    QCOMPARE(made.errors, QString());
    QStringList files = packages.files("Mine.2.vidtips");
    QCOMPARE(files.filter("l10n"),
             options.isEmpty() ? QStringList()
                               : QStringList({"l10n/Vidtips_de_DE.ts", "l10n/Vidtips_fr_FR.ts"}));
    for (const QString &file : files) {
        QVERIFY2(made.output.contains("Mine.2.vidtips/" + file + '\n'), qPrintable(file));
    }
    const ToolRun checked({"check", "--run", "Mine.2.vidtips"}, packages.path());
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
    const ToolRun tools({"new", "Tools", "--directory", "Data", "--search", "Shared"}, packages.path());
    QCOMPARE(tools.exitCode, 0);
    QCOMPARE(packages.files("Data/Tools.vidtips"),
             QStringList({"Control/Tools.en_US.xml", "Resources/first.png"}));
    QCOMPARE(ToolRun({"check", "Data"}, packages.path()).output,
             QString("2 packages, 2 control files: nothing found\n"));
    const QStringList call = callIn(tools.output);
    QCOMPARE(call, QStringList({"preview", "tools.first", "Data"}));
    QCOMPARE(errorsOfPreview(call, packages.path()), QString());
}

void tst_NewCommand::saysThatTheSharedPackageIsMissing()
{
    const TestPackages packages;
    const ToolRun run({"new", "Tools", "--search", "Shared"}, packages.path());
    QCOMPARE(
        run.errors,
        QString(
            "vidtips: there is no package \"Shared\" in ., where its user interface is looked for: put it "
            "there, or name the folder that has it, FOLDER below\n"));
    QCOMPARE(run.exitCode, 0);
    QVERIFY(QDir().mkpath(packages.filePath("Elsewhere")));
    QCOMPARE(ToolRun({"new", "Shared", "--directory", "Elsewhere"}, packages.path()).exitCode, 0);
    QStringList call = callIn(run.output);
    QCOMPARE(call, QStringList({"preview", "tools.first", ".", "FOLDER"}));
    call.last() = "Elsewhere";
    QCOMPARE(errorsOfPreview(call, packages.path()), QString());
}

void tst_NewCommand::saysThatThereIsNothingToTranslate()
{
    const TestPackages packages;
    QCOMPARE(ToolRun({"new", "Shared"}, packages.path()).exitCode, 0);
    const ToolRun run({"new", "Tools", "--search", "Shared", "--locale", "de_DE"}, packages.path());
    QCOMPARE(run.errors,
             QString("vidtips: there is nothing to translate yet: the words of the user interface are "
                     "translated in the package \"Shared\", and tips have a control file for each locale\n"));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(packages.files("Tools.vidtips").filter("l10n"), QStringList());
}

void tst_NewCommand::addsTips_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("place");
    const QByteArray entry =
        "  <vidtip key=\"draw.free-hand\" title=\"Free hand\">\n"
        "    <summary>Says in a sentence what the command does.</summary>\n  </vidtip>\n";
    const QByteArray old = "<vidtips locale=\"en_US\">\n  <vidtip key=\"a\"/>\n";
    QTest::newRow("behind others") << QByteArray(old + "</vidtips>\n") << QStringList{}
                                   << QByteArray(old + entry + "</vidtips>\n")
                                   << "Tools.vidtips/Control/T.xml:3";
    QTest::newRow("on one line") << QByteArray("<vidtips><vidtip key=\"\u00E4\"/></vidtips>") << QStringList{}
                                 << QByteArray("<vidtips><vidtip key=\"\u00E4\"/>\n" + entry + "</vidtips>")
                                 << "Tools.vidtips/Control/T.xml:2";
    QTest::newRow("first") << QByteArray("<vidtips/>") << QStringList{}
                           << QByteArray("<vidtips>\n" + entry + "</vidtips>")
                           << "Tools.vidtips/Control/T.xml:2";
    const QByteArray longer =
        "<vidtips>\n<!-- key=\"draw.free-hand\" -->\n<vidtip key=\"draw.free-hand.2\"/>\n";
    QTest::newRow("begins like another")
        << QByteArray(longer + "</vidtips>") << QStringList{} << QByteArray(longer + entry + "</vidtips>")
        << "Tools.vidtips/Control/T.xml:4";
    QTest::newRow("one locale in two spellings")
        << QByteArray("<vidtips locale=\"de\">\n</vidtips>")
        << QStringList{"--locale", "de", "--locale", "de_DE"}
        << QByteArray("<vidtips locale=\"de\">\n" + entry + "</vidtips>") << "Tools.vidtips/Control/T.xml:2";
    const QByteArray translated = "<vidtips>\n<vidtip key=\"a\" context=\"A&amp;B\"/>\n";
    QTest::newRow("translated as the others")
        << QByteArray(translated + "</vidtips>") << QStringList{}
        << QByteArray(translated + QByteArray(entry).replace("hand\">", "hand\" context=\"A&amp;B\">")
                      + "</vidtips>")
        << "Tools.vidtips/Control/T.xml:3";
    QTest::newRow("of a locale") << QByteArray("<vidtips locale=\"de\">\n</vidtips>")
                                 << QStringList{"--locale", "de_DE"}
                                 << QByteArray("<vidtips locale=\"de\">\n" + entry + "</vidtips>")
                                 << "Tools.vidtips/Control/T.xml:2";
}

void tst_NewCommand::addsTips()
{
    QFETCH(QByteArray, before);
    QFETCH(QStringList, options);
    QFETCH(QByteArray, after);
    QFETCH(QString, place);
    const TestPackages packages;
    const QString file = packages.write("Tools.vidtips/Control/T.xml", before);
    const ToolRun run(QStringList{"new", "tip", "draw.free-hand", "Tools.vidtips"} + options,
                      packages.path());
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.output, place + '\n');
    QCOMPARE(TestPackages::read(file), after);
}

void tst_NewCommand::refusesTips_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const QByteArray german("<vidtips locale=\"de\"><vidtip key=\"a\"/></vidtips>");
    QTest::newRow("key that is there") << german << QStringList{"a", ".", "--locale", "de"}
                                       << "Tools.vidtips/Control/T.xml has a tip \"a\" already";
    QTest::newRow("key of two words") << german << QStringList{"a b", "."} << "the key \"a b\" holds a blank";
    QTest::newRow("key of nothing") << german << QStringList{"", ".", "--locale", "de"} << "the key is empty";
    QTest::newRow("key that is there in another file")
        << german << QStringList{"c", ".", "--locale", "de"}
        << "Tools.vidtips/Control/Z.xml has a tip \"c\" already";
    QTest::newRow("key that is there for one of all locales")
        << QByteArray("<vidtips/>") << QStringList{"c", "."}
        << "Tools.vidtips/Control/Z.xml has a tip \"c\" already";
    QTest::newRow("other locale") << german << QStringList{"b", ".", "--locale", "fr_FR"}
                                  << "the package has no control file for fr_FR";
    QTest::newRow("no locale that is usual")
        << german << QStringList{"b", "."}
        << "the package has no control file for en_US or every locale: name a locale with --locale";
    QTest::newRow("unknown locale") << german << QStringList{"b", ".", "--locale", "german"}
                                    << "Qt knows no locale \"german\"";
    QTest::newRow("mistakes") << QByteArray("<vidtips><vidtip></vidtips>") << QStringList{"b", "."}
                              << "Tools.vidtips/Control/T.xml has mistakes: see \"vidtips check\"";
    QTest::newRow("other encoding")
        << QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<vidtips>\xE4</vidtips>")
        << QStringList{"b", "."}
        << "Tools.vidtips/Control/T.xml is not UTF-8 without a mark of it: save it as that";
    QTest::newRow("no folder") << german << QStringList{"b", "Other.vidtips"}
                               << "no such folder: Other.vidtips";
}

void tst_NewCommand::refusesTips()
{
    QFETCH(QByteArray, before);
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const TestPackages packages;
    const QString file = packages.write("Tools.vidtips/Control/T.xml", before);
    packages.writeControl("Tools", "Z.xml", "<vidtip key=\"c\"/>", "locale=\"de_DE\"");
    const ToolRun run(QStringList{"new", "tip"} + arguments, packages.path());
    QCOMPARE(run.errors, "vidtips: " + error + '\n');
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(TestPackages::read(file), before);
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
