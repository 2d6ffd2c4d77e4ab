#include <Vidtips/VTSurroundings_p.h>

#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

class tst_VTSurroundings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void withoutAnObject();
    void commandIsTheWidget();
    void commandIsItsPart();
    void objectThatIsNoWidget();
    void directionOfTheWidget();
    void pointerOnNoScreen_data();
    void pointerOnNoScreen();
    void menuThatIsOpen();
    void menusOfOthers();

private:
    QWidget window;
    QPushButton *button = nullptr;
};

void tst_VTSurroundings::init()
{
    delete button;
    button = new QPushButton(&window);
    button->setGeometry(10, 20, 80, 30);
    window.setGeometry(100, 100, 300, 200);
    window.show();
}

void tst_VTSurroundings::withoutAnObject()
{
    const auto around = surroundingsOf(nullptr, QRect(), QPoint(50, 60), QSize(35, 30));
    QCOMPARE(around.pointer, QPoint(50, 60));
    QCOMPARE(around.offset, QSize(35, 30));
    QVERIFY(around.command.isNull());
    QVERIFY(around.popups.isNull());
    QCOMPARE(around.screen, QGuiApplication::primaryScreen()->availableGeometry());
    QCOMPARE(around.direction, Qt::LeftToRight);
}

void tst_VTSurroundings::commandIsTheWidget()
{
    const auto around = surroundingsOf(button, QRect(), QPoint(120, 130), QSize());
    QCOMPARE(around.command, QRect(110, 120, 80, 30));
}

void tst_VTSurroundings::commandIsItsPart()
{
    const auto around = surroundingsOf(button, QRect(115, 125, 10, 10), QPoint(120, 130), QSize());
    QCOMPARE(around.command, QRect(115, 125, 10, 10));
}

void tst_VTSurroundings::objectThatIsNoWidget()
{
    const QObject object;
    QVERIFY(surroundingsOf(&object, QRect(), QPoint(120, 130), QSize()).command.isNull());
}

void tst_VTSurroundings::directionOfTheWidget()
{
    button->setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(surroundingsOf(button, QRect(), {}, QSize()).direction, Qt::RightToLeft);
    QCOMPARE(surroundingsOf(&window, QRect(), {}, QSize()).direction, Qt::LeftToRight);
}

void tst_VTSurroundings::pointerOnNoScreen_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::newRow("left") << QPoint(-5000, 10);
    QTest::newRow("above") << QPoint(10, -5000);
    QTest::newRow("below on the right") << QPoint(90000, 90000);
}

void tst_VTSurroundings::pointerOnNoScreen()
{
    QFETCH(QPoint, pointer);
    QVERIFY(!QGuiApplication::screenAt(pointer));
    const auto around = surroundingsOf(nullptr, QRect(), pointer, QSize());
    QCOMPARE(around.screen, QGuiApplication::primaryScreen()->availableGeometry());
    QCOMPARE(around.pointer, pointer);
}

// A menu is no command, and has the room of all that is open beside it.
void tst_VTSurroundings::menuThatIsOpen()
{
    QMenu menu;
    menu.addAction("Cut");
    QMenu *const more = menu.addMenu("More");
    more->addAction("Paste");
    menu.popup(QPoint(200, 200));
    more->popup(QPoint(400, 200));
    const QRect both = menu.frameGeometry() | more->frameGeometry();
    const auto around = surroundingsOf(&menu, QRect(), QPoint(205, 205), QSize());
    QCOMPARE(around.popups, both);
    QVERIFY(around.command.isNull());
    // Also where only the pointer is in one of them.
    QCOMPARE(surroundingsOf(nullptr, QRect(), QPoint(405, 205), QSize()).popups, both);
}

void tst_VTSurroundings::menusOfOthers()
{
    QMenu menu;
    menu.addAction("Cut");
    menu.popup(QPoint(200, 200));
    QVERIFY(surroundingsOf(button, QRect(), QPoint(110, 120), QSize()).popups.isNull());
    menu.hide();
    QVERIFY(surroundingsOf(&menu, QRect(), QPoint(205, 205), QSize()).popups.isNull());
}

QTEST_MAIN(tst_VTSurroundings)
#include "tst_vtsurroundings.moc"
