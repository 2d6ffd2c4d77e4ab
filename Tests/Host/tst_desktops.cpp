#include "ForeignHost.h"
#include "RealPointer.h"

#include <QtTest/QTest>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

/** Virtual desktops, which there are under window managers only. */
class tst_Desktops : public QObject
{
    Q_OBJECT

private slots:
    void tipOfAWindowOnAnotherDesktop();
};

void tst_Desktops::tipOfAWindowOnAnotherDesktop()
{
    QVERIFY(RealPointer::jumpTo({1240, 760}));
    QVERIFY(RealPointer::xdotool({"set_num_desktops", "2"}));
    ForeignHost host;
    QVERIFY(host.window->isActiveWindow());
    QVERIFY(host.hover(host.plain));
    const QString window = QString::number(host.window->winId());
    QVERIFY(RealPointer::xdotool({"set_desktop_for_window", window, "1"}));
    QVERIFY(RealPointer::xdotool({"set_desktop", "1"}));
    host.window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(host.window));
    QVERIFY(host.hover(host.other));
    const QPoint inTip = host.tip()->mapToGlobal(QPoint(80, 90));
    QTRY_COMPARE_WITH_TIMEOUT(RealPointer::colorAt(inTip), QColor("#2060c0"), RealPointer::patience);
}

QTEST_MAIN(tst_Desktops)
#include "tst_desktops.moc"
