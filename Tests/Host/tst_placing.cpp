#include "RealPointer.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <Vidtips/VTCommandLocator.h>
#include <Vidtips/VTPlacement.h>

#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

namespace {

/** A tip that grows after it was shown, as those with a clip do. */
const char userInterface[] = R"(import QtQuick 1.1
    Rectangle {
        width: 240; height: 120; color: "#2060c0"
        Timer { interval: 100; running: true; onTriggered: height = 320 }
    })";

/** A tip that grows when it is pointed at. */
const char unfoldingInterface[] = R"(import QtQuick 1.1
    Rectangle {
        id: root
        width: 240; height: 100; color: "#2060c0"
        MouseArea { anchors.fill: parent; hoverEnabled: true; onPositionChanged: root.height = 480 }
    })";

} // namespace

/** Hovers commands at the edges of the screen with the real pointer, and looks where the tips go. */
class tst_Placing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tipOfACommandAtTheEdge_data();
    void tipOfACommandAtTheEdge();
    void tipThatIsReadGrowsWhereItIs();
    void tipOfAMenuAtTheEdge_data();
    void tipOfAMenuAtTheEdge();

private:
    bool hover(QWidget *widget, const QPoint &position);
    QRect screen() const { return QGuiApplication::primaryScreen()->availableGeometry(); }
    VTWidget *tip() const { return m_session->window(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    VTCommandLocator m_locator;
};

void tst_Placing::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Placing", "tips.xml",
                             R"(<vidtip key="command"/><vidtip key="unfolding" ui="ui/Unfolding.qml"/>)");
    m_packages->write("Placing.vidtips/ui/Unfolding.qml", unfoldingInterface);
    m_packages->write("Placing.vidtips/ui/VidtipsUI.qml", userInterface);
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(AlwaysShowToolTips, true);
    settings.set(HideDuration, 0);
    settings.set(IdleInterval, 0);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    m_session->host->onKeyAt = [this](QObject *object, const QPoint &position, QRect &rect) {
        return m_locator.keyAt(object, position, rect);
    };
    new VTPlacement(m_session->manager());
    QCursor::setPos(screen().center());
}

void tst_Placing::cleanup()
{
    m_session.reset();
    m_packages.reset();
}

// Two steps, because a pointer that jumps straight onto a widget sends it no movement.
bool tst_Placing::hover(QWidget *widget, const QPoint &position)
{
    QCursor::setPos(position - QPoint(2, 1));
    if (!QTest::qWaitFor([=] { return widget->underMouse(); }, RealPointer::patience))
        return false;
    QCursor::setPos(position);
    return QTest::qWaitFor([this] { return tip() && tip()->isVisible() && tip()->height() > 300; },
                           RealPointer::patience);
}

void tst_Placing::tipOfACommandAtTheEdge_data()
{
    QTest::addColumn<Qt::Corner>("corner");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("top left") << Qt::TopLeftCorner << Qt::LeftToRight;
    QTest::newRow("bottom left") << Qt::BottomLeftCorner << Qt::LeftToRight;
    QTest::newRow("top right") << Qt::TopRightCorner << Qt::LeftToRight;
    QTest::newRow("bottom right") << Qt::BottomRightCorner << Qt::LeftToRight;
    QTest::newRow("bottom left, right to left") << Qt::BottomLeftCorner << Qt::RightToLeft;
    QTest::newRow("bottom right, right to left") << Qt::BottomRightCorner << Qt::RightToLeft;
}

void tst_Placing::tipOfACommandAtTheEdge()
{
    QFETCH(Qt::Corner, corner);
    QFETCH(Qt::LayoutDirection, direction);
    QWidget window(nullptr, Qt::FramelessWindowHint);
    QPushButton command("Command", &window);
    command.setObjectName("command");
    window.setLayoutDirection(direction);
    QRect room(QPoint(), QSize(60, 30));
    const QRect area = screen();
    room.moveTopLeft(area.topLeft());
    if (corner == Qt::TopRightCorner || corner == Qt::BottomRightCorner)
        room.moveRight(area.right());
    if (corner == Qt::BottomLeftCorner || corner == Qt::BottomRightCorner)
        room.moveBottom(area.bottom());
    window.setGeometry(room);
    command.resize(room.size());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, RealPointer::patience));
    const QPoint middle = command.mapToGlobal(command.rect().center());
    QVERIFY(hover(&command, middle));
    QTRY_VERIFY(area.contains(tip()->frameGeometry()));
    QVERIFY(!tip()->frameGeometry().intersects(QRect(command.mapToGlobal(QPoint()), command.size())));
    const QPoint inTip = tip()->pos() + QPoint(120, 300);
    QTRY_COMPARE_WITH_TIMEOUT(RealPointer::colorAt(inTip), QColor("#2060c0"), RealPointer::patience);
}

// Off the command there is room for it only where the pointer is not.
void tst_Placing::tipThatIsReadGrowsWhereItIs()
{
    QWidget window;
    QPushButton command("Command", &window);
    command.setObjectName("unfolding");
    command.resize(200, 30);
    window.setGeometry(300, screen().center().y(), 200, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, RealPointer::patience));
    const QPoint middle = command.mapToGlobal(command.rect().center());
    QVERIFY(RealPointer::moveTo(middle));
    QTRY_VERIFY(tip() && tip()->isVisible() && RealPointer::isOnScreen(tip()));
    const QRect before = tip()->geometry();
    const QPoint reader = before.topLeft() + QPoint(120, 60);
    QVERIFY(RealPointer::moveTo(reader));
    QTRY_COMPARE(tip()->height(), 481);
    QTRY_VERIFY(screen().contains(tip()->geometry()));
    QCOMPARE(tip()->x(), before.x());
    QVERIFY(tip()->geometry().contains(reader));
    QTRY_COMPARE(RealPointer::placeOf(tip()), tip()->pos());
}

void tst_Placing::tipOfAMenuAtTheEdge_data()
{
    QTest::addColumn<bool>("atTheRight");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<bool>("isOnTheRight");
    QTest::newRow("at the left") << false << Qt::LeftToRight << true;
    QTest::newRow("at the right") << true << Qt::LeftToRight << false;
    QTest::newRow("right to left, at the left") << false << Qt::RightToLeft << true;
    QTest::newRow("right to left, at the right") << true << Qt::RightToLeft << false;
}

void tst_Placing::tipOfAMenuAtTheEdge()
{
    QFETCH(bool, atTheRight);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(bool, isOnTheRight);
    // Something to leave, so that the pointer enters the menu.
    QWidget window;
    window.setGeometry(400, 300, 100, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, RealPointer::patience));
    QMenu menu;
    menu.setLayoutDirection(direction);
    menu.addAction("An entry without a name");
    QAction *const entry = menu.addAction("The command");
    entry->setObjectName("command");
    const QRect area = screen();
    menu.popup(QPoint(atTheRight ? area.right() - menu.sizeHint().width() : area.left(), area.bottom() - 80));
    QVERIFY(QTest::qWaitForWindowExposed(&menu, RealPointer::patience));
    QVERIFY(hover(&menu, menu.mapToGlobal(menu.actionGeometry(entry).center())));
    QTRY_VERIFY(area.contains(tip()->frameGeometry()));
    QVERIFY(!tip()->frameGeometry().intersects(menu.geometry()));
    QCOMPARE(tip()->x() > menu.x(), isOnTheRight);
    menu.close();
}

QTEST_MAIN(tst_Placing)
#include "tst_placing.moc"
