#include "NestedPointer.h"
#include "OuterScreen.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

namespace {

const QColor backdrop("#204020");
const QColor rimColor("#c02060");
const QColor tipColor("#2060c0");
const QSize tipSize(200, 80);

/** A tip with a rim of one pixel and a text, which a click keeps. */
const char userInterface[] = R"(
import QtQuick 1.1
Rectangle {
    property QtObject tip: vidtip
    width: 200
    height: 80
    color: "#c02060"
    Rectangle { x: 1; y: 1; width: parent.width - 2; height: parent.height - 2; color: "#2060c0" }
    Text { x: 20; y: 20; text: "Pump"; color: "white"; font.pixelSize: 17 }
    MouseArea { anchors.fill: parent; onClicked: vidTipView.reserved = true }
}
)";

/** Tells whether a picture is one of half its size whose pixels were each made four. */
bool isDoubled(const QImage &picture)
{
    for (int y = 0; y + 1 < picture.height(); y += 2) {
        for (int x = 0; x + 1 < picture.width(); x += 2) {
            const QRgb first = picture.pixel(x, y);
            if (first != picture.pixel(x + 1, y) || first != picture.pixel(x, y + 1)
                || first != picture.pixel(x + 1, y + 1))
                return false;
        }
    }
    return true;
}

} // namespace

/**
 * Tips in a Wayland session with two screens side by side, of scale 1 and 2, measured in pixels of the outer
 * server.
 */
class tst_WaylandScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void standsOnTheScreenOfThePointer_data();
    void standsOnTheScreenOfThePointer();
    void keptTipIsDraggedAcross();

private:
    void openWindow(int number);
    bool showTipOn(int number);
    bool isSharpOn(int number) const;
    static bool reachesLeftTo(int x) { return OuterScreen::find(rimColor).left() == x; }
    bool drag(const QPoint &from, const QPoint &to, const std::function<bool()> &hasArrived);
    VTWidget *tip() const { return m_session->window(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<QWidget> m_window;
    NestedPointer m_pointer;
    /** Where the screens are in the outer server's. */
    const QVector<QRect> m_places{{0, 0, 640, 800}, {640, 0, 640, 800}};
};

void tst_WaylandScreens::initTestCase()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    QCOMPARE(screens.size(), 2);
    QCOMPARE(screens[0]->devicePixelRatio(), 1.0);
    QCOMPARE(screens[1]->devicePixelRatio(), 2.0);
    QCOMPARE(screens[1]->geometry(), QRect(640, 0, 320, 400));
}

void tst_WaylandScreens::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Plant", "tips.xml", "<vidtip key=\"pump\" title=\"Pump\"/>\n");
    m_packages->write("Plant.vidtips/ui/VidtipsUI.qml", userInterface);
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(IdleInterval, 60000);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    QVERIFY(RealPointer::jumpTo({5, 780}));
}

void tst_WaylandScreens::cleanup()
{
    m_session.reset();
    m_window.reset();
    m_packages.reset();
}

/** Opens a window that fills that screen, with a command in it. */
void tst_WaylandScreens::openWindow(int number)
{
    m_window = std::make_unique<QWidget>();
    QPalette palette = m_window->palette();
    palette.setColor(QPalette::Window, backdrop);
    m_window->setPalette(palette);
    m_window->setGeometry(QGuiApplication::screens()[number]->geometry());
    auto *const command = new QPushButton("pump", m_window.get());
    command->setObjectName("pump");
    command->setGeometry(130, 100, 60, 24);
    m_window->showFullScreen();
}

bool tst_WaylandScreens::showTipOn(int number)
{
    openWindow(number);
    const auto isThere = [&] {
        return m_window->isActiveWindow() && OuterScreen::find(backdrop) == m_places[number];
    };
    if (!QTest::qWaitFor(isThere, RealPointer::patience))
        return false;
    const QPushButton *const command = m_window->findChild<QPushButton *>();
    const QPoint inside =
        command->geometry().center() * QGuiApplication::screens()[number]->devicePixelRatio();
    return m_pointer.moveUntil(m_places[number].topLeft() + inside, [&] { return command->underMouse(); })
        && QTest::qWaitFor([&] { return isSharpOn(number); }, RealPointer::patience);
}

/** Tells whether the tip is wholly on that screen, each of its pixels painted for a pixel there. */
bool tst_WaylandScreens::isSharpOn(int number) const
{
    const int scale = qRound(QGuiApplication::screens()[number]->devicePixelRatio());
    const QRect rim = OuterScreen::find(rimColor);
    const QRect inside(rim.topLeft() + QPoint(scale, scale), (tipSize - QSize(2, 2)) * scale);
    return m_places[number].contains(rim) && rim.size() == tipSize * scale
        && OuterScreen::find(tipColor) == inside && !isDoubled(OuterScreen::grab().copy(inside));
}

bool tst_WaylandScreens::drag(const QPoint &from, const QPoint &to, const std::function<bool()> &hasArrived)
{
    return RealPointer::moveTo(from) && RealPointer::xdotool({"mousedown", "1"})
        && m_pointer.moveUntil(to, hasArrived) && RealPointer::xdotool({"mouseup", "1"});
}

void tst_WaylandScreens::standsOnTheScreenOfThePointer_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("scale 1") << 0;
    QTest::newRow("scale 2") << 1;
}

void tst_WaylandScreens::standsOnTheScreenOfThePointer()
{
    QFETCH(int, number);
    QVERIFY(showTipOn(number));
    QCOMPARE(tip()->windowHandle()->screen(), QGuiApplication::screens()[number]);
    OuterScreen::picture(QString("wayland screens ") + QTest::currentDataTag());
}

void tst_WaylandScreens::keptTipIsDraggedAcross()
{
    QVERIFY(showTipOn(0));
    const QPointer<VTWidget> kept = tip();
    QVERIFY(m_pointer.moveUntil(OuterScreen::find(tipColor).center(), [&] { return kept->underMouse(); }));
    QVERIFY(RealPointer::xdotool({"click", "1"}));
    QTRY_VERIFY_WITH_TIMEOUT(tip() != kept && kept->isActiveWindow(), RealPointer::patience);
    QTRY_VERIFY_WITH_TIMEOUT(isSharpOn(0), RealPointer::patience);
    // While a button is down weston holds the pointer on one screen: the tip is dragged to the edge by its
    // title bar, and from there by what is on the other screen already.
    const QPoint bar = OuterScreen::find(rimColor).topLeft() + QPoint(10, -10);
    QVERIFY(drag(bar, {639, 150}, [] { return reachesLeftTo(629); }));
    OuterScreen::picture("wayland screens between");
    QVERIFY(drag({680, 300}, {900, 300}, [&] { return isSharpOn(1); }));
    QCOMPARE(kept->view()->size(), tipSize);
    QCOMPARE(kept->windowHandle()->screen(), QGuiApplication::screens()[1]);
    OuterScreen::picture("wayland screens dragged to 2");
    const QPoint otherBar = OuterScreen::find(rimColor).topLeft() + QPoint(200, -20);
    QVERIFY(drag(otherBar, {644, 300}, [] { return reachesLeftTo(542); }));
    QVERIFY(drag({600, 150}, {300, 150}, [&] { return isSharpOn(0); }));
    QCOMPARE(kept->view()->size(), tipSize);
    QCOMPARE(kept->windowHandle()->screen(), QGuiApplication::screens()[0]);
    OuterScreen::picture("wayland screens dragged back");
}

QTEST_MAIN(tst_WaylandScreens)
#include "tst_waylandscreens.moc"
