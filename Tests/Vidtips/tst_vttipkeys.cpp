#include "TestHost.h"
#include "TestPackage.h"
#include <Vidtips/VTTipKeys_p.h>

#include <QtGui/QKeyEvent>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

class tst_VTTipKeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keys_data();
    void keys();
    void keyIsUsedUpWholly();
    void keyThatIsOnlyOfferedEndsIt();
    void tipThatStaysOpenIsNotTypedAway();
    void withoutATip();
    void focusOfTheSceneIsAsBefore();

private:
    bool send(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers = {});

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
    QScopedPointer<QWidget> target;
    VTTipKeys filter;
};

void tst_VTTipKeys::init()
{
    packages.reset(new TestPackages);
    packages->writeControl("Keys", "tips.xml", "<vidtip key=\"cut\"/>");
    packages->writeUserInterface("Keys", R"(
        property int taken: 0
        focus: true
        Keys.onPressed: {
            if (event.key === Qt.Key_F1 || event.key === Qt.Key_Space) {
                taken = event.key;
                event.accepted = true;
            }
        })");
    session.reset(new TestSession({packages->path()}));
    QCursor::setPos(0, 0);
    QVERIFY(session->host->show("cut", QPoint(300, 200), nullptr));
    target.reset(new QPushButton);
    filter = VTTipKeys();
}

bool tst_VTTipKeys::send(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers)
{
    QKeyEvent event(type, key, modifiers);
    VTWidget *const tip = session->window()->isVisible() ? session->window() : nullptr;
    return filter.filter(tip, target.data(), &event);
}

void tst_VTTipKeys::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("intoText");
    QTest::addColumn<bool>("pointsIntoTip");
    QTest::addColumn<bool>("usedUp");
    QTest::addColumn<bool>("stays");
    const int control = int(Qt::ControlModifier);
    QTest::newRow("escape") << int(Qt::Key_Escape) << 0 << true << false << true << false;
    QTest::newRow("control escape") << int(Qt::Key_Escape) << control << false << false << false << false;
    QTest::newRow("help") << int(Qt::Key_F1) << 0 << true << false << true << true;
    QTest::newRow("shift help") << int(Qt::Key_F1) << int(Qt::ShiftModifier) << false << false << false
                                << false;
    QTest::newRow("blank") << int(Qt::Key_Space) << 0 << false << false << true << true;
    QTest::newRow("blank into text") << int(Qt::Key_Space) << 0 << true << false << false << false;
    QTest::newRow("blank into text, pointing") << int(Qt::Key_Space) << 0 << true << true << true << true;
    QTest::newRow("letter") << int(Qt::Key_A) << 0 << true << false << false << false;
    QTest::newRow("letter, pointing") << int(Qt::Key_A) << 0 << true << true << false << false;
    QTest::newRow("modifier") << int(Qt::Key_Control) << control << true << false << false << true;
}

void tst_VTTipKeys::keys()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, intoText);
    QFETCH(bool, pointsIntoTip);
    QFETCH(bool, usedUp);
    if (intoText)
        target.reset(new QLineEdit);
    if (pointsIntoTip)
        QCursor::setPos(session->window()->geometry().center());
    QCOMPARE(send(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers)), usedUp);
    QTEST(session->window()->isVisible(), "stays");
    const int taken = session->view()->rootObject()->property("taken").toInt();
    QCOMPARE(taken != 0, usedUp && key != Qt::Key_Escape);
}

// Asked before the host's shortcuts are, the tip may be gone when the press comes.
void tst_VTTipKeys::keyIsUsedUpWholly()
{
    QVERIFY(send(QEvent::ShortcutOverride, Qt::Key_Escape));
    QVERIFY(!session->window()->isVisible());
    QVERIFY(send(QEvent::KeyPress, Qt::Key_Escape));
    QVERIFY(!send(QEvent::ShortcutOverride, Qt::Key_Escape));
    QVERIFY(!send(QEvent::KeyPress, Qt::Key_Escape));
}

// The press of a shortcut never comes.
void tst_VTTipKeys::keyThatIsOnlyOfferedEndsIt()
{
    QVERIFY(!send(QEvent::ShortcutOverride, Qt::Key_Control, Qt::ControlModifier));
    QVERIFY(session->window()->isVisible());
    QVERIFY(!send(QEvent::ShortcutOverride, Qt::Key_R, Qt::ControlModifier));
    QVERIFY(!session->window()->isVisible());
}

void tst_VTTipKeys::tipThatStaysOpenIsNotTypedAway()
{
    session->view()->setStayOpen(true);
    QVERIFY(!send(QEvent::KeyPress, Qt::Key_A));
    QVERIFY(session->window()->isVisible());
}

void tst_VTTipKeys::withoutATip()
{
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, {});
    QVERIFY(!filter.filter(nullptr, target.data(), &event));
    QVERIFY(!filter.filter(session->window(), nullptr, &event));
    QVERIFY(!filter.filter(session->window(), session->view(), &event));
    QVERIFY(session->window()->isVisible());
    QVERIFY(!filter.isWaiting());
    // A kept tip with the focus, beside this one.
    VTView kept(session->manager(), nullptr);
    QKeyEvent help(QEvent::KeyPress, Qt::Key_F1, {});
    QVERIFY(!filter.filter(session->window(), &kept, &help));
}

void tst_VTTipKeys::focusOfTheSceneIsAsBefore()
{
    const bool before = session->view()->scene()->hasFocus();
    QVERIFY(send(QEvent::KeyPress, Qt::Key_F1));
    QCOMPARE(session->view()->scene()->hasFocus(), before);
    QVERIFY(!session->view()->scene()->isActive());
}

QTEST_MAIN(tst_VTTipKeys)
#include "tst_vttipkeys.moc"
