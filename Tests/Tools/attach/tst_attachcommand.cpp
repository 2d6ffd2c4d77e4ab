#include "TestPackage.h"
#include "ToolRefusal.h"
#include "ToolRun.h"

#include <QtTest/QtTest>

#include <csignal>

namespace {

const QString foreignProgram = TestPaths::built("bin/foreignprogram");
const QString linkedProgram = TestPaths::built("bin/foreignprogram_vidtips");

constexpr char userInterface[] =
    "import QtQuick 1.1\n"
    "Item {\n"
    "    property QtObject tip: vidtip\n"
    "    width: 100; height: 50\n"
    "    function read() {\n"
    "        label.text = vidTipView.interpolate(tip.attribute(\"title\")) + \"|\"\n"
    "            + tip.attribute(\"shortcut\");\n"
    "    }\n"
    "    onTipChanged: read()\n"
    "    Component.onCompleted: read()\n"
    "    Text { id: label }\n"
    "}\n";

QStringList lines(const QString &text)
{
    return text.split('\n', Qt::SkipEmptyParts);
}

/** What was written to the error stream, but for what Qt says of a platform without a screen. */
QStringList errorsOf(const ToolRun &run)
{
    QStringList errors;
    for (const QString &line : lines(run.errors)) {
        if (!line.startsWith("This plugin does not support") && !line.startsWith("QStandardPaths:"))
            errors << line;
    }
    return errors;
}

} // namespace

/** Runs the tool with a program that was not made for tips. */
class tst_AttachCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void showsTipsForWhatHasContent_data();
    void showsTipsForWhatHasContent();
    void showsTipsInTheLanguageAskedFor();
    void leavesTheEnvironmentOfChildrenAlone();
    void isTransparent_data();
    void isTransparent();
    void passesInputOn();
    void passesSignalsOn();
    void survivesWhatTheProgramDoes_data();
    void survivesWhatTheProgramDoes();
    void tracesWhatThePointerRestsOn();
    void stepsBack_data();
    void stepsBack();
    void tellsThatNothingCame();
    void tellsThatNothingHasATip();
    void takesInstalledPackages();
    void refusesBadUse_data();
    void refusesBadUse();
    void refusesProgramsThatCannotBeHad_data();
    void refusesProgramsThatCannotBeHad();

private:
    ToolRun attach(const QStringList &steps, const QStringList &options = {},
                   const QString &program = foreignProgram)
    {
        const QStringList arguments = QStringList{"attach", "--data-path", m_packages->path()} + options
            + QStringList{"--", program} + steps;
        return ToolRun(arguments, m_packages->path(), {"QT_QPA_PLATFORM=offscreen", "LC_ALL=C.UTF-8"});
    }

    std::unique_ptr<TestPackages> m_packages;
};

void tst_AttachCommand::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Tips", "en.xml",
                             "<vidtip key=\"draw.line\" title=\"A line\" shortcut=\"L\"/>"
                             "<vidtip key=\"draw.circle\" title=\"%(title)s!\"/>"
                             "<vidtip key=\"Unnamed\" title=\"%(title)s: %(summary)s\"/>",
                             "locale=\"en_US\"");
    m_packages->writeControl("Tips", "de.xml", "<vidtip key=\"draw.line\" title=\"Eine Linie\"/>",
                             "locale=\"de_DE\"");
    m_packages->write("Tips.vidtips/ui/VidtipsUI.qml", userInterface);
}

void tst_AttachCommand::showsTipsForWhatHasContent_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("said");
    QTest::newRow("the program's shortcut") << QStringList{"hover:draw.line"} << "tip: A line|Ctrl+L";
    QTest::newRow("one that was changed")
        << QStringList{"shortcut:Ctrl+9", "hover:draw.line"} << "tip: A line|Ctrl+9";
    QTest::newRow("the content's, without one")
        << QStringList{"shortcut:", "hover:draw.line"} << "tip: A line|L";
    QTest::newRow("the program's text") << QStringList{"hover:draw.circle"} << "tip: Circle!|";
    QTest::newRow("no content") << QStringList{"hover:plain"} << "tool tip: A tool tip of its own";
}

void tst_AttachCommand::showsTipsForWhatHasContent()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, said);
    const ToolRun run = attach(steps + QStringList{"return:0"});
    QVERIFY(run.isFinished);
    QCOMPARE(lines(run.output), QStringList(said));
    QCOMPARE(run.exitCode, 0);
}

void tst_AttachCommand::showsTipsInTheLanguageAskedFor()
{
    QCOMPARE(lines(attach({"hover:draw.line", "return:0"}, {"--locale", "de_DE"}).output),
             QStringList("tip: Eine Linie|Ctrl+L"));
    QCOMPARE(lines(attach({"language", "de_DE", "hover:draw.line", "return:0"}).output),
             QStringList("tip: Eine Linie|Ctrl+L"));
    QCOMPARE(lines(attach({"hover:draw.line", "return:0"}).output), QStringList("tip: A line|Ctrl+L"));
    // What is not translated is there all the same.
    QCOMPARE(lines(attach({"hover:draw.circle", "return:0"}, {"--locale", "de_DE"}).output),
             QStringList("tip: Circle!|"));
}

void tst_AttachCommand::leavesTheEnvironmentOfChildrenAlone()
{
    const QStringList before{"QT_PLUGIN_PATH=unset", "QT_QPA_GENERIC_PLUGINS=unset", "VIDTIPS_ATTACH=unset"};
    const ToolRun run = attach({"environment", "child", "return:0"});
    QCOMPARE(lines(run.output), before + before);
    const QStringList own{"QT_PLUGIN_PATH=/nowhere", "QT_QPA_GENERIC_PLUGINS=tuiotouch",
                          "VIDTIPS_ATTACH=unset"};
    const ToolRun other(
        {"attach", "--data-path", m_packages->path(), foreignProgram, "environment", "return:0"}, {},
        {"QT_QPA_PLATFORM=offscreen", own.at(0), own.at(1)});
    QCOMPARE(lines(other.output), own);
}

void tst_AttachCommand::isTransparent_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("fine") << QStringList{"return:0"} << "" << 0;
    QTest::newRow("a code of its own") << QStringList{"return:42"} << "" << 42;
    QTest::newRow("output") << QStringList{"echo:a  b", "return:1"} << "a  b\n" << 1;
    QTest::newRow("options of its own") << QStringList{"--trace", "--help", "echo:c", "return:3"} << "c\n"
                                        << 3;
}

void tst_AttachCommand::isTransparent()
{
    QFETCH(QStringList, steps);
    const ToolRun run = attach(steps);
    QVERIFY(run.isFinished);
    QTEST(run.output, "output");
    QTEST(run.exitCode, "exitCode");
    // Without "--", what follows the program's name is the program's as well.
    const ToolRun bare(QStringList{"attach", "--data-path", m_packages->path(), foreignProgram} + steps, {},
                       {"QT_QPA_PLATFORM=offscreen"});
    QTEST(bare.output, "output");
    QTEST(bare.exitCode, "exitCode");
}

void tst_AttachCommand::passesInputOn()
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.start(ToolRun::tool(), {"attach", "--trace", foreignProgram, "cat", "return:0"});
    process.write("from outside");
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(100000));
    QCOMPARE(process.readAllStandardOutput(), QByteArray("read: from outside\n"));
}

void tst_AttachCommand::passesSignalsOn()
{
    // A program that a signal ends ends the tool in the same way.
    const ToolRun killed = attach({"signal:" + QString::number(SIGKILL)});
    QVERIFY(!killed.isFinished);
    QCOMPARE(killed.exitCode, SIGKILL);
    // And what ends the tool is for the program.
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.start(ToolRun::tool(),
                  {"attach", "--trace", "sh", "-c",
                   "trap 'echo asked; kill $!; exit 9' TERM; sleep 600 & echo here; wait"});
    QVERIFY(process.waitForReadyRead(100000));
    QCOMPARE(process.readLine(), QByteArray("here\n"));
    process.terminate();
    QVERIFY(process.waitForFinished(100000));
    QCOMPARE(process.readAllStandardOutput(), QByteArray("asked\n"));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 9);
}

void tst_AttachCommand::survivesWhatTheProgramDoes_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("no windows") << QStringList{"no-windows"} << 5;
    QTest::newRow("leaves main() with a tip") << QStringList{"hover:draw.line", "return:6"} << 6;
    QTest::newRow("exit() with a tip") << QStringList{"hover:draw.line", "exit:7"} << 7;
    QTest::newRow("_exit() with a tip") << QStringList{"hover:draw.line", "_exit:8"} << 8;
    QTest::newRow("exit() without one") << QStringList{"exit:9"} << 9;
    QTest::newRow("deletes the command") << QStringList{"delete", "return:10"} << 10;
}

void tst_AttachCommand::survivesWhatTheProgramDoes()
{
    QFETCH(QStringList, steps);
    const ToolRun run = attach(steps);
    QVERIFY2(run.isFinished, qPrintable(run.errors));
    QTEST(run.exitCode, "exitCode");
    QCOMPARE(errorsOf(run), QStringList());
}

void tst_AttachCommand::tracesWhatThePointerRestsOn()
{
    const ToolRun run = attach({"hover:draw.line", "hover:plain", "return:0"}, {"--trace"});
    QCOMPARE(errorsOf(run), QStringList({"draw.line\tQToolButton\tLine\ttip", "plain\tQPushButton\tPlain"}));
    // To learn the names, no packages are needed.
    const ToolRun bare({"attach", "--trace", foreignProgram, "hover:plain", "return:0"}, m_packages->path(),
                       {"QT_QPA_PLATFORM=offscreen"});
    QCOMPARE(errorsOf(bare), QStringList("plain\tQPushButton\tPlain"));
    QCOMPARE(bare.exitCode, 0);
}

void tst_AttachCommand::stepsBack_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("has tips of its own")
        << linkedProgram << QStringList{"hover:plain", "return:3"} << "tool tip: A tool tip of its own\n"
        << "foreign: has tips of its own, so there are no others in it" << 3;
    QTest::newRow("no widgets") << foreignProgram << QStringList{"no-widgets"} << ""
                                << "foreignprogram: has no widgets, so there are no tips in it" << 4;
}

void tst_AttachCommand::stepsBack()
{
    QFETCH(QString, program);
    QFETCH(QStringList, steps);
    QFETCH(QString, error);
    const ToolRun run = attach(steps, {}, program);
    QTEST(run.output, "said");
    QCOMPARE(errorsOf(run), QStringList("vidtips: " + error));
    QTEST(run.exitCode, "exitCode");
}

void tst_AttachCommand::tellsThatNothingCame()
{
    const ToolRun run = attach({"seen"}, {}, "echo");
    QCOMPARE(run.output, QString("seen\n"));
    QCOMPARE(run.errors,
             QString("vidtips: echo has ended without loading the module for tips: it opens no windows of "
                     "Qt 5 itself, or its Qt is not " QT_VERSION_STR "\n"));
    QCOMPARE(run.exitCode, 0);
}

void tst_AttachCommand::tellsThatNothingHasATip()
{
    const QString told =
        "vidtips: no command that the pointer rested on has a tip in the packages; --trace tells the "
        "keys of commands";
    QCOMPARE(errorsOf(attach({"hover:plain", "return:0"})), QStringList(told));
    QCOMPARE(errorsOf(attach({"hover:plain", "hover:draw.line", "return:0"})), QStringList());
    QCOMPARE(errorsOf(attach({"return:0"})), QStringList());
}

void tst_AttachCommand::takesInstalledPackages()
{
    const TestPackages data;
    const auto run = [&] {
        return ToolRun({"attach", foreignProgram, "hover:draw.line", "return:0"}, data.path(),
                       {"QT_QPA_PLATFORM=offscreen", "XDG_DATA_DIRS=" + data.path(),
                        "XDG_DATA_HOME=" + data.filePath("home")});
    };
    QCOMPARE(run().errors,
             QString("vidtips: there are no packages with tips; name their folder by --data-path\n"));
    data.writeControl("vidtips/Content/Own", "en.xml", "<vidtip key=\"draw.line\" title=\"Mine\"/>",
                      "locale=\"en_US\"");
    data.write("vidtips/Content/Own.vidtips/ui/VidtipsUI.qml", userInterface);
    QCOMPARE(lines(run().output), QStringList("tip: Mine|Ctrl+L"));
}

void tst_AttachCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("nothing", {"attach"}, "attach needs a command; see \"vidtips attach --help\"");
    row("no such command", {"attach", "--data-path", ".", "frobnicate"},
        "there is no command \"frobnicate\"");
    row("not a program", {"attach", "--data-path", ".", "./file.txt"}, "there is no command \"./file.txt\"");
    row("no such folder", {"attach", "--data-path", "none", "true"}, "no such folder: none");
    row("a folder without packages", {"attach", "--data-path", "Tools.vidtips/Control", "true"},
        "there are no packages in Tools.vidtips/Control");
    row("unknown locale", {"attach", "--data-path", ".", "--locale", "xx", "true"},
        "Qt knows no locale \"xx\"");
    row("unknown option", {"attach", "--frobnicate", "true"},
        "Unknown option 'frobnicate'; see \"vidtips attach --help\"");
}

void tst_AttachCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

void tst_AttachCommand::refusesProgramsThatCannotBeHad_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("libraries");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *program, const QByteArray &libraries,
                        const QString &reason) { QTest::newRow(name) << program << libraries << reason; };
    row("Qt 6", "bin/program", "\tlibQt6Core.so.6 => /lib/libQt6Core.so.6 (0x1)\n",
        "it is a program of Qt 6, and the tips need Qt 5");
    row("Qt 4", "bin/program", "\tlibQtCore.so.4 => /lib/libQtCore.so.4 (0x1)\n",
        "it is a program of Qt 4, and the tips need Qt 5");
    row("another Qt 5", "bin/program", "\tlibQt5Core.so.5 => @FOLDER@/lib/libQt5Core.so.5 (0x1)\n",
        "it uses Qt 5.12, and the tips need Qt " QT_VERSION_STR);
    row("static", "bin/program", "\tstatically linked\n",
        "it is linked statically, so nothing can be added to the Qt that it may have inside");
    row("snap", "bin/snapped", "", "snap runs its programs in a sandbox with a Qt of its own");
    row("Flatpak", "flatpak/exports/bin/org.program", "",
        "Flatpak runs its programs in a sandbox with a Qt of its own");
    row("AppImage", "bin/Program.AppImage", "", "it is an AppImage, which has a Qt of its own inside");
    row("other processor", "bin/other", "", "it is made for another kind of processor");
}

void tst_AttachCommand::refusesProgramsThatCannotBeHad()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, libraries);
    QFETCH(QString, reason);
    // What lists the libraries is found on the search path, and says here what it would of such a program.
    const QString lister = m_packages->write(
        "bin/ldd",
        "#!/bin/sh\nprintf '%s' '" + libraries.replace("@FOLDER@", m_packages->path().toUtf8()) + "'\n");
    m_packages->write("lib/libQt5Core.so.5.12.8", "");
    QVERIFY(QFile::link("libQt5Core.so.5.12.8", m_packages->filePath("lib/libQt5Core.so.5")));
    QFile self(QStringLiteral("/proc/self/exe"));
    QVERIFY(self.open(QIODevice::ReadOnly));
    QByteArray header = self.read(64);
    const QString path = m_packages->write("bin/program", header);
    const QString image = m_packages->write("bin/Program.AppImage", QByteArray(header).replace(8, 2, "AI"));
    const QString other = m_packages->write("bin/other", QByteArray(header).replace(18, 2, "\1\1"));
    const QString sandboxed = m_packages->write("flatpak/exports/bin/org.program", "#!/bin/sh\n");
    const QString snap = m_packages->write("bin/snap", "#!/bin/sh\n");
    QVERIFY(QFile::link(snap, m_packages->filePath("bin/snapped")));
    for (const QString &file : {lister, path, image, other, sandboxed, snap})
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const QString command = m_packages->filePath(program);
    const ToolRun run({"attach", "--trace", command}, m_packages->path(),
                      {"PATH=" + m_packages->filePath("bin") + ':' + qEnvironmentVariable("PATH")});
    QCOMPARE(run.errors, QString("vidtips: nothing can be added to %1: %2\n").arg(command, reason));
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
}

QTEST_GUILESS_MAIN(tst_AttachCommand)

#include "tst_attachcommand.moc"
