#include "PlatformName.h"

#include <Vidtips/VTWindowKind_p.h>

#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

using namespace Vidtips;

namespace {

const QString wayland = QStringLiteral("wayland");

} // namespace

class tst_VTWindowKind : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isPopup_data();
    void isPopup();
    void flags_data();
    void flags();
    void ownerCarriesWhateverStandsByItself();
    void footing_data();
    void footing();
    void windowUnderThePointerIsTheLastResort();
    void place_data();
    void place();
    void isWellPlaced_data();
    void isWellPlaced();

private:
    QScopedPointer<QWidget> window;
    QScopedPointer<QWidget> tip;
};

void tst_VTWindowKind::init()
{
    window.reset(new QWidget);
    window->setGeometry(100, 100, 400, 300);
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.data()));
    tip.reset(new QWidget(nullptr, Qt::ToolTip));
}

void tst_VTWindowKind::cleanup()
{
    tip.reset();
    window.reset();
}

void tst_VTWindowKind::isPopup_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<bool>("expected");
    QTest::newRow("wayland") << wayland << true;
    QTest::newRow("a kind of wayland") << "wayland-egl" << true;
    QTest::newRow("xcb") << "xcb" << false;
    QTest::newRow("none") << QString() << false;
}

void tst_VTWindowKind::isPopup()
{
    QFETCH(QString, platform);
    const PlatformName name(platform);
    QTEST(VTWindowKind::isPopup(), "expected");
}

void tst_VTWindowKind::flags_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<bool>("isToolWindow");
    QTest::addColumn<bool>("isTool");
    QTest::newRow("window") << "xcb" << false << true;
    QTest::newRow("tool window") << "xcb" << true << true;
    QTest::newRow("popup") << wayland << false << false;
    QTest::newRow("popup, though a tool window was asked for") << wayland << true << false;
}

void tst_VTWindowKind::flags()
{
    QFETCH(QString, platform);
    QFETCH(bool, isToolWindow);
    QFETCH(bool, isTool);
    const PlatformName name(platform);
    QWidget widget;
    VTWindowKind::setFlags(&widget, isToolWindow);
    QCOMPARE(widget.windowType(), isTool ? Qt::Tool : Qt::ToolTip);
    QCOMPARE(widget.windowFlags().testFlag(Qt::FramelessWindowHint), isTool);
    QCOMPARE(widget.windowFlags().testFlag(Qt::WindowStaysOnTopHint), isTool);
}

void tst_VTWindowKind::ownerCarriesWhateverStandsByItself()
{
    const QWidget hidden;
    QCOMPARE(VTWindowKind::footing(const_cast<QWidget *>(&hidden), tip.data()), &hidden);
    QVERIFY(!VTWindowKind::footing(nullptr, tip.data()));
}

void tst_VTWindowKind::footing_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<bool>("carries");
    QTest::newRow("window") << int(Qt::Window) << true << true;
    QTest::newRow("dialog") << int(Qt::Dialog) << true << true;
    QTest::newRow("tool window") << int(Qt::Tool) << true << true;
    QTest::newRow("menu") << int(Qt::Popup) << true << false;
    QTest::newRow("another tip") << int(Qt::ToolTip) << true << false;
    QTest::newRow("hidden window") << int(Qt::Window) << false << false;
}

void tst_VTWindowKind::footing()
{
    QFETCH(int, type);
    QFETCH(bool, isShown);
    QFETCH(bool, carries);
    const PlatformName name(wayland);
    QWidget owner(nullptr, Qt::WindowType(type));
    owner.setVisible(isShown);
    QApplication::setActiveWindow(window.data());
    QCOMPARE(VTWindowKind::footing(&owner, tip.data()), carries ? &owner : window.data());
}

void tst_VTWindowKind::windowUnderThePointerIsTheLastResort()
{
    const PlatformName name(wayland);
    QCOMPARE(VTWindowKind::footing(nullptr, tip.data()), window.data());
    QWidget tool(nullptr, Qt::Tool);
    tool.show();
    QApplication::setActiveWindow(&tool);
    // A tip that has been kept is an active window, and cannot stand on itself.
    QVERIFY(!VTWindowKind::footing(&tool, &tool));
    tool.setAttribute(Qt::WA_UnderMouse);
    QVERIFY(!VTWindowKind::footing(nullptr, &tool));
    window->setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(VTWindowKind::footing(nullptr, &tool), window.data());
    QApplication::setActiveWindow(nullptr);
    window->setAttribute(Qt::WA_UnderMouse, false);
    QCOMPARE(VTWindowKind::footing(nullptr, tip.data()), &tool);
}

void tst_VTWindowKind::place_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QRect>("popups");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("beside the pointer") << QPoint(200, 150) << QRect() << QSize(80, 40) << QPoint(220, 170);
    QTest::newRow("kept inside") << QPoint(450, 150) << QRect() << QSize(80, 40) << QPoint(420, 170);
    QTest::newRow("wider than the window")
        << QPoint(200, 150) << QRect() << QSize(500, 40) << QPoint(220, 170);
    QTest::newRow("higher than the window")
        << QPoint(200, 150) << QRect() << QSize(80, 400) << QPoint(220, 170);
    QTest::newRow("no room beside the menu")
        << QPoint(200, 150) << QRect(90, 100, 420, 320) << QSize(80, 40) << QPoint(514, 150);
}

void tst_VTWindowKind::place()
{
    QFETCH(QPoint, pointer);
    QFETCH(QRect, popups);
    QFETCH(QSize, size);
    VTPlacement::Surroundings around;
    around.pointer = pointer;
    around.offset = QSize(20, 20);
    around.popups = popups;
    QTEST(VTWindowKind::place(size, window.data(), around), "expected");
}

void tst_VTWindowKind::isWellPlaced_data()
{
    QTest::addColumn<QRect>("popup");
    QTest::addColumn<QRect>("popups");
    QTest::addColumn<bool>("expected");
    const QRect menu(300, 200, 50, 100);
    QTest::newRow("in the window") << QRect(210, 160, 80, 40) << QRect() << true;
    QTest::newRow("all of the window but the pointer") << QRect(201, 100, 299, 300) << QRect() << true;
    QTest::newRow("over the pointer") << QRect(200, 150, 80, 40) << QRect() << false;
    QTest::newRow("to the right of the window") << QRect(450, 160, 80, 40) << QRect() << false;
    QTest::newRow("below the window") << QRect(210, 380, 80, 40) << QRect() << false;
    QTest::newRow("over the menu") << QRect(310, 220, 80, 40) << menu << false;
    QTest::newRow("over the pointer that is elsewhere than the menu")
        << QRect(195, 145, 80, 40) << menu << true;
}

void tst_VTWindowKind::isWellPlaced()
{
    QFETCH(QRect, popup);
    QFETCH(QRect, popups);
    VTPlacement::Surroundings around;
    around.pointer = QPoint(200, 150);
    around.popups = popups;
    QTEST(VTWindowKind::isWellPlaced(popup, window.data(), around), "expected");
}

QTEST_MAIN(tst_VTWindowKind)
#include "tst_vtwindowkind.moc"
