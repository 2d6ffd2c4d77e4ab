#include "TestHost.h"
#include "TestPackage.h"

#include <Vidtips/VTPlacement.h>

#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <qpa/qplatformscreen.h>
#include <qpa/qwindowsysteminterface.h>

using namespace Vidtips;

Q_DECLARE_METATYPE(Vidtips::VTPlacement::Surroundings)

namespace {

using Surroundings = VTPlacement::Surroundings;

const QRect screen(0, 0, 1000, 800);
const QSize offset(20, 24);

Surroundings at(const QPoint &pointer)
{
    Surroundings around;
    around.pointer = pointer;
    around.offset = offset;
    around.screen = screen;
    return around;
}

Surroundings over(const QRect &command, const QPoint &pointer)
{
    Surroundings around = at(pointer);
    around.command = command;
    return around;
}

Surroundings inMenu(const QRect &menu, const QRect &entry)
{
    Surroundings around = over(entry, entry.center());
    around.popups = menu;
    return around;
}

Surroundings rightToLeft(Surroundings around)
{
    around.direction = Qt::RightToLeft;
    return around;
}

/** A second screen, to the right of the first and lower than that. */
class SecondScreen : public QPlatformScreen
{
public:
    explicit SecondScreen(const QRect &geometry)
        : m_geometry(geometry)
    {
    }
    QRect geometry() const override { return m_geometry; }
    int depth() const override { return 32; }
    QImage::Format format() const override { return QImage::Format_RGB32; }

private:
    const QRect m_geometry;
};

} // namespace

class tst_VTPlacement : public QObject
{
    Q_OBJECT

private slots:
    void placing_data();
    void placing();

    void init();
    void cleanup();
    void offUnlessMade();
    void tipIsMovedBeforeItIsShown();
    void growingTipStaysOnTheScreen();
    void nextTipIsPlacedAnew();
    void tipKeepsOffTheWidget();
    void tipKeepsOffThePart();
    void directionOfTheCommand();
    void tipOfAMenuStandsBesideIt();
    void tipStaysOnTheScreenOfTheCommand();
    void positionOffEveryScreen();
    void keptTipIsLeftAlone();
    void deletedPlacementPlacesNothing();
    void goesWithTheManager();

private:
    QRect available() const { return QGuiApplication::primaryScreen()->availableGeometry(); }
    QRect tip() const { return m_session->window()->frameGeometry(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    QPointer<VTPlacement> m_placement;
};

void tst_VTPlacement::placing_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<Surroundings>("around");
    QTest::addColumn<QPoint>("place");

    const QSize size(300, 400);
    QTest::newRow("fits") << size << at({100, 100}) << QPoint(120, 124);
    QTest::newRow("reaches below") << size << at({100, 500}) << QPoint(120, 400);
    QTest::newRow("reaches to the right") << size << at({880, 100}) << QPoint(700, 124);
    QTest::newRow("corner: above the pointer") << size << at({900, 700}) << QPoint(700, 284);
    QTest::newRow("corner without room above: to the left")
        << QSize(300, 700) << at({900, 690}) << QPoint(584, 100);
    QTest::newRow("no room around the pointer: above it")
        << QSize(800, 400) << at({500, 700}) << QPoint(200, 284);
    QTest::newRow("larger than the screen: its beginning")
        << QSize(300, 900) << at({10, 10}) << QPoint(30, 0);
    QTest::newRow("wider than the screen: its left") << QSize(1200, 100) << at({500, 100}) << QPoint(0, 124);

    QTest::newRow("right to left") << size << rightToLeft(at({600, 100})) << QPoint(281, 124);
    QTest::newRow("right to left: reaches to the left")
        << size << rightToLeft(at({100, 100})) << QPoint(0, 124);
    QTest::newRow("right to left: wider than the screen: its right")
        << QSize(1200, 100) << rightToLeft(at({500, 100})) << QPoint(-200, 124);
    QTest::newRow("right to left: corner without room above: to the right")
        << QSize(300, 700) << rightToLeft(at({100, 690})) << QPoint(117, 100);

    const QRect row(0, 690, 900, 20);
    QTest::newRow("a row at the bottom: above it") << size << over(row, {100, 700}) << QPoint(120, 286);
    QTest::newRow("a row at the top: below it")
        << QSize(300, 100) << over({0, 0, 900, 20}, {100, 10}) << QPoint(120, 34);
    const QRect column(780, 0, 20, 800);
    QTest::newRow("a column at the right: to its left")
        << size << over(column, {790, 300}) << QPoint(476, 324);
    QTest::newRow("larger than the offset: beside the pointer")
        << size << over({0, 0, 900, 600}, {100, 100}) << QPoint(120, 124);

    const QRect menu(200, 100, 150, 300);
    const QRect entry(200, 200, 150, 20);
    QTest::newRow("menu: to its right") << size << inMenu(menu, entry) << QPoint(354, 200);
    QTest::newRow("menu at the bottom")
        << size << inMenu({200, 450, 150, 300}, {200, 700, 150, 20}) << QPoint(354, 400);
    QTest::newRow("menu at the right: to its left")
        << size << inMenu({800, 100, 150, 300}, {800, 200, 150, 20}) << QPoint(496, 200);
    QTest::newRow("menu, right to left: to its left")
        << QSize(150, 100) << rightToLeft(inMenu(menu, entry)) << QPoint(46, 200);
    QTest::newRow("menu, right to left, at the left: to its right")
        << size << rightToLeft(inMenu(menu, entry)) << QPoint(354, 200);
    QTest::newRow("wide list: below it")
        << size << inMenu({100, 50, 800, 200}, {100, 100, 800, 20}) << QPoint(519, 254);
    QTest::newRow("wide list at the bottom: above it")
        << size << inMenu({100, 550, 800, 200}, {100, 600, 800, 20}) << QPoint(519, 146);
    QTest::newRow("list as large as the screen: off the entry")
        << size << inMenu(screen, {0, 700, 1000, 20}) << QPoint(519, 296);
}

void tst_VTPlacement::placing()
{
    QFETCH(QSize, size);
    QFETCH(Surroundings, around);
    QFETCH(QPoint, place);
    QCOMPARE(VTPlacement::placed(size, around), QRect(place, size));
}

void tst_VTPlacement::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Basic", "tips.xml", R"(<vidtip key="cut" height="100"/>
                                                     <vidtip key="copy" height="300"/>)");
    m_packages->write("Basic.vidtips/ui/VidtipsUI.qml", R"(import QtQuick 1.0
        Item {
            property int more: 0
            width: 200; height: vidtip ? Number(vidtip.attribute("height")) + more : 0
            Connections { target: vidTipView; onStayOpenChanged: more += 50 }
        })");
    VTContext settings;
    settings.set(IdleInterval, 0);
    settings.set(TooltipOffset, offset);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    m_placement = new VTPlacement(m_session->manager());
}

void tst_VTPlacement::cleanup()
{
    m_session.reset();
    QVERIFY(!m_placement);
}

void tst_VTPlacement::offUnlessMade()
{
    delete m_placement;
    const QPoint corner = available().bottomRight();
    QVERIFY(m_session->host->show("cut", corner, nullptr));
    QCOMPARE(m_session->window()->pos(), corner + QPoint(20, 24));
}

void tst_VTPlacement::tipIsMovedBeforeItIsShown()
{
    class ShowPlace : public QObject
    {
    public:
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            // The window below Qt's widget is what the user sees.
            if (event->type() == QEvent::Expose)
                places.append(static_cast<QWindow *>(watched)->position());
            return false;
        }
        QList<QPoint> places;
    };
    ShowPlace watch;
    m_session->host->show("cut", QPoint(100, 100), nullptr);
    m_session->window()->hide();
    m_session->window()->windowHandle()->installEventFilter(&watch);
    QVERIFY(m_session->host->show("copy", available().bottomRight(), nullptr));
    QTRY_VERIFY(!watch.places.isEmpty());
    for (const QPoint &place : qAsConst(watch.places))
        QVERIFY(available().contains(QRect(place, QSize(200, 300))));
}

void tst_VTPlacement::growingTipStaysOnTheScreen()
{
    const QPoint pointer(100, available().bottom() - 180);
    QVERIFY(m_session->host->show("cut", pointer, nullptr));
    QCOMPARE(tip().topLeft(), pointer + QPoint(20, 24));
    for (int i = 0; i < 4; ++i)
        m_session->view()->setStayOpen(true);
    QTRY_VERIFY(tip().height() > 300);
    QVERIFY(available().contains(tip()));
}

void tst_VTPlacement::nextTipIsPlacedAnew()
{
    QVERIFY(m_session->host->show("copy", available().bottomRight(), nullptr));
    QVERIFY(available().contains(tip()));
    QVERIFY(m_session->host->show("cut", QPoint(50, 60), nullptr));
    QTRY_COMPARE(tip().topLeft(), QPoint(70, 84));
}

void tst_VTPlacement::tipKeepsOffTheWidget()
{
    QWidget command;
    command.setGeometry(50, available().bottom() - 30, 500, 20);
    command.show();
    QVERIFY(m_session->host->show("copy", command.geometry().center(), &command));
    QTRY_VERIFY(tip().height() >= 300);
    QVERIFY(!tip().intersects(command.geometry()));
    QVERIFY(available().contains(tip()));
}

void tst_VTPlacement::tipKeepsOffThePart()
{
    QWidget view;
    view.setGeometry(available());
    view.show();
    const QRect row(0, available().bottom() - 30, 700, 20);
    QVERIFY(m_session->host->show("copy", QPoint(100, row.center().y()), &view, row));
    QTRY_VERIFY(tip().height() >= 300);
    QVERIFY(tip().bottom() < row.top());
}

void tst_VTPlacement::directionOfTheCommand()
{
    QWidget command;
    command.setLayoutDirection(Qt::RightToLeft);
    command.setGeometry(400, 50, 30, 20);
    command.show();
    QVERIFY(m_session->host->show("cut", command.geometry().center(), &command));
    QCOMPARE(tip().right(), command.geometry().center().x() - 20);
}

void tst_VTPlacement::tipOfAMenuStandsBesideIt()
{
    QMenu menu;
    QMenu *const more = menu.addMenu("More commands");
    QAction *const entry = more->addAction("Cut");
    menu.popup(QPoint(20, 20));
    more->popup(menu.geometry().topRight());
    QVERIFY(QTest::qWaitForWindowExposed(more));
    const QRect rect(more->mapToGlobal(more->actionGeometry(entry).topLeft()),
                     more->actionGeometry(entry).size());
    QVERIFY(m_session->host->show("cut", rect.center(), more, rect));
    QVERIFY(!tip().intersects(menu.geometry()));
    QVERIFY(!tip().intersects(more->geometry()));
    QCOMPARE(tip().top(), rect.top());
    menu.close();
}

void tst_VTPlacement::tipStaysOnTheScreenOfTheCommand()
{
    const QRect first = QGuiApplication::primaryScreen()->geometry();
    const QRect second(first.right() + 1, 200, 640, 480);
    auto *const platformScreen = new SecondScreen(second);
    QWindowSystemInterface::handleScreenAdded(platformScreen);
    QVERIFY(m_session->host->show("copy", second.topLeft() + QPoint(5, 460), nullptr));
    const QRect onSecond = tip();
    QVERIFY(m_session->host->show("cut", QPoint(first.right() - 5, 100), nullptr));
    QTRY_VERIFY(tip().height() < 150);
    const QRect onFirst = tip();
    m_session->window()->hide();
    QWindowSystemInterface::handleScreenRemoved(platformScreen);
    QVERIFY(second.contains(onSecond));
    QVERIFY(first.contains(onFirst));
}

void tst_VTPlacement::positionOffEveryScreen()
{
    QVERIFY(m_session->host->show("cut", QPoint(-500, 100000), nullptr));
    QVERIFY(available().contains(tip()));
}

void tst_VTPlacement::keptTipIsLeftAlone()
{
    QVERIFY(m_session->host->show("cut", QPoint(50, 60), nullptr));
    const QPointer<VTWidget> kept = m_session->window();
    kept->view()->setReserved(true);
    const QPoint outside = available().bottomRight() - QPoint(10, 10);
    kept->move(outside);
    kept->view()->setStayOpen(true);
    QTRY_VERIFY(kept->height() > 120);
    // Where the user put it, but for the frame.
    QVERIFY((kept->pos() - outside).manhattanLength() < 20);
    delete kept;
}

void tst_VTPlacement::deletedPlacementPlacesNothing()
{
    QVERIFY(m_session->host->show("cut", available().bottomRight(), nullptr));
    const QPoint place = tip().topLeft();
    delete m_placement;
    m_session->view()->setStayOpen(true);
    QTRY_VERIFY(tip().height() > 120);
    QCOMPARE(tip().topLeft(), place);
}

void tst_VTPlacement::goesWithTheManager()
{
    const VTPlacement none(nullptr);
    delete m_session->host;
    QVERIFY(!m_placement);
}

QTEST_MAIN(tst_VTPlacement)
#include "tst_vtplacement.moc"
