#include "TestPackage.h"
#include "ToolRefusal.h"
#include "ToolRun.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

namespace {

constexpr char drawFile[] = "Foreign.vidtips/Control/Draw.en_US.xml";
constexpr char keyFile[] = "Foreign.keys.xml";

QStringList lines(const QString &text)
{
    return text.split('\n', Qt::SkipEmptyParts);
}

} // namespace

/** Runs the tool with a program whose commands are known. */
class tst_HarvestCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { m_packages = std::make_unique<TestPackages>(); }
    void makesAPackage();
    void takesAnotherPackagesUserInterface();
    void tellsOfCommandsWithoutNames();
    void leavesOutNamesThatCannotBeKeys();
    void tellsOfCommandsThatSayNothing();
    void takesTextsWhereAsked();
    void changesNothingWithoutAReason();
    void addsWhatIsNew();
    void marksWhatIsGone();
    void showsTextsThatHaveChanged();
    void leavesOutWhatAuthorsTookOut();
    void keepsLineEnds();
    void refusesFilesThatItCouldHarm_data();
    void refusesFilesThatItCouldHarm();
    void takesADialogWhereNothingElseComes();
    void tellsWhyThereIsNothing_data();
    void tellsWhyThereIsNothing();
    void refusesBadUse_data();
    void refusesBadUse();

private:
    ToolRun harvest(const QStringList &steps = {}, const QStringList &options = {})
    {
        return ToolRun(QStringList{"harvest", "--into", m_packages->path(), "--name", "Foreign"} + options
                           + QStringList{"--", TestPaths::built("bin/foreignprogram")} + steps,
                       m_packages->path(), {"QT_QPA_PLATFORM=offscreen"});
    }
    QByteArray content(const QString &file) const { return TestPackages::read(m_packages->filePath(file)); }
    QString firstLine(const ToolRun &run) const { return lines(run.output).value(0); }
    QMap<QString, QByteArray> everything() const
    {
        QMap<QString, QByteArray> contents;
        for (const QString &file : m_packages->files())
            contents.insert(file, content(file));
        return contents;
    }

    // Each harvest waits, so the first one is the same for all rows.
    void startFromTheFirst()
    {
        for (auto file = m_firstFiles.cbegin(); file != m_firstFiles.cend(); ++file)
            m_packages->write(file.key(), file.value());
    }

    std::unique_ptr<TestPackages> m_packages;
    QString m_firstOutput;
    QMap<QString, QByteArray> m_firstFiles;
};

void tst_HarvestCommand::initTestCase()
{
    init();
    const ToolRun run = harvest();
    QVERIFY2(run.isFinished && run.exitCode == 0, qPrintable(run.errors));
    m_firstOutput = run.output;
    m_firstFiles = everything();
}

void tst_HarvestCommand::makesAPackage()
{
    startFromTheFirst();
    QCOMPARE(lines(m_firstOutput).constFirst(), QString("Foreign.vidtips: 4 new, 0 kept, 0 changed, 0 gone"));
    QCOMPARE(content(drawFile),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<vidtips locale=\"en_US\">\n"
                        "  <vidtip key=\"draw\" title=\"Draw\"/>\n"
                        "  <vidtip key=\"draw.line\" title=\"Line\">\n"
                        "    <summary>Draws a line from point to point</summary>\n"
                        "    <icon source=\"draw.line.png\"/>\n"
                        "  </vidtip>\n"
                        "  <vidtip key=\"draw.circle\" title=\"Circle\">\n"
                        "    <icon source=\"draw.circle.png\"/>\n"
                        "  </vidtip>\n"
                        "</vidtips>\n"));
    QCOMPARE(content("Foreign.vidtips/Control/Window.en_US.xml"),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<vidtips locale=\"en_US\">\n"
                        "  <vidtip key=\"plain\" title=\"Plain\">\n"
                        "    <summary>A tool tip of its own</summary>\n"
                        "  </vidtip>\n"
                        "</vidtips>\n"));
    QCOMPARE(content(keyFile),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<vidtipkeys>\n"
                        "  <key name=\"draw.line\" shortcut=\"Ctrl+L\"/>\n"
                        "</vidtipkeys>\n"));
    const QImage icon(m_packages->filePath("Foreign.vidtips/Resources/draw.line.png"));
    QCOMPARE(icon.size(), QSize(32, 32));
    QCOMPARE(icon.pixelColor(16, 16), QColor(Qt::blue));
    QCOMPARE(QImage(m_packages->filePath("Foreign.vidtips/Resources/draw.line@2x.png")).size(),
             QSize(64, 64));

    const ToolRun check({"check", "."}, m_packages->path());
    QCOMPARE(check.exitCode, 0);
    QCOMPARE(check.output, QString("1 package, 2 control files: nothing found\n"));
    const ToolRun preview({"preview", "--screenshot", "tip.png", "draw.line", "."}, m_packages->path());
    QCOMPARE(preview.errors, QString());
    QCOMPARE(preview.exitCode, 0);
}

void tst_HarvestCommand::takesAnotherPackagesUserInterface()
{
    QCOMPARE(harvest({}, {"--search", "Shared"}).exitCode, 0);
    QVERIFY(content(drawFile).contains("<vidtips locale=\"en_US\" search=\"Shared\">"));
    QVERIFY(!QFileInfo::exists(m_packages->filePath("Foreign.vidtips/ui")));
}

void tst_HarvestCommand::tellsOfCommandsWithoutNames()
{
    const QStringList told = lines(m_firstOutput).mid(2, 3);
    QCOMPARE(told,
             QStringList({"  Draw: QAction \"Unnamed\", for example \"drawUnnamed\"",
                          "  Draw: QAction \"Twice\", for example \"drawTwice\"",
                          "  Draw: QAction \"Twice\", for example \"drawTwice\""}));
    startFromTheFirst();
    QVERIFY(!content(drawFile).contains("Unnamed"));
}

void tst_HarvestCommand::leavesOutNamesThatCannotBeKeys()
{
    const ToolRun run = harvest({"name:draw\u0001line"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(firstLine(run), QString("Foreign.vidtips: 3 new, 0 kept, 0 changed, 0 gone"));
    QCOMPARE(lines(run.output).last(),
             QString("  Draw: QAction \"Line\", whose name \"draw\uFFFDline\" holds a control character"));
    QVERIFY(content(drawFile).contains("key=\"draw.circle\""));
    QVERIFY(!content(drawFile).contains("Line"));
}

void tst_HarvestCommand::tellsOfCommandsThatSayNothing()
{
    const QStringList told = lines(m_firstOutput).mid(5);
    QCOMPARE(
        told,
        QStringList({"Of these commands the program says nothing, so there are no tips for them until you "
                     "write some:",
                     "  Window: QPushButton, key \"silent\""}));
    startFromTheFirst();
    QVERIFY(!content("Foreign.vidtips/Control/Window.en_US.xml").contains("silent"));
    // Once there is a tip, it is kept, and there is no more to tell.
    m_packages->writeControl("Foreign", "Mine.en_US.xml", "<vidtip key=\"silent\" title=\"It\"/>",
                             "locale=\"en_US\"");
    const ToolRun run = harvest();
    QCOMPARE(firstLine(run), QString("Foreign.vidtips: 0 new, 5 kept, 0 changed, 0 gone"));
    QVERIFY(!run.output.contains("silent"));
}

void tst_HarvestCommand::takesTextsWhereAsked()
{
    const ToolRun run = harvest({}, {"--texts"});
    QCOMPARE(firstLine(run), QString("Foreign.vidtips: 6 new, 0 kept, 0 changed, 0 gone"));
    QVERIFY(!run.output.contains("These commands have no names"));
    QVERIFY(content(drawFile).contains("  <vidtip key=\"Unnamed\" title=\"Unnamed\">\n"
                                       "    <summary>What it is</summary>\n"));
    QCOMPARE(content(drawFile).count("key=\"Twice\""), 1);
}

void tst_HarvestCommand::changesNothingWithoutAReason()
{
    startFromTheFirst();
    QByteArray control = content(drawFile);
    control.replace("title=\"Line\"", "title='A  line'")
        .replace("<summary>Draws", "<!-- mine -->\n<summary>Draws");
    m_packages->write(drawFile, control + "<!-- the end -->");
    m_packages->write(keyFile, content(keyFile).replace("Ctrl+L", "Shift+L"));
    m_packages->write("Foreign.vidtips/Resources/draw.line.png", "a picture");
    m_packages->write("Foreign.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem {}\n");
    const QMap<QString, QByteArray> before = everything();
    QCOMPARE(firstLine(harvest()), QString("Foreign.vidtips: 0 new, 4 kept, 0 changed, 0 gone"));
    QCOMPARE(everything(), before);
}

void tst_HarvestCommand::addsWhatIsNew()
{
    QCOMPARE(harvest({"drop"}).exitCode, 0);
    const QByteArray end = "</vidtips><!-- the end -->";
    const QByteArray control = content(drawFile).replace("Circle", "My circle").replace("</vidtips>", end);
    QVERIFY(!control.contains("draw.line"));
    m_packages->write(drawFile, control);
    QCOMPARE(firstLine(harvest()), QString("Foreign.vidtips: 1 new, 3 kept, 0 changed, 0 gone"));
    const QByteArray added = "  <vidtip key=\"draw.line\" title=\"Line\">\n"
                             "    <summary>Draws a line from point to point</summary>\n"
                             "    <icon source=\"draw.line.png\"/>\n"
                             "  </vidtip>\n";
    QCOMPARE(content(drawFile), QByteArray(control).replace(end, added + end));
    QVERIFY(content(keyFile).contains("draw.line"));
}

void tst_HarvestCommand::marksWhatIsGone()
{
    startFromTheFirst();
    const QMap<QString, QByteArray> before = everything();
    const ToolRun run = harvest({"drop"});
    QCOMPARE(firstLine(run), QString("Foreign.vidtips: 0 new, 3 kept, 0 changed, 1 gone"));
    QVERIFY(lines(run.output).contains("gone     draw.line"));
    const QByteArray entry = "  <vidtip key=\"draw.line\"";
    const QByteArray mark = "  <!-- harvest: the program no longer has this command -->\n";
    const QByteArray marked = QByteArray(before.value(drawFile)).replace(entry, mark + entry);
    QCOMPARE(content(drawFile), marked);
    // Once is enough, and with the command the mark goes again.
    QCOMPARE(harvest({"drop"}).exitCode, 0);
    QCOMPARE(content(drawFile), marked);
    QCOMPARE(harvest().exitCode, 0);
    QCOMPARE(everything(), before);
}

void tst_HarvestCommand::showsTextsThatHaveChanged()
{
    startFromTheFirst();
    m_packages->write(drawFile, content(drawFile).replace("\"Line\"", "\"My line\""));
    const QByteArray before = content(drawFile);
    const ToolRun run = harvest({"text:Straight &line -- \"new\"", "shortcut:Ctrl+9"});
    QCOMPARE(firstLine(run), QString("Foreign.vidtips: 0 new, 4 kept, 2 changed, 0 gone"));
    QVERIFY(lines(run.output).contains("changed  draw.line: title \"Line\" -> \"Straight line -- \"new\"\""));
    QVERIFY(lines(run.output).contains("changed  draw.line: shortcut \"Ctrl+L\" -> \"Ctrl+9\""));
    const QByteArray entry = "  <vidtip key=\"draw.line\"";
    const QByteArray mark =
        "  <!-- harvest: the program's title was \"Line\" and is \"Straight line - - \"new\"\" -->\n";
    QCOMPARE(content(drawFile), QByteArray(before).replace(entry, mark + entry));
    QVERIFY(content(keyFile).contains(
        "  <!-- harvest: the program's shortcut was \"Ctrl+L\" and is \"Ctrl+9\" -->\n"
        "  <key name=\"draw.line\" shortcut=\"Ctrl+L\"/>\n"));
    const QMap<QString, QByteArray> after = everything();
    QCOMPARE(harvest({"text:Straight &line -- \"new\"", "shortcut:Ctrl+9"}).exitCode, 0);
    QCOMPARE(everything(), after);
}

void tst_HarvestCommand::leavesOutWhatAuthorsTookOut()
{
    startFromTheFirst();
    QByteArray control = content(drawFile);
    const int start = control.indexOf("  <vidtip key=\"draw.circle\"");
    control.remove(start, control.indexOf("</vidtip>\n", start) + 10 - start);
    m_packages->write(drawFile, control);
    QCOMPARE(harvest().exitCode, 0);
    QCOMPARE(content(drawFile), control);
    // One that was moved to another file has its tip there.
    m_packages->writeControl("Foreign", "mine.xml", "<vidtip key=\"draw.line\" title=\"Mine\"/>",
                             "locale=\"en_US\"");
    QVERIFY(QFile::remove(m_packages->filePath(drawFile)));
    QVERIFY(QFile::remove(m_packages->filePath("Foreign.vidtips/harvest.json")));
    QCOMPARE(harvest().exitCode, 0);
    QVERIFY(!content(drawFile).contains("draw.line"));
    QVERIFY(content(drawFile).contains("draw.circle"));
}

void tst_HarvestCommand::keepsLineEnds()
{
    m_packages->write(drawFile,
                      "\xef\xbb\xbf<vidtips locale=\"en_US\">\r\n  <!-- Stra\xc3\x9f"
                      "e -->\r\n</vidtips>\r\n");
    QCOMPARE(harvest({"drop"}).exitCode, 0);
    QCOMPARE(content(drawFile),
             QByteArray("\xef\xbb\xbf<vidtips locale=\"en_US\">\r\n  <!-- Stra\xc3\x9f"
                        "e -->\r\n"
                        "  <vidtip key=\"draw\" title=\"Draw\"/>\r\n"
                        "  <vidtip key=\"draw.circle\" title=\"Circle\">\r\n"
                        "    <icon source=\"draw.circle.png\"/>\r\n"
                        "  </vidtip>\r\n"
                        "</vidtips>\r\n"));
}

void tst_HarvestCommand::refusesFilesThatItCouldHarm_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    QTest::newRow("another encoding")
        << drawFile
        << QByteArray(
               "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<vidtips locale=\"en_US\">\n</vidtips>\n")
        << "it is not in UTF-8";
    QTest::newRow("bytes that are no text")
        << drawFile << QByteArray("<vidtips>\n<!-- \xe9 -->\n</vidtips>\n") << "it is not in UTF-8";
    QTest::newRow("no end tag") << drawFile << QByteArray("<vidtips locale=\"en_US\"/>\n")
                                << "its document element has no end";
    QTest::newRow("key data that are broken") << keyFile << QByteArray("<vidtipkeys>\n<key>\n") << "";
    QTest::newRow("a broken state") << "Foreign.vidtips/harvest.json" << QByteArray("{") << "";
}

void tst_HarvestCommand::refusesFilesThatItCouldHarm()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    m_packages->write(file, content);
    const ToolRun run = harvest();
    QCOMPARE(run.exitCode, 2);
    const QString last = lines(run.errors).last();
    QVERIFY2(last.startsWith("vidtips: cannot "), qPrintable(last));
    QVERIFY2(last.contains(QFileInfo(file).fileName() + ": ") && last.endsWith(problem), qPrintable(last));
    QCOMPARE(this->content(file), content);
}

void tst_HarvestCommand::takesADialogWhereNothingElseComes()
{
    const ToolRun run = harvest({"dialog"}, {"--wait", "8"});
    QVERIFY(lines(run.errors)
                .contains("vidtips: waiting for a window with menus or tool bars; there is \"Welcome\""));
    QVERIFY(run.errors.contains("vidtips: no window with menus or tool bars has come, so the commands are "));
    QCOMPARE(firstLine(run), QString("Foreign.vidtips: 1 new, 0 kept, 0 changed, 0 gone"));
    QVERIFY(content("Foreign.vidtips/Control/Window.en_US.xml").contains("key=\"QDialogButtonBox.Ok\""));
}

void tst_HarvestCommand::tellsWhyThereIsNothing_data()
{
    QTest::addColumn<QString>("wait");
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QString>("problem");
    // A busy machine takes its time over what ends by itself.
    const QString patience = "60";
    const QString program = TestPaths::built("bin/foreignprogram");
    QTest::newRow("no window") << "2" << QStringList{program, "never"}
                               << program + " has opened no window within 2 seconds";
    QTest::newRow("no window, and no Qt")
        << "2" << QStringList{"sleep", "1000"} << "sleep has opened no window within 2 seconds";
    QTest::newRow("ends before") << patience << QStringList{program, "return:0"}
                                 << program + " has ended before its windows were up";
    QTest::newRow("no names") << "4" << QStringList{program, "nameless"}
                              << "no command of the program has a name; --texts takes their texts instead";
    QTest::newRow("no widgets") << patience << QStringList{program, "no-widgets"}
                                << "the program has no widgets";
    QTest::newRow("no Qt")
        << patience << QStringList{"true"}
        << "true has ended without loading the module for tips: it opens no windows of Qt 5 "
           "itself, or its Qt is not " QT_VERSION_STR;
}

void tst_HarvestCommand::tellsWhyThereIsNothing()
{
    QFETCH(QString, wait);
    QFETCH(QStringList, command);
    QFETCH(QString, problem);
    const ToolRun run(QStringList{"harvest", "--into", ".", "--wait", wait, "--"} + command,
                      m_packages->path(), {"QT_QPA_PLATFORM=offscreen"});
    QVERIFY(run.isFinished);
    QCOMPARE(lines(run.errors).last(), "vidtips: " + problem);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(m_packages->files(), QStringList());
}

void tst_HarvestCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    const QString use = "harvest needs --into FOLDER and a command; see \"vidtips harvest --help\"";
    row("nothing", {"harvest"}, use);
    row("no folder", {"harvest", "true"}, use);
    row("no such folder", {"harvest", "--into", "none", "true"}, "no such folder: none");
    row("no such command", {"harvest", "--into", ".", "frobnicate"}, "there is no command \"frobnicate\"");
    row("a name that is none", {"harvest", "--into", ".", "--name", "a/b", "true"},
        "\"a/b\" cannot be a package's name: use letters, digits, \"-\", \"_\" and \".\"");
    row("unknown locale", {"harvest", "--into", ".", "--locale", "xx", "true"}, "Qt knows no locale \"xx\"");
    row("no time", {"harvest", "--into", ".", "--wait", "0", "true"}, "--wait takes seconds, not \"0\"");
}

void tst_HarvestCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

QTEST_GUILESS_MAIN(tst_HarvestCommand)

#include "tst_harvestcommand.moc"
