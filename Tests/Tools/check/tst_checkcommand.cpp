#include "CheckPackages.h"
#include "TestClips.h"
#include "ToolRun.h"

#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <csignal>
#include <sys/stat.h>
#include <sys/types.h>

/** Runs the tool's check for what it takes and how it tells what it finds. */
class tst_CheckCommand : public QObject
{
    Q_OBJECT

private slots:
    void waitsForNoPipe_data();
    void waitsForNoPipe();
    void acceptsWhatIsRight_data();
    void acceptsWhatIsRight();
    void saysWhyAClipDoesNotOpen();
    void reportsEachFileOnce();
    void takesEveryKindOfFolder_data();
    void takesEveryKindOfFolder();
    void findsTheExampleClean_data();
    void findsTheExampleClean();
    void showsTips();
    void goesOnWatching();
    void countsInJson();
    void writesLinesThatEditorsFollow();
    void refusesBadInput_data();
    void refusesBadInput();
    void groupsFindingsOnATerminal();
    void validatesAgainstItsSchemas();
};

void tst_CheckCommand::waitsForNoPipe_data()
{
    QTest::addColumn<QString>("pipe");
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("picture") << "Tools.vidtips/Resources/a.png"
                             << QByteArray("<vidtip key=\"a\"><picture source=\"a.png\"/></vidtip>");
    QTest::newRow("clip") << "Tools.vidtips/Resources/a.mp4"
                          << QByteArray("<vidtip key=\"a\"><clip source=\"a.mp4\"/></vidtip>");
    QTest::newRow("user interface") << "Tools.vidtips/ui/Own.qml"
                                    << QByteArray("<vidtip key=\"a\" ui=\"ui/Own.qml\"/>");
}

void tst_CheckCommand::waitsForNoPipe()
{
    QFETCH(QString, pipe);
    QFETCH(QByteArray, entry);
    const CheckPackages packages(controlWith(entry));
    QVERIFY(QDir().mkpath(QFileInfo(packages.filePath(pipe)).path()));
    QCOMPARE(mkfifo(packages.filePath(pipe).toLocal8Bit().constData(), 0600), 0);
    const ToolRun run({"check", "."}, packages.path());
    QCOMPARE(run.output,
             pipe
                 + ": error: this is no file that can be read [VT100]\n1 package, 1 control file: 1 error\n");
}

void tst_CheckCommand::acceptsWhatIsRight_data()
{
    QTest::addColumn<Files>("files");
    QTest::newRow("plain") << packageWith();
    QTest::newRow("free elements and attributes") << controlWith(
        "<vidtip key=\"a\" title=\"x.png\" mine=\"1\">text <any thing=\"2\"><deep/></any></vidtip>",
        "mine=\"3\"");
    QTest::newRow("elements of another namespace")
        << controlWith("<vidtip key=\"a\"/><m:note xmlns:m=\"urn:m\"/>");
    QTest::newRow("a namespace of its own") << controlWith("<vidtip key=\"a\"/>", "xmlns=\"urn:tips\"");
    QTest::newRow("tag on several lines") << packageWith(
        {{control, "<?xml version=\"1.0\"?>\n<vidtips\n  locale=\"\"\n>\n<vidtip key=\"a\"/></vidtips>"}});
    QTest::newRow("addresses and placeholders") << controlWith(
        "<vidtip key=\"a\"><x source=\"http://example.org/a.png\"/><y source=\"%(kind)s.mp4\"/></vidtip>");
    QTest::newRow("other locales for other keys")
        << packageWith({{control, document("<vidtip key=\"a\"/>", "locale=\"de\"")},
                        {"Tools.vidtips/Control/B.xml", document("<vidtip key=\"b\"/>")}});
    QTest::newRow("user interface of another package") << packageWith(
        {{fullInterface, QByteArray()},
         {control, document("<vidtip key=\"a\"/>", "search=\"A;;Shared\tTools\" resource=\"\"")},
         {"A.vidtips/Control/A.xml", "<vidtips/>"},
         {"Shared.vidtips/Control/S.xml", "<vidtips/>"},
         {"Shared.vidtips/ui/VidtipsUI.qml", emptyItem}});
    QTest::newRow("the library's types")
        << packageWith({{fullInterface,
                         "import QtQuick 1.0\nimport com.corvale.vidtips.qml 1.0\nItem { width: 1; height: "
                         "1; VTVideoComponent { "
                         "} VTScrollBar { } "
                         "VTStyledRectangle { } VTXmlElement { id: x } }"}});
    QTest::newRow("picture in a folder of its own")
        << packageWith({{control,
                         document("<vidtip key=\"a\"><p source=\"a.svg\"/></vidtip>",
                                  "resources=\"Media\" resource=\"Media\"")},
                        {"Tools.vidtips/Media/a.svg",
                         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>"}});
    QTest::newRow("key data") << packageWith(
        {{"Keys.xml", "<vidtipkeys><key name=\"a\" x=\"y\"/></vidtipkeys>"}});
    QTest::newRow("other files beside") << packageWith({{"Tools.vidtips/Control/notes.txt", "<notes>"},
                                                        {"Tools.vidtips/data.xml", "<data/>"},
                                                        {"Other.xml", "<other/>"}});
    QTest::newRow("UTF-8 mark") << packageWith(
        {{control, "\xEF\xBB\xBF" + document("<vidtip key=\"\u00e4\"/>")}});
}

void tst_CheckCommand::acceptsWhatIsRight()
{
    QFETCH(Files, files);
    const CheckPackages packages(files);
    const ToolRun run({"check", packages.path()});
    QVERIFY2(run.output.endsWith(": nothing found\n"), qPrintable(run.output));
    QCOMPARE(run.exitCode, 0);
}

void tst_CheckCommand::saysWhyAClipDoesNotOpen()
{
    const TestPackages packages;
    packages.writeControl("Tools", "Tools.xml", "");
    packages.write("Tools.vidtips/Resources/sound.avi", TestPackages::read(TestClips::audioOnly()));
    const ToolRun run({"check", "Tools.vidtips"}, packages.path());
    QVERIFY2(
        run.output.startsWith("Tools.vidtips/Resources/sound.avi: error: the clip does not open: Could not "
                              "find a video stream [VT501]\n"),
        qPrintable(run.output));
}

void tst_CheckCommand::reportsEachFileOnce()
{
    const QByteArray user = "import QtQuick 1.1\nItem { Part { } }";
    const CheckPackages packages(
        packageWith({{control,
                      document("<vidtip key=\"a\"><clip source=\"a.mp4\"/></vidtip><vidtip "
                               "key=\"b\"><clip source=\"a.mp4\"/></vidtip>")},
                     {"Tools.vidtips/Resources/a.mp4", "no clip"},
                     {fullInterface, user},
                     {simpleInterface, user},
                     {"Tools.vidtips/ui/Part.qml", "import QtQuick 1.1\nItem { txt: 1 }"}}));
    const ToolRun run(
        {"check", "--json", packages.path(), packages.filePath("Tools.vidtips"), packages.path()});
    QCOMPARE(run.codes().count("VT501"), 1);
    int errorsInPart = 0;
    for (const QJsonValue finding : run.findings())
        errorsInPart += finding.toObject()["file"].toString().endsWith("Part.qml");
    QCOMPARE(errorsInPart, 1);
}

void tst_CheckCommand::takesEveryKindOfFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("package") << "data/Base/Tools.vidtips";
    QTest::newRow("package with a slash") << "data/Base/Tools.vidtips/";
    QTest::newRow("data path") << "data/Base";
    QTest::newRow("folder of data paths") << "data";
}

void tst_CheckCommand::takesEveryKindOfFolder()
{
    QFETCH(QString, folder);
    const TestPackages packages;
    const Files files = packageWith();
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write("data/Base/" + it.key(), *it);
    const ToolRun run({"check", folder}, packages.path());
    QCOMPARE(run.output, QString("1 package, 1 control file: nothing found\n"));
}

void tst_CheckCommand::findsTheExampleClean_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("sources") << QStringList(TestPaths::source("Examples/Drafting/Content"));
    QTest::newRow("built and shown") << QStringList{"--run",
                                                    TestPaths::built("share/vidtips-drafting/Content")};
}

void tst_CheckCommand::findsTheExampleClean()
{
    QFETCH(QStringList, arguments);
    const ToolRun run(QStringList{"check", "--json"} + arguments);
    const QJsonObject counts = run.json().object()["counts"].toObject();
    QVERIFY2(counts["error"].toInt(-1) == 0 && counts["warning"].toInt(-1) == 0, qPrintable(run.output));
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.json().object()["packages"].toInt() >= 4);
}

namespace {

// Wide enough, or not, for the words that it shows.
QByteArray labelOf(int width)
{
    return "import QtQuick 1.1\nRectangle { color: 'white'; width: 300; height: 50\n"
           "Text { elide: Text.ElideRight; text: 'Words that take their room'; color: 'black'; width: "
        + QByteArray::number(width) + " } }";
}

bool readUntil(QProcess &process, QByteArray &output, const QByteArray &end)
{
    while (!output.endsWith(end)) {
        if (!process.waitForReadyRead(100000))
            return false;
        output += process.readAllStandardOutput();
    }
    return true;
}

} // namespace

// In both user interfaces, and only when it is asked for.
void tst_CheckCommand::showsTips()
{
    const CheckPackages packages(packageWith({{fullInterface, labelOf(50)}, {simpleInterface, labelOf(40)}}));
    QCOMPARE(ToolRun({"check", "."}, packages.path()).exitCode, 0);
    const ToolRun run({"check", "--run", "."}, packages.path());
    const QString message =
        ":3:1: warning: the text \"Words that take their room\" is cut short (\"a\", en_US%1) [VT902]\n";
    QCOMPARE(run.output,
             simpleInterface + message.arg(", simple") + fullInterface + message.arg("")
                 + "1 package, 1 control file: 2 warnings\n");
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 1);
}

// Until Ctrl+C, with the exit code of the last check.
void tst_CheckCommand::goesOnWatching()
{
    const CheckPackages packages(packageWith());
    QProcess process;
    process.setWorkingDirectory(packages.path());
    process.start(ToolRun::tool(), {"check", "--run", "--watch", "."});
    QByteArray output;
    QVERIFY(readUntil(process, output, ": nothing found\n"));
    packages.write(fullInterface, labelOf(50));
    QVERIFY2(readUntil(process, output, "1 control file: 1 warning\n"), output.constData());
    QVERIFY2(output.contains("[VT902]"), output.constData());
    packages.write(control, "<vidtips>");
    QVERIFY2(readUntil(process, output, "1 error\n"), output.constData());
    packages.write(control, document("<vidtip key=\"b\"/>"));
    QVERIFY2(readUntil(process, output, "1 control file: 1 warning\n"), output.constData());
    QCOMPARE(::kill(pid_t(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished(100000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(), QByteArray());
}

void tst_CheckCommand::countsInJson()
{
    const CheckPackages packages(
        packageWith({{fullInterface, QByteArray()}, {simpleInterface, QByteArray()}}));
    const QJsonObject report = ToolRun({"check", "--json", packages.path()}).json().object();
    QCOMPARE(report["version"].toInt(), 1);
    QCOMPARE(report["packages"].toInt(), 1);
    QCOMPARE(report["controlFiles"].toInt(), 1);
    QCOMPARE(report["counts"].toObject(), (QJsonObject{{"error", 1}, {"warning", 1}, {"note", 0}}));
    const QJsonObject finding = report["findings"].toArray().first().toObject();
    QCOMPARE(finding.keys(), QStringList({"code", "column", "file", "line", "message", "severity"}));
    QCOMPARE(finding["file"].toString(), packages.filePath(control));
    QCOMPARE(finding["severity"].toString(), QString("error"));
}

void tst_CheckCommand::writesLinesThatEditorsFollow()
{
    const CheckPackages packages(controlWith("<vidtip key=\"a\"/>\n<vidtip key=\"a\"/>"));
    const ToolRun run({"check", "."}, packages.path());
    QCOMPARE(
        run.output,
        QString(
            "Tools.vidtips/Control/Tools.xml:3:9: error: the key \"a\" vanishes: it has an entry in line 2 "
            "already [VT303]\n1 package, 1 control file: 1 error\n"));
    QCOMPARE(run.exitCode, 1);
}

void tst_CheckCommand::refusesBadInput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("no folder") << QStringList{} << "check needs a folder; see \"vidtips check --help\"";
    QTest::newRow("missing folder") << QStringList{"no-such"} << "no such folder: no-such";
    QTest::newRow("file") << QStringList{"good", "file.txt"} << "not a folder: file.txt";
    QTest::newRow("unknown option") << QStringList{"--fast", "good"}
                                    << "Unknown option 'fast'; see \"vidtips check --help\"";
    QTest::newRow("option without value")
        << QStringList{"good", "--budget"} << "Missing value after '--budget'; see \"vidtips check --help\"";
    QTest::newRow("budget") << QStringList{"--budget", "much", "good"}
                            << "--budget takes a number of megabytes, not \"much\"";
    QTest::newRow("no budget") << QStringList{"--budget", "0", "good"}
                               << "--budget takes a number of megabytes, not \"0\"";
    QTest::newRow("negative length") << QStringList{"--longest=-1", "good"}
                                     << "--longest takes a number of seconds, not \"-1\"";
    QTest::newRow("not a number") << QStringList{"--longest", "nan", "good"}
                                  << "--longest takes a number of seconds, not \"nan\"";
    QTest::newRow("locale") << QStringList{"--source-locale", "german", "good"}
                            << "Qt knows no locale \"german\"";
    QTest::newRow("key data") << QStringList{"--key-data", "good", "good"}
                              << "the key data cannot be read: good";
}

void tst_CheckCommand::refusesBadInput()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const TestPackages packages;
    packages.write("good/Tools.vidtips/Control/T.xml", "<vidtips/>");
    packages.write("file.txt", "text");
    const ToolRun run(QStringList{"check"} + arguments, packages.path());
    QCOMPARE(run.errors, "vidtips: " + error + '\n');
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
}

void tst_CheckCommand::groupsFindingsOnATerminal()
{
    const CheckPackages packages(controlWith("<vidtip key=\"a\"/>\n<vidtip key=\"a\"/>\n<vidtip/>"));
    const QString plain = "Tools.vidtips/Control/Tools.xml\r\n"
                          "     3:9  error    VT303  the key \"a\" vanishes: it has an entry in line 2\r\n"
                          "                          already\r\n"
                          "     4:1  error    VT103  this entry has no key\r\n\r\n"
                          "1 package, 1 control file: 2 errors\r\n"
                          "\"vidtips explain CODE\" says what to do.\r\n";
    const ToolRun uncoloured = ToolRun::onTerminal({"check", "."}, packages.path(), {"NO_COLOR=1"});
    // A slow machine is told how far the work has come.
    static const QRegularExpression progress("\r\033\\[K(\\d+ of \\d+ [A-Za-z ]+(?=\r\033))?");
    QCOMPARE(QString(uncoloured.output).remove(progress), plain);
    const ToolRun coloured = ToolRun::onTerminal({"check", "."}, packages.path());
    QVERIFY(coloured.output.contains("\033[1;31merror  \033[0m"));
    static const QRegularExpression colour("\033\\[[0-9;]*m");
    QCOMPARE(QString(coloured.output).remove(progress).remove(colour), plain);
}

// What is installed for editors is what the tool uses.
void tst_CheckCommand::validatesAgainstItsSchemas()
{
    for (const char *name : {"vidtips.xsd", "vidtipkeys.xsd"}) {
        QXmlStreamReader reader(TestPackages::read(TestPaths::source("Tools/schema/") + name));
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.namespaceUri().toString(), QString("http://www.w3.org/2001/XMLSchema"));
        while (!reader.atEnd())
            reader.readNext();
        QVERIFY2(!reader.hasError(), name);
    }
}

QTEST_GUILESS_MAIN(tst_CheckCommand)

#include "tst_checkcommand.moc"
