#include <Vidtips/VTPopupMouse_p.h>

#include <QtGui/QMouseEvent>
#include <QtTest/QTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

class tst_VTPopupMouse : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void clickGoesToWhatIsInTheTip();
    void clickThatBeganInTheTipEndsThere();
    void leavesTheRestAlone_data();
    void leavesTheRestAlone();
    void withoutAPopup();

private:
    bool send(QEvent::Type type, const QPoint &position, Qt::MouseButtons held);

    QScopedPointer<QWidget> tip;
    QScopedPointer<QMenu> menu;
    QPushButton *button = nullptr;
    int clicks = 0;
    VTPopupMouse mouse;
};

void tst_VTPopupMouse::init()
{
    tip.reset(new QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint));
    button = new QPushButton(tip.data());
    button->setGeometry(10, 10, 60, 40);
    clicks = 0;
    connect(button, &QPushButton::clicked, this, [this] { ++clicks; });
    tip->setGeometry(300, 100, 100, 80);
    tip->show();
    menu.reset(new QMenu);
    menu->addAction("Entry");
    menu->popup({100, 100});
    QTRY_VERIFY(QApplication::activePopupWidget() == menu.data());
}

void tst_VTPopupMouse::cleanup()
{
    menu.reset();
    tip.reset();
}

bool tst_VTPopupMouse::send(QEvent::Type type, const QPoint &position, Qt::MouseButtons held)
{
    QMouseEvent event(type, menu->mapFromGlobal(position), position, Qt::LeftButton, held, {});
    return mouse.filter(tip.data(), menu.data(), &event);
}

void tst_VTPopupMouse::clickGoesToWhatIsInTheTip()
{
    const QPoint onButton(330, 130);
    QVERIFY(send(QEvent::MouseButtonPress, onButton, Qt::LeftButton));
    QVERIFY(button->isDown());
    QVERIFY(send(QEvent::MouseButtonRelease, onButton, Qt::NoButton));
    QCOMPARE(clicks, 1);
    QVERIFY(send(QEvent::MouseButtonPress, {395, 175}, Qt::LeftButton));
    QVERIFY(send(QEvent::MouseButtonRelease, {395, 175}, Qt::NoButton));
    QCOMPARE(clicks, 1);
    QVERIFY(menu->isVisible());
}

void tst_VTPopupMouse::clickThatBeganInTheTipEndsThere()
{
    QVERIFY(send(QEvent::MouseButtonPress, {330, 130}, Qt::LeftButton));
    QVERIFY(send(QEvent::MouseMove, {600, 600}, Qt::LeftButton));
    QVERIFY(send(QEvent::MouseButtonRelease, {600, 600}, Qt::NoButton));
    QVERIFY(!send(QEvent::MouseButtonPress, {600, 600}, Qt::LeftButton));
}

void tst_VTPopupMouse::leavesTheRestAlone_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QPoint>("position");
    QTest::newRow("outside both") << int(QEvent::MouseButtonPress) << QPoint(700, 500);
    QTest::newRow("in the popup") << int(QEvent::MouseButtonPress) << QPoint(105, 105);
    QTest::newRow("another event") << int(QEvent::Enter) << QPoint(330, 130);
}

void tst_VTPopupMouse::leavesTheRestAlone()
{
    QFETCH(int, type);
    QFETCH(QPoint, position);
    // Where both are, the popup is in front.
    menu->move(100, 100);
    if (type == int(QEvent::MouseButtonPress) && position.x() < 300)
        tip->setGeometry(100, 100, 100, 80);
    QVERIFY(!send(QEvent::Type(type), position, Qt::LeftButton));
    QVERIFY(!button->isDown());
}

void tst_VTPopupMouse::withoutAPopup()
{
    QMouseEvent event(QEvent::MouseButtonPress, {}, QPoint(330, 130), Qt::LeftButton, Qt::LeftButton, {});
    QVERIFY(!mouse.filter(tip.data(), button, &event));
    menu->close();
    QVERIFY(!send(QEvent::MouseButtonPress, {330, 130}, Qt::LeftButton));
}

QTEST_MAIN(tst_VTPopupMouse)
#include "tst_vtpopupmouse.moc"
