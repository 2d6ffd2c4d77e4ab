#include "RealPointer.h"
#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QPropertyAnimation>
#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>

using namespace Vidtips;

namespace {

const QColor tipColor("#2060c0");
constexpr int tipWidth = 160;
constexpr int tipHeight = 100;

/** A tip with a pin in its left half and a panel in the desktop's colours at its bottom. */
const char userInterface[] = R"(
    Rectangle { anchors.fill: parent; color: vidtip.attribute("color") || "#2060c0" }
    VTStyledRectangle { y: 70; width: parent.width; height: 30; toolTipStyle: true }
    MouseArea { width: 80; height: 60; onClicked: vidTipView.reserved = true }
)";

/** A tip that is one clip, over and over: who looks late sees every picture yet. */
const char clipInterface[] = R"(
    VTVideoComponent {
        width: 160; height: 120; source: "colours.mp4"; loop: true
        onLoadProgressChanged: if (loadProgress > 0) play()
    }
)";

/** A tip that grows a while after it was shown, every time. */
const char growingInterface[] = R"(
    Connections { target: vidTipView; onStayOpenChanged: { root.height = 40; grow.restart() } }
    Timer { id: grow; interval: 150; running: true; onTriggered: root.height = 80 }
)";

/** Longer than any test, so that no countdown ends and the tests need not wait for it. */
void withLongCountdown(VTContext &settings)
{
    settings.set(IdleInterval, 60000);
}

} // namespace

/** Hovers the commands of a real window with the real pointer and looks at the screen. */
class tst_Hover : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void restingShowsTheTip();
    void tipStandsBesideThePointer();
    void growingTipStaysWhereItIs();
    void fadesInAndOut();
    void hidesWhenThePointerIsAway();
    void staysWhileThePointerIsNear();
    void countdownOfOneTipDoesNotHideTheNext();
    void countdownOnTheWayToTheNextTipEndsThere();
    void movingToAnotherCommandReplacesTheTip();
    void clickOutsideHides();
    void clickInsideKeeps();
    void pinnedTipIsAWindowOfItsOwn();
    void pinnedTipMovesIntoTheHostsWindow();
    void clipPlays();
    void styledRectangleHasTheToolTipColour();
    void otherObjectsKeepTheirPlainToolTips();

private:
    void startSession(const std::function<void(VTContext &)> &configure = {});
    QPushButton *addCommand(const QString &key, const QPoint &position);
    void pointAt(const QWidget *widget);
    bool pointsOutTip(const QWidget *widget);
    bool hover(const QWidget *widget);
    void leaveTip();
    bool isCountingDown() const;
    void click(const QPoint &globalPosition);
    QColor screenPixel(const QPoint &globalPosition) const;
    QColor tipPixel(int x, int y) const;
    VTWidget *tip() const { return m_session->window(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<QWidget> m_window;
    QPushButton *m_first = nullptr;
    QPushButton *m_second = nullptr;
};

void tst_Hover::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Hover", "tips.xml",
                             R"(<vidtip key="first" title="First"/>
                                <vidtip key="second" title="Second" color="#c02060"/>
                                <vidtip key="growing" ui="ui/Growing.qml"/>
                                <vidtip key="clip" title="Clip" ui="ui/Clip.qml"/>)");
    const QByteArray imports = "import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\n";
    m_packages->write("Hover.vidtips/ui/VidtipsUI.qml",
                      imports + "Item { width: 160; height: 100\n" + userInterface + "}\n");
    m_packages->write("Hover.vidtips/ui/Clip.qml",
                      imports + "Item { width: 160; height: 120\n" + clipInterface + "}\n");
    m_packages->write("Hover.vidtips/ui/Growing.qml",
                      imports + "Item { id: root; width: 100; height: 40\n" + growingInterface + "}\n");
    m_window = std::make_unique<QWidget>();
    m_window->setWindowTitle("Host");
    m_window->setGeometry(100, 100, 700, 400);
    m_first = addCommand("first", {40, 40});
    m_second = addCommand("second", {40, 340});
    QCursor::setPos(900, 700);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_window.get()));
}

void tst_Hover::cleanup()
{
    m_session.reset();
    m_window.reset();
    m_packages.reset();
}

void tst_Hover::startSession(const std::function<void(VTContext &)> &configure)
{
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(HideDuration, 0);
    settings.set(IdleInterval, 300);
    if (configure)
        configure(settings);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
}

QPushButton *tst_Hover::addCommand(const QString &key, const QPoint &position)
{
    auto *button = new QPushButton(key, m_window.get());
    button->setObjectName(key);
    button->setGeometry(QRect(position, QSize(120, 30)));
    return button;
}

// Two steps, because a pointer that jumps straight onto a widget sends it no movement.
void tst_Hover::pointAt(const QWidget *widget)
{
    const QPoint center = widget->mapToGlobal(widget->rect().center());
    QCursor::setPos(center - QPoint(3, 3));
    QVERIFY(QTest::qWaitFor([=] { return widget->underMouse(); }, RealPointer::patience));
    QCursor::setPos(center);
}

/** Points at a command of the active host, and tells whether its tip came. */
bool tst_Hover::pointsOutTip(const QWidget *widget)
{
    if (!m_window->isActiveWindow())
        m_window->activateWindow();
    if (!RealPointer::waitForWindow(m_window.get()))
        return false;
    const RealPointer::ToolTipRequests requests;
    pointAt(widget);
    return QTest::qWaitFor(
        [&] {
            return requests.haveReached(RealPointer::center(widget)) && tip()
                && RealPointer::isOnScreen(tip()) && m_session->content()
                && m_session->content()->attribute("key") == widget->objectName();
        },
        RealPointer::patience / 2);
}

// A window manager may take the activation from the host once more when that has it, and the tip goes with
// it; a user points again.
bool tst_Hover::hover(const QWidget *widget)
{
    return pointsOutTip(widget) || pointsOutTip(widget) || pointsOutTip(widget);
}

// Onto the desktop: where the pointer rests on the host without a tip, the tip on screen goes.
void tst_Hover::leaveTip()
{
    QCursor::setPos(1200, 760);
}

/** Tells whether the tip is going to hide unless the pointer comes back. */
bool tst_Hover::isCountingDown() const
{
    return tip()->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly)->isActive();
}

void tst_Hover::click(const QPoint &globalPosition)
{
    QCursor::setPos(globalPosition);
    QWidget *target = nullptr;
    QTRY_VERIFY((target = QApplication::widgetAt(globalPosition)));
    QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFromGlobal(globalPosition));
}

QColor tst_Hover::screenPixel(const QPoint &globalPosition) const
{
    const QPixmap shot =
        QGuiApplication::primaryScreen()->grabWindow(0, globalPosition.x(), globalPosition.y(), 1, 1);
    return shot.toImage().pixelColor(0, 0);
}

QColor tst_Hover::tipPixel(int x, int y) const
{
    return screenPixel(tip()->mapToGlobal(QPoint(x, y)));
}

void tst_Hover::restingShowsTheTip()
{
    startSession();
    QVERIFY(hover(m_first));
    QCOMPARE(m_session->host->notificationTexts(), QStringList{"0 first"});
    QTRY_COMPARE(tipPixel(20, 20), tipColor);
    QCOMPARE(tip()->size(), QSize(tipWidth + 1, tipHeight + 1));
    QVERIFY(!tip()->isActiveWindow());
}

void tst_Hover::tipStandsBesideThePointer()
{
    startSession([](VTContext &settings) { settings.set(TooltipOffset, QSize(12, 34)); });
    QVERIFY(hover(m_first));
    QCOMPARE(tip()->pos(), QCursor::pos() + QPoint(12, 34));
}

// Some window managers report a new window's place as the corner of the screen while it is on its way, and a
// resize that believed them would take it there.
void tst_Hover::growingTipStaysWhereItIs()
{
    startSession([](VTContext &settings) { settings.set(IdleInterval, 0); });
    QPushButton *const command = addCommand("growing", {300, 40});
    command->show();
    for (int i = 0; i < 6; ++i) {
        const QPoint pointer = command->mapToGlobal(command->rect().center());
        QCursor::setPos(pointer);
        QVERIFY(m_session->host->show("growing", pointer, command));
        const QPoint place = pointer + QPoint(35, 30);
        m_session->view()->setStayOpen(false);
        QTRY_COMPARE(tip()->height(), 81);
        QPoint onScreen;
        QTRY_COMPARE((onScreen = RealPointer::placeOf(tip())), place);
        QCOMPARE(tip()->pos(), place);
        tip()->hide();
        QCursor::setPos(900, 700);
        QTRY_VERIFY(!tip()->isVisible());
    }
}

void tst_Hover::fadesInAndOut()
{
    startSession([](VTContext &settings) {
        settings.set(ShowDuration, 60000);
        settings.set(HideDuration, 1500);
        settings.set(IdleInterval, 200);
    });
    QVERIFY(hover(m_first));
    const QPoint inside = tip()->mapToGlobal(QPoint(20, 20));
    QTRY_VERIFY(tip()->windowOpacity() > 0.1 && tip()->windowOpacity() < 1.0);
    // It may have taken any time to find the tip on the screen.
    auto *const fade = tip()->findChild<QPropertyAnimation *>();
    fade->setCurrentTime(fade->duration() - 100);
    QTRY_COMPARE(tip()->windowOpacity(), 1.0);
    QTRY_COMPARE(screenPixel(inside), tipColor);
    leaveTip();
    QTRY_VERIFY(tip()->windowOpacity() < 1.0 || !tip()->isVisible());
    // With a compositing manager the window is seen through on its way out.
    QTRY_VERIFY(screenPixel(inside) != tipColor);
    QTRY_VERIFY(!tip()->isVisible());
    QTRY_COMPARE(screenPixel(inside), m_window->palette().color(QPalette::Window));
}

void tst_Hover::hidesWhenThePointerIsAway()
{
    startSession();
    QVERIFY(hover(m_first));
    leaveTip();
    QTRY_VERIFY(!tip()->isVisible());
    QCOMPARE(m_session->host->notificationTexts(), (QStringList{"0 first", "6 first"}));
}

void tst_Hover::staysWhileThePointerIsNear()
{
    startSession(withLongCountdown);
    QVERIFY(hover(m_first));
    leaveTip();
    QTRY_VERIFY(isCountingDown());
    QCursor::setPos(tip()->frameGeometry().bottomRight() + QPoint(15, 15));
    QTRY_VERIFY(!isCountingDown());
    QVERIFY(tip()->isVisible());
}

void tst_Hover::countdownOfOneTipDoesNotHideTheNext()
{
    startSession([](VTContext &settings) {
        withLongCountdown(settings);
        settings.set(HideDuration, 1000);
    });
    QVERIFY(hover(m_first));
    QCursor::setPos(m_window->mapToGlobal(QPoint(650, 300)));
    tip()->hideAnimated();
    QTRY_VERIFY(tip()->windowOpacity() < 1.0 || !tip()->isVisible());
    // Away from the tip while it fades.
    leaveTip();
    QTRY_VERIFY(!tip()->isVisible());
    QVERIFY(hover(m_second));
    QTRY_VERIFY(!isCountingDown());
    QVERIFY(tip()->isVisible());
}

void tst_Hover::countdownOnTheWayToTheNextTipEndsThere()
{
    startSession(withLongCountdown);
    QVERIFY(hover(m_first));
    leaveTip();
    QTRY_VERIFY(isCountingDown());
    QVERIFY(hover(m_second));
    QTRY_VERIFY(!isCountingDown());
    QVERIFY(tip()->isVisible());
}

void tst_Hover::movingToAnotherCommandReplacesTheTip()
{
    startSession([](VTContext &settings) { settings.set(IdleInterval, 5000); });
    QVERIFY(hover(m_first));
    QVERIFY(hover(m_second));
    QTRY_COMPARE(tipPixel(20, 20), QColor("#c02060"));
    QVERIFY(m_session->host->notificationTexts().endsWith("0 second"));
}

void tst_Hover::clickOutsideHides()
{
    startSession([](VTContext &settings) { settings.set(IdleInterval, 0); });
    QVERIFY(hover(m_first));
    QSignalSpy clicked(m_second, &QPushButton::clicked);
    click(m_second->mapToGlobal(m_second->rect().center()));
    QVERIFY(!tip()->isVisible());
    QCOMPARE(clicked.count(), 1);
}

void tst_Hover::clickInsideKeeps()
{
    startSession([](VTContext &settings) { settings.set(IdleInterval, 0); });
    QVERIFY(hover(m_first));
    click(tip()->mapToGlobal(QPoint(120, 20)));
    QVERIFY(tip()->isVisible());
}

void tst_Hover::pinnedTipIsAWindowOfItsOwn()
{
    startSession();
    QVERIFY(hover(m_first));
    const QPointer<VTWidget> pinned = tip();
    click(pinned->mapToGlobal(QPoint(20, 20)));
    QVERIFY(pinned != tip());
    QTRY_VERIFY(pinned->isVisible());
    QVERIFY(pinned->windowFlags() & Qt::WindowCloseButtonHint);
    leaveTip();
    QTRY_COMPARE(screenPixel(pinned->mapToGlobal(QPoint(100, 20))), tipColor);
    // It gets the focus, some time after it is on the screen, and only an active window has tips.
    QVERIFY(RealPointer::waitForWindow(pinned));
    QVERIFY(hover(m_second));
    QVERIFY(pinned->isVisible());
    pinned->close();
    QTRY_VERIFY(!pinned);
}

void tst_Hover::pinnedTipMovesIntoTheHostsWindow()
{
    startSession();
    auto *container = new QWidget(m_window.get(), Qt::Tool);
    m_session->host->onCreateWindow = [container] { return container; };
    QVERIFY(hover(m_first));
    const QPointer<VTWidget> pinned = tip();
    click(pinned->mapToGlobal(QPoint(20, 20)));
    QVERIFY(QTest::qWaitForWindowExposed(container, RealPointer::patience));
    QCOMPARE(container->windowTitle(), QString("First"));
    QVERIFY(container->isAncestorOf(pinned));
    QTRY_COMPARE(screenPixel(pinned->mapToGlobal(QPoint(100, 20))), tipColor);
}

void tst_Hover::clipPlays()
{
    const QString clip =
        TestClips::make("colours.mp4",
                        {"-f", "lavfi", "-i", "color=red:size=160x120:rate=10:duration=1", "-f", "lavfi",
                         "-i", "color=blue:size=160x120:rate=10:duration=1", "-filter_complex",
                         "[0][1]concat", "-pix_fmt", "yuv420p", "-c:v", "libx264"});
    QVERIFY(!clip.isEmpty());
    m_packages->write("Hover.vidtips/Resources/colours.mp4", TestClips::read(clip));
    startSession([](VTContext &settings) { settings.set(IdleInterval, 0); });
    addCommand("clip", {300, 40})->show();
    QVERIFY(hover(m_window->findChild<QPushButton *>("clip")));
    QTRY_VERIFY(tipPixel(80, 60).red() > 200);
    QTRY_VERIFY(tipPixel(80, 60).blue() > 200);
}

void tst_Hover::styledRectangleHasTheToolTipColour()
{
    QPalette palette = QToolTip::palette();
    palette.setColor(QPalette::ToolTipBase, QColor("#ffe0a0"));
    QToolTip::setPalette(palette);
    startSession();
    QVERIFY(hover(m_first));
    QTRY_COMPARE(tipPixel(80, 85), QColor("#ffe0a0"));
}

void tst_Hover::otherObjectsKeepTheirPlainToolTips()
{
    startSession();
    m_first->setObjectName("unknown");
    m_first->setToolTip("plain");
    pointAt(m_first);
    QTRY_COMPARE(QToolTip::text(), QString("plain"));
    QVERIFY(!tip()->isVisible());
    QToolTip::hideText();
}

QTEST_MAIN(tst_Hover)
#include "tst_hover.moc"
