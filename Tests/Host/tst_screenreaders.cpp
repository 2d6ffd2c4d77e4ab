#include "Patience.h"
#include "TestHost.h"
#include "TestPackage.h"
#include "TestPaths.h"

#include <QtCore/QProcess>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>

#include <memory>

using namespace Vidtips;

namespace {

// Clients are programs that start, and ask much; the machine may be busy.
const int patience = 60000;

} // namespace

/** What screen readers are told of tips by the accessibility bus, asked by a client of its own. */
class tst_ScreenReaders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void tipIsOnTheBusAsAToolTipIs();
    void itemsAreOnTheBus();
    void itemsArePressedFromOutside();
    void showingAndChangingArePresented();
    void keptTipIsADialog();
    void noTipNoMore();

private:
    QStringList ask(const QStringList &arguments, int *exitCode = nullptr) const;
    QStringList tree() const { return ask({"tree"}); }
    bool hasLine(const QString &line) const { return tree().contains(line); }
    bool awaitLine(const QString &line) const;
    bool isTold(const QString &line);
    void watch();

    std::unique_ptr<TestPackages> packages;
    std::unique_ptr<TestSession> session;
    std::unique_ptr<QPushButton> command;
    std::unique_ptr<QProcess> watcher;
    QByteArray told;
};

// While the client runs it asks this program, which has to answer.
QStringList tst_ScreenReaders::ask(const QStringList &arguments, int *exitCode) const
{
    QProcess client;
    client.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    client.start(TestPaths::source("Tests/Host/assistive-client"),
                 QStringList(QCoreApplication::applicationName()) + arguments);
    const bool hasEnded = QTest::qWaitFor([&] { return client.state() == QProcess::NotRunning; }, patience);
    if (exitCode)
        *exitCode = hasEnded ? client.exitCode() : -1;
    return QString::fromUtf8(client.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

bool tst_ScreenReaders::awaitLine(const QString &line) const
{
    if (QTest::qWaitFor([&] { return hasLine(line); }, patience))
        return true;
    qWarning("not on the bus: %s; there is:\n%s", qPrintable(line), qPrintable(tree().join('\n')));
    return false;
}

bool tst_ScreenReaders::isTold(const QString &line)
{
    const auto isThere = [&] {
        told += watcher->readAllStandardOutput();
        return told.contains(line.toUtf8() + '\n');
    };
    if (QTest::qWaitFor(isThere, patience))
        return true;
    qWarning("not told: %s; but:\n%s", qPrintable(line), told.constData());
    return false;
}

void tst_ScreenReaders::watch()
{
    told.clear();
    watcher = std::make_unique<QProcess>();
    watcher->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    watcher->start(TestPaths::source("Tests/Host/assistive-client"),
                   {QCoreApplication::applicationName(), "watch"});
    QVERIFY(isTold("ready"));
    // This program learns later than the client who wants to hear what, and descriptions come last.
    int changes = 0;
    const auto hears = [&] {
        command->setAccessibleDescription(QString::number(++changes));
        told += watcher->readAllStandardOutput();
        return told.contains("object:property-change:accessible-description");
    };
    QVERIFY(QTest::qWaitFor(hears, patience));
}

void tst_ScreenReaders::initTestCase()
{
    QPushButton button;
    button.setText("Ready");
    button.show();
    // The bus starts with the first who asks for it, and the program joins when it has.
    QVERIFY(QTest::qWaitFor([&] { return !tree().filter("\"Ready\"").isEmpty(); }, patience));
}

void tst_ScreenReaders::init()
{
    packages = std::make_unique<TestPackages>();
    packages->writeUserInterface("Basic", R"(
        property int presses: 0
        focus: true
        Column {
            Text { text: vidtip ? vidtip.attribute("title") : "" }
            Image { source: "tree.png"; VTAccessible.name: "Tree" }
            FocusScope {
                width: 20; height: 20
                focus: true
                VTAccessible.role: VTAccessible.Button
                VTAccessible.name: "Grow"
                MouseArea { anchors.fill: parent; onClicked: ++presses }
            }
        })",
                                 160, 120, "import com.corvale.vidtips.qml 1.0\n");
    QVERIFY(QImage(8, 8, QImage::Format_RGB32).save(packages->write("Basic.vidtips/ui/tree.png", {})));
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="line" title="Line" shortcut="L"><summary>Draws a line.</summary><step>Click.</step></vidtip>
        <vidtip key="arc" title="Arc"><summary>Draws an arc.</summary></vidtip>)");
    session = std::make_unique<TestSession>(QStringList(packages->path()));
    session->set(HideDuration, 0);
    session->set(IdleInterval, 0);
    command = std::make_unique<QPushButton>("Draw");
    command->show();
    QVERIFY(QTest::qWaitForWindowExposed(command.get(), patience));
}

void tst_ScreenReaders::cleanup()
{
    if (watcher) {
        watcher->kill();
        watcher->waitForFinished();
        watcher.reset();
    }
    session.reset();
    command.reset();
}

void tst_ScreenReaders::tipIsOnTheBusAsAToolTipIs()
{
    QToolTip::showText(QPoint(300, 300), "Line", command.get());
    QVERIFY(awaitLine("tool tip \"Line\" \"\""));
    QToolTip::hideText();
    QTRY_VERIFY(!QToolTip::isVisible());
    QVERIFY(session->host->show("line", QPoint(300, 300), command.get()));
    QVERIFY(awaitLine("tool tip \"Line\" \"Draws a line.\\nL\\n1. Click.\""));
}

void tst_ScreenReaders::itemsAreOnTheBus()
{
    QVERIFY(session->host->show("line", QPoint(300, 300), command.get()));
    QVERIFY(awaitLine("    label \"Line\" \"\""));
    QVERIFY(awaitLine("    image \"Tree\" \"\""));
    QVERIFY(awaitLine("    push button \"Grow\" \"\" Press"));
}

void tst_ScreenReaders::itemsArePressedFromOutside()
{
    QVERIFY(session->host->show("line", QPoint(300, 300), command.get()));
    int exitCode = -1;
    ask({"press", "Grow"}, &exitCode);
    QCOMPARE(exitCode, 0);
    QTRY_COMPARE(session->view()->rootObject()->property("presses").toInt(), 1);
    ask({"press", "Shrink"}, &exitCode);
    QCOMPARE(exitCode, 1);
}

void tst_ScreenReaders::showingAndChangingArePresented()
{
    watch();
    QVERIFY(session->host->show("line", QPoint(300, 300), command.get()));
    QVERIFY(isTold("object:state-changed:showing 1 tool tip \"Line\" \"Draws a line.\\nL\\n1. Click.\""));
    QVERIFY(session->host->show("arc", QPoint(300, 300), command.get()));
    QVERIFY(isTold("object:property-change:accessible-description 0 tool tip \"Arc\" \"Draws an arc.\""));
    QVERIFY(isTold("object:state-changed:showing 1 tool tip \"Arc\" \"Draws an arc.\""));
    session->window()->hide();
    QVERIFY(isTold("object:state-changed:showing 0 tool tip \"Arc\" \"Draws an arc.\""));
}

void tst_ScreenReaders::keptTipIsADialog()
{
    QVERIFY(session->host->show("line", QPoint(300, 300), command.get()));
    // Clients remember what they have asked once.
    QVERIFY(awaitLine("tool tip \"Line\" \"Draws a line.\\nL\\n1. Click.\""));
    watch();
    const QPointer<VTWidget> kept = session->window();
    kept->view()->setReserved(true);
    QVERIFY(QTest::qWaitForWindowActive(kept, patience));
    QVERIFY(isTold("object:state-changed:showing 1 dialog \"Line\" \"Draws a line.\\nL\\n1. Click.\""));
    QVERIFY(isTold("object:state-changed:focused 1 push button \"Grow\" \"\" focused Press SetFocus"));
    QVERIFY(awaitLine("dialog \"Line\" \"Draws a line.\\nL\\n1. Click.\""));
    QVERIFY(awaitLine("    push button \"Grow\" \"\" focused Press SetFocus"));
    delete kept;
}

void tst_ScreenReaders::noTipNoMore()
{
    QVERIFY(session->host->show("line", QPoint(300, 300), command.get()));
    QVERIFY(awaitLine("    label \"Line\" \"\""));
    session->window()->hide();
    QVERIFY(QTest::qWaitFor([this] { return tree().filter("tool tip").isEmpty(); }, patience));
    session.reset();
    QVERIFY(QTest::qWaitFor([this] { return !tree().filter("\"Draw\"").isEmpty(); }, patience));
}

QTEST_MAIN(tst_ScreenReaders)
#include "tst_screenreaders.moc"
