#include "ForeignHost.h"
#include "RealPointer.h"

#include <QtCore/QTimer>
#include <QtCore/QVariantAnimation>
#include <QtGui/QScreen>
#include <QtGui/qpa/qwindowsysteminterface.h>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTreeWidget>

using namespace Vidtips;

namespace {

using Change = std::function<void(ForeignHost &)>;

/** So that a tip goes soon once its countdown has begun. */
void withShortCountdown(VTContext &settings)
{
    settings.set(IdleInterval, 250);
}

/** Lets an animation of that many milliseconds end, and with it all that were started before and are no
 * longer. */
bool passAnimation(int duration)
{
    QVariantAnimation animation;
    animation.setStartValue(0);
    animation.setEndValue(1);
    animation.setDuration(duration);
    QSignalSpy finished(&animation, &QVariantAnimation::finished);
    animation.start();
    return finished.wait(RealPointer::patience) && RealPointer::passEvents();
}

/** Notes the sizes that a window is given, without those that window managers report late. */
class SizeLog : public QObject
{
public:
    explicit SizeLog(QWidget *watched)
        : QObject(watched)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Resize && !event->spontaneous())
            sizes << qobject_cast<QWidget *>(watched)->size();
        return false;
    }

    QList<QSize> sizes;
};

} // namespace

Q_DECLARE_METATYPE(Change)

/** How tips come, stay and go in a host with everything, under a real pointer. */
class tst_ComingAndGoing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyPlaceHasItsTip();
    void everyRowOfManyHasItsTip();
    void tipOfAFadingTipStays();
    void sameTipStaysWhileItFades();

    void goesAtOnce_data();
    void goesAtOnce();
    void goesWithThePointerInItWhenAWindowOpens();
    void goesWhenTheCommandIsNoLongerUnderThePointer_data();
    void goesWhenTheCommandIsNoLongerUnderThePointer();
    void goesWithTheRowThatIsScrolledAway_data();
    void goesWithTheRowThatIsScrolledAway();
    void goesWithItsPart_data();
    void goesWithItsPart();
    void goesWithThePageOfItsTab();
    void goesWhenTheMenuGoesOn();
    void staysWithinItsEntry();
    void goesWithTheMenu();
    void staysWhenItsSubmenuOpens();
    void goesWhenThePointerLeavesThroughItOntoTheDesktop();
    void goesWhenItIsTakenFromTheScreen();
    void comesAgainAfterItsWindowWasMinimised();
    void followsItsCommandWhenThatIsHoveredAgain_data();
    void followsItsCommandWhenThatIsHoveredAgain();
    void staysWhileThePointerIsInIt();
    void staysWhenTheWindowMovesWithThePointer();
    void anotherRowOfTheSameViewIsAnotherCommand();
    void typingHidesIt();
    void shortcutHidesIt_data();
    void shortcutHidesIt();

    void knowsWhereItIs();
    void resizesOncePerChange();
    void neighboursOfAnotherHeight();
    void standsBesideTheMenu();
    void standsBesideTheListOfTheComboBox();
    void clickIntoTheTipOfAMenuReachesTheTip();
    void keptFromAMenu();
    void notShownWhenItCannotBeFilled();
    void simpleTipWhenTheFullOneIsBroken();

private:
    void start(const std::function<void(VTContext &)> &configure = {});
    QTimer *countdown() const { return m_host->tip()->findChild<QTimer *>({}, Qt::FindDirectChildrenOnly); }

    std::unique_ptr<ForeignHost> m_host;
};

void tst_ComingAndGoing::init()
{
    RealPointer::jumpTo({1240, 760});
}

void tst_ComingAndGoing::cleanup()
{
    m_host.reset();
}

void tst_ComingAndGoing::start(const std::function<void(VTContext &)> &configure)
{
    m_host = std::make_unique<ForeignHost>(configure);
    QVERIFY(m_host->window->isActiveWindow());
}

void tst_ComingAndGoing::everyPlaceHasItsTip()
{
    start();
    QVERIFY(m_host->hover(m_host->row(0), "row 0"));
    QVERIFY(m_host->hover(m_host->tab(1), "tab 1"));
    QVERIFY(m_host->hover(m_host->item(), "item"));
    QVERIFY(m_host->hover(m_host->window->findChild<QPushButton *>("left")));
    QVERIFY(m_host->hover(m_host->embedded));
    QVERIFY(m_host->hover(m_host->scrollArea->findChild<QPushButton *>("scrolled")));
    m_host->secondWindow->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_host->secondWindow));
    QVERIFY(m_host->hover(m_host->farther));
    // From the first window, which is not active any more, it has not come along.
    QVERIFY(m_host->host()->notificationTexts().contains("6 scrolled"));
}

// Each row's tip is asked for while the last one fades out.
void tst_ComingAndGoing::everyRowOfManyHasItsTip()
{
    start([](VTContext &settings) {
        settings.set(HideDuration, 60000);
        settings.set(IdleInterval, 1);
    });
    for (int i = 0; i < 5; ++i) {
        QVERIFY(m_host->hover(m_host->row(i), QString("row %1").arg(i)));
        QTRY_COMPARE(m_host->tip()->windowOpacity(), 1.0);
        QVERIFY(m_host->isShown());
    }
    QVERIFY(!m_host->host()->notificationTexts().contains("6 row 0"));
}

void tst_ComingAndGoing::tipOfAFadingTipStays()
{
    start([](VTContext &settings) { settings.set(HideDuration, 400); });
    QVERIFY(m_host->hover(m_host->plain));
    m_host->tip()->hideAnimated();
    QTRY_VERIFY(m_host->tip()->windowOpacity() < 0.9);
    QVERIFY(m_host->host()->show("other", QCursor::pos(), m_host->plain));
    QCOMPARE(m_host->tip()->windowOpacity(), 1.0);
    const QStringList told = m_host->host()->notificationTexts();
    QVERIFY(passAnimation(400));
    QVERIFY(m_host->isShown());
    QCOMPARE(m_host->host()->notificationTexts(), told);
}

void tst_ComingAndGoing::sameTipStaysWhileItFades()
{
    start([](VTContext &settings) { settings.set(HideDuration, 400); });
    QVERIFY(m_host->hover(m_host->plain));
    m_host->tip()->hideAnimated();
    QTRY_VERIFY(m_host->tip()->windowOpacity() < 0.9);
    QVERIFY(m_host->host()->show("plain", QCursor::pos(), m_host->plain));
    QVERIFY(passAnimation(400));
    QVERIFY(m_host->isShown());
    QCOMPARE(m_host->tip()->windowOpacity(), 1.0);
}

void tst_ComingAndGoing::goesAtOnce_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("command deleted", [](ForeignHost &host) { delete host.plain; });
    row("command hidden", [](ForeignHost &host) { host.plain->hide(); });
    row("command moved out of sight", [](ForeignHost &host) { host.plain->move(3000, 10); });
    row("window minimised", [](ForeignHost &host) { host.window->showMinimized(); });
    row("window hidden", [](ForeignHost &host) { host.window->hide(); });
    row("window closed", [](ForeignHost &host) { host.window->close(); });
    row("its part of the window hidden", [](ForeignHost &host) { host.window->centralWidget()->hide(); });
    row("application-modal dialog", [](ForeignHost &host) {
        host.openDialog(host.window, Qt::ApplicationModal, "asked")->setAttribute(Qt::WA_DeleteOnClose);
    });
    row("window-modal dialog", [](ForeignHost &host) {
        host.openDialog(host.window, Qt::WindowModal, "asked")->setAttribute(Qt::WA_DeleteOnClose);
    });
    row("popup", [](ForeignHost &host) {
        auto *const menu = new QMenu(host.window);
        menu->addAction("Anything");
        menu->popup(host.plain->mapToGlobal(QPoint(0, 0)));
    });
    row("other window active", [](ForeignHost &host) { host.secondWindow->activateWindow(); });
    row("other window over it", [](ForeignHost &host) {
        host.secondWindow->move(host.plain->mapToGlobal(QPoint(-100, -60)));
        // Without a window manager it does not become active.
        RealPointer::xdotool({"windowraise", QString::number(host.secondWindow->winId())});
    });
}

void tst_ComingAndGoing::goesAtOnce()
{
    QFETCH(Change, change);
    start();
    QVERIFY(m_host->hover(m_host->plain));
    change(*m_host);
    QTRY_VERIFY(!m_host->isShown());
    QCOMPARE(m_host->host()->notificationTexts(), (QStringList{"0 plain", "6 plain"}));
}

void tst_ComingAndGoing::goesWithThePointerInItWhenAWindowOpens()
{
    start();
    QVERIFY(m_host->hover(m_host->plain));
    RealPointer::moveTo(RealPointer::center(m_host->tip()));
    QTRY_VERIFY(m_host->tip()->underMouse());
    m_host->openDialog(m_host->window, Qt::NonModal, "asked")->setAttribute(Qt::WA_DeleteOnClose);
    QTRY_VERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::goesWhenTheCommandIsNoLongerUnderThePointer_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("window moved", [](ForeignHost &host) { host.window->move(host.window->pos() + QPoint(0, 120)); });
    row("window moved by the window system", [](ForeignHost &host) {
        RealPointer::xdotool({"windowmove", "--relative", QString::number(host.window->winId()), "0", "120"});
    });
    row("window resized", [](ForeignHost &host) {
        host.window->resize(660, 400);
        host.plain->move(500, 300);
    });
    row("command moved", [](ForeignHost &host) { host.plain->move(500, 200); });
}

void tst_ComingAndGoing::goesWhenTheCommandIsNoLongerUnderThePointer()
{
    QFETCH(Change, change);
    start(withShortCountdown);
    QVERIFY(m_host->hover(m_host->plain));
    change(*m_host);
    QTRY_VERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::goesWithTheRowThatIsScrolledAway_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("wheel", [](ForeignHost &host) { RealPointer::click(host.row(1), 5); });
    row("key", [](ForeignHost &host) {
        host.tree->setFocus();
        RealPointer::type("Next");
    });
    row("program", [](ForeignHost &host) { host.tree->verticalScrollBar()->setValue(7); });
    row("rows taken away", [](ForeignHost &host) { host.tree->clear(); });
}

void tst_ComingAndGoing::goesWithTheRowThatIsScrolledAway()
{
    QFETCH(Change, change);
    start();
    QVERIFY(m_host->hover(m_host->row(1), "row 1"));
    change(*m_host);
    QTRY_VERIFY(m_host->shownKey() != "row 1");
}

void tst_ComingAndGoing::goesWithItsPart_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<Change>("change");
    const auto item = [](ForeignHost &host) { return host.view->itemAt(host.view->mapFromScene(60, 45)); };
    const auto header = [](ForeignHost &host) { return host.tree->header(); };
    QTest::newRow("item deleted") << "item" << Change([item](ForeignHost &host) { delete item(host); });
    QTest::newRow("item hidden") << "item" << Change([item](ForeignHost &host) { item(host)->hide(); });
    QTest::newRow("tab removed") << "tab 1" << Change([](ForeignHost &host) { host.tabs->removeTab(1); });
    QTest::newRow("column taken away")
        << "column" << Change([](ForeignHost &host) { host.tree->setColumnCount(1); });
    QTest::newRow("section hidden") << "column"
                                    << Change([header](ForeignHost &host) { header(host)->hideSection(1); });
    QTest::newRow("entry deleted") << "start" << Change([](ForeignHost &host) {
        const QMenu *const menu = host.window->menuBar()->actions().constFirst()->menu();
        delete menu->actions().constFirst();
    });
}

void tst_ComingAndGoing::goesWithItsPart()
{
    QFETCH(QString, key);
    QFETCH(Change, change);
    start();
    QPoint position = key == "item" ? m_host->item() : m_host->tab(1);
    if (key == "column") {
        m_host->tree->setHeaderLabels({"Name", "Column"});
        m_host->tree->headerItem()->setData(1, Qt::UserRole, "column");
        m_host->tree->setHeaderHidden(false);
        const QHeaderView *const header = m_host->tree->header();
        QTRY_VERIFY(header->isVisible());
        position = header->viewport()->mapToGlobal({header->sectionViewportPosition(1) + 10, 8});
    }
    if (key == "start")
        position = m_host->entry(m_host->openMenu(), 0);
    QVERIFY(m_host->hover(position, key));
    change(*m_host);
    QTRY_VERIFY(m_host->shownKey() != key);
    QCOMPARE(m_host->host()->notificationTexts(), (QStringList{"0 " + key, "6 " + key}));
    if (QWidget *const menu = QApplication::activePopupWidget())
        menu->close();
}

void tst_ComingAndGoing::goesWithThePageOfItsTab()
{
    start();
    QTabWidget pages(m_host->window->centralWidget());
    for (const QString &title : QStringList{"One", "Two", "Three"})
        pages.addTab(new QWidget, title);
    pages.setGeometry(230, 265, 250, 60);
    pages.show();
    pages.raise();
    QTabBar *const bar = pages.tabBar();
    const auto rectOf = [bar](int index) {
        return QRect(bar->mapToGlobal(bar->tabRect(index).topLeft()), bar->tabRect(index).size());
    };
    QTRY_VERIFY(bar->isVisible());
    const QPoint position = rectOf(1).center();
    QVERIFY(RealPointer::moveTo(position));
    QVERIFY(m_host->host()->show("tab 1", position, bar, rectOf(1)));
    // Another tab comes where it was.
    delete pages.widget(1);
    QTRY_VERIFY(!m_host->isShown());
    QCOMPARE(m_host->host()->notificationTexts(), (QStringList{"0 tab 1", "6 tab 1"}));
    QVERIFY(rectOf(1).contains(position));
}

void tst_ComingAndGoing::goesWhenTheMenuGoesOn()
{
    start();
    QMenu *const menu = m_host->openMenu();
    QVERIFY(m_host->hover(m_host->entry(menu, 0), "start"));
    RealPointer::moveTo(m_host->entry(menu, 1));
    QTRY_VERIFY(m_host->shownKey() != "start");
    QTRY_COMPARE(m_host->shownKey(), QString("stop"));
    RealPointer::type("Down");
    QTRY_VERIFY(!m_host->isShown());
    QVERIFY(menu->isVisible());
}

// The tip is asked for before the menu knows of the pointer.
void tst_ComingAndGoing::staysWithinItsEntry()
{
    start();
    QMenu *const menu = m_host->openMenu();
    menu->setActiveAction(nullptr);
    const QPoint entry = m_host->entry(menu, 0);
    QVERIFY(m_host->host()->show("start", entry, menu));
    const QSignalSpy hovered(menu, &QMenu::hovered);
    QVERIFY(RealPointer::moveTo(entry));
    QTRY_COMPARE(menu->activeAction(), menu->actions().constFirst());
    QTRY_VERIFY(!hovered.isEmpty());
    QVERIFY(RealPointer::moveTo(entry + QPoint(5, 0)));
    QVERIFY(RealPointer::passEvents());
    QVERIFY(m_host->isShown());
    QCOMPARE(m_host->host()->notificationTexts(), QStringList{"0 start"});
    menu->close();
}

void tst_ComingAndGoing::goesWithTheMenu()
{
    start();
    QMenu *const menu = m_host->openMenu();
    QVERIFY(m_host->hover(m_host->entry(menu, 0), "start"));
    menu->close();
    QTRY_VERIFY(!m_host->isShown());
}

// The submenu opens some time after its entry's tip, where that stands.
void tst_ComingAndGoing::staysWhenItsSubmenuOpens()
{
    start();
    QMenu *const menu = m_host->openMenu();
    QVERIFY(m_host->hover(m_host->entry(menu, 3), "more"));
    const QMenu *const submenu = menu->actions().at(3)->menu();
    QTRY_VERIFY(submenu->isVisible());
    QTRY_VERIFY(!m_host->tip()->geometry().intersects(submenu->frameGeometry()));
    QVERIFY(!m_host->tip()->geometry().intersects(menu->frameGeometry()));
    QVERIFY(RealPointer::passEvents());
    QCOMPARE(m_host->host()->notificationTexts(), QStringList{"0 more"});
    QVERIFY(m_host->isShown());
    QVERIFY(m_host->hover(m_host->entry(submenu, 0), "deeper"));
    menu->close();
}

void tst_ComingAndGoing::goesWhenThePointerLeavesThroughItOntoTheDesktop()
{
    start();
    m_host->window->resize(660, 150);
    m_host->window->move(20, 600);
    QTRY_VERIFY(m_host->window->y() > 500);
    QVERIFY(m_host->host()->show("plain", {500, 300}, m_host->plain));
    const QRect tip = m_host->tip()->geometry();
    QVERIFY(RealPointer::jumpTo(tip.center()));
    QTRY_VERIFY(m_host->tip()->underMouse());
    QTRY_VERIFY(!countdown()->isActive());
    // Out of the tip, but near it for now; then away, where nobody tells.
    QVERIFY(RealPointer::jumpTo(tip.topLeft() - QPoint(5, 5)));
    QVERIFY(!QApplication::widgetAt(QCursor::pos()));
    QTRY_VERIFY(!m_host->tip()->underMouse());
    QVERIFY(RealPointer::passEvents());
    QVERIFY(!countdown()->isActive());
    QVERIFY(m_host->isShown());
    withShortCountdown(m_host->host()->context());
    QVERIFY(RealPointer::jumpTo({300, 40}));
    QTRY_VERIFY(!m_host->isShown());
}

// KWin minimises the tips of windows that are not the active one, and brings them back with these.
void tst_ComingAndGoing::goesWhenItIsTakenFromTheScreen()
{
    start();
    QVERIFY(m_host->hover(m_host->plain));
    using Delivery = QWindowSystemInterface::SynchronousDelivery;
    QWindowSystemInterface::handleWindowStateChanged<Delivery>(m_host->tip()->windowHandle(),
                                                               Qt::WindowMinimized);
    QVERIFY(!m_host->isShown());
    QCOMPARE(m_host->host()->notificationTexts(), (QStringList{"0 plain", "6 plain"}));
    QVERIFY(m_host->hover(m_host->other));
    QVERIFY(!m_host->tip()->isMinimized());
}

// Window managers minimise the tip with its window.
void tst_ComingAndGoing::comesAgainAfterItsWindowWasMinimised()
{
    start();
    for (int i = 0; i < 2; ++i) {
        QVERIFY(m_host->hover(m_host->plain));
        // By the window manager, or there is none.
        RealPointer::xdotool({"windowminimize", QString::number(m_host->window->winId())});
        if (!QTest::qWaitFor([this] { return m_host->window->isMinimized(); }, 2000))
            m_host->window->showMinimized();
        QTRY_VERIFY(!m_host->isShown());
        QVERIFY(RealPointer::jumpTo(m_host->nowhere()));
        m_host->window->showNormal();
        m_host->window->activateWindow();
        QVERIFY(RealPointer::waitForWindow(m_host->window));
    }
    QVERIFY(m_host->hover(m_host->plain));
    QVERIFY(RealPointer::passEvents());
    QVERIFY(!m_host->window->isMinimized());
    QCOMPARE(m_host->host()->notificationTexts(),
             (QStringList{"0 plain", "6 plain", "0 plain", "6 plain", "0 plain"}));
}

void tst_ComingAndGoing::followsItsCommandWhenThatIsHoveredAgain_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("window moved", [](ForeignHost &host) { host.window->move(host.window->pos() + QPoint(0, 200)); });
    row("command moved", [](ForeignHost &host) { host.plain->move(20, 230); });
}

void tst_ComingAndGoing::followsItsCommandWhenThatIsHoveredAgain()
{
    QFETCH(Change, change);
    start();
    QVERIFY(m_host->hover(m_host->plain));
    const QPoint command = RealPointer::center(m_host->plain);
    change(*m_host);
    QTRY_VERIFY((RealPointer::center(m_host->plain) - command).manhattanLength() > 100);
    QVERIFY(RealPointer::passEvents());
    const auto isBesideThePointer = [this] {
        return (m_host->tip()->pos() - QCursor::pos() - QPoint(35, 30)).manhattanLength() <= 4;
    };
    QVERIFY(RealPointer::moveTo(RealPointer::center(m_host->plain)));
    QTRY_VERIFY(isBesideThePointer());
    QTRY_COMPARE(RealPointer::placeOf(m_host->tip()), m_host->tip()->pos());
    QCOMPARE(m_host->host()->notificationTexts(), QStringList{"0 plain"});
}

void tst_ComingAndGoing::staysWhileThePointerIsInIt()
{
    start();
    QVERIFY(m_host->hover(m_host->row(2), "row 2"));
    RealPointer::moveTo(RealPointer::center(m_host->tip()));
    QTRY_VERIFY(m_host->tip()->underMouse());
    m_host->window->move(m_host->window->pos() + QPoint(15, 0));
    m_host->tree->verticalScrollBar()->setValue(3);
    QVERIFY(RealPointer::passEvents());
    QVERIFY(!countdown()->isActive());
    QVERIFY(m_host->isShown());
    withShortCountdown(m_host->host()->context());
    RealPointer::moveTo(m_host->nowhere());
    QTRY_VERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::staysWhenTheWindowMovesWithThePointer()
{
    start();
    QVERIFY(m_host->hover(m_host->plain));
    const QPoint place = RealPointer::placeOf(m_host->window) + QPoint(8, 5);
    m_host->window->move(m_host->window->pos() + QPoint(8, 5));
    QTRY_COMPARE(RealPointer::placeOf(m_host->window), place);
    QVERIFY(RealPointer::passEvents());
    QVERIFY(!countdown()->isActive());
    QVERIFY(m_host->isShown());
}

void tst_ComingAndGoing::anotherRowOfTheSameViewIsAnotherCommand()
{
    start(withShortCountdown);
    QVERIFY(m_host->hover(m_host->row(0), "row 0"));
    // The sixth row has no tip.
    RealPointer::moveTo(m_host->row(6));
    QTRY_VERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::typingHidesIt()
{
    start();
    m_host->edit->setFocus();
    QVERIFY(m_host->hover(m_host->plain));
    RealPointer::type("Shift_L");
    QVERIFY(m_host->isShown());
    RealPointer::type("x");
    QTRY_COMPARE(m_host->edit->text(), QString("x"));
    QVERIFY(!m_host->isShown());
    QVERIFY(m_host->hover(m_host->other));
    RealPointer::type("space");
    QTRY_COMPARE(m_host->edit->text(), QString("x "));
    QVERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::shortcutHidesIt_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("of an action") << "ctrl+r";
    QTest::newRow("of two actions") << "ctrl+d";
    QTest::newRow("first of a sequence") << "ctrl+k";
    QTest::newRow("of a menu") << "alt+p";
}

void tst_ComingAndGoing::shortcutHidesIt()
{
    QFETCH(QString, key);
    start();
    QAction repeat, duplicate, destroy, keep;
    repeat.setShortcut(QKeySequence("Ctrl+R"));
    duplicate.setShortcut(QKeySequence("Ctrl+D"));
    destroy.setShortcut(QKeySequence("Ctrl+D"));
    keep.setShortcut(QKeySequence("Ctrl+K, Ctrl+L"));
    m_host->window->addActions({&repeat, &duplicate, &destroy, &keep});
    const QSignalSpy repeated(&repeat, &QAction::triggered);
    const QSignalSpy kept(&keep, &QAction::triggered);
    m_host->window->menuBar()->actions().constFirst()->setText("&Process");
    QVERIFY(m_host->hover(m_host->plain));
    RealPointer::type(key);
    QTRY_VERIFY(!m_host->isShown());
    QTRY_COMPARE(repeated.count(), key == "ctrl+r" ? 1 : 0);
    // A sequence that was begun would take the next test's key.
    if (key == "ctrl+k")
        RealPointer::type("ctrl+l");
    QTRY_COMPARE(kept.count(), key == "ctrl+k" ? 1 : 0);
}

void tst_ComingAndGoing::knowsWhereItIs()
{
    start();
    for (int i = 0; i < 8; ++i) {
        QVERIFY(m_host->hover(i % 2 ? m_host->plain : m_host->other));
        const QPoint place = m_host->tip()->pos();
        QVERIFY((place - QCursor::pos() - QPoint(35, 30)).manhattanLength() <= 4);
        QTRY_COMPARE(RealPointer::placeOf(m_host->tip()), place);
        QVERIFY(m_host->tip()->isSafe(place + QPoint(80, 50)));
        QVERIFY(!m_host->tip()->isSafe({2, 2}));
        // The pointer rests, so whatever is reported of the window must not start the countdown.
        QVERIFY(!countdown()->isActive());
        m_host->tip()->hide();
        RealPointer::moveTo(m_host->nowhere());
    }
}

void tst_ComingAndGoing::resizesOncePerChange()
{
    start();
    QVERIFY(m_host->hover(m_host->plain));
    QVERIFY(QTest::qWaitForWindowExposed(m_host->tip(), RealPointer::patience));
    QObject *const root = qobject_cast<QObject *>(m_host->tip()->view()->rootObject());
    const SizeLog log(m_host->tip());
    for (int height = 101; height <= 130; ++height) {
        root->setProperty("height", height);
        QTRY_COMPARE(m_host->tip()->height(), height + 1);
    }
    root->setProperty("width", 200);
    root->setProperty("height", 90);
    QTRY_COMPARE(m_host->tip()->size(), QSize(201, 91));
    QCOMPARE(log.sizes.count(), 31);
}

void tst_ComingAndGoing::neighboursOfAnotherHeight()
{
    start();
    QVERIFY(m_host->hover(m_host->plain));
    const SizeLog log(m_host->tip());
    m_host->other->setObjectName("tall");
    for (int i = 0; i < 3; ++i) {
        QVERIFY(m_host->hover(m_host->other));
        QCOMPARE(m_host->tip()->size(), QSize(161, 221));
        QVERIFY(m_host->hover(m_host->plain));
        QCOMPARE(m_host->tip()->size(), QSize(161, 101));
    }
    QVERIFY(passAnimation(100));
    QCOMPARE(log.sizes.count(), 6);
}

void tst_ComingAndGoing::standsBesideTheMenu()
{
    start();
    QMenu *const menu = m_host->openMenu();
    QVERIFY(m_host->hover(m_host->entry(menu, 1), "stop"));
    QVERIFY(!m_host->tip()->geometry().intersects(menu->frameGeometry()));
    m_host->picture("menu");
    menu->close();
    // At the right edge of the screen there is room to the left only.
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    menu->popup({screen.right() - 60, 300});
    QVERIFY(m_host->hover(m_host->entry(menu, 2), "drain"));
    QVERIFY(!m_host->tip()->geometry().intersects(menu->frameGeometry()));
    QVERIFY(screen.contains(m_host->tip()->geometry()));
    menu->close();
}

void tst_ComingAndGoing::standsBesideTheListOfTheComboBox()
{
    start();
    m_host->combo->showPopup();
    QAbstractItemView *const list = m_host->combo->view();
    QTRY_VERIFY(list->isVisible());
    const QRect second = list->visualRect(list->model()->index(1, 0));
    QVERIFY(m_host->hover(list->viewport()->mapToGlobal(second.center()), "choice 1"));
    QVERIFY(!m_host->tip()->geometry().intersects(list->window()->frameGeometry()));
    QVERIFY(RealPointer::click(RealPointer::center(m_host->tip()) + QPoint(40, 0)));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 choice 1"));
    QVERIFY(list->isVisible());
    m_host->combo->hidePopup();
    QTRY_VERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::clickIntoTheTipOfAMenuReachesTheTip()
{
    start();
    QMenu *const menu = m_host->openMenu();
    QVERIFY(m_host->hover(m_host->entry(menu, 0), "start"));
    QVERIFY(RealPointer::click(RealPointer::center(m_host->tip()) + QPoint(40, 0)));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 start"));
    QVERIFY(menu->isVisible());
    QVERIFY(m_host->isShown());
    // Any other click closes the menu as ever.
    QVERIFY(RealPointer::click(m_host->nowhere()));
    QTRY_VERIFY(!menu->isVisible());
    QVERIFY(!m_host->isShown());
}

void tst_ComingAndGoing::keptFromAMenu()
{
    start();
    QMenu *const menu = m_host->openMenu();
    QVERIFY(m_host->hover(m_host->entry(menu, 0), "start"));
    const QPointer<VTWidget> kept = m_host->tip();
    QVERIFY(RealPointer::click(RealPointer::center(kept) - QPoint(40, 0)));
    QTRY_VERIFY(m_host->tip() != kept);
    QCOMPARE(kept->parentWidget(), m_host->window);
    // A menu would take the keys that are for the kept tip.
    QTRY_VERIFY(!menu->isVisible());
    QTRY_COMPARE(QApplication::activeWindow(), kept.data());
    QVERIFY(kept->isVisible());
    RealPointer::type("F1");
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("21 start"));
}

void tst_ComingAndGoing::notShownWhenItCannotBeFilled()
{
    start([](VTContext &settings) { settings.set(MessageThreshold, int(VTMessageDebug)); });
    m_host->plain->setObjectName("broken wholly");
    RealPointer::moveTo(RealPointer::center(m_host->plain));
    QTRY_COMPARE(m_host->host()->notificationTexts(), (QStringList{"0 broken wholly", "6 broken wholly"}));
    QVERIFY(!m_host->isShown());
    QVERIFY(!m_host->host()->messages.isEmpty());
    QVERIFY(m_host->host()->messages.constLast().second.startsWith("Error 2:"));
    QVERIFY(m_host->hover(m_host->other));
}

void tst_ComingAndGoing::simpleTipWhenTheFullOneIsBroken()
{
    start();
    m_host->plain->setObjectName("broken");
    QVERIFY(m_host->hover(m_host->plain));
    QCOMPARE(m_host->tip()->size(), QSize(91, 31));
    QVERIFY(m_host->hover(m_host->other));
    QCOMPARE(m_host->tip()->size(), QSize(161, 101));
}

QTEST_MAIN(tst_ComingAndGoing)
#include "tst_comingandgoing.moc"
