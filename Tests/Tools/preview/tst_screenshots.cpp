#include "ToolRefusal.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

/** Runs the preview for pictures, and where it cannot show a window. */
class tst_Screenshots : public QObject
{
    Q_OBJECT

private slots:
    void takesPictures_data();
    void takesPictures();
    void saysWhichLanguageIsShown();
    void takesPicturesOfProblems();
    void tellsOfBrokenClips();
    void takesPicturesOfAll();
    void takesThemInTheTimeOfTips();
    void showsProgressOnATerminal();
    void refusesBadUse_data();
    void refusesBadUse();
};

void tst_Screenshots::takesPictures_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    // The tip's window is one pixel larger than its content.
    QTest::newRow("plain") << QStringList{} << QSize(51, 21);
    QTest::newRow("twice as large") << QStringList{"--scale", "2"} << QSize(102, 42);
    QTest::newRow("dark") << QStringList{"--dark"} << QSize(51, 21);
    QTest::newRow("simple") << QStringList{"--simple"} << QSize(31, 31);
    QTest::newRow("first phase") << QStringList{"--phase", "first"} << QSize(51, 21);
    QTest::newRow("kept") << QStringList{"--phase", "kept", "--still"} << QSize(51, 21);
    QTest::newRow("mirrored") << QStringList{"--right-to-left", "--unavailable"} << QSize(51, 21);
    QTest::newRow("German") << QStringList{"--locale", "de_DE"} << QSize(71, 71);
    QTest::newRow("with a property") << QStringList{"--set", "size=90"} << QSize(91, 21);
    QTest::newRow("with key data") << QStringList{"--key-data", "data.xml"} << QSize(121, 21);
}

void tst_Screenshots::takesPictures()
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

void tst_Screenshots::saysWhichLanguageIsShown()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/D.xml", "<vidtips locale=\"de_DE\"><vidtip key=\"a\"/></vidtips>");
    packages.write("Tools.vidtips/Control/F.xml", "<vidtips locale=\"fr_FR\"><vidtip key=\"b\"/></vidtips>");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 50; height: 20 }");
    const ToolRun run({"preview", "--delay", "0", "--screenshot", "tip.png", "b", "."}, packages.path());
    QCOMPARE(run.errors, QString("shown for fr_FR: there are no tips for en_US; there are for fr_FR\n"));
    QCOMPARE(run.exitCode, 0);
}

void tst_Screenshots::takesPicturesOfProblems()
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

void tst_Screenshots::tellsOfBrokenClips()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("Tools.vidtips/Resources/no.mp4", "no clip");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml",
                   "import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\nItem { width: 50; height: 20\n"
                   "  VTVideoComponent { source: \"no.mp4\"; visible: status != VTVideoComponent.Error } }");
    const ToolRun run({"preview", "--delay", "0", "--screenshot", "tip.png", "a", "."}, packages.path());
    QCOMPARE(run.errors, QString("Tools.vidtips/Resources/no.mp4: the clip does not open\n"));
    QCOMPARE(run.exitCode, 1);
}

void tst_Screenshots::takesPicturesOfAll()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml",
                   "<vidtips><vidtip key=\"a/b\" title=\"&lt;One&gt;\"/><vidtip key=\"c\"/></vidtips>");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem { width: 50; height: 20 }");
    const ToolRun run({"preview", "--delay", "0", "--screenshot", "sheet/new", "--all", "."},
                      packages.path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QCOMPARE(run.output, QString("sheet/new/index.html\n"));
    QCOMPARE(packages.files("sheet/new"), QStringList({"001-a_b.png", "002-c.png", "index.html"}));
    QCOMPARE(QImage(packages.filePath("sheet/new/001-a_b.png")).size(), QSize(51, 21));
    const QByteArray page = TestPackages::read(packages.filePath("sheet/new/index.html"));
    QVERIFY(page.contains("&lt;One&gt; <code>a/b</code>"));
    QVERIFY(page.contains("<img src=\"001-a_b.png\" width=\"51\" height=\"21\""));
}

// A tip is as it is so long after it was shown, without anybody waiting.
void tst_Screenshots::takesThemInTheTimeOfTips()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write(
        "Tools.vidtips/ui/VidtipsUI.qml",
        "import QtQuick 1.1\nItem { id: root; width: 50; height: 20\n"
        "Timer { running: true; interval: 30000; onTriggered: grow.start() }\n"
        "NumberAnimation { id: grow; target: root; property: 'width'; to: 250; duration: 20000 } }");
    const QPair<QString, int> widths[] = {{"0", 51}, {"29000", 51}, {"40000", 151}, {"60000", 251}};
    for (const auto &width : widths) {
        const ToolRun run({"preview", "--delay", width.first, "--screenshot", "tip.png", "a", "."},
                          packages.path());
        QVERIFY2(run.errors.isEmpty(), qPrintable(run.errors));
        QVERIFY2(qAbs(QImage(packages.filePath("tip.png")).width() - width.second) <= 1,
                 qPrintable(width.first));
    }
}

void tst_Screenshots::showsProgressOnATerminal()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    // Work of less than half a second needs no telling.
    packages.write("Tools.vidtips/ui/VidtipsUI.qml",
                   "import QtQuick 1.1\nItem { width: 50; height: 20; Component.onCompleted: {\n"
                   "var end = Date.now() + 600; while (Date.now() < end) ; } }");
    const QStringList slow{"preview", "--screenshot", "sheet", "--all", "."};
    const ToolRun run = ToolRun::onTerminal(slow, packages.path());
    QVERIFY2(run.output.endsWith("\r\033[K1 of 2 tips\r\033[Ksheet/index.html\r\n"), qPrintable(run.output));
    QCOMPARE(ToolRun(slow, packages.path()).errors, QString());
}

void tst_Screenshots::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("preview of nothing", {"preview", "--screenshot", "x.png"},
        "preview needs a folder; see \"vidtips preview --help\"");
    row("preview without a display", {"preview", "a", "."}, "there is no display to show a window on");
    row("preview of no key", {"preview", "--screenshot", "x.png", "z", "."},
        "there is no tip \"z\" for en_US");
    row("preview of no phase", {"preview", "--screenshot", "x.png", "--phase", "last", "a", "."},
        "--phase takes first, grown or kept, not \"last\"");
    row("preview for no locale", {"preview", "--screenshot", "x.png", "--locale", "german", "."},
        "Qt knows no locale \"german\"");
    row("preview of another locale", {"preview", "--screenshot", "x.png", "--locale", "fr_FR", "."},
        "there are no tips for fr_FR; there are for en_US");
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

void tst_Screenshots::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

QTEST_GUILESS_MAIN(tst_Screenshots)

#include "tst_screenshots.moc"
