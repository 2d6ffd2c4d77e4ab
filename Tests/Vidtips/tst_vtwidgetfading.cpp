#include "WidgetTest.h"

#include <QtDeclarative/QDeclarativeItem>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** Notes how opaque a window is when it is shown. */
class OpacityAtShow : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            opacity = qobject_cast<QWidget *>(watched)->windowOpacity();
        return false;
    }

    qreal opacity = 0.0;
};

/** How the window comes and goes: at once, by fading, and by the idle timer. */
class tst_VTWidgetFading : public WidgetTest
{
    Q_OBJECT

private slots:
    void init() { makeWindow(); }
    void cleanup() { endWindow(); }

    void showAtOnce();
    void showFadesIn();
    void fadeInTakesTheSizeOfTheView();
    void showOfAVisibleWindowDoesNothing();
    void hideAtOnceResetsTheState();
    void hideFadesOut();
    void hideDuringAFadeDoesNothing();
    void fadeInDoesNotHide();
    void fadeOutEndsWithTheTip();
    void fadeOutThatEndsInAStateChange();
    void reservingInTheLastMomentOfAFadeOut();
    void showDuringAFadeOutDoesNotCancelIt();
    void negativeDurationsAreNone();
    void everyHideIsNotified();
    void hideWithoutContentIsNotNotified();
    void idleTimer_data();
    void idleTimer();
    void idleTimerHides();
    void idleTimerDuringAFadeIn();
    void pointerOutsideStartsTheTimerOnce();
    void pointerInsideStopsTheTimer();
    void stayingOpenNeverHides();
    void hiddenWindowHasNoTimer();
    void safePointerStopsTheTimerOfAShow();
    void showEventArmsTheTimer_data();
    void showEventArmsTheTimer();
};

void tst_VTWidgetFading::showAtOnce()
{
    window->setWindowOpacity(0.3);
    window->showAnimated();
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowOpacity(), 1.0);
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
}

void tst_VTWidgetFading::showFadesIn()
{
    session->set(ShowDuration, 60);
    OpacityAtShow atShow;
    window->installEventFilter(&atShow);
    showContent();
    QVERIFY(window->isVisible());
    QVERIFY(qAbs(atShow.opacity - 0.1) < 0.02);
    QVERIFY(qAbs(window->windowOpacity() - 0.1) < 0.02);
    QCOMPARE(animation()->duration(), 60);
    QCOMPARE(animation()->startValue().toReal(), 0.1);
    QCOMPARE(animation()->endValue().toReal(), 1.0);
    QCOMPARE(animation()->easingCurve().type(), QEasingCurve::Linear);
    QTRY_COMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QCOMPARE(window->windowOpacity(), 1.0);
    QVERIFY(window->isVisible());
    QCOMPARE(window->size(), QSize(101, 61));
}

void tst_VTWidgetFading::fadeInTakesTheSizeOfTheView()
{
    session->set(ShowDuration, 60);
    view->resize(70, 50);
    window->showAnimated();
    QCOMPARE(window->size(), QSize(71, 51));
}

void tst_VTWidgetFading::showOfAVisibleWindowDoesNothing()
{
    showContent();
    window->setWindowOpacity(0.5);
    window->showAnimated();
    QVERIFY(qAbs(window->windowOpacity() - 0.5) < 0.01);
}

void tst_VTWidgetFading::hideAtOnceResetsTheState()
{
    session->set(HideDuration, 0);
    packages->writeUserInterface("Basic", R"(states: State { name: "open" })");
    showContent();
    QVERIFY(view->rootObject()->setProperty("state", "open"));
    window->hideAnimated();
    QVERIFY(!window->isVisible());
    QCOMPARE(view->rootObject()->property("state").toString(), QString());
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
}

void tst_VTWidgetFading::hideFadesOut()
{
    showContent();
    window->setTimer();
    window->setWindowOpacity(0.5);
    window->hideAnimated();
    QCOMPARE(animation()->duration(), 300);
    QVERIFY(qAbs(animation()->startValue().toReal() - 0.5) < 0.01);
    QCOMPARE(animation()->endValue().toReal(), 0.0);
    QVERIFY(!timer()->isActive());
    QVERIFY(window->isVisible());
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 cut"});
}

void tst_VTWidgetFading::hideDuringAFadeDoesNothing()
{
    showContent();
    window->hideAnimated();
    animation()->setCurrentTime(100);
    const int time = animation()->currentTime();
    session->set(HideDuration, 0);
    window->hideAnimated();
    QVERIFY(window->isVisible());
    QVERIFY(animation()->currentTime() >= time);
    QCOMPARE(animation()->duration(), 300);
}

void tst_VTWidgetFading::fadeInDoesNotHide()
{
    session->set(HideDuration, 1);
    session->set(ShowDuration, 1);
    for (int i = 0; i < 2; ++i) {
        showContent();
        QTRY_COMPARE(animation()->state(), QAbstractAnimation::Stopped);
        QVERIFY(window->isVisible());
        window->hideAnimated();
        QTRY_VERIFY(!window->isVisible());
    }
    QCOMPARE(session->host->notifications.count(), 2);
    showContent();
    window->hide();
    showContent();
    QTRY_COMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QVERIFY(window->isVisible());
}

void tst_VTWidgetFading::fadeOutEndsWithTheTip()
{
    session->set(HideDuration, 100000);
    showContent();
    window->hideAnimated();
    QTRY_VERIFY(window->windowOpacity() < 1.0);
    window->hide();
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
    showContent();
    QCOMPARE(window->windowOpacity(), 1.0);
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
}

void tst_VTWidgetFading::fadeOutThatEndsInAStateChange()
{
    packages->writeUserInterface("Basic", R"(states: State { name: "grown" })");
    session->set(MessageThreshold, 400);
    session->set(HideDuration, 1000);
    showContent();
    auto *const root = qobject_cast<QDeclarativeItem *>(view->rootObject());
    window->hideAnimated();
    // An animation that the QML starts advances all others, and so may end the fade.
    connect(root, &QDeclarativeItem::stateChanged, window.data(),
            [this] { animation()->setCurrentTime(animation()->duration()); });
    root->setProperty("state", "grown");
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(root->property("state").toString(), QString());
    QVERIFY(session->host->messages.isEmpty());
}

void tst_VTWidgetFading::reservingInTheLastMomentOfAFadeOut()
{
    session->set(HideDuration, 1);
    showContent();
    window->hideAnimated();
    connect(animation(), &QPropertyAnimation::finished, window.data(),
            [this] { window->view()->setReserved(true); });
    QTRY_VERIFY(window->view()->reserved());
    QCoreApplication::processEvents();
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowOpacity(), 1.0);
}

void tst_VTWidgetFading::showDuringAFadeOutDoesNotCancelIt()
{
    session->set(HideDuration, 40);
    showContent();
    window->hideAnimated();
    showContent(makeContent("copy"));
    QCOMPARE(view->rootObject()->property("title").toString(), QStringLiteral("COPY"));
    QCOMPARE(animation()->state(), QAbstractAnimation::Running);
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 copy"});
}

void tst_VTWidgetFading::negativeDurationsAreNone()
{
    session->set(ShowDuration, -5);
    session->set(HideDuration, -5);
    showContent();
    QCOMPARE(window->windowOpacity(), 1.0);
    window->hideAnimated();
    QVERIFY(!window->isVisible());
}

void tst_VTWidgetFading::everyHideIsNotified()
{
    session->set(HideDuration, 0);
    showContent();
    window->hide();
    showContent();
    window->hideAnimated();
    showContent();
    window->close();
    QCOMPARE(session->host->notificationTexts(), (QStringList{"6 cut", "6 cut", "6 cut"}));
    QCOMPARE(session->host->notifications.first().value, QVariant(QStringLiteral("hide")));
    window->hide();
    QCOMPARE(session->host->notifications.count(), 3);
}

void tst_VTWidgetFading::hideWithoutContentIsNotNotified()
{
    window->show();
    window->hide();
    window->setView(nullptr);
    window->show();
    window->hideAnimationFinished();
    QVERIFY(!window->isVisible());
    QVERIFY(session->host->notifications.isEmpty());
}

void tst_VTWidgetFading::idleTimer_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("stayOpen");
    QTest::addColumn<int>("interval");
    QTest::newRow("default") << QVariant() << false << 3000;
    QTest::newRow("set") << QVariant(50) << false << 50;
    QTest::newRow("fraction") << QVariant(50.9) << false << 50;
    QTest::newRow("text") << QVariant("70") << false << 70;
    QTest::newRow("less than a millisecond") << QVariant(0.5) << false << 0;
    QTest::newRow("zero") << QVariant(0) << false << -1;
    QTest::newRow("negative") << QVariant(-1) << false << -1;
    QTest::newRow("not a number") << QVariant("abc") << false << -1;
    QTest::newRow("huge") << QVariant(1e30) << false << 2000000000;
    QTest::newRow("staying open") << QVariant(50) << true << -1;
}

void tst_VTWidgetFading::idleTimer()
{
    QFETCH(QVariant, setting);
    QFETCH(bool, stayOpen);
    QFETCH(int, interval);
    if (setting.isValid())
        session->set(IdleInterval, setting);
    view->setStayOpen(stayOpen);
    timer()->start(1000000);
    window->setTimer();
    QCOMPARE(timer()->isActive(), interval >= 0);
    if (interval >= 0)
        QCOMPARE(timer()->interval(), interval);
}

void tst_VTWidgetFading::idleTimerHides()
{
    session->set(IdleInterval, 1);
    session->set(HideDuration, 1);
    showContent();
    window->setTimer();
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(session->host->notificationTexts(), QStringList{"6 cut"});
}

void tst_VTWidgetFading::idleTimerDuringAFadeIn()
{
    session->set(ShowDuration, 100000);
    session->set(IdleInterval, 1);
    showContent();
    QSignalSpy timeouts(timer(), &QTimer::timeout);
    QTRY_COMPARE(timeouts.count(), 1);
    QVERIFY(window->isVisible());
    QVERIFY(!timer()->isActive());
    QCOMPARE(animation()->state(), QAbstractAnimation::Running);
    window->checkMousePosition(QPoint(3000, 3000));
    QVERIFY(timer()->isActive());
}

void tst_VTWidgetFading::pointerOutsideStartsTheTimerOnce()
{
    showContent();
    timer()->stop();
    window->checkMousePosition(QPoint(3000, 3000));
    QVERIFY(timer()->isActive());
    QCOMPARE(timer()->interval(), 3000);
    timer()->setInterval(5000);
    window->checkMousePosition(QPoint(3000, 3001));
    QCOMPARE(timer()->interval(), 5000);
}

void tst_VTWidgetFading::pointerInsideStopsTheTimer()
{
    showContent();
    window->setTimer();
    window->checkMousePosition(QPoint(310, 210));
    QVERIFY(!timer()->isActive());
    window->checkMousePosition(QPoint(310, 210));
    QVERIFY(!timer()->isActive());
}

void tst_VTWidgetFading::stayingOpenNeverHides()
{
    showContent();
    view->setStayOpen(true);
    timer()->stop();
    window->checkMousePosition(QPoint(3000, 3000));
    QVERIFY(!timer()->isActive());
}

void tst_VTWidgetFading::hiddenWindowHasNoTimer()
{
    showContent();
    window->setTimer();
    window->hide();
    QVERIFY(!timer()->isActive());
}

void tst_VTWidgetFading::safePointerStopsTheTimerOfAShow()
{
    showContent();
    window->setTimer();
    QCursor::setPos(310, 210);
    showContent(makeContent("copy"));
    QVERIFY(!timer()->isActive());
}

void tst_VTWidgetFading::showEventArmsTheTimer_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<bool>("armed");
    QTest::newRow("outside") << QPoint(0, 0) << true;
    QTest::newRow("in the zone") << QPoint(290, 190) << false;
}

void tst_VTWidgetFading::showEventArmsTheTimer()
{
    QFETCH(QPoint, pointer);
    QCursor::setPos(pointer);
    showContent();
    QTEST(timer()->isActive(), "armed");
}

QTEST_MAIN(tst_VTWidgetFading)
#include "tst_vtwidgetfading.moc"
