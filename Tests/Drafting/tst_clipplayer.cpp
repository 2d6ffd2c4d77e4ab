#include <Vidtips/VTVideoComponent.h>

#include "TestHost.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>

#include <memory>

using namespace Vidtips;

/** Plays a clip in the user interface that the example ships. */
class tst_ClipPlayer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pausesWhenTheTipIsHidden_data();
    void pausesWhenTheTipIsHidden();
    void playsAgainWithTheNextTip();
    void opensNoClipInAHiddenTip_data();
    void opensNoClipInAHiddenTip();

private:
    VTVideoComponent *clip() const;
    VTVideoComponent *play();

    std::unique_ptr<TestSession> session;
    QWidget command;
};

void tst_ClipPlayer::init()
{
    VTContext context;
    context.set(KeyDataFile, QStringLiteral(CONTENT_DIR "/Keys.xml"));
    context.set(HideDuration, 0);
    context.set(IdleInterval, 0);
    session = std::make_unique<TestSession>(QStringList{QStringLiteral(CONTENT_DIR "/Base")}, context);
}

void tst_ClipPlayer::cleanup()
{
    session.reset();
}

VTVideoComponent *tst_ClipPlayer::clip() const
{
    for (QGraphicsItem *item : session->view()->scene()->items()) {
        if (auto *const video = qobject_cast<VTVideoComponent *>(item->toGraphicsObject()))
            return video;
    }
    return nullptr;
}

// The item of a clip that plays; the tip opens small and grows at a click.
VTVideoComponent *tst_ClipPlayer::play()
{
    if (!session->host->show("draw.line", QPoint(10, 20), &command))
        return nullptr;
    QMetaObject::invokeMethod(session->view()->rootObject(), "expand");
    VTVideoComponent *const video = clip();
    const auto plays = [=] {
        return video && video->position() > 0 && video->state() == VTVideoComponent::playingState;
    };
    return QTest::qWaitFor(plays, 30000) ? video : nullptr;
}

void tst_ClipPlayer::pausesWhenTheTipIsHidden_data()
{
    QTest::addColumn<bool>("atOnce");
    QTest::newRow("at once, as by a click elsewhere") << true;
    QTest::newRow("after its time") << false;
}

void tst_ClipPlayer::pausesWhenTheTipIsHidden()
{
    QFETCH(bool, atOnce);
    VTVideoComponent *const clip = play();
    QVERIFY(clip);
    if (atOnce)
        session->window()->hide();
    else
        session->window()->hideAnimated();
    QVERIFY(!session->window()->isVisible());
    QTRY_COMPARE(clip->state(), VTVideoComponent::pausedState);
    QVERIFY(clip->progress() < 0.9);
}

void tst_ClipPlayer::playsAgainWithTheNextTip()
{
    QVERIFY(play());
    session->window()->hide();
    QVERIFY(play());
}

void tst_ClipPlayer::opensNoClipInAHiddenTip_data()
{
    pausesWhenTheTipIsHidden_data();
}

// A tip that is hidden before it grows must not grow later, where nobody sees what it decodes.
void tst_ClipPlayer::opensNoClipInAHiddenTip()
{
    QFETCH(bool, atOnce);
    QVERIFY(session->host->show("draw.line", QPoint(10, 20), &command));
    auto *const dwell = session->view()->rootObject()->findChild<QObject *>(QStringLiteral("dwell"));
    QVERIFY(dwell);
    QVERIFY(dwell->property("running").toBool());
    if (atOnce)
        session->window()->hide();
    else
        session->window()->hideAnimated();
    QTRY_VERIFY(!dwell->property("running").toBool());
    QCOMPARE(session->view()->rootObject()->property("state").toString(), QString());
    QVERIFY(!clip());
}

QTEST_MAIN(tst_ClipPlayer)
#include "tst_clipplayer.moc"
