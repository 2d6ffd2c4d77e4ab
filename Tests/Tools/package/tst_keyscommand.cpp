#include "ToolRefusal.h"

#include <QtTest/QtTest>

/** Runs the command that lists the keys of packages. */
class tst_KeysCommand : public QObject
{
    Q_OBJECT

private slots:
    void listsKeys();
    void listsKeysAsJson();
    void alignsKeysOnATerminal();
    void refusesWhatIsUnreadable_data();
    void refusesWhatIsUnreadable();
    void refusesBadUse_data();
    void refusesBadUse();
    void saysThatThereAreNoPackages();
};

void tst_KeysCommand::listsKeys()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("Tools.vidtips/Control/U.xml", "<vidtips><vidtip key=\"a\"/><vidtip/></vidtips>");
    packages.write("Tools.vidtips/Control/refused.xml", "<tips><vidtip key=\"never\"/></tips>");
    const ToolRun run({"keys", "."}, packages.path());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output,
             QString("a\t*\t\tTools\tTools.vidtips/Control/U.xml:1\n"
                     "a\ten_US\tOne\tTools\tTools.vidtips/Control/T.xml:4\n"
                     "b\ten_US\tTwo words\tTools\tTools.vidtips/Control/T.xml:2\n"));
}

void tst_KeysCommand::listsKeysAsJson()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    const QJsonArray keys = ToolRun({"keys", "--json", packages.path()}).json().array();
    QCOMPARE(keys.size(), 2);
    QCOMPARE(keys.at(0).toObject(),
             (QJsonObject{{"key", "a"},
                          {"locale", "en_US"},
                          {"title", "One"},
                          {"package", "Tools"},
                          {"file", packages.filePath("Tools.vidtips/Control/T.xml")},
                          {"line", 4},
                          {"column", 1}}));
}

void tst_KeysCommand::alignsKeysOnATerminal()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    const ToolRun run = ToolRun::onTerminal({"keys", "."}, packages.path(), {"NO_COLOR=1"});
    QCOMPARE(run.output,
             QString("KEY  LOCALE  TITLE      PACKAGE  FILE\r\n"
                     "a    en_US   One        Tools    Tools.vidtips/Control/T.xml:4\r\n"
                     "b    en_US   Two words  Tools    Tools.vidtips/Control/T.xml:2\r\n"));
    const ToolRun coloured = ToolRun::onTerminal({"keys", "."}, packages.path());
    QVERIFY(coloured.output.contains("\033[1mKEY"));
}

void tst_KeysCommand::refusesWhatIsUnreadable_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("place");
    QTest::newRow("keys of a file") << QStringList{"keys"} << "Tools.vidtips/Control/T.xml";
    QTest::newRow("keys of a package") << QStringList{"keys", "--json"} << "Tools.vidtips";
}

void tst_KeysCommand::refusesWhatIsUnreadable()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, place);
    compareUnreadable(arguments, place);
}

void tst_KeysCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("unknown option", {"keys", "-x"}, "Unknown option 'x'; see \"vidtips keys --help\"");
    row("keys of nothing", {"keys"}, "keys needs a folder; see \"vidtips keys --help\"");
    row("keys of a file", {"keys", "file.txt"}, "not a folder: file.txt");
}

void tst_KeysCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

void tst_KeysCommand::saysThatThereAreNoPackages()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("elsewhere/file.txt", "text");
    const ToolRun none({"keys", "elsewhere"}, packages.path());
    QCOMPARE(none.errors, QString("vidtips: no package was found in elsewhere\n"));
    QCOMPARE(none.exitCode, 2);
    const ToolRun some({"keys", "elsewhere", "Tools.vidtips"}, packages.path());
    QCOMPARE(some.errors, none.errors);
    QVERIFY(some.output.startsWith("a\t"));
    QCOMPARE(some.exitCode, 0);
}

QTEST_GUILESS_MAIN(tst_KeysCommand)

#include "tst_keyscommand.moc"
