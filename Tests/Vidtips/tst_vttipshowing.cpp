#include <Vidtips/VTTipShowing_p.h>
#include <Vidtips/VTTipWatch_p.h>

#include "TestHost.h"
#include "TipPackages.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

/** What the object itself knows; what becomes of a call is tested with VTManager::show(). */
class tst_VTTipShowing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void knowsWhatWasShown();
    void watchesOverWhatItShows();
    void obstacleLeavesNoWindow();
    void refillsFromTheFile();
    void refillsNothing();
    void waitsForItsUserInterface();
    void anotherRequestIsNotWaitedFor();

private:
    void showFromAHandler(const QString &key);

    QScopedPointer<TipPackages> packages;
    QScopedPointer<TestSession> session;
    std::shared_ptr<VTTipWatch> watch;
    std::unique_ptr<VTTipShowing> showing;
};

void tst_VTTipShowing::init()
{
    packages.reset(new TipPackages);
    session.reset(new TestSession({packages->path()}));
    watch = std::make_shared<VTTipWatch>();
    showing = std::make_unique<VTTipShowing>(session->manager(), watch);
}

void tst_VTTipShowing::cleanup()
{
    showing.reset();
    watch.reset();
    session.reset();
}

void tst_VTTipShowing::knowsWhatWasShown()
{
    QPushButton button;
    QVERIFY(showing->shown().key.isNull());
    QVERIFY(showing->show({"cut", QPoint(10, 20), &button, QRect(1, 2, 3, 4)}));
    QVERIFY(session->window()->isVisible());
    QCOMPARE(showing->shown().key, QString("cut"));
    QCOMPARE(showing->shown().position, QPoint(10, 20));
    QCOMPARE(showing->shown().object.data(), &button);
    QCOMPARE(showing->shown().rect, QRect(1, 2, 3, 4));
    showing->show({"none", QPoint(30, 40), nullptr, QRect()});
    QCOMPARE(showing->shown().key, QString("cut"));
    QCOMPARE(showing->shown().position, QPoint(10, 20));
}

void tst_VTTipShowing::watchesOverWhatItShows()
{
    QPushButton button;
    button.show();
    QVERIFY(!watch->isAtWork());
    QVERIFY(showing->show({"cut", QPoint(10, 20), &button, QRect()}));
    QVERIFY(watch->isAtWork());
    button.hide();
    QVERIFY(!session->window()->isVisible());
    QVERIFY(!watch->isAtWork());
}

void tst_VTTipShowing::obstacleLeavesNoWindow()
{
    session->set(TipsOff, true);
    QVERIFY(!showing->show({"cut", {}, nullptr, {}}));
    QVERIFY(!session->window());
    session->set(TipsOff, false);
    session->set(RequiredModifiers, int(Qt::ShiftModifier));
    QVERIFY(!showing->show({"cut", {}, nullptr, {}}));
    QVERIFY(!session->window());
}

void tst_VTTipShowing::refillsFromTheFile()
{
    QVERIFY(showing->show({"cut", {}, nullptr, {}}));
    session->host->notifications.clear();
    packages->writeControl("Basic", "tips.xml", R"(<vidtip key="cut" title="Taglia"/>)");
    QVERIFY(showing->refill(session->window(), nullptr));
    QCOMPARE(session->view()->rootObject()->property("title").toString(), QString("Taglia"));
    QVERIFY(session->host->notifications.isEmpty());
    packages->writeControl("Basic", "tips.xml", R"(<vidtip key="copy"/>)");
    QVERIFY(!showing->refill(session->window(), nullptr));
    QCOMPARE(session->content()->attribute("title"), QString("Taglia"));
}

void tst_VTTipShowing::refillsNothing()
{
    QVERIFY(!showing->refill(nullptr, nullptr));
    QVERIFY(!showing->show({"none", {}, nullptr, {}}));
    QVERIFY(!showing->refill(session->window(), nullptr));
}

// The user interface of the tip on screen has called the host and cannot be replaced before that returns.
void tst_VTTipShowing::showFromAHandler(const QString &key)
{
    packages->write("Basic.vidtips/ui/Asking.qml",
                    "import QtQuick 1.0\nItem { width: 50; height: 40\n"
                    "function ask() { vidTipView.notification(9, 0) } }\n");
    packages->writeControl("Basic", "tips.xml", R"(<vidtip key="asking" ui="ui/Asking.qml"/>
                                                  <vidtip key="other" ui="ui/Other.qml"/>
                                                  <vidtip key="again" ui="ui/Asking.qml"/>)");
    session->host->onNotification = [this, key](int type, const QString &) {
        if (type != 9)
            return;
        showing->show({"other", QPoint(10, 20), nullptr, {}});
        QVERIFY(showing->isAwaiting());
        showing->revealAwaited();
        QVERIFY(showing->isAwaiting());
        if (key != "other")
            showing->show({key, QPoint(10, 20), nullptr, {}});
    };
    QVERIFY(showing->show({"asking", {}, nullptr, {}}));
    QVERIFY(!showing->isAwaiting());
    session->window()->hide();
    QMetaObject::invokeMethod(session->view()->rootObject(), "ask");
}

void tst_VTTipShowing::waitsForItsUserInterface()
{
    showFromAHandler("other");
    QVERIFY(showing->isAwaiting());
    QVERIFY(!session->window()->isVisible());
    QTRY_COMPARE(session->view()->rootObject()->objectName(), QString("other"));
    showing->revealAwaited();
    QVERIFY(!showing->isAwaiting());
    QVERIFY(session->window()->isVisible());
    QCOMPARE(session->window()->pos(), QPoint(45, 50));
}

void tst_VTTipShowing::anotherRequestIsNotWaitedFor()
{
    showFromAHandler("none");
    QVERIFY(!showing->isAwaiting());
    QTRY_COMPARE(session->view()->rootObject()->objectName(), QString("other"));
    showing->revealAwaited();
    QVERIFY(!session->window()->isVisible());
}

QTEST_MAIN(tst_VTTipShowing)
#include "tst_vttipshowing.moc"
