#include <Vidtips/VTVideoComponent.h>
#include <Vidtips/VTVideoController.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "MessageRecorder.h"
#include "SignalCounter.h"
#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QElapsedTimer>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>

#include <cmath>
#include <memory>

using namespace Vidtips;

namespace {

int threadCount()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

VTVideoController *controllerOf(const VTVideoComponent *item)
{
    return item->findChild<VTVideoController *>("Controller");
}

VTVideoSourceFFMPEG *sourceOf(const VTVideoComponent *item)
{
    return item->findChild<VTVideoSourceFFMPEG *>("FFMPEG");
}

// What the item paints, on a canvas of a colour that no clip has.
QImage painted(VTVideoComponent *item, const QSize &size)
{
    QImage canvas(size, QImage::Format_RGB32);
    canvas.fill(Qt::magenta);
    QPainter painter(&canvas);
    item->paint(&painter, nullptr, nullptr);
    return canvas;
}

QImage blank(const QSize &size)
{
    QImage canvas(size, QImage::Format_RGB32);
    canvas.fill(Qt::magenta);
    return canvas;
}

QStringList signalNames(const QList<QSignalSpy *> &spies)
{
    QStringList names;
    for (const QSignalSpy *spy : spies)
        names << QString("%1 %2").arg(QString(spy->signal())).arg(spy->count());
    return names;
}

} // namespace

class tst_VTVideoComponent : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void metaObjectOrder();
    void freshItem();
    void threadsRunFromTheStart();
    void outsideASceneNothingIsStored();
    void emptyNameResets_data();
    void emptyNameResets();
    void nameIsResolvedByTheView();
    void nameWithoutFileClearsThePicture();
    void nameGivenBeforeTheSceneIsResolvedInIt();
    void resolvedNameIsNotResolvedAgain();
    void sceneWithoutAViewOfTheLibrary();
    void laterNameReplacesAnUnresolvedOne();
    void sourceInQml();
    void setSourceEmitsNothing();
    void stateFollowsTheController_data();
    void stateFollowsTheController();
    void unknownStateIsIgnored();
    void resetStateWhileScrubbing();
    void firstFrameIsShown();
    void firstFrameMayBeOfOneRow();
    void paintsAtTheOriginUnscaled();
    void secondFrameOfTheSameHeight();
    void progressIsAnnouncedWhenItChanged();
    void playsToTheEnd();
    void rewindDuringPlayback();
    void rewindAnnouncesTheStart();
    void positionAndProgress();
    void searchPathIsStored();
    void scrubbingEmitsNothing();
    void controllerSignalsAreRelayed();
    void destroyedAtAnyMoment_data();
    void destroyedAtAnyMoment();
    void deletedControllerEventIsHarmless();

private:
    VTVideoComponent *addItem();
    VTVideoComponent *itemWithClip(const QString &name = "clip.mp4");

    std::unique_ptr<TestPackages> packages;
    std::unique_ptr<TestSession> session;
    QWidget button;
};

void tst_VTVideoComponent::initTestCase()
{
    qmlRegisterType<VTVideoComponent>("Vidtips.Test", 1, 0, "Video");
}

void tst_VTVideoComponent::init()
{
    packages = std::make_unique<TestPackages>();
    packages->writeUserInterface("Clips");
    packages->writeControl("Clips", "tips.xml", R"(<vidtip key="cut" title="Cut"/>)");
    packages->write("Clips.vidtips/Resources/clip.mp4", TestClips::read(TestClips::h264()));
    packages->write("Clips.vidtips/Resources/odd.mkv", TestClips::read(TestClips::oddSize()));
    packages->write("Clips.vidtips/Resources/large.mp4", TestClips::read(TestClips::large()));
    packages->write("Clips.vidtips/Resources/broken.mp4", "This is no clip.\n");
    session = std::make_unique<TestSession>(QStringList{packages->path()});
    QVERIFY(session->host->show("cut", QPoint(10, 20), &button));
}

void tst_VTVideoComponent::cleanup()
{
    session.reset();
    packages.reset();
}

VTVideoComponent *tst_VTVideoComponent::addItem()
{
    auto *const item = new VTVideoComponent;
    session->view()->scene()->addItem(item);
    return item;
}

// An item that has decoded its clip and shows the first frame of it.
VTVideoComponent *tst_VTVideoComponent::itemWithClip(const QString &name)
{
    VTVideoComponent *const item = addItem();
    SignalCounter ended(sourceOf(item), &VTVideoSource::streamEnded);
    item->setSource(name);
    const auto isShown = [&] {
        return ended.count() > 0 && painted(item, QSize(1, 1)) != blank(QSize(1, 1));
    };
    if (!QTest::qWaitFor(isShown, 30000))
        qFatal("the clip %s does not play", qPrintable(name));
    // The end of the stream pauses, and may not have reached the controller yet.
    QCoreApplication::sendPostedEvents(controllerOf(item), QEvent::MetaCall);
    return item;
}

void tst_VTVideoComponent::metaObjectOrder()
{
    const QMetaObject &meta = VTVideoComponent::staticMetaObject;
    QByteArrayList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        properties << QByteArray(property.typeName()) + ' ' + property.name() + ' '
                + property.notifySignal().name() + (property.isWritable() ? "" : " read-only");
    }
    QCOMPARE(properties,
             (QByteArrayList{"QString source sourceChanged", "VideoState state stateChanged",
                             "qlonglong position positionChanged", "double progress progressChanged",
                             "QString searchPath searchPathChanged", "bool scrubbing scrubbingChanged",
                             "double contentHeight contentHeightChanged read-only",
                             "double contentWidth contentWidthChanged read-only",
                             "double loadProgress loadProgressChanged read-only",
                             "Status status statusChanged read-only",
                             "QString errorString errorStringChanged read-only", "bool loop loopChanged"}));
    QByteArrayList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        names << meta.method(i).methodSignature();
        QCOMPARE(meta.method(i).methodType(), names.size() <= 13 ? QMetaMethod::Signal : QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
    }
    QCOMPARE(names,
             (QByteArrayList{"sourceChanged()", "stateChanged()", "positionChanged()", "progressChanged()",
                             "heightChanged()", "searchPathChanged()", "scrubbingChanged()",
                             "contentHeightChanged()", "contentWidthChanged()", "loadProgressChanged()",
                             "statusChanged()", "errorStringChanged()", "loopChanged()", "frameReady()",
                             "play()", "pause()", "sourceChangedState()", "rewindToStart()",
                             "controllerPositionChanged()"}));
    const QMetaEnum states = meta.enumerator(meta.indexOfEnumerator("VideoState"));
    QCOMPARE(states.keyToValue("resetState"), 0);
    QCOMPARE(states.keyToValue("pausedState"), 1);
    QCOMPARE(states.keyToValue("playingState"), 2);
    const QMetaEnum statuses = meta.enumerator(meta.indexOfEnumerator("Status"));
    QCOMPARE(statuses.keyToValue("Null"), 0);
    QCOMPARE(statuses.keyToValue("Loading"), 1);
    QCOMPARE(statuses.keyToValue("Ready"), 2);
    QCOMPARE(statuses.keyToValue("Error"), 3);
}

void tst_VTVideoComponent::freshItem()
{
    VTVideoComponent item;
    QCOMPARE(item.state(), VTVideoComponent::pausedState);
    QCOMPARE(item.contentWidth(), 200.0);
    QCOMPARE(item.contentHeight(), 150.0);
    QCOMPARE(item.source(), QString());
    QCOMPARE(item.searchPath(), QString());
    QCOMPARE(item.position(), qint64(0));
    QCOMPARE(item.progress(), 0.0);
    QVERIFY(std::isnan(item.loadProgress()));
    QVERIFY(!item.isScrubbing());
    QVERIFY(!(item.flags() & QGraphicsItem::ItemHasNoContents));
}

void tst_VTVideoComponent::threadsRunFromTheStart()
{
    VTVideoComponent item;
    QVERIFY(controllerOf(&item)->isRunning());
    QVERIFY(sourceOf(&item)->isRunning());
}

void tst_VTVideoComponent::outsideASceneNothingIsStored()
{
    VTVideoComponent item;
    item.setSource("clip.mp4");
    QCOMPARE(item.source(), QString());
    QVERIFY(controllerOf(&item)->source().isEmpty());
    QCOMPARE(painted(&item, QSize(8, 8)), blank(QSize(8, 8)));
    item.paint(nullptr, nullptr, nullptr);
}

void tst_VTVideoComponent::emptyNameResets_data()
{
    QTest::addColumn<bool>("inScene");
    QTest::newRow("in a scene") << true;
    QTest::newRow("outside") << false;
}

void tst_VTVideoComponent::emptyNameResets()
{
    QFETCH(bool, inScene);
    VTVideoComponent *const item = itemWithClip();
    item->setPosition(4);
    item->play();
    if (!inScene)
        session->view()->scene()->removeItem(item);
    item->setSource(QString());
    QCOMPARE(item->source(), QString());
    QCOMPARE(item->state(), VTVideoComponent::pausedState);
    QCOMPARE(item->position(), qint64(0));
    QVERIFY(controllerOf(item)->source().path().endsWith("clip.mp4"));
    delete item;
}

void tst_VTVideoComponent::nameIsResolvedByTheView()
{
    VTVideoComponent *const item = addItem();
    SignalCounter loaded(sourceOf(item), &VTVideoSource::sourceLoaded);
    item->setSource("clip.mp4");
    QCOMPARE(item->source(), QString("clip.mp4"));
    QTRY_COMPARE(loaded.count(), 1);
    QCOMPARE(controllerOf(item)->source(),
             QUrl::fromLocalFile(packages->filePath("Clips.vidtips/Resources/clip.mp4")));
    QCOMPARE(item->contentWidth(), 160.0);
    QCOMPARE(item->contentHeight(), 120.0);
}

void tst_VTVideoComponent::nameWithoutFileClearsThePicture()
{
    VTVideoComponent *const item = itemWithClip();
    QVERIFY(painted(item, QSize(8, 8)) != blank(QSize(8, 8)));
    const QUrl before = controllerOf(item)->source();
    item->setSize(QSizeF(160, 120));
    // What was announced before is painted before.
    QTest::qWait(100);
    QSignalSpy repainted(item->scene(), &QGraphicsScene::changed);
    item->setSource("none.mp4");
    QTRY_VERIFY(!repainted.isEmpty());
    QCOMPARE(item->source(), QString("none.mp4"));
    QCOMPARE(painted(item, QSize(8, 8)), blank(QSize(8, 8)));
    QCOMPARE(controllerOf(item)->source(), before);
}

void tst_VTVideoComponent::nameGivenBeforeTheSceneIsResolvedInIt()
{
    auto *const item = new VTVideoComponent;
    item->setSource("clip.mp4");
    QCOMPARE(item->source(), QString());
    session->view()->scene()->addItem(item);
    QCOMPARE(item->source(), QString("clip.mp4"));
    QTRY_VERIFY(controllerOf(item)->source().path().endsWith("Resources/clip.mp4"));
    // Once resolved, a name is not resolved again.
    session->view()->scene()->removeItem(item);
    item->setSource(QString());
    session->view()->scene()->addItem(item);
    QCOMPARE(item->source(), QString());
}

void tst_VTVideoComponent::resolvedNameIsNotResolvedAgain()
{
    VTVideoComponent *const item = itemWithClip();
    item->setPosition(4);
    session->view()->scene()->removeItem(item);
    session->view()->scene()->addItem(item);
    QCOMPARE(item->position(), qint64(4));
}

void tst_VTVideoComponent::sceneWithoutAViewOfTheLibrary()
{
    QGraphicsScene scene;
    QGraphicsView view(&scene);
    auto *const item = new VTVideoComponent;
    scene.addItem(item);
    item->setSource("clip.mp4");
    QCOMPARE(item->source(), QString());
    session->view()->scene()->addItem(item);
    QCOMPARE(item->source(), QString("clip.mp4"));
}

void tst_VTVideoComponent::laterNameReplacesAnUnresolvedOne()
{
    auto *const item = new VTVideoComponent;
    item->setSource("clip.mp4");
    item->setSource("odd.mkv");
    session->view()->scene()->addItem(item);
    QCOMPARE(item->source(), QString("odd.mkv"));
    auto *const emptied = new VTVideoComponent;
    emptied->setSource("clip.mp4");
    emptied->setSource(QString());
    session->view()->scene()->addItem(emptied);
    QCOMPARE(emptied->source(), QString());
}

void tst_VTVideoComponent::sourceInQml()
{
    packages->write("Play.vidtips/Resources/clip.mp4", TestClips::read(TestClips::h264()));
    packages->write("Play.vidtips/ui/VidtipsUI.qml", R"(
import QtQuick 1.0
import Vidtips.Test 1.0
Item {
    width: 160; height: 120
    property alias playback: video.state
    Video { id: video; objectName: "video"; width: 160; height: 120; source: "clip.mp4" }
})");
    packages->writeControl("Play", "tips.xml", R"(<vidtip key="play" title="Play"/>)");
    TestSession playing({packages->path()});
    QVERIFY(playing.host->show("play", QPoint(10, 20), &button));
    auto *const item = playing.view()->rootObject()->findChild<VTVideoComponent *>("video");
    QVERIFY(item);
    QCOMPARE(item->source(), QString("clip.mp4"));
    QTRY_COMPARE(item->loadProgress(), 1.0);
    QCOMPARE(playing.view()->rootObject()->property("playback").toInt(), 1);
    playing.view()->rootObject()->setProperty("playback", 2);
    QCOMPARE(item->state(), VTVideoComponent::playingState);
}

void tst_VTVideoComponent::setSourceEmitsNothing()
{
    VTVideoComponent *const item = addItem();
    QSignalSpy changed(item, &VTVideoComponent::sourceChanged);
    item->setSource("clip.mp4");
    item->setSource(QString());
    QCOMPARE(changed.count(), 0);
}

void tst_VTVideoComponent::stateFollowsTheController_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("expected");
    QTest::newRow("play") << 1 << 2 << 2;
    QTest::newRow("pause") << 2 << 1 << 1;
    QTest::newRow("reset while playing") << 2 << 0 << 1;
    QTest::newRow("reset while paused") << 1 << 0 << 1;
}

void tst_VTVideoComponent::stateFollowsTheController()
{
    QFETCH(int, before);
    QFETCH(int, set);
    QFETCH(int, expected);
    VTVideoComponent item;
    item.setState(VTVideoComponent::VideoState(before));
    QSignalSpy changed(&item, &VTVideoComponent::stateChanged);
    item.setState(VTVideoComponent::VideoState(set));
    QCOMPARE(int(item.state()), expected);
    QCOMPARE(changed.count(), 1);
}

void tst_VTVideoComponent::unknownStateIsIgnored()
{
    VTVideoComponent item;
    QSignalSpy changed(&item, &VTVideoComponent::stateChanged);
    item.setState(VTVideoComponent::VideoState(3));
    QCOMPARE(item.state(), VTVideoComponent::pausedState);
    QCOMPARE(changed.count(), 0);
    controllerOf(&item)->setState(VTVideoController::State(7));
    QCOMPARE(item.state(), VTVideoComponent::resetState);
}

void tst_VTVideoComponent::resetStateWhileScrubbing()
{
    VTVideoComponent item;
    item.setScrubbing(true);
    item.play();
    item.setState(VTVideoComponent::resetState);
    QCOMPARE(item.state(), VTVideoComponent::playingState);
}

void tst_VTVideoComponent::firstFrameIsShown()
{
    VTVideoComponent *const item = addItem();
    QSignalSpy height(item, &VTVideoComponent::heightChanged);
    item->setSource("clip.mp4");
    QTRY_VERIFY(height.count() == 1);
    const QImage first = controllerOf(item)->getFrame(0);
    QCOMPARE(painted(item, first.size()), first);
}

// It has a height, but no progress yet.
void tst_VTVideoComponent::firstFrameMayBeOfOneRow()
{
    VTVideoComponent item;
    QSignalSpy height(&item, &VTVideoComponent::heightChanged);
    QSignalSpy progress(&item, &VTVideoComponent::progressChanged);
    sourceOf(&item)->setupSource();
    sourceOf(&item)->pushFrame(VTVideoFrame(2, 1, QImage::Format_RGB32, 0));
    QTRY_COMPARE(height.count(), 1);
    QCOMPARE(progress.count(), 0);
}

void tst_VTVideoComponent::paintsAtTheOriginUnscaled()
{
    VTVideoComponent *const item = itemWithClip("odd.mkv");
    item->setSize(QSizeF(40, 300));
    QImage expected = blank(QSize(200, 100));
    QPainter(&expected).drawImage(0, 0, controllerOf(item)->getFrame(0));
    QCOMPARE(painted(item, QSize(200, 100)), expected);
}

void tst_VTVideoComponent::secondFrameOfTheSameHeight()
{
    VTVideoComponent *const item = itemWithClip();
    QSignalSpy height(item, &VTVideoComponent::heightChanged);
    QSignalSpy progress(item, &VTVideoComponent::progressChanged);
    item->frameReady();
    QCOMPARE(height.count(), 0);
    QCOMPARE(progress.count(), 0);
    item->setSource("odd.mkv");
    QTRY_COMPARE(height.count(), 1);
}

// A clip that grows moves its progress, though not its position.
void tst_VTVideoComponent::progressIsAnnouncedWhenItChanged()
{
    VTVideoComponent *const item = itemWithClip();
    item->setPosition(3);
    const QImage fourth = controllerOf(item)->getFrame(3);
    QSignalSpy again(item, &VTVideoComponent::progressChanged);
    QTRY_COMPARE(painted(item, fourth.size()), fourth);
    QCOMPARE(again.count(), 0);
    sourceOf(item)->pushFrame(controllerOf(item)->getFrame(0));
    QSignalSpy progress(item, &VTVideoComponent::progressChanged);
    QSignalSpy position(item, &VTVideoComponent::positionChanged);
    item->frameReady();
    QCOMPARE(item->progress(), 3.0 / 13);
    QCOMPARE(progress.count(), 1);
    QCOMPARE(position.count(), 1);
    item->frameReady();
    QCOMPARE(progress.count(), 1);
    QCOMPARE(position.count(), 1);
}

void tst_VTVideoComponent::playsToTheEnd()
{
    VTVideoComponent *const item = itemWithClip();
    SignalCounter displayed(controllerOf(item), &VTVideoController::displayFrame);
    item->play();
    QTRY_COMPARE(item->state(), VTVideoComponent::pausedState);
    QCOMPARE(item->position(), qint64(12));
    QCOMPARE(item->progress(), 1.0);
    const int before = displayed.count();
    QVERIFY(before >= 12);
    item->play();
    QTRY_VERIFY(displayed.count() >= before + 12);
}

void tst_VTVideoComponent::rewindDuringPlayback()
{
    VTVideoComponent *const item = itemWithClip();
    item->play();
    QTRY_VERIFY(item->position() >= 2);
    item->rewindToStart();
    QCOMPARE(item->state(), VTVideoComponent::pausedState);
    QTRY_COMPARE(item->position(), qint64(0));
    QTRY_COMPARE(painted(item, QSize(160, 120)), QImage(controllerOf(item)->getFrame(0)));
}

// Once as a change of the position, and once as a rewind.
void tst_VTVideoComponent::rewindAnnouncesTheStart()
{
    VTVideoComponent item;
    QSignalSpy position(&item, &VTVideoComponent::positionChanged);
    QSignalSpy progress(&item, &VTVideoComponent::progressChanged);
    item.rewindToStart();
    QCOMPARE(position.count(), 2);
    QCOMPARE(progress.count(), 2);
}

void tst_VTVideoComponent::positionAndProgress()
{
    VTVideoComponent *const item = itemWithClip();
    QSignalSpy position(item, &VTVideoComponent::positionChanged);
    QSignalSpy progress(item, &VTVideoComponent::progressChanged);
    item->setPosition(3);
    QCOMPARE(item->position(), qint64(3));
    QCOMPARE(item->progress(), 0.25);
    QCOMPARE(position.count(), 1);
    QCOMPARE(progress.count(), 1);
    item->setProgress(0.5);
    QCOMPARE(item->position(), qint64(6));
    item->setPosition(-1);
    QCOMPARE(item->position(), qint64(11));
    QTRY_COMPARE(painted(item, QSize(160, 120)), QImage(controllerOf(item)->getFrame(11)));
}

void tst_VTVideoComponent::searchPathIsStored()
{
    VTVideoComponent item;
    QSignalSpy changed(&item, &VTVideoComponent::searchPathChanged);
    item.setSearchPath("/clips");
    item.setSearchPath("/clips");
    QCOMPARE(item.searchPath(), QString("/clips"));
    QCOMPARE(changed.count(), 2);
}

void tst_VTVideoComponent::scrubbingEmitsNothing()
{
    VTVideoComponent item;
    QSignalSpy changed(&item, &VTVideoComponent::scrubbingChanged);
    item.setScrubbing(true);
    QVERIFY(item.isScrubbing());
    QCOMPARE(changed.count(), 0);
}

void tst_VTVideoComponent::controllerSignalsAreRelayed()
{
    VTVideoComponent item;
    QSignalSpy state(&item, &VTVideoComponent::stateChanged);
    QSignalSpy position(&item, &VTVideoComponent::positionChanged);
    QSignalSpy progress(&item, &VTVideoComponent::progressChanged);
    QSignalSpy height(&item, &VTVideoComponent::contentHeightChanged);
    QSignalSpy width(&item, &VTVideoComponent::contentWidthChanged);
    QSignalSpy load(&item, &VTVideoComponent::loadProgressChanged);
    Q_EMIT controllerOf(&item)->stateChanged();
    Q_EMIT controllerOf(&item)->positionChanged();
    controllerOf(&item)->sourceLoaded();
    QCOMPARE(signalNames({&state, &position, &progress, &height, &width, &load}),
             (QStringList{"stateChanged() 1", "positionChanged() 1", "progressChanged() 1",
                          "contentHeightChanged() 1", "contentWidthChanged() 1", "loadProgressChanged() 1"}));
}

void tst_VTVideoComponent::destroyedAtAnyMoment_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("plays");
    QTest::addColumn<int>("frames");
    QTest::newRow("at once") << QString() << false << 0;
    QTest::newRow("while it opens its clip") << "large.mp4" << false << 0;
    QTest::newRow("while it decodes") << "large.mp4" << false << 1;
    QTest::newRow("while its clip fails to open") << "broken.mp4" << false << 0;
    QTest::newRow("while it plays") << "clip.mp4" << true << 12;
}

void tst_VTVideoComponent::destroyedAtAnyMoment()
{
    QFETCH(QString, name);
    QFETCH(bool, plays);
    QFETCH(int, frames);
    const int threadsBefore = threadCount();
    MessageRecorder log;
    VTVideoComponent *const item = addItem();
    if (!name.isEmpty())
        item->setSource(name);
    QTRY_VERIFY(int(sourceOf(item)->loadedFrameCount()) >= frames);
    if (plays)
        item->play();
    QElapsedTimer timer;
    timer.start();
    delete item;
    QVERIFY(timer.elapsed() < 5000);
    // Threads that ended before may have been counted still.
    QTRY_VERIFY(threadCount() <= threadsBefore);
    QVERIFY(log.texts().filter("did not quit").isEmpty());
}

// The controller that has finished asks to be deleted; its owner may be gone before that request is handled.
void tst_VTVideoComponent::deletedControllerEventIsHarmless()
{
    for (int i = 0; i < 3; ++i) {
        VTVideoComponent *const item = addItem();
        const QPointer<VTVideoController> controller(controllerOf(item));
        delete item;
        QVERIFY(!controller);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

QTEST_MAIN(tst_VTVideoComponent)
#include "tst_vtvideocomponent.moc"
