#include <Vidtips/VTTipFade_p.h>

#include <QtCore/QPropertyAnimation>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

using Vidtips::VTTipFade;

class tst_VTTipFade : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothingIsAtWorkAtFirst();
    void fadeIn();
    void fadeOut();
    void fadeOutStartsWhereTheWindowIs();
    void brokenOff_data();
    void brokenOff();
    void fadeInAfterAFadeOut();
    void goesWithItsWindow();

private:
    QPropertyAnimation *animation() const { return fade->findChild<QPropertyAnimation *>(); }

    static constexpr int endless = 1000000;
    std::unique_ptr<QWidget> window;
    QPointer<VTTipFade> fade;
    std::unique_ptr<QSignalSpy> fadedOut;
};

void tst_VTTipFade::init()
{
    window = std::make_unique<QWidget>();
    window->show();
    fade = new VTTipFade(window.get());
    fadedOut = std::make_unique<QSignalSpy>(fade, &VTTipFade::fadedOut);
}

void tst_VTTipFade::cleanup()
{
    window.reset();
}

void tst_VTTipFade::nothingIsAtWorkAtFirst()
{
    QVERIFY(!fade->isAtWork());
    QVERIFY(!fade->fadesOut());
    fade->stop();
    fade->cancel();
    QCOMPARE(window->windowOpacity(), 1.0);
}

void tst_VTTipFade::fadeIn()
{
    fade->fadeIn(20);
    QVERIFY(fade->isAtWork());
    QVERIFY(!fade->fadesOut());
    QVERIFY(qAbs(window->windowOpacity() - VTTipFade::faint) < 0.01);
    QTRY_VERIFY(!fade->isAtWork());
    QCOMPARE(window->windowOpacity(), 1.0);
    QCoreApplication::processEvents();
    QCOMPARE(fadedOut->count(), 0);
}

void tst_VTTipFade::fadeOut()
{
    fade->fadeOut(20);
    QVERIFY(fade->isAtWork());
    QVERIFY(fade->fadesOut());
    animation()->setCurrentTime(animation()->duration());
    // It has ended, and tells only when the event loop is reached.
    QCOMPARE(animation()->state(), QAbstractAnimation::Stopped);
    QVERIFY(fade->isAtWork());
    QVERIFY(fade->fadesOut());
    QCOMPARE(fadedOut->count(), 0);
    QTRY_COMPARE(fadedOut->count(), 1);
    QCOMPARE(window->windowOpacity(), 0.0);
    fade->stop();
    QVERIFY(!fade->isAtWork());
}

void tst_VTTipFade::fadeOutStartsWhereTheWindowIs()
{
    window->setWindowOpacity(0.5);
    fade->fadeOut(endless);
    QVERIFY(qAbs(window->windowOpacity() - 0.5) < 0.01);
}

void tst_VTTipFade::brokenOff_data()
{
    QTest::addColumn<qreal>("moment");
    QTest::addColumn<bool>("becomesOpaque");
    for (const qreal moment : {0.0, 0.5, 1.0}) {
        QTest::addRow("stopped at %g", moment) << moment << false;
        QTest::addRow("cancelled at %g", moment) << moment << true;
    }
}

void tst_VTTipFade::brokenOff()
{
    QFETCH(qreal, moment);
    QFETCH(bool, becomesOpaque);
    fade->fadeOut(endless);
    animation()->setCurrentTime(int(moment * endless));
    const qreal before = window->windowOpacity();
    if (becomesOpaque)
        fade->cancel();
    else
        fade->stop();
    QVERIFY(!fade->isAtWork());
    QVERIFY(!fade->fadesOut());
    QCOMPARE(window->windowOpacity(), becomesOpaque ? 1.0 : before);
    QCoreApplication::sendPostedEvents(fade);
    QCOMPARE(fadedOut->count(), 0);
}

void tst_VTTipFade::fadeInAfterAFadeOut()
{
    fade->fadeOut(endless);
    fade->cancel();
    fade->fadeIn(1);
    QTRY_VERIFY(!fade->isAtWork());
    QCoreApplication::sendPostedEvents(fade);
    QCOMPARE(fadedOut->count(), 0);
    fade->fadeOut(1);
    QTRY_COMPARE(fadedOut->count(), 1);
}

void tst_VTTipFade::goesWithItsWindow()
{
    fade->fadeOut(endless);
    animation()->setCurrentTime(endless);
    window.reset();
    QVERIFY(!fade);
    QCoreApplication::processEvents();
    QCOMPARE(fadedOut->count(), 0);
}

QTEST_MAIN(tst_VTTipFade)
#include "tst_vttipfade.moc"
