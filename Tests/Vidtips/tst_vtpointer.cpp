#include "PlatformName.h"

#include <Vidtips/VTPointer_p.h>

#include <QtGui/QCursor>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

using namespace Vidtips;

class tst_VTPointer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void isAlwaysKnown();
    void isKnownInEnteredWindowsOnly();
    void hiddenWindowIsNotEntered();
    void isKnownWhileAPopupIsOpen();

private:
    QScopedPointer<QWidget> window;
    QWidget *child = nullptr;
};

void tst_VTPointer::init()
{
    window.reset(new QWidget);
    window->setGeometry(100, 100, 200, 100);
    child = new QWidget(window.data());
    child->setGeometry(0, 0, 50, 50);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.data()));
}

void tst_VTPointer::isAlwaysKnown()
{
    QCursor::setPos(110, 120);
    QCOMPARE(VTPointer::now().position, QPoint(110, 120));
    QCOMPARE(VTPointer::now().widget, child);
    QCursor::setPos(250, 150);
    QCOMPARE(VTPointer::now().widget, window.data());
    QCursor::setPos(10, 20);
    QCOMPARE(VTPointer::now().position, QPoint(10, 20));
    QVERIFY(!VTPointer::now().widget);
}

// Where the pointer was last is no place to keep a tip for.
void tst_VTPointer::isKnownInEnteredWindowsOnly()
{
    const PlatformName name("wayland");
    QCursor::setPos(110, 120);
    window->setAttribute(Qt::WA_UnderMouse, false);
    QVERIFY(!VTPointer::now().widget);
    const QRect screens(-10000, -10000, 20000, 20000);
    QVERIFY(!screens.contains(VTPointer::now().position));
    window->setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(VTPointer::now().position, QPoint(110, 120));
    QCOMPARE(VTPointer::now().widget, child);
    QCursor::setPos(250, 150);
    window->setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(VTPointer::now().widget, window.data());
}

void tst_VTPointer::hiddenWindowIsNotEntered()
{
    const PlatformName name("wayland");
    QCursor::setPos(110, 120);
    window->hide();
    window->setAttribute(Qt::WA_UnderMouse);
    QVERIFY(!VTPointer::now().widget);
}

void tst_VTPointer::isKnownWhileAPopupIsOpen()
{
    const PlatformName name("wayland");
    QWidget popup(nullptr, Qt::Popup);
    popup.setGeometry(400, 100, 50, 50);
    popup.show();
    QCursor::setPos(110, 120);
    window->setAttribute(Qt::WA_UnderMouse, false);
    QCOMPARE(VTPointer::now().position, QPoint(110, 120));
    QCOMPARE(VTPointer::now().widget, child);
    QCursor::setPos(420, 120);
    QCOMPARE(VTPointer::now().widget, &popup);
}

QTEST_MAIN(tst_VTPointer)
#include "tst_vtpointer.moc"
