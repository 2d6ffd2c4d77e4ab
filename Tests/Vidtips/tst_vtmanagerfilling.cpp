// What becomes of a tip that is on screen, and of one whose user interface does not load, when the next is
// asked for.

#include "TestHost.h"
#include "TipPackages.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

class tst_VTManagerFilling : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fadingTipGivesWay_data();
    void fadingTipGivesWay();
    void unusableUserInterface_data();
    void unusableUserInterface();
    void userInterfaceThatBreaksLater();
    void plainToolTipIsLeftOfABrokenOne();
    void sameKeyInAnotherWindow();
    void userInterfaceHearsOfEachShow();

private:
    QScopedPointer<TipPackages> packages;
};

void tst_VTManagerFilling::init()
{
    packages.reset(new TipPackages);
}

void tst_VTManagerFilling::fadingTipGivesWay_data()
{
    QTest::addColumn<QString>("next");
    QTest::newRow("other content") << "copy";
    QTest::newRow("same content") << "cut";
    QTest::newRow("fallback on screen") << "none";
}

void tst_VTManagerFilling::fadingTipGivesWay()
{
    QFETCH(QString, next);
    TestSession session({packages->path()});
    session.set(HideDuration, 100000);
    session.set(IdleInterval, 0);
    session.set(FallbackKey, "cut");
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.window()->hideAnimated();
    QTRY_VERIFY(session.window()->windowOpacity() < 1.0);
    session.host->notifications.clear();
    QVERIFY(session.host->show(next, {}, nullptr));
    QCOMPARE(session.window()->windowOpacity(), 1.0);
    QCOMPARE(session.host->notificationTexts(), next == "copy" ? QStringList{"0 copy"} : QStringList());
    // It can fade again, and hides at the end.
    session.set(HideDuration, 1);
    session.window()->hideAnimated();
    QTRY_VERIFY(!session.window()->isVisible());
}

void tst_VTManagerFilling::unusableUserInterface_data()
{
    QTest::addColumn<bool>("isMissing");
    QTest::addColumn<bool>("hasSimple");
    QTest::newRow("broken, with a simple one") << false << true;
    QTest::newRow("broken, without another") << false << false;
    QTest::newRow("missing, with a simple one") << true << true;
    QTest::newRow("missing, without another") << true << false;
}

void tst_VTManagerFilling::unusableUserInterface()
{
    QFETCH(bool, isMissing);
    QFETCH(bool, hasSimple);
    const QString path =
        packages->write("Basic.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.0\nItem { nothing: 1 }\n");
    if (isMissing)
        QVERIFY(QFile::remove(path));
    if (hasSimple)
        packages->write("Basic.vidtips/ui/SimpleTooltip.qml",
                        "import QtQuick 1.0\nItem { width: 30; height: 20 }\n");
    TestSession session({packages->path()});
    session.set(MessageThreshold, int(VTMessageDebug));
    for (int i = 0; i < 2; ++i) {
        session.host->messages.clear();
        QVERIFY(session.host->show("cut", {}, nullptr));
        QCOMPARE(session.window()->isVisible(), hasSimple);
        QCOMPARE(session.host->notificationTexts(),
                 hasSimple ? QStringList{"0 cut"} : (QStringList{"0 cut", "6 cut"}));
        if (isMissing)
            QCOMPARE(session.host->messages,
                     (QList<QPair<int, QString>>{
                         {400, "Can't find :" + QDir::current().absoluteFilePath("ui/VidtipsUI.qml")}}));
        session.window()->hide();
        session.host->notifications.clear();
    }
    QVERIFY(session.host->show("other", {}, nullptr));
    QVERIFY(session.window()->isVisible());
    QCOMPARE(session.view()->rootObject()->objectName(), QString("other"));
    // Takes the place of one that is on screen. A missing one leaves the user interface as it is.
    session.host->notifications.clear();
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.window()->isVisible(), hasSimple || isMissing);
}

// The host answers a handler of the QML by showing a tip whose user interface can only be loaded afterwards.
void tst_VTManagerFilling::userInterfaceThatBreaksLater()
{
    packages->write("Basic.vidtips/ui/Asking.qml",
                    "import QtQuick 1.0\nItem { width: 50; height: 40\n"
                    "function ask() { vidTipView.notification(9, 0) } }\n");
    packages->write("Basic.vidtips/ui/Broken.qml", "import QtQuick 1.0\nItem { nothing: 1 }\n");
    packages->writeControl("Basic", "more.xml", R"(<vidtip key="asking" ui="ui/Asking.qml"/>
                                                  <vidtip key="broken" ui="ui/Broken.qml"/>)");
    TestSession session({packages->path()});
    session.host->onNotification = [&](int type, const QString &) {
        if (type == 9)
            session.host->show("broken", {}, nullptr);
    };
    QVERIFY(session.host->show("asking", {}, nullptr));
    QMetaObject::invokeMethod(session.view()->rootObject(), "ask");
    QTRY_VERIFY(!session.window()->isVisible());
    QCOMPARE(session.host->notificationTexts().constLast(), QString("6 broken"));
}

void tst_VTManagerFilling::plainToolTipIsLeftOfABrokenOne()
{
    packages->write("Basic.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.0\nItem { nothing: 1 }\n");
    TestSession session({packages->path()});
    QWidget button;
    button.setObjectName("cut");
    QObject *const filter = session.manager();
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 200));
    QVERIFY(!filter->eventFilter(&button, &event));
    button.setObjectName("other");
    QVERIFY(filter->eventFilter(&button, &event));
}

void tst_VTManagerFilling::sameKeyInAnotherWindow()
{
    TestSession session({packages->path()});
    QWidget first;
    QWidget second;
    first.show();
    second.show();
    QVERIFY(session.host->show("cut", QPoint(100, 100), &first));
    QCOMPARE(session.window()->windowHandle()->transientParent(), first.windowHandle());
    QVERIFY(session.host->show("cut", QPoint(500, 100), &second));
    QCOMPARE(session.window()->windowHandle()->transientParent(), second.windowHandle());
    QCOMPARE(session.window()->pos(), QPoint(535, 130));
    QCOMPARE(session.host->notificationTexts(), (QStringList{"0 cut", "6 cut", "0 cut"}));
}

void tst_VTManagerFilling::userInterfaceHearsOfEachShow()
{
    packages->writeUserInterface("Basic",
                                 "property QtObject tip: vidtip\nproperty int shows: 0\n"
                                 "onTipChanged: if (tip) ++shows");
    TestSession session({packages->path()});
    const auto shows = [&] { return session.window()->view()->rootObject()->property("shows").toInt(); };
    for (int i = 1; i <= 3; ++i) {
        for (int again = 0; again < 2; ++again) {
            QVERIFY(session.host->show("cut", {}, nullptr));
            QCOMPARE(shows(), i);
        }
        session.host->hide();
        QCOMPARE(shows(), i);
    }
}

QTEST_MAIN(tst_VTManagerFilling)
#include "tst_vtmanagerfilling.moc"
