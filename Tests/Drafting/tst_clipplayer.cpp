#include <Vidtips/VTVideoComponent.h>

#include "TestHost.h"
#include "TestPackage.h"
#include "TestPaths.h"

#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtQml/QQmlListReference>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>

#include <memory>
#include <utility>

using namespace Vidtips;

namespace {

/** How long what comes sooner or later may take, in milliseconds, on a slow and busy machine. */
const int slowest = 60000;

/** Has the tip of @p view grow and waits until it has. */
bool grow(VTView *view)
{
    QObject *const root = view->rootObject();
    QMetaObject::invokeMethod(root, "expand");
    const QQmlListReference transitions(root, "transitions", view->engine());
    if (transitions.count() != 1 || root->property("state").toString() != QLatin1String("expanded"))
        return false;
    const QObject *const growth = transitions.at(0);
    return QTest::qWaitFor([=] { return !growth->property("running").toBool(); }, slowest);
}

/** Returns the player in the tip of @p view, or null. */
QGraphicsObject *playerOf(const VTView *view)
{
    for (QGraphicsItem *item : view->scene()->items()) {
        QGraphicsObject *const object = item->toGraphicsObject();
        if (object && object->property("broken").isValid())
            return object;
    }
    return nullptr;
}

} // namespace

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
    void brokenClipTakesNoRoom_data();
    void brokenClipTakesNoRoom();
    void arrowsMoveNothingBeforeTheFirstPicture();

private:
    VTVideoComponent *clip() const;
    VTVideoComponent *play();

    std::unique_ptr<TestSession> session;
    QWidget command;
};

void tst_ClipPlayer::init()
{
    VTContext context;
    context.set(KeyDataFile, TestPaths::built("share/vidtips-drafting/Content/Keys.xml"));
    context.set(HideDuration, 0);
    context.set(IdleInterval, 0);
    session = std::make_unique<TestSession>(
        QStringList{TestPaths::built("share/vidtips-drafting/Content/Base")}, context);
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

// The item of a clip that plays; the tip opens small and grows at a click. From then on the clip may have
// been played to its end whenever the event loop runs.
VTVideoComponent *tst_ClipPlayer::play()
{
    if (!session->host->show("draw.line", QPoint(10, 20), &command))
        return nullptr;
    QMetaObject::invokeMethod(session->view()->rootObject(), "expand");
    VTVideoComponent *const video = clip();
    if (!video)
        return nullptr;
    QSignalSpy moved(video, &VTVideoComponent::positionChanged);
    const auto plays = [=] {
        return video->position() > 0 && video->state() == VTVideoComponent::playingState;
    };
    while (!plays()) {
        if (!moved.wait(slowest))
            return nullptr;
    }
    return video;
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
    const QPointer<VTVideoComponent> clip(play());
    QVERIFY(clip);
    if (atOnce)
        session->window()->hide();
    else
        session->window()->hideAnimated();
    QVERIFY(!session->window()->isVisible());
    // The player is taken out of a tip that is small for a while.
    QTRY_VERIFY_WITH_TIMEOUT(!clip || clip->state() == VTVideoComponent::pausedState, slowest);
    QVERIFY(!clip || clip->progress() < 0.9);
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
    QTRY_VERIFY_WITH_TIMEOUT(!dwell->property("running").toBool(), slowest);
    QCOMPARE(session->view()->rootObject()->property("state").toString(), QString());
    QVERIFY(!clip());
}

void tst_ClipPlayer::brokenClipTakesNoRoom_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("file");
    QTest::newRow("missing") << "missing"
                             << "none.mp4";
    QTest::newRow("broken") << "broken"
                            << "broken.mp4";
}

// The tip is as high as one without a clip, and nothing of the player is seen.
void tst_ClipPlayer::brokenClipTakesNoRoom()
{
    QFETCH(QString, key);
    QFETCH(QString, file);
    const TestPackages packages;
    packages.write("Odd.vidtips/Resources/broken.mp4", "This is no clip.\n");
    packages.writeControl("Odd", "tips.xml", R"(
<vidtip key="missing" title="Odd"><clip source="none.mp4"/><step>First</step></vidtip>
<vidtip key="broken" title="Odd"><clip source="broken.mp4"/><step>First</step></vidtip>
<vidtip key="none" title="Odd"><step>First</step></vidtip>)",
                          "search=\"Shared\"");
    TestSession odd({TestPaths::built("share/vidtips-drafting/Content/Base"), packages.path()});
    QVERIFY(odd.host->show("none", QPoint(10, 20), &command));
    QVERIFY(grow(odd.view()));
    QObject *const root = odd.view()->rootObject();
    const qreal expected = root->property("height").toReal();
    odd.window()->hide();
    QVERIFY(odd.host->show(key, QPoint(10, 20), &command));
    QVERIFY(root->property("height").toReal() < expected);
    QVERIFY(grow(odd.view()));
    const QGraphicsObject *const player = playerOf(odd.view());
    QVERIFY(player);
    QTRY_VERIFY_WITH_TIMEOUT(player->property("broken").toBool(), slowest);
    QTRY_COMPARE_WITH_TIMEOUT(root->property("height").toReal(), expected, slowest);
    QVERIFY(!player->isVisible());
    QCOMPARE(player->property("height").toReal(), 0.0);
    QStringList warnings;
    for (const auto &message : std::as_const(odd.host->messages)) {
        if (message.first == VTMessageWarning)
            warnings << message.second;
    }
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.constFirst().contains(key) && warnings.constFirst().contains(file),
             qPrintable(warnings.constFirst()));
}

// Without a picture every position is past the end, and the clip would not be where it starts when it comes.
void tst_ClipPlayer::arrowsMoveNothingBeforeTheFirstPicture()
{
    const TestPackages packages;
    packages.writeControl("Odd", "tips.xml",
                          R"(<vidtip key="missing" title="Odd"><clip source="none.mp4"/></vidtip>)",
                          "search=\"Shared\"");
    TestSession odd({TestPaths::built("share/vidtips-drafting/Content/Base"), packages.path()});
    QVERIFY(odd.host->show("missing", QPoint(10, 20), &command));
    QMetaObject::invokeMethod(odd.view()->rootObject(), "expand");
    QGraphicsObject *const player = playerOf(odd.view());
    QVERIFY(player);
    const auto *const clip = player->findChild<VTVideoComponent *>();
    QVERIFY(clip);
    for (const int key : {Qt::Key_Right, Qt::Key_Left}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        odd.view()->scene()->sendEvent(player, &press);
        QVERIFY(press.isAccepted());
        QCOMPARE(clip->position(), 0);
    }
}

QTEST_MAIN(tst_ClipPlayer)
#include "tst_clipplayer.moc"
