#include "NestedPointer.h"
#include "OuterScreen.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

namespace {

const QColor backdrop("#204020");
const QColor framedColor("#604020");
const QColor tipColor("#2060c0");
const QSize screenSize(1280, 800);

/** A tip with a pin in its left half and a button in its right, as high as its content or its page says. */
const char userInterface[] = R"(
import QtQuick 1.1
Rectangle {
    id: root
    property QtObject tip: vidtip
    property int page: 1
    width: 160
    height: page * 100
    color: "#2060c0"
    MouseArea { width: 80; height: 80; onClicked: vidTipView.reserved = true }
    MouseArea { x: 80; width: 80; height: 80; onClicked: vidTipView.notification(20, "clicked") }
}
)";

/** Keeps what the library and the platform say, as each word of theirs would reach a user's terminal. */
QStringList *said = nullptr;

void listen(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (said)
        said->append(message);
    fprintf(stderr, "%s\n", qPrintable(message));
}

using Change = std::function<void(QWidget *)>;

/** Counts how often the wheel is turned over a widget. */
class WheelLog : public QObject
{
public:
    explicit WheelLog(QWidget *watched)
        : QObject(watched)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        turns += event->type() == QEvent::Wheel;
        return false;
    }

    int turns = 0;
};

} // namespace

Q_DECLARE_METATYPE(Change)

/** Tips in a Wayland session, under a real pointer: what is on the screen counts, not what Qt believes. */
class tst_Wayland : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void besideTheCommand_data();
    void besideTheCommand();
    void besideTheCommandOfAWindowWithAFrame();
    void followsThePointerToTheNextCommand();
    void growsInPlace();
    void growsBackOntoTheScreen();
    void leavesTheActivationAndTakesClicks();
    void takesTheWheel();
    void goesWhenThePointerLeaves();
    void goesAtOnce_data();
    void goesAtOnce();
    void keptTipIsAWindow();
    void languageSwitch();
    void besideTheMenu();
    void nothingToStandOn();

private:
    QPushButton *addCommand(const QString &name, const QPoint &center);
    QPoint openFramed();
    static QPoint shiftOf(const QWidget *window, const QPoint &corner);
    bool hover(const QWidget *command);
    bool showsTip(const QRect &on = {}) const;
    QRect tipOnScreen() const { return OuterScreen::find(tipColor); }
    VTWidget *tip() const { return m_session->window(); }
    TestHost *host() const { return m_session->host; }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<QWidget> m_framed;
    NestedPointer m_pointer;
    QLineEdit *m_edit = nullptr;
    QStringList m_said;
};

void tst_Wayland::init()
{
    said = &m_said;
    qInstallMessageHandler(listen);
    m_packages = std::make_unique<TestPackages>();
    QByteArray tips;
    for (const QByteArray &key :
         QByteArrayList{"middle", "other", "left", "right", "top", "bottom", "corner", "start", "stop"})
        tips += "<vidtip key=\"" + key + "\" title=\"" + key + "\"/>\n";
    m_packages->writeControl("Plant", "tips.xml", tips);
    m_packages->write("Plant.vidtips/ui/VidtipsUI.qml", userInterface);
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(IdleInterval, 60000);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    QVERIFY(RealPointer::jumpTo({5, 400}));
    m_window = std::make_unique<QWidget>();
    m_window->setWindowTitle("Plant");
    QPalette palette = m_window->palette();
    palette.setColor(QPalette::Window, backdrop);
    m_window->setPalette(palette);
    m_edit = new QLineEdit(m_window.get());
    m_edit->setGeometry(200, 600, 120, 30);
    addCommand("middle", {640, 400});
    addCommand("other", {300, 500});
    m_window->showFullScreen();
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isActiveWindow(), RealPointer::patience);
    QTRY_COMPARE_WITH_TIMEOUT(OuterScreen::find(backdrop), QRect(QPoint(0, 0), screenSize),
                              RealPointer::patience);
    m_edit->setFocus();
    // Of what follows nothing may be told.
    m_said.clear();
}

void tst_Wayland::cleanup()
{
    m_session.reset();
    m_framed.reset();
    m_window.reset();
    m_packages.reset();
    said = nullptr;
    qInstallMessageHandler(nullptr);
    m_said.clear();
}

QPushButton *tst_Wayland::addCommand(const QString &name, const QPoint &center)
{
    auto *const button = new QPushButton(name, m_window.get());
    button->setObjectName(name);
    button->resize(60, 24);
    button->move(center - button->rect().center());
    button->show();
    return button;
}

bool tst_Wayland::showsTip(const QRect &on) const
{
    const QRect there = tipOnScreen();
    return !there.isNull() && (on.isNull() || there == on);
}

bool tst_Wayland::hover(const QWidget *command)
{
    const QString key = command->objectName();
    const QPoint center = RealPointer::center(command);
    // The pointer comes in two steps, and for the second one the tip would come again.
    const RealPointer::ToolTipRequests requests;
    const auto hasCome = [&] {
        return requests.haveReached(center) && tip() && tip()->isVisible()
            && m_session->content()->attribute("key") == key && showsTip();
    };
    return m_pointer.moveTo(center) && QTest::qWaitFor(hasCome, RealPointer::patience);
}

void tst_Wayland::besideTheCommand_data()
{
    QTest::addColumn<QPoint>("center");
    QTest::newRow("middle") << QPoint(640, 300);
    QTest::newRow("left") << QPoint(32, 300);
    QTest::newRow("right") << QPoint(1247, 300);
    QTest::newRow("top") << QPoint(500, 14);
    QTest::newRow("bottom") << QPoint(500, 787);
    QTest::newRow("corner") << QPoint(1247, 787);
}

void tst_Wayland::besideTheCommand()
{
    QFETCH(QPoint, center);
    const QPushButton *const command = addCommand(QTest::currentDataTag(), center);
    QVERIFY(hover(command));
    const QRect there = tipOnScreen();
    QCOMPARE(there.size(), QSize(160, 100));
    QVERIFY(!there.intersects(command->geometry()));
    // Near it, too.
    QVERIFY(there.intersects(command->geometry().adjusted(-40, -40, 40, 40)));
    QCOMPARE(tip()->geometry().topLeft(), there.topLeft());
    QVERIFY2(m_said.isEmpty(), qPrintable(m_said.join('\n')));
    OuterScreen::picture(QString("wayland beside ") + QTest::currentDataTag());
}

// Returns the corner of what is inside the frame, on the screen.
QPoint tst_Wayland::openFramed()
{
    m_framed = std::make_unique<QWidget>();
    QPalette palette = m_framed->palette();
    palette.setColor(QPalette::Window, framedColor);
    m_framed->setPalette(palette);
    auto *const command = new QPushButton("other", m_framed.get());
    command->setObjectName("other");
    command->setGeometry(30, 30, 80, 24);
    // A compositor that tiles leaves alone what has but one size.
    m_framed->setFixedSize(500, 400);
    m_framed->show();
    const auto isThere = [&] {
        return m_framed->isActiveWindow() && OuterScreen::find(framedColor).size() == m_framed->size();
    };
    if (!QTest::qWaitFor(isThere, RealPointer::patience))
        qWarning("the window with a frame did not come up");
    return OuterScreen::find(framedColor).topLeft();
}

// Where a window lies on the screen is the compositor's alone to know.
QPoint tst_Wayland::shiftOf(const QWidget *window, const QPoint &corner)
{
    return corner - window->mapToGlobal(QPoint(0, 0));
}

void tst_Wayland::besideTheCommandOfAWindowWithAFrame()
{
    const QPoint corner = openFramed();
    const QPoint pointer = corner + QPoint(70, 42);
    QVERIFY(m_pointer.moveTo(pointer, shiftOf(m_framed.get(), corner)));
    QTRY_VERIFY_WITH_TIMEOUT(showsTip(), RealPointer::patience);
    // The pointer came in two steps, and either may have been the one that the tip was asked for at.
    QVERIFY((tipOnScreen().topLeft() - pointer - QPoint(35, 30)).manhattanLength() <= 4);
    OuterScreen::picture("wayland frame");
}

void tst_Wayland::followsThePointerToTheNextCommand()
{
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    const QPoint first = tipOnScreen().topLeft();
    const QPoint way = QPoint(300, 500) - QPoint(640, 400);
    const QStringList told = host()->notificationTexts();
    QVERIFY(hover(m_window->findChild<QPushButton *>("other")));
    QTRY_VERIFY_WITH_TIMEOUT((tipOnScreen().topLeft() - first - way).manhattanLength() <= 4,
                             RealPointer::patience);
    // Coming up elsewhere is no end of the tip.
    QVERIFY(!host()->notificationTexts().contains("6 middle"));
}

void tst_Wayland::growsInPlace()
{
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    const QRect before = tipOnScreen();
    qobject_cast<QObject *>(tip()->view()->rootObject())->setProperty("page", 2);
    QTRY_COMPARE_WITH_TIMEOUT(tipOnScreen(), QRect(before.topLeft(), QSize(160, 200)), RealPointer::patience);
    OuterScreen::picture("wayland grown");
}

void tst_Wayland::growsBackOntoTheScreen()
{
    const QPushButton *const command = addCommand("bottom", {500, 650});
    QVERIFY(hover(command));
    QVERIFY(tipOnScreen().top() > command->geometry().bottom());
    const QStringList told = host()->notificationTexts();
    qobject_cast<QObject *>(tip()->view()->rootObject())->setProperty("page", 3);
    QTRY_COMPARE_WITH_TIMEOUT(tipOnScreen().size(), QSize(160, 300), RealPointer::patience);
    QVERIFY(!tipOnScreen().contains(RealPointer::center(command)));
    QCOMPARE(host()->notificationTexts(), told);
    OuterScreen::picture("wayland grown at the edge");
}

void tst_Wayland::leavesTheActivationAndTakesClicks()
{
    QSignalSpy focusChanges(qApp, &QApplication::focusChanged);
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    QVERIFY(m_pointer.click(tipOnScreen().topLeft() + QPoint(120, 40)));
    QTRY_VERIFY_WITH_TIMEOUT(host()->notificationTexts().contains("20 middle"), RealPointer::patience);
    QVERIFY(tip()->isVisible());
    QVERIFY(m_window->isActiveWindow());
    QCOMPARE(QApplication::focusWidget(), m_edit);
    QCOMPARE(focusChanges.count(), 0);
    QVERIFY(RealPointer::type("y"));
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->text(), QString("y"), RealPointer::patience);
}

void tst_Wayland::takesTheWheel()
{
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    const QPoint inTip = tipOnScreen().center();
    WheelLog wheel(tip()->view()->viewport());
    QVERIFY(m_pointer.click(inTip, 5));
    QTRY_COMPARE_WITH_TIMEOUT(wheel.turns, 1, RealPointer::patience);
    QVERIFY(tip()->isVisible());
}

// A pointer over the desktop is nobody's business but the compositor's.
void tst_Wayland::goesWhenThePointerLeaves()
{
    m_window->hide();
    const QPoint corner = openFramed();
    QVERIFY(m_pointer.moveTo(corner + QPoint(70, 42), shiftOf(m_framed.get(), corner)));
    QTRY_VERIFY_WITH_TIMEOUT(showsTip(), RealPointer::patience);
    const QRect window = OuterScreen::find(framedColor).adjusted(-60, -60, 60, 60);
    const QPoint outside(window.left() > 0 ? window.left() : window.right(), window.center().y());
    QVERIFY(QRect(QPoint(0, 0), screenSize).contains(outside));
    host()->context().set(IdleInterval, 100);
    QVERIFY(m_pointer.moveUntil(outside, [&] { return !m_framed->underMouse(); }));
    QTRY_VERIFY_WITH_TIMEOUT(!tip()->isVisible(), RealPointer::patience);
    QTRY_VERIFY_WITH_TIMEOUT(!showsTip(), RealPointer::patience);
}

void tst_Wayland::goesAtOnce_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("command deleted", [](QWidget *window) { delete window->findChild<QPushButton *>("middle"); });
    row("window hidden", [](QWidget *window) { window->hide(); });
    row("window closed", [](QWidget *window) { window->close(); });
    row("window minimised", [](QWidget *window) { window->showMinimized(); });
    row("key", [](QWidget *) { RealPointer::type("Escape"); });
}

void tst_Wayland::goesAtOnce()
{
    QFETCH(Change, change);
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    change(m_window.get());
    QTRY_VERIFY_WITH_TIMEOUT(!tip()->isVisible(), RealPointer::patience);
    QTRY_VERIFY_WITH_TIMEOUT(!showsTip(), RealPointer::patience);
    QCOMPARE(host()->notificationTexts(), (QStringList{"0 middle", "6 middle"}));
}

void tst_Wayland::keptTipIsAWindow()
{
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    const QPointer<VTWidget> kept = tip();
    qobject_cast<QObject *>(kept->view()->rootObject())->setProperty("page", 2);
    QTRY_COMPARE_WITH_TIMEOUT(tipOnScreen().height(), 200, RealPointer::patience);
    QVERIFY(m_pointer.click(tipOnScreen().topLeft() + QPoint(40, 40)));
    QTRY_VERIFY_WITH_TIMEOUT(tip() != kept, RealPointer::patience);
    QTRY_VERIFY_WITH_TIMEOUT(kept->isActiveWindow(), RealPointer::patience);
    QCOMPARE(kept->windowTitle(), QString("middle"));
    QCOMPARE(kept->windowHandle()->transientParent(), m_window->windowHandle());
    // The page that it had been turned to.
    QTRY_COMPARE_WITH_TIMEOUT(tipOnScreen().size(), QSize(160, 200), RealPointer::patience);
    OuterScreen::picture("wayland kept");
    // A bar with a title is above it, by which it is moved.
    const QPoint before = tipOnScreen().topLeft();
    QVERIFY(m_pointer.moveTo(before + QPoint(40, 40), shiftOf(kept, before)));
    QVERIFY(m_pointer.moveUntil(before + QPoint(40, -10), [&] { return !kept->underMouse(); }));
    QVERIFY(RealPointer::xdotool({"mousedown", "1"}));
    // As far as the pointer.
    const auto hasMoved = [&] { return tipOnScreen().topLeft() - before == QPoint(100, 80); };
    QVERIFY(m_pointer.moveUntil(before + QPoint(140, 70), hasMoved));
    QVERIFY(RealPointer::xdotool({"mouseup", "1"}));
    host()->notifications.clear();
    const QPoint after = tipOnScreen().topLeft();
    QVERIFY(m_pointer.click(after + QPoint(120, 40), 1, shiftOf(kept, after)));
    QTRY_VERIFY_WITH_TIMEOUT(host()->notificationTexts().contains("20 middle"), RealPointer::patience);
    kept->close();
    QTRY_VERIFY_WITH_TIMEOUT(!showsTip() && m_window->isActiveWindow(), RealPointer::patience);
    QVERIFY(hover(m_window->findChild<QPushButton *>("other")));
}

void tst_Wayland::languageSwitch()
{
    QVERIFY(hover(m_window->findChild<QPushButton *>("middle")));
    const QRect before = tipOnScreen();
    const VTXmlElement *const old = m_session->content();
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(tip(), &change);
    QTRY_VERIFY_WITH_TIMEOUT(m_session->content() && m_session->content() != old, RealPointer::patience);
    QTRY_COMPARE_WITH_TIMEOUT(tipOnScreen(), before, RealPointer::patience);
    QVERIFY(tip()->isVisible());
}

void tst_Wayland::besideTheMenu()
{
    host()->onKeyAt = [](QObject *object, const QPoint &position, QRect &) {
        auto *const menu = qobject_cast<QMenu *>(object);
        const QAction *const entry = menu ? menu->actionAt(menu->mapFromGlobal(position)) : nullptr;
        return entry ? entry->objectName() : QString();
    };
    QMenuBar bar(m_window.get());
    QMenu *const menu = bar.addMenu("Process");
    for (const QString &name : QStringList{"start", "stop"})
        menu->addAction("Make the plant " + name + " now")->setObjectName(name);
    bar.setGeometry(300, 300, 200, 30);
    bar.show();
    QVERIFY(m_pointer.click(bar.mapToGlobal(bar.actionGeometry(menu->menuAction()).center())));
    QTRY_VERIFY_WITH_TIMEOUT(menu->isVisible(), RealPointer::patience);
    const QPoint entry = menu->actionGeometry(menu->actions().constLast()).center();
    QVERIFY(m_pointer.moveTo(menu->mapToGlobal(entry)));
    QTRY_VERIFY_WITH_TIMEOUT(showsTip(), RealPointer::patience);
    QVERIFY(!tipOnScreen().intersects(menu->geometry()));
    OuterScreen::picture("wayland menu");
    QVERIFY(m_pointer.click(tipOnScreen().topLeft() + QPoint(120, 40)));
    QTRY_VERIFY_WITH_TIMEOUT(host()->notificationTexts().contains("20 stop"), RealPointer::patience);
    QVERIFY(menu->isVisible());
    QVERIFY(m_pointer.click({1000, 600}));
    QTRY_VERIFY_WITH_TIMEOUT(!menu->isVisible() && !showsTip(), RealPointer::patience);
}

void tst_Wayland::nothingToStandOn()
{
    m_window->hide();
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeWindow(), RealPointer::patience);
    for (int i = 0; i < 2; ++i)
        QVERIFY(host()->show("middle", {200, 200}, nullptr));
    QVERIFY(!tip()->isVisible());
    QCOMPARE(host()->notificationTexts(), (QStringList{"0 middle", "6 middle", "0 middle", "6 middle"}));
    const auto isAboutWindows = [](const QPair<int, QString> &message) {
        return message.first == VTMessageWarning && message.second.contains("stand on a window");
    };
    QCOMPARE(std::count_if(host()->messages.begin(), host()->messages.end(), isAboutWindows), 1);
    QVERIFY(!showsTip());
}

QTEST_MAIN(tst_Wayland)
#include "tst_wayland.moc"
