#include "TestPackage.h"
#include "ToolRun.h"

#include <QtCore/QTranslator>
#include <QtCore/QXmlStreamReader>
#include <QtGui/QImage>
#include <QtTest/QtTest>

namespace {

const char validControl[] = "<vidtips locale=\"en_US\">\n<vidtip key=\"b\" title=\"Two\n  words\"/>\n"
                            "<vidtip key=\"a\" title=\"One\"/>\n</vidtips>\n";
const char translated[] = "<vidtips>\n<vidtip key=\"a\" title=\"One &amp; two\" context=\"C\">\n"
                          "<summary>Some\n   words</summary><step>Once</step><step>Once</step></vidtip>\n"
                          "<vidtip key=\"b\" title=\"Without context\"/>\n</vidtips>\n";
const char userInterface[] = "import QtQuick 1.1\nRectangle { width: 50; height: 20; color: \"#20a040\"\n"
                             "  property string a: vidTipView.translate(\"It's \\\"here\\\"\", 'UI')\n"
                             "  property string b: qsTr(\"Named\") // qsTr(\"not this\")\n"
                             "  property string c: QT_TRANSLATE_NOOP(\"UI\", \"Marked\")\n}\n";

QStringList filesIn(const QString &folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files << QDir(folder).relativeFilePath(walk.next());
    files.sort();
    return files;
}

// "context|source|translation|type" of each message, in order.
QStringList messagesIn(const QString &ts)
{
    QXmlStreamReader reader(TestPackages::read(ts));
    QStringList messages;
    QString context;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == "name")
            context = reader.readElementText();
        else if (reader.name() == "source")
            source = reader.readElementText();
        else if (reader.name() == "translation") {
            const QString type = reader.attributes().value("type").toString();
            messages << QStringList({context, source, reader.readElementText(), type}).join('|');
        }
    }
    messages.sort();
    return messages;
}

} // namespace

/** Runs the commands of the tool, the check aside. */
class tst_ToolCommands : public QObject
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
    void listsKeys();
    void listsKeysAsJson();
    void alignsKeysOnATerminal();
    void refusesWhatIsUnreadable_data();
    void refusesWhatIsUnreadable();
    void explainsEveryCode();
    void newPackagesAreClean_data();
    void newPackagesAreClean();
    void newPackagesUseASharedInterface();
    void newLeavesNothingBehind();
    void extractsTexts();
    void keepsTranslations();
    void writesNothingTwice();
    void refusesDamagedTranslations();
    void keepsTranslationsOfDamagedSources_data();
    void keepsTranslationsOfDamagedSources();
    void buildsCatalogues();
    void leavesCataloguesOfOthersAlone();
    void takesPictures_data();
    void takesPictures();
    void takesPicturesOfProblems();
    void takesPicturesOfAll();
    void showsProgressOnATerminal();
    void validatesAgainstItsSchemas();
    void describesItselfInAManualPage();
};

void tst_ToolCommands::helpsWithEveryCommand_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"check", "explain", "keys", "preview", "strings", "new"})
        QTest::newRow(command) << command;
}

void tst_ToolCommands::helpsWithEveryCommand()
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

void tst_ToolCommands::tellsItsVersion()
{
    const ToolRun run({"--version"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(QRegularExpression("^vidtips \\d+\\.\\d+\\.\\d+\n$").match(run.output).hasMatch());
}

void tst_ToolCommands::refusesBadUse_data()
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
    row("unknown option", {"keys", "-x"}, "Unknown option 'x'; see \"vidtips keys --help\"");
    row("keys of nothing", {"keys"}, "keys needs a folder; see \"vidtips keys --help\"");
    row("keys of a file", {"keys", "file.txt"}, "not a folder: file.txt");
    row("unknown code", {"explain", "VT303", "VT999"},
        "there is no code \"VT999\"; \"vidtips explain\" lists all");
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
    row("strings of nothing", {"strings"}, "strings needs a folder; see \"vidtips strings --help\"");
    row("strings for no locale", {"strings", "--locale", "german", "."}, "Qt knows no locale \"german\"");
    row("strings from no locale", {"strings", "--source-locale", "german", "."},
        "Qt knows no locale \"german\"");
    row("preview of nothing", {"preview", "--screenshot", "x.png"},
        "preview needs a folder; see \"vidtips preview --help\"");
    row("preview without a display", {"preview", "a", "."}, "there is no display to show a window on");
    row("preview of no key", {"preview", "--screenshot", "x.png", "z", "."},
        "there is no tip \"z\" for en_US");
    row("preview for no locale", {"preview", "--screenshot", "x.png", "--locale", "german", "."},
        "Qt knows no locale \"german\"");
    row("preview of another locale", {"preview", "--screenshot", "x.png", "--locale", "fr_FR", "."},
        "there are no tips for fr_FR");
    row("preview too large", {"preview", "--screenshot", "x.png", "--scale", "9", "."},
        "--scale takes a number from 1 to 4, not \"9\"");
    row("preview never", {"preview", "--screenshot", "x.png", "--delay", "soon", "."},
        "--delay takes milliseconds, not \"soon\"");
    row("picture of no kind", {"preview", "--screenshot", "x.doc", "a", "."},
        "there are no pictures of the kind \"doc\"");
    row("picture over a folder", {"preview", "--screenshot", "Tools.vidtips/Control", "a", "."},
        "the picture's file is a folder: Tools.vidtips/Control");
    row("all without pictures", {"preview", "--all", "."}, "--all needs --screenshot and a folder");
    row("all over a file", {"preview", "--all", "--screenshot", "file.txt", "."},
        "cannot make the folder: file.txt");
    row("property without a value", {"preview", "--screenshot", "x.png", "--set", "grid", "."},
        "--set takes NAME=VALUE, not \"grid\"");
    row("missing key data", {"preview", "--screenshot", "x.png", "--key-data", "no.xml", "."},
        "the key data cannot be read: no.xml");
}

void tst_ToolCommands::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("file.txt", "text");
    const QStringList before = filesIn(packages.path());
    // A tool that takes the row for good use would wait for a display that nobody looks at.
    const bool isOnScreen = arguments.value(0) == "preview" && !arguments.contains("--screenshot");
    const QStringList environment =
        isOnScreen && arguments.contains("--all") ? QStringList{"QT_QPA_PLATFORM=offscreen"} : QStringList();
    const ToolRun run(arguments, packages.path(), environment);
    QVERIFY(run.isFinished);
    QCOMPARE(run.errors, "vidtips: " + error + '\n');
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(filesIn(packages.path()), before);
}

void tst_ToolCommands::fallsSilentWithoutAReader_data()
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

void tst_ToolCommands::fallsSilentWithoutAReader()
{
    QFETCH(QString, command);
    QFETCH(QByteArray, error);
    // "true" may read nothing and still be there while the tool writes, so the pipe is closed first.
    command.replace("(\"$0\"", "(sleep 0.3; \"$0\"");
    QProcess shell;
    shell.start("sh", {"-c", command, VIDTIPS_TOOL});
    QVERIFY(shell.waitForFinished(60000));
    QCOMPARE(shell.readAllStandardError(), error);
}

void tst_ToolCommands::listsKeys()
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

void tst_ToolCommands::listsKeysAsJson()
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

void tst_ToolCommands::alignsKeysOnATerminal()
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

void tst_ToolCommands::refusesWhatIsUnreadable_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("place");
    QTest::newRow("keys of a file") << QStringList{"keys"} << "Tools.vidtips/Control/T.xml";
    QTest::newRow("keys of a package") << QStringList{"keys", "--json"} << "Tools.vidtips";
    QTest::newRow("texts of a file") << QStringList{"strings"} << "Tools.vidtips/Control/T.xml";
    QTest::newRow("texts of a folder") << QStringList{"strings", "--json"} << "Tools.vidtips/Control";
}

void tst_ToolCommands::refusesWhatIsUnreadable()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, place);
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    const QString unreadable = packages.filePath(place);
    const QFile::Permissions before = QFile::permissions(unreadable);
    QVERIFY(QFile::setPermissions(unreadable, {}));
    const ToolRun run = ToolRun::unprivileged(arguments + QStringList{"."}, packages.path());
    QVERIFY(QFile::setPermissions(unreadable, before));
    QCOMPARE(run.errors, "vidtips: cannot read " + place + '\n');
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
}

void tst_ToolCommands::explainsEveryCode()
{
    const QJsonArray kinds = ToolRun({"explain", "--json"}).json().array();
    const QString list = ToolRun({"explain"}).output;
    QCOMPARE(list.count('\n'), kinds.size());
    for (const QJsonValue value : kinds) {
        const QJsonObject kind = value.toObject();
        const QString code = kind["code"].toString();
        QVERIFY2(QRegularExpression("^VT[1-8]\\d\\d$").match(code).hasMatch(), qPrintable(code));
        for (const char *part : {"severity", "title", "why", "mend", "example"})
            QVERIFY2(!kind[part].toString().isEmpty(), qPrintable(code + ' ' + part));
        QVERIFY(list.contains(code + "  " + kind["severity"].toString()));
    }
    const ToolRun one({"explain", "vt303"});
    QCOMPARE(one.exitCode, 0);
    QVERIFY(one.output.startsWith("VT303  error"));
    for (const char *heading : {"\nWHY IT MATTERS\n", "\nHOW TO MEND IT\n", "\nEXAMPLE\n"})
        QVERIFY2(one.output.contains(heading), heading);
}

void tst_ToolCommands::newPackagesAreClean_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("plain") << QStringList{};
    QTest::newRow("to translate") << QStringList{"--locale", "de", "--locale", "fr_FR"};
}

void tst_ToolCommands::newPackagesAreClean()
{
    QFETCH(QStringList, options);
    const TestPackages packages;
    const ToolRun made(QStringList{"new", "Mine.2"} + options, packages.path());
    QVERIFY2(made.exitCode == 0, qPrintable(made.errors));
    QStringList files = filesIn(packages.filePath("Mine.2.vidtips"));
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

void tst_ToolCommands::newPackagesUseASharedInterface()
{
    const TestPackages packages;
    QVERIFY(QDir().mkpath(packages.filePath("Data")));
    QCOMPARE(ToolRun({"new", "Shared", "--directory", "Data"}, packages.path()).exitCode, 0);
    QCOMPARE(ToolRun({"new", "Tools", "--directory", "Data", "--search", "Shared"}, packages.path()).exitCode,
             0);
    QCOMPARE(filesIn(packages.filePath("Data/Tools.vidtips")),
             QStringList({"Control/Tools.en_US.xml", "Resources/first.png"}));
    QCOMPARE(ToolRun({"check", "Data"}, packages.path()).output,
             QString("2 packages, 2 control files: nothing found\n"));
}

void tst_ToolCommands::newLeavesNothingBehind()
{
    const TestPackages packages;
    packages.write("Tools.vidtips", "a file");
    const ToolRun run({"new", "Tools"}, packages.path());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(TestPackages::read(packages.filePath("Tools.vidtips")), QByteArray("a file"));
    // Every file system bounds the length of a name, the suffix counted.
    const ToolRun tooLong({"new", QString(250, 'x')}, packages.path());
    QCOMPARE(tooLong.exitCode, 2);
    QCOMPARE(filesIn(packages.path()), QStringList{"Tools.vidtips"});
}

void tst_ToolCommands::extractsTexts()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    packages.write("Tools.vidtips/Control/U.xml",
                   "<vidtips locale=\"en_US\"><vidtip key=\"a\" title=\"No\" context=\"C\"/></vidtips>");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", userInterface);
    packages.write("Plain.vidtips/Control/P.xml", "<vidtips/>");
    const ToolRun run({"strings", "--locale", "de", "--json", "."}, packages.path());
    QCOMPARE(run.errors, QString());
    const QString ts = packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts");
    QCOMPARE(messagesIn(ts),
             QStringList({"C|Once||unfinished", "C|One & two||unfinished", "C|Some words||unfinished",
                          "UI|It's \"here\"||unfinished", "UI|Marked||unfinished",
                          "VidtipsUI|Named||unfinished"}));
    const QJsonArray jobs = run.json().array();
    QCOMPARE(jobs.size(), 1);
    QCOMPARE(jobs.first().toObject(),
             (QJsonObject{{"package", "Tools"},
                          {"locale", "de_DE"},
                          {"translations", ts},
                          {"texts", 6},
                          {"added", 6},
                          {"vanished", 0},
                          {"untranslated", 6}}));
    QVERIFY(!QFileInfo::exists(packages.filePath("Plain.vidtips/l10n")));
    QVERIFY(TestPackages::read(ts).contains("<location filename=\"../Control/T.xml\" line=\"3\"/>"));
}

void tst_ToolCommands::keepsTranslations()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    const QString ts = packages.write(
        "Tools.vidtips/l10n/Vidtips_de_DE.ts",
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\" "
        "language=\"de_DE\">\n<context>\n"
        "<name>C</name>\n"
        "<message><source>Once</source><translatorcomment>note</translatorcomment><translation>Einmal</"
        "translation></message>\n"
        "<message><source>Some words</source><translation type=\"vanished\">Worte</translation></message>\n"
        "<message><source>Gone</source><translation>Weg</translation></message>\n"
        "<message><source>Never done</source><translation type=\"unfinished\"></translation></message>\n"
        "<message numerus=\"yes\"><source>%n parts</source><translation><numerusform>ein</numerusform>"
        "<numerusform>mehr</numerusform></translation></message>\n"
        "</context>\n</TS>\n");
    const ToolRun run({"strings", packages.path()});
    QVERIFY2(run.output.contains("3 texts, 1 new, 2 vanished, 1 to translate"),
             qPrintable(run.output + run.errors));
    const QByteArray xml = TestPackages::read(ts);
    QVERIFY(xml.contains(
        "<translatorcomment>note</translatorcomment>\n        <translation>Einmal</translation>"));
    QVERIFY(xml.contains("<source>Some words</source>\n        <translation>Worte</translation>"));
    QVERIFY(xml.contains("<source>Gone</source>\n        <translation type=\"vanished\">Weg</translation>"));
    QVERIFY(xml.contains("<numerusform>mehr</numerusform>"));
    QVERIFY(!xml.contains("Never done"));
    QVERIFY(xml.contains(
        "<source>One &amp; two</source>\n        <translation type=\"unfinished\"></translation>"));
}

void tst_ToolCommands::writesNothingTwice()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    QCOMPARE(ToolRun({"strings", "--locale", "de_DE", packages.path()}).exitCode, 0);
    QFile ts(packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts"));
    const QDateTime past = QDateTime::currentDateTime().addDays(-1);
    QVERIFY(ts.open(QIODevice::ReadWrite) && ts.setFileTime(past, QFileDevice::FileModificationTime));
    ts.close();
    QCOMPARE(ToolRun({"strings", packages.path()}).exitCode, 0);
    QVERIFY(qAbs(QFileInfo(ts.fileName()).lastModified().secsTo(past)) < 2);
}

void tst_ToolCommands::refusesDamagedTranslations()
{
    const TestPackages packages;
    packages.write("Alpha.vidtips/Control/T.xml", translated);
    packages.write("Tools.vidtips/Control/T.xml", translated);
    const QString ts = packages.write("Tools.vidtips/l10n/Vidtips_de_DE.ts", "<TS><context>");
    const ToolRun run({"strings", "--locale", "de_DE", packages.path()});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errors.startsWith("vidtips: " + ts + ":1:"), qPrintable(run.errors));
    QCOMPARE(run.errors.count('\n'), 1);
    QCOMPARE(TestPackages::read(ts), QByteArray("<TS><context>"));
    QVERIFY(!QFileInfo::exists(packages.filePath("Alpha.vidtips/l10n")));
    packages.write("Tools.vidtips/l10n/Vidtips_de_DE.ts", "<other/>");
    QCOMPARE(ToolRun({"strings", packages.path()}).errors,
             QString("vidtips: the file holds no translations: %1\n").arg(ts));
}

void tst_ToolCommands::keepsTranslationsOfDamagedSources_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("control file") << "Tools.vidtips/Control/T.xml"
                                  << QByteArray(translated).replace("</summary>", "")
                                  << "Tools.vidtips/Control/T.xml:4:43: ";
    QTest::newRow("user interface") << "Tools.vidtips/ui/VidtipsUI.qml"
                                    << QByteArray(userInterface).replace("}", "")
                                    << "Tools.vidtips/ui/VidtipsUI.qml:7:1: ";
}

// A text that could not be read is not gone.
void tst_ToolCommands::keepsTranslationsOfDamagedSources()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", userInterface);
    QCOMPARE(ToolRun({"strings", "--locale", "de_DE", "."}, packages.path()).exitCode, 0);
    const QByteArray before = TestPackages::read(packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts"));
    packages.write(file, content);
    const ToolRun run({"strings", "."}, packages.path());
    QVERIFY2(run.errors.startsWith("vidtips: ") && run.errors.contains(error), qPrintable(run.errors));
    QCOMPARE(run.errors.count('\n'), 1);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(TestPackages::read(packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts")), before);
}

void tst_ToolCommands::buildsCatalogues()
{
    const TestPackages packages;
    const auto tsOf = [](const QByteArray &context, const QByteArray &source, const QByteArray &translation) {
        return "<?xml version=\"1.0\"?><!DOCTYPE TS><TS version=\"2.1\"><context><name>" + context
            + "</name><message><source>" + source + "</source><translation>" + translation
            + "</translation></message></context></TS>";
    };
    packages.write(
        "Tools.vidtips/Control/T.xml",
        QByteArray(translated).replace("<vidtips>", "<vidtips search=\"Shared\" l10n_name=\"lang\">"));
    packages.write("Tools.vidtips/lang/Vidtips_de_DE.ts", tsOf("C", "Some words", "Worte"));
    packages.write("Shared.vidtips/Control/S.xml", "<vidtips/>");
    packages.write("Shared.vidtips/ui/VidtipsUI.qml", userInterface);
    packages.write("Shared.vidtips/l10n/Vidtips_de_DE.ts", tsOf("UI", "Marked", "Markiert"));
    const ToolRun run({"strings", "--release", packages.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QTranslator own;
    QVERIFY(own.load(packages.filePath("Tools.vidtips/lang/Vidtips_de_DE.qm")));
    QCOMPARE(own.translate("C", "Some words"), QString("Worte"));
    // The library asks one catalogue for all texts of a tip.
    QCOMPARE(own.translate("UI", "Marked"), QString("Markiert"));
    QTranslator shared;
    QVERIFY(shared.load(packages.filePath("Shared.vidtips/l10n/Vidtips_de_DE.qm")));
    QCOMPARE(shared.translate("UI", "Marked"), QString("Markiert"));
    QCOMPARE(filesIn(packages.path()).filter(".new"), QStringList());
}

void tst_ToolCommands::leavesCataloguesOfOthersAlone()
{
    const TestPackages packages;
    packages.write("Shared.vidtips/Control/S.xml", "<vidtips/>");
    packages.write("Shared.vidtips/ui/VidtipsUI.qml", userInterface);
    packages.write("Shared.vidtips/l10n/Vidtips_de_DE.qm", "theirs");
    packages.write("Tools.vidtips/Control/T.xml", translated);
    const ToolRun run({"strings", "--locale", "de_DE", "--release", "."}, packages.path());
    QCOMPARE(
        run.errors,
        QString("vidtips: left alone, for want of its translations: Shared.vidtips/l10n/Vidtips_de_DE.qm\n"));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(filesIn(packages.filePath("Shared.vidtips/l10n")), QStringList{"Vidtips_de_DE.qm"});
    QCOMPARE(TestPackages::read(packages.filePath("Shared.vidtips/l10n/Vidtips_de_DE.qm")),
             QByteArray("theirs"));
    QCOMPARE(filesIn(packages.filePath("Tools.vidtips/l10n")),
             QStringList({"Vidtips_de_DE.qm", "Vidtips_de_DE.ts"}));
}

void tst_ToolCommands::takesPictures_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    // The tip's window is one pixel larger than its content.
    QTest::newRow("plain") << QStringList{} << QSize(51, 21);
    QTest::newRow("twice as large") << QStringList{"--scale", "2"} << QSize(102, 42);
    QTest::newRow("dark") << QStringList{"--dark"} << QSize(51, 21);
    QTest::newRow("simple") << QStringList{"--simple"} << QSize(31, 31);
    QTest::newRow("German") << QStringList{"--locale", "de_DE"} << QSize(71, 71);
    QTest::newRow("with a property") << QStringList{"--set", "size=90"} << QSize(91, 21);
    QTest::newRow("with key data") << QStringList{"--key-data", "data.xml"} << QSize(121, 21);
}

void tst_ToolCommands::takesPictures()
{
    QFETCH(QStringList, options);
    QFETCH(QSize, size);
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml",
                   "<vidtips locale=\"en_US\"><vidtip key=\"a\" width=\"%(size)s\"/></vidtips>");
    packages.write("Tools.vidtips/Control/D.xml",
                   "<vidtips locale=\"de_DE\"><vidtip key=\"a\" ui=\"ui/German.qml\"/></vidtips>");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml",
                   "import QtQuick 1.1\nRectangle { color: \"#20a040\"; height: 20\n"
                   "width: parseInt(vidTipView.interpolate(vidtip.attribute(\"width\"))) || 50 }");
    packages.write("Tools.vidtips/ui/German.qml", "import QtQuick 1.1\nItem { width: 70; height: 70 }");
    packages.write("Tools.vidtips/ui/SimpleTooltip.qml",
                   "import QtQuick 1.1\nItem { width: 30; height: 30 }");
    packages.write("data.xml", "<vidtipkeys><key name=\"a\" width=\"120\"/></vidtipkeys>");
    const ToolRun run(QStringList{"preview", "--delay", "0", "--screenshot", "tip.png", "a", "Tools.vidtips"}
                          + options,
                      packages.path());
    QVERIFY2(run.errors.isEmpty(), qPrintable(run.errors));
    QCOMPARE(run.output, QString("tip.png\n"));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(QImage(packages.filePath("tip.png")).size(), size);
}

void tst_ToolCommands::takesPicturesOfProblems()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem {\n  txt: 1 }");
    const ToolRun run({"preview", "--delay", "0", "--screenshot", "tip.png", "a", "."}, packages.path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.startsWith("Tools.vidtips/ui/VidtipsUI.qml:3:3: "), qPrintable(run.errors));
    QCOMPARE(run.errors.count('\n'), 1);
    QVERIFY(QImage(packages.filePath("tip.png")).width() >= 400);
}

void tst_ToolCommands::takesPicturesOfAll()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml",
                   "<vidtips><vidtip key=\"a/b\" title=\"&lt;One&gt;\"/><vidtip key=\"c\"/></vidtips>");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 50; height: 20 }");
    const ToolRun run({"preview", "--delay", "0", "--screenshot", "sheet/new", "--all", "."},
                      packages.path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QCOMPARE(run.output, QString("sheet/new/index.html\n"));
    QCOMPARE(filesIn(packages.filePath("sheet/new")),
             QStringList({"001-a_b.png", "002-c.png", "index.html"}));
    QCOMPARE(QImage(packages.filePath("sheet/new/001-a_b.png")).size(), QSize(51, 21));
    const QByteArray page = TestPackages::read(packages.filePath("sheet/new/index.html"));
    QVERIFY(page.contains("&lt;One&gt; <code>a/b</code>"));
    QVERIFY(page.contains("<img src=\"001-a_b.png\" width=\"51\" height=\"21\""));
}

void tst_ToolCommands::showsProgressOnATerminal()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 50; height: 20 }");
    // Work of less than half a second needs no telling.
    const QStringList slow{"preview", "--delay", "600", "--screenshot", "sheet", "--all", "."};
    const ToolRun run = ToolRun::onTerminal(slow, packages.path());
    QVERIFY2(run.output.endsWith("\r\033[K1 of 2 tips\r\033[Ksheet/index.html\r\n"), qPrintable(run.output));
    QCOMPARE(ToolRun(slow, packages.path()).errors, QString());
}

// What is installed for editors is what the tool uses.
void tst_ToolCommands::validatesAgainstItsSchemas()
{
    for (const char *name : {"vidtips.xsd", "vidtipkeys.xsd"}) {
        QXmlStreamReader reader(TestPackages::read(QString(SCHEMA_DIR "/") + name));
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.namespaceUri().toString(), QString("http://www.w3.org/2001/XMLSchema"));
        while (!reader.atEnd())
            reader.readNext();
        QVERIFY2(!reader.hasError(), name);
    }
}

void tst_ToolCommands::describesItselfInAManualPage()
{
    const QString page = QString::fromUtf8(TestPackages::read(MANUAL_PAGE)).replace("\\-", "-");
    for (const char *command : {"check", "explain", "keys", "preview", "strings", "new"}) {
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

QTEST_GUILESS_MAIN(tst_ToolCommands)

#include "tst_toolcommands.moc"
