#include <Vidtips/VTVideoComponent.h>
#include <Vidtips/VTVideoController.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "MessageRecorder.h"
#include "SignalCounter.h"
#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QMutex>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>

#include <memory>

using namespace Vidtips;

namespace {

constexpr int switches = 20;

VTVideoController *controllerOf(const VTVideoComponent *item)
{
    return item->findChild<VTVideoController *>("Controller");
}

VTVideoSourceFFMPEG *sourceOf(const VTVideoComponent *item)
{
    return item->findChild<VTVideoSourceFFMPEG *>("FFMPEG");
}

QString colourOf(const QImage &picture)
{
    if (picture.isNull())
        return "nothing";
    const QColor colour = picture.pixelColor(picture.width() / 2, picture.height() / 2);
    return colour == Qt::magenta ? "nothing" : colour.red() > colour.blue() ? "red" : "blue";
}

// What the item paints, on a canvas of a colour that no clip has.
QString painted(VTVideoComponent *item)
{
    QImage canvas(64, 48, QImage::Format_RGB32);
    canvas.fill(Qt::magenta);
    QPainter painter(&canvas);
    item->paint(&painter, nullptr, nullptr);
    return colourOf(canvas);
}

// What a controller announces and the item then shows, from when it was named.
class Pictures
{
public:
    explicit Pictures(VTVideoComponent *item)
    {
        // Looked at and noted in one step, so that nothing of before is noted after what forgets it.
        const auto note = [seen = m_seen](const auto &look) {
            const QMutexLocker locker(&seen->lock);
            seen->colours << look();
        };
        VTVideoController *const controller = controllerOf(item);
        // On the controller's thread, at once.
        QObject::connect(
            controller, &VTVideoController::displayFrame, controller,
            [=] { note([=] { return colourOf(controller->currentFrame()); }); }, Qt::DirectConnection);
        // And on this one, when the item has heard of it.
        QObject::connect(controller, &VTVideoController::displayFrame, item,
                         [=] { note([=] { return painted(item); }); });
    }
    void forget()
    {
        const QMutexLocker locker(&m_seen->lock);
        m_seen->colours.clear();
    }
    QStringList colours() const
    {
        const QMutexLocker locker(&m_seen->lock);
        return {m_seen->colours.cbegin(), m_seen->colours.cend()};
    }

private:
    // Shared with the announcement that may go on when this is destroyed.
    struct Seen
    {
        QMutex lock;
        QStringList colours;
    };
    const std::shared_ptr<Seen> m_seen = std::make_shared<Seen>();
};

} // namespace

/** What an item shows and says of the clips that are named to it, one after the other. */
class tst_VTVideoClips : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void switchShowsNothingOfTheClipBefore_data();
    void switchShowsNothingOfTheClipBefore();
    void clipThatFailsShowsNothing_data();
    void clipThatFailsShowsNothing();
    void emptyNameShowsNothing();
    void clipNamedTwiceWhileItOpens();
    void clipNamedTwiceKeepsItsPosition();
    void clipNamedAgainAfterAnother();
    void clipNamedAgainAfterAMissingOne();
    void statusOfAClip_data();
    void statusOfAClip();
    void statusFollowsTheName();
    void statusInQml();
    void playsFromTheStartInQml();
    void hostIsToldOnce();
    void hostIsToldOfTheTipThatNamedIt();
    void failureNamedAgain();
    void handlerMayNameAnotherClip_data();
    void handlerMayNameAnotherClip();
    void playsAsSoonAsItCan_data();
    void playsAsSoonAsItCan();
    void loops();
    void loopedClipOfOnePicturePauses();
    void resetPausesALoop_data();
    void resetPausesALoop();
    void loopIsAnnounced();
    void honoursSmooth_data();
    void honoursSmooth();

private:
    VTVideoComponent *addItem();
    VTVideoComponent *itemWithClip(const QString &name);
    QStringList warnings() const;
    QString resource(const QString &name) const;

    std::unique_ptr<TestPackages> packages;
    std::unique_ptr<TestSession> session;
    QWidget button;
};

void tst_VTVideoClips::init()
{
    packages = std::make_unique<TestPackages>();
    packages->writeUserInterface("Clips");
    packages->writeControl("Clips", "tips.xml",
                           R"(<vidtip key="cut" title="Cut"/><vidtip key="copy" title="Copy"/>)");
    const QString resources = "Clips.vidtips/Resources/";
    packages->write(resources + "red.mp4", TestClips::read(TestClips::plain("red")));
    packages->write(resources + "blue.mp4", TestClips::read(TestClips::plain("blue")));
    packages->write(resources + "clip.mp4", TestClips::read(TestClips::h264()));
    packages->write(resources + "picture.mkv", TestClips::read(TestClips::onePicture()));
    packages->write(resources + "small.mkv", TestClips::read(TestClips::oddSize()));
    packages->write(resources + "sound.wav", TestClips::read(TestClips::audioOnly()));
    packages->write(resources + "damaged.avi", TestClips::read(TestClips::damagedPictures()));
    packages->write(resources + "broken.mp4", "This is no clip.\n");
    session = std::make_unique<TestSession>(QStringList{packages->path()});
    QVERIFY(session->host->show("cut", QPoint(10, 20), &button));
}

void tst_VTVideoClips::cleanup()
{
    session.reset();
    packages.reset();
}

VTVideoComponent *tst_VTVideoClips::addItem()
{
    auto *const item = new VTVideoComponent;
    session->view()->scene()->addItem(item);
    return item;
}

// An item that has decoded its clip and shows a picture of it.
VTVideoComponent *tst_VTVideoClips::itemWithClip(const QString &name)
{
    VTVideoComponent *const item = addItem();
    SignalCounter ended(sourceOf(item), &VTVideoSource::streamEnded);
    item->setSource(name);
    if (!QTest::qWaitFor([&] { return ended.count() > 0 && painted(item) != "nothing"; }, 30000))
        qFatal("the clip %s does not show", qPrintable(name));
    // The end of the stream pauses, and may not have reached the controller yet.
    QCoreApplication::sendPostedEvents(controllerOf(item), QEvent::MetaCall);
    return item;
}

QStringList tst_VTVideoClips::warnings() const
{
    QStringList texts;
    for (const auto &message : std::as_const(session->host->messages)) {
        if (message.first == VTMessageWarning)
            texts << message.second;
    }
    return texts;
}

QString tst_VTVideoClips::resource(const QString &name) const
{
    return packages->filePath("Clips.vidtips/Resources/" + name);
}

void tst_VTVideoClips::switchShowsNothingOfTheClipBefore_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("that stands still") << false;
    QTest::newRow("that plays") << true;
}

void tst_VTVideoClips::switchShowsNothingOfTheClipBefore()
{
    QFETCH(bool, plays);
    VTVideoComponent *const item = itemWithClip("red.mp4");
    Pictures pictures(item);
    QString shown = "red";
    for (int i = 0; i < switches; ++i) {
        if (plays)
            item->play();
        // Whatever the threads are about to do.
        QTest::qWait(i * 7 % 110);
        shown = shown == "red" ? "blue" : "red";
        item->setSource(shown + ".mp4");
        pictures.forget();
        QCOMPARE(painted(item), QString("nothing"));
        QTRY_COMPARE(painted(item), shown);
        QTRY_VERIFY(pictures.colours().contains(shown));
        const QStringList other = pictures.colours().filter(shown == "red" ? "blue" : "red");
        QVERIFY2(other.isEmpty(), qPrintable(QString("switch %1").arg(i)));
    }
}

void tst_VTVideoClips::clipThatFailsShowsNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("plays");
    QTest::newRow("broken") << "broken.mp4" << false;
    QTest::newRow("broken, after one that plays") << "broken.mp4" << true;
    QTest::newRow("missing") << "none.mp4" << false;
    QTest::newRow("missing, after one that plays") << "none.mp4" << true;
    QTest::newRow("without pictures") << "sound.wav" << true;
}

void tst_VTVideoClips::clipThatFailsShowsNothing()
{
    QFETCH(QString, name);
    QFETCH(bool, plays);
    VTVideoComponent *const item = itemWithClip("red.mp4");
    if (plays)
        item->play();
    Pictures pictures(item);
    item->setSource(name);
    pictures.forget();
    QTRY_COMPARE(item->status(), VTVideoComponent::Error);
    QCOMPARE(item->state(), VTVideoComponent::pausedState);
    // Longer than a still picture waits to be announced.
    QTest::qWait(350);
    QCOMPARE(painted(item), QString("nothing"));
}

void tst_VTVideoClips::emptyNameShowsNothing()
{
    VTVideoComponent *const item = itemWithClip("red.mp4");
    item->setSource(QString());
    QTest::qWait(350);
    QCOMPARE(painted(item), QString("nothing"));
    item->setSource("red.mp4");
    QTRY_COMPARE(painted(item), QString("red"));
}

// As a binding does that is evaluated again.
void tst_VTVideoClips::clipNamedTwiceWhileItOpens()
{
    VTVideoComponent *const item = addItem();
    SignalCounter selected(sourceOf(item), &VTVideoSource::sourceChanged);
    SignalCounter ended(sourceOf(item), &VTVideoSource::streamEnded);
    item->setSource("red.mp4");
    item->setSource("red.mp4");
    QTRY_COMPARE(selected.count(), 1);
    item->setSource("red.mp4");
    QCOMPARE(item->position(), qint64(0));
    QTRY_COMPARE(painted(item), QString("red"));
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(item->position(), qint64(0));
}

void tst_VTVideoClips::clipNamedTwiceKeepsItsPosition()
{
    VTVideoComponent *const item = itemWithClip("clip.mp4");
    item->setPosition(5);
    item->setSource("clip.mp4");
    QCOMPARE(item->position(), qint64(5));
    QCOMPARE(item->status(), VTVideoComponent::Ready);
    const QImage sixth = controllerOf(item)->getFrame(5);
    const auto isShown = [&] {
        QImage canvas(sixth.size(), sixth.format());
        canvas.fill(Qt::magenta);
        QPainter painter(&canvas);
        item->paint(&painter, nullptr, nullptr);
        return canvas == sixth;
    };
    QTRY_VERIFY(isShown());
}

// The source compares a name with the clip that it has, not with the one that waits to be opened.
void tst_VTVideoClips::clipNamedAgainAfterAnother()
{
    VTVideoComponent *const item = itemWithClip("red.mp4");
    SignalCounter selected(sourceOf(item), &VTVideoSource::sourceChanged);
    item->setSource("blue.mp4");
    item->setSource("red.mp4");
    QTRY_COMPARE(selected.count(), 2);
    QTRY_COMPARE(painted(item), QString("red"));
    QVERIFY(controllerOf(item)->source().path().endsWith("red.mp4"));
    QCOMPARE(item->status(), VTVideoComponent::Ready);
}

void tst_VTVideoClips::clipNamedAgainAfterAMissingOne()
{
    VTVideoComponent *const item = itemWithClip("red.mp4");
    item->setSource("none.mp4");
    QCOMPARE(item->status(), VTVideoComponent::Error);
    item->setSource("red.mp4");
    QCOMPARE(item->status(), VTVideoComponent::Ready);
    QCOMPARE(item->errorString(), QString());
    QTRY_COMPARE(painted(item), QString("red"));
}

void tst_VTVideoClips::statusOfAClip_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<int>>("statuses");
    QTest::addColumn<QString>("problem");
    const int loading = VTVideoComponent::Loading;
    const int ready = VTVideoComponent::Ready;
    const int error = VTVideoComponent::Error;
    QTest::newRow("clip") << "clip.mp4" << QList<int>{loading, ready} << "";
    QTest::newRow("missing") << "none.mp4" << QList<int>{error} << "Could not find the clip none.mp4";
    QTest::newRow("broken") << "broken.mp4" << QList<int>{loading, error} << "Could not open media at: %1";
    QTest::newRow("sound only") << "sound.wav" << QList<int>{loading, error}
                                << "Could not find a video stream in %1";
    QTest::newRow("damaged pictures")
        << "damaged.avi" << QList<int>{loading, error} << "Could not decode any picture of %1";
}

void tst_VTVideoClips::statusOfAClip()
{
    QFETCH(QString, name);
    QFETCH(QList<int>, statuses);
    QFETCH(QString, problem);
    if (problem.contains("%1"))
        problem = problem.arg(resource(name));
    MessageRecorder log;
    VTVideoComponent *const item = addItem();
    QCOMPARE(item->status(), VTVideoComponent::Null);
    QCOMPARE(item->errorString(), QString());
    QList<int> seen;
    QStringList problems;
    connect(item, &VTVideoComponent::statusChanged, this, [&] { seen << item->status(); });
    connect(item, &VTVideoComponent::errorStringChanged, this, [&] { problems << item->errorString(); });
    item->setSource(name);
    QTRY_COMPARE(seen, statuses);
    QCOMPARE(item->errorString(), problem);
    QCOMPARE(problems, problem.isEmpty() ? QStringList() : QStringList{problem});
    QCOMPARE(warnings(), problem.isEmpty() ? QStringList() : QStringList{"Tip \"cut\": " + problem});
    delete item;
}

void tst_VTVideoClips::statusFollowsTheName()
{
    VTVideoComponent *const item = itemWithClip("red.mp4");
    QCOMPARE(item->status(), VTVideoComponent::Ready);
    item->setSource("blue.mp4");
    QCOMPARE(item->status(), VTVideoComponent::Loading);
    QTRY_COMPARE(item->status(), VTVideoComponent::Ready);
    QTRY_COMPARE(painted(item), QString("blue"));
    item->setSource("none.mp4");
    QCOMPARE(item->status(), VTVideoComponent::Error);
    item->setSource(QString());
    QCOMPARE(item->status(), VTVideoComponent::Null);
    QCOMPARE(item->errorString(), QString());
}

void tst_VTVideoClips::statusInQml()
{
    packages->write("Play.vidtips/Resources/red.mp4", TestClips::read(TestClips::plain("red")));
    packages->write("Play.vidtips/ui/VidtipsUI.qml", R"(
import QtQuick 1.0
import com.corvale.vidtips.qml 1.0
Item {
    width: 64; height: 48
    property string said: ""
    property bool looped: video.loop
    function told(status) {
        return status === VTVideoComponent.Null ? "null" : status === VTVideoComponent.Loading ? "loading"
             : status === VTVideoComponent.Ready ? "ready" : status === VTVideoComponent.Error ? "error" : "?";
    }
    function name(clip) { video.source = clip }
    VTVideoComponent {
        id: video
        objectName: "video"
        loop: true
        source: "red.mp4"
        onStatusChanged: parent.said += told(status) + " " + errorString + ";"
    }
})");
    packages->writeControl("Play", "tips.xml", R"(<vidtip key="play" title="Play"/>)");
    TestSession playing({packages->path()});
    QVERIFY(playing.host->show("play", QPoint(10, 20), &button));
    QObject *const root = playing.view()->rootObject();
    QVERIFY(root);
    QVERIFY(root->property("looped").toBool());
    QTRY_COMPARE(root->property("said").toString(), QString("loading ;ready ;"));
    QMetaObject::invokeMethod(root, "name", Q_ARG(QVariant, "none.mp4"));
    QCOMPARE(root->property("said").toString(),
             QString("loading ;ready ;error Could not find the clip none.mp4;"));
}

// Its name is resolved only when the item comes into the scene, after everything else of it was set.
void tst_VTVideoClips::playsFromTheStartInQml()
{
    packages->write("Play.vidtips/Resources/clip.mp4", TestClips::read(TestClips::h264()));
    packages->write("Play.vidtips/ui/VidtipsUI.qml", R"(
import QtQuick 1.0
import com.corvale.vidtips.qml 1.0
Item {
    width: 160; height: 120
    VTVideoComponent { source: "clip.mp4"; loop: true; Component.onCompleted: play() }
})");
    packages->writeControl("Play", "tips.xml", R"(<vidtip key="play" title="Play"/>)");
    TestSession playing({packages->path()});
    QVERIFY(playing.host->show("play", QPoint(10, 20), &button));
    QVERIFY(playing.view()->rootObject());
    auto *const item = playing.view()->rootObject()->findChild<VTVideoComponent *>();
    QVERIFY(item);
    QTRY_VERIFY(item->position() >= 2 && item->position() < 12);
    QCOMPARE(item->state(), VTVideoComponent::playingState);
}

void tst_VTVideoClips::hostIsToldOnce()
{
    MessageRecorder log;
    VTVideoComponent *const item = addItem();
    item->setSource("none.mp4");
    item->setSource("none.mp4");
    QCOMPARE(warnings(), QStringList{"Tip \"cut\": Could not find the clip none.mp4"});
    item->setSource("broken.mp4");
    QTRY_COMPARE(warnings().size(), 2);
    QCOMPARE(warnings().at(1), "Tip \"cut\": Could not open media at: " + resource("broken.mp4"));
    item->setSource("broken.mp4");
    QTest::qWait(250);
    QCOMPARE(warnings().size(), 2);
    delete item;
}

// By the time a clip fails, the view may show another tip.
void tst_VTVideoClips::hostIsToldOfTheTipThatNamedIt()
{
    MessageRecorder log;
    VTVideoComponent *const item = addItem();
    item->setSource("broken.mp4");
    QVERIFY(session->host->show("copy", QPoint(10, 20), &button));
    QTRY_COMPARE(warnings(), QStringList{"Tip \"cut\": Could not open media at: " + resource("broken.mp4")});
    item->setSource("none.mp4");
    QCOMPARE(warnings().at(1), QString("Tip \"copy\": Could not find the clip none.mp4"));
    delete item;
}

// The source does not open a clip again that it has just tried.
void tst_VTVideoClips::failureNamedAgain()
{
    MessageRecorder log;
    VTVideoComponent *const item = addItem();
    item->setSource("broken.mp4");
    QTRY_COMPARE(item->status(), VTVideoComponent::Error);
    item->setSource("none.mp4");
    item->setSource("broken.mp4");
    QCOMPARE(item->status(), VTVideoComponent::Error);
    QCOMPARE(item->errorString(), "Could not open media at: " + resource("broken.mp4"));
    delete item;
}

void tst_VTVideoClips::handlerMayNameAnotherClip_data()
{
    QTest::addColumn<QString>("first");
    QTest::newRow("while a clip is named") << "blue.mp4";
    QTest::newRow("while a missing clip is named") << "none.mp4";
    QTest::newRow("while nothing is named") << "";
}

void tst_VTVideoClips::handlerMayNameAnotherClip()
{
    QFETCH(QString, first);
    VTVideoComponent *const item = itemWithClip("clip.mp4");
    item->play();
    connect(item, &VTVideoComponent::stateChanged, this, [=] {
        if (item->source() != "red.mp4")
            item->setSource("red.mp4");
    });
    item->setSource(first);
    QCOMPARE(item->source(), QString("red.mp4"));
    QTRY_COMPARE(item->status(), VTVideoComponent::Ready);
    QTRY_COMPARE(painted(item), QString("red"));
    QVERIFY(warnings().isEmpty());
}

void tst_VTVideoClips::playsAsSoonAsItCan_data()
{
    QTest::addColumn<bool>("afterAnother");
    QTest::newRow("first clip") << false;
    QTest::newRow("after another clip") << true;
}

void tst_VTVideoClips::playsAsSoonAsItCan()
{
    QFETCH(bool, afterAnother);
    VTVideoComponent *const item = afterAnother ? itemWithClip("red.mp4") : addItem();
    // The end of the stream would pause a clip that is not repeated.
    item->setLoop(true);
    item->setSource("clip.mp4");
    item->play();
    QTRY_VERIFY(item->position() >= 2 && item->position() < 12);
    QCOMPARE(item->state(), VTVideoComponent::playingState);
}

void tst_VTVideoClips::loops()
{
    VTVideoComponent *const item = itemWithClip("clip.mp4");
    item->setLoop(true);
    QVector<qint64> positions;
    const QObject context;
    connect(controllerOf(item), &VTVideoController::positionChanged, &context,
            [&] { positions << item->position(); });
    QSignalSpy state(item, &VTVideoComponent::stateChanged);
    item->play();
    QTRY_VERIFY(positions.count(0) >= 2);
    QCOMPARE(item->state(), VTVideoComponent::playingState);
    QCOMPARE(state.count(), 1);
    // The position past the last frame, which shows none, is not among them.
    QVERIFY(!positions.contains(12));
    item->setLoop(false);
    QTRY_COMPARE(item->state(), VTVideoComponent::pausedState);
    QCOMPARE(item->position(), qint64(12));
    item->setLoop(true);
    item->play();
    QTRY_VERIFY(positions.count(0) >= 4);
}

void tst_VTVideoClips::loopedClipOfOnePicturePauses()
{
    VTVideoComponent *const item = itemWithClip("picture.mkv");
    item->setLoop(true);
    item->play();
    QTRY_COMPARE(item->state(), VTVideoComponent::pausedState);
}

void tst_VTVideoClips::resetPausesALoop_data()
{
    QTest::addColumn<bool>("scrubs");
    QTest::addColumn<VTVideoComponent::VideoState>("expected");
    QTest::newRow("playing") << false << VTVideoComponent::pausedState;
    QTest::newRow("scrubbing") << true << VTVideoComponent::playingState;
}

void tst_VTVideoClips::resetPausesALoop()
{
    QFETCH(bool, scrubs);
    QFETCH(VTVideoComponent::VideoState, expected);
    VTVideoComponent *const item = itemWithClip("clip.mp4");
    item->setLoop(true);
    item->setScrubbing(scrubs);
    item->play();
    item->setState(VTVideoComponent::resetState);
    QCOMPARE(item->state(), expected);
}

void tst_VTVideoClips::loopIsAnnounced()
{
    VTVideoComponent item;
    QSignalSpy changed(&item, &VTVideoComponent::loopChanged);
    QVERIFY(!item.loop());
    item.setLoop(true);
    item.setLoop(true);
    QVERIFY(item.loop());
    QCOMPARE(changed.count(), 1);
}

void tst_VTVideoClips::honoursSmooth_data()
{
    QTest::addColumn<bool>("smooth");
    QTest::newRow("rough") << false;
    QTest::newRow("smooth") << true;
}

// Scaled down by half, each pixel is one of the picture's or a mixture of four; the painter is left as it
// was.
void tst_VTVideoClips::honoursSmooth()
{
    QFETCH(bool, smooth);
    VTVideoComponent *const item = itemWithClip("clip.mp4");
    item->setSmooth(smooth);
    const auto paint = [](const std::function<void(QPainter *)> &draw, bool hint) {
        QImage canvas(80, 60, QImage::Format_RGB32);
        canvas.fill(Qt::magenta);
        QPainter painter(&canvas);
        painter.scale(0.5, 0.5);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, hint);
        draw(&painter);
        return painter.testRenderHint(QPainter::SmoothPixmapTransform) == hint ? canvas : QImage();
    };
    const QImage picture = controllerOf(item)->currentFrame();
    const QImage expected = paint([&](QPainter *painter) { painter->drawImage(0, 0, picture); }, smooth);
    const QImage other = paint([&](QPainter *painter) { painter->drawImage(0, 0, picture); }, !smooth);
    QVERIFY(expected != other);
    QCOMPARE(paint([&](QPainter *painter) { item->paint(painter, nullptr, nullptr); }, !smooth), expected);
}

QTEST_MAIN(tst_VTVideoClips)
#include "tst_vtvideoclips.moc"
