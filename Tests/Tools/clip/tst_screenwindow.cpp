#include "Patience.h"
#include "TestPackage.h"
#include "ToolCall.h"

#include "clip/ScreenWindow.h"

#include <QtGui/QImage>
#include <QtGui/QScreen>
#include <QtTest/QtTest>
#include <QtWidgets/QWidget>

/** Finds windows by what they are called, and records one. */
class tst_ScreenWindow : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatTheServerLists();
    void choosesByName_data();
    void choosesByName();
    void recordsAWindow();
    void saysThatAWindowIsHidden();
    void saysWhatIsMissing_data();
    void saysWhatIsMissing();
};

namespace {

const char tree[] = R"(
xwininfo: Window id: 0x50a (the root window) (has no name)

  Root window id: 0x50a (the root window) (has no name)
  Parent window id: 0x0 (none)
     4 children:
     0x600003 (has no name): ()  646x386+20+20  +20+20
        1 child:
        0x1400006 "Garden "my" (1): plan": ("garden" "Garden")  640x360+3+23  +23+43
     0x1400001 "Qt Selection Owner": ()  3x3+0+0  +0+0
     0x1600006 "Garden tools": ("garden" "Garden")  100x360+-3+23  +-23+43
     0x1800006 "Kasse": ("kasse" "Kasse")  200x100+0+0  +0+0
)";

} // namespace

void tst_ScreenWindow::readsWhatTheServerLists()
{
    const QVector<ScreenWindow> windows = ScreenWindow::listIn(tree);
    QCOMPARE(windows.size(), 3);
    QCOMPARE(windows.at(0).id, QString("0x1400006"));
    QCOMPARE(windows.at(0).title, QString("Garden \"my\" (1): plan"));
    QCOMPARE(windows.at(0).size, QSize(640, 360));
    QCOMPARE(windows.at(1).title, QString("Garden tools"));
}

void tst_ScreenWindow::choosesByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("problem");
    QTest::newRow("title") << "Kasse"
                           << "0x1800006"
                           << "";
    QTest::newRow("part of a title") << "TOOLS"
                                     << "0x1600006"
                                     << "";
    QTest::newRow("id") << "0x1400006"
                        << "0x1400006"
                        << "";
    QTest::newRow("part of two titles")
        << "garden"
        << ""
        << "several windows are called like \"garden\": \"Garden \"my\" (1): plan\", \"Garden tools\"";
    QTest::newRow("misspelt") << "Kase"
                              << ""
                              << "there is no window \"Kase\": did you mean \"Kasse\"?";
    QTest::newRow("none") << "Orchard"
                          << ""
                          << "there is no window \"Orchard\": there are \"Garden \"my\" (1): plan\", "
                             "\"Garden tools\", \"Kasse\"";
}

void tst_ScreenWindow::choosesByName()
{
    QFETCH(QString, name);
    ScreenWindow window;
    QTEST(window.choose(name, ScreenWindow::listIn(tree)), "problem");
    QTEST(window.id, "id");
}

void tst_ScreenWindow::recordsAWindow()
{
    QWidget widget;
    widget.setWindowTitle("Vidtips records this");
    widget.setPalette(QColor(0x20, 0xA0, 0x40));
    widget.resize(320, 180);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    // The compositor has drawn it when the screen has the colour.
    const auto shown = [&] {
        return widget.screen()->grabWindow(widget.winId()).toImage().pixelColor(160, 90);
    };
    QTRY_COMPARE(shown(), QColor(0x20, 0xA0, 0x40));
    const TestPackages folder;
    const ToolCall call({"clip", "--record", "records this", "--wait", "0", "--length", "0.5", "--poster",
                         "poster.png", "clip.mp4"},
                        folder.path());
    QCOMPARE(call.errors, QString("Recording \"Vidtips records this\" (320 x 180) for 0.5 s, in 0 s.\n"));
    QCOMPARE(call.exitCode, 0);
    const QColor colour = QImage(folder.filePath("poster.png")).pixelColor(20, 160);
    QVERIFY2(qAbs(colour.red() - 0x20) < 6 && qAbs(colour.green() - 0xA0) < 6, qPrintable(colour.name()));
    QCOMPARE(folder.files(), QStringList({"clip.mp4", "poster.png"}));
}

void tst_ScreenWindow::saysThatAWindowIsHidden()
{
    QWidget widget;
    widget.setWindowTitle("Vidtips hides this");
    widget.resize(320, 180);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    widget.hide();
    ScreenWindow window;
    QTRY_COMPARE(window.find("Vidtips hides this"),
                 QString("the window \"Vidtips hides this\" is not shown on the screen"));
}

void tst_ScreenWindow::saysWhatIsMissing_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("problem");
    QTest::newRow("X server") << QByteArray("DISPLAY") << "there is no X server to record a window of";
    QTest::newRow("xwininfo") << QByteArray("PATH")
                              << "there is no command \"xwininfo\", which finds windows: install x11-utils";
}

void tst_ScreenWindow::saysWhatIsMissing()
{
    QFETCH(QByteArray, variable);
    const QByteArray before = qgetenv(variable);
    qputenv(variable, "");
    ScreenWindow window;
    const QString problem = window.find("any");
    qputenv(variable, before);
    QTEST(problem, "problem");
}

QTEST_MAIN(tst_ScreenWindow)

#include "tst_screenwindow.moc"
