#include "VTVideoComponent.h"

#include "VTClipReports_p.h"
#include "VTVideoController.h"
#include "VTVideoSourceFFMPEG.h"
#include "VTView.h"
#include "VTViewReach_p.h"
#include "VTXmlElement.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsScene>

namespace Vidtips {

struct VIDTIPS_NO_EXPORT VTVideoComponent::Private
{
    VTVideoSourceFFMPEG *sourceObject = nullptr;
    VTVideoController *controller = nullptr;
    VTClipReports reports;
    VTVideoFrame frame;
    double lastHeight = 0.0;
    double lastProgress = 0.0;
    QString searchPath;
    QString source;
    // Named while no view that could resolve it showed the item.
    QString unresolvedSource;
    // The file that was named last, empty where there is none.
    QUrl clip;
    // The controller keeps its clip when nothing, or nothing that exists, is named after it.
    bool showsNothing = false;
    Status status = Null;
    QString errorString;
    bool loop = false;
    // What the source said last of a clip that it could not open: it is not asked for the same one again.
    QUrl failedClip;
    QString failure;
    // Who named the clip, as the view may show another tip by the time it fails.
    QPointer<VTView> view;
    QString tip;
    QString told;

    void rewindUnlessEmpty();
    void startAtFirstFrame();
};

void VTVideoComponent::Private::rewindUnlessEmpty()
{
    if (controller->position() != 0 && controller->frameCount() > 0)
        controller->setPosition(0);
}

// A position that was set, or from which playback was started, before there was any frame is past them all.
void VTVideoComponent::Private::startAtFirstFrame()
{
    if (controller->position() <= controller->frameCount())
        return;
    if (controller->state() == VTVideoController::Playing)
        controller->play();
    else
        rewindUnlessEmpty();
}

VTVideoComponent::VTVideoComponent(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , d(new Private)
{
    d->sourceObject = new VTVideoSourceFFMPEG(this);
    d->controller = new VTVideoController(d->sourceObject, this);
    connectController();
    connect(&d->reports, &VTClipReports::added, this, &VTVideoComponent::hear, Qt::QueuedConnection);
    d->sourceObject->setClipReports(&d->reports);
    d->controller->start(QThread::InheritPriority);
    d->sourceObject->start(QThread::InheritPriority);
}

VTVideoComponent::~VTVideoComponent()
{
    // Both threads end side by side, and a source that is opening a clip gives up.
    d->controller->setShouldQuit();
    d->sourceObject->setShouldQuit();
    d->controller->quit();
    d->sourceObject->quit();
    d->sourceObject->wait();
    d->controller->wait();
    delete d->controller;
    delete d->sourceObject;
}

void VTVideoComponent::connectController()
{
    const VTVideoController *const controller = d->controller;
    connect(controller, &VTVideoController::displayFrame, this, &VTVideoComponent::frameReady);
    setFlag(QGraphicsItem::ItemHasNoContents, false);
    connect(controller, &VTVideoController::stateChanged, this, &VTVideoComponent::sourceChangedState);
    connect(controller, &VTVideoController::positionChanged, this,
            &VTVideoComponent::controllerPositionChanged);
    connect(controller, &VTVideoController::heightChanged, this, &VTVideoComponent::contentHeightChanged);
    connect(controller, &VTVideoController::widthChanged, this, &VTVideoComponent::contentWidthChanged);
    connect(controller, &VTVideoController::loadProgressChanged, this,
            &VTVideoComponent::loadProgressChanged);
}

QString VTVideoComponent::source() const
{
    return d->source;
}

void VTVideoComponent::setSource(const QString &name)
{
    d->unresolvedSource.clear();
    if (name.isEmpty())
        nameNothing();
    else if (!resolve(name))
        d->unresolvedSource = name;
}

void VTVideoComponent::nameNothing()
{
    d->source.clear();
    d->clip.clear();
    d->showsNothing = true;
    d->frame = VTVideoFrame();
    update();
    d->controller->setSource(QUrl());
    d->rewindUnlessEmpty();
    if (d->source.isEmpty())
        setStatus(Null);
}

// Tells whether there was a view to ask.
bool VTVideoComponent::resolve(const QString &name)
{
    bool isAsked = false;
    QUrl clip;
    const QList<QGraphicsView *> views = scene() ? scene()->views() : QList<QGraphicsView *>();
    for (QGraphicsView *candidate : views) {
        auto *const view = qobject_cast<VTView *>(candidate);
        if (!view)
            continue;
        isAsked = true;
        d->view = view;
        const QString resolved = view->findResource(name);
        d->sourceObject->setRestricted(view->reach().isRestricted());
        if (QFileInfo(resolved).isFile() && view->reach().admitsFile(resolved))
            clip = QUrl::fromLocalFile(resolved);
    }
    if (!isAsked)
        return false;
    d->tip = d->view && d->view->content() ? d->view->content()->attribute(QStringLiteral("key")) : QString();
    d->source = name;
    d->clip = clip;
    d->frame = VTVideoFrame();
    update();
    if (clip.isEmpty())
        nameMissing(name);
    else
        nameClip(clip);
    return true;
}

void VTVideoComponent::nameMissing(const QString &name)
{
    d->showsNothing = true;
    if (d->controller->state() == VTVideoController::Playing)
        d->controller->pause();
    if (d->source == name)
        fail(QStringLiteral("Could not find the clip %1").arg(name));
}

void VTVideoComponent::nameClip(const QUrl &clip)
{
    d->showsNothing = false;
    const bool isNew = d->controller->setSource(clip);
    // What the controller announces reaches the user interface, which may have named another clip.
    if (d->clip != clip)
        return;
    if (!isNew && d->controller->frameCount() > 0)
        setStatus(Ready);
    else if (!isNew && d->failedClip == clip)
        fail(d->failure);
    else
        setStatus(Loading);
}

void VTVideoComponent::hear()
{
    const QList<VTClipReport> reports = d->reports.take();
    for (const VTClipReport &report : reports)
        conclude(report.clip, report.problem);
}

void VTVideoComponent::conclude(const QUrl &clip, const QString &problem)
{
    d->failedClip = problem.isEmpty() ? QUrl() : clip;
    d->failure = problem;
    if (clip != d->clip)
        return;
    if (!problem.isEmpty()) {
        fail(problem);
        return;
    }
    d->startAtFirstFrame();
    if (clip == d->clip)
        setStatus(Ready);
}

void VTVideoComponent::fail(const QString &problem)
{
    const QPointer<VTView> view = d->view;
    const QString message = QStringLiteral("Tip \"%1\": %2").arg(d->tip, problem);
    // The same name is often given twice, as a binding is evaluated again.
    const bool isKnown = d->status == Error && d->told == message;
    d->told = message;
    setStatus(Error, problem);
    if (view && !isKnown)
        view->warn(message);
}

void VTVideoComponent::setStatus(Status status, const QString &problem)
{
    const bool isOtherStatus = status != d->status;
    const bool isOtherProblem = problem != d->errorString;
    d->status = status;
    d->errorString = problem;
    if (isOtherProblem)
        Q_EMIT errorStringChanged();
    if (isOtherStatus)
        Q_EMIT statusChanged();
}

QVariant VTVideoComponent::itemChange(GraphicsItemChange change, const QVariant &value)
{
    QVariant result = QDeclarativeItem::itemChange(change, value);
    if (change == ItemSceneHasChanged && !d->unresolvedSource.isEmpty())
        resolveAtLast();
    return result;
}

// Content that starts a clip where it names it has done so before this, and a clip that is named is paused.
void VTVideoComponent::resolveAtLast()
{
    const bool plays = state() == playingState;
    setSource(QString(d->unresolvedSource));
    if (plays && !d->clip.isEmpty())
        play();
}

VTVideoComponent::VideoState VTVideoComponent::state() const
{
    switch (d->controller->state()) {
    case VTVideoController::Paused:
        return pausedState;
    case VTVideoController::Playing:
        return playingState;
    }
    return resetState;
}

void VTVideoComponent::setState(VideoState state)
{
    switch (state) {
    case resetState:
        d->controller->streamEnded();
        if (d->loop && !isScrubbing())
            pause();
        break;
    case pausedState:
        pause();
        break;
    case playingState:
        play();
        break;
    }
}

qint64 VTVideoComponent::position() const
{
    return qint64(d->controller->position());
}

void VTVideoComponent::setPosition(qint64 position)
{
    d->controller->setPosition(quint64(position));
}

double VTVideoComponent::progress() const
{
    return d->controller->progress();
}

void VTVideoComponent::setProgress(double progress)
{
    d->controller->setProgress(progress);
}

QString VTVideoComponent::searchPath() const
{
    return d->searchPath;
}

void VTVideoComponent::setSearchPath(const QString &path)
{
    d->searchPath = path;
    Q_EMIT searchPathChanged();
}

bool VTVideoComponent::isScrubbing() const
{
    return d->controller->isScrubbing();
}

void VTVideoComponent::setScrubbing(bool scrubbing)
{
    d->controller->setScrubbing(scrubbing);
}

double VTVideoComponent::contentHeight() const
{
    return d->controller->frameHeight();
}

double VTVideoComponent::contentWidth() const
{
    return d->controller->frameWidth();
}

double VTVideoComponent::loadProgress() const
{
    return d->controller->loadProgress();
}

VTVideoComponent::Status VTVideoComponent::status() const
{
    return d->status;
}

QString VTVideoComponent::errorString() const
{
    return d->errorString;
}

bool VTVideoComponent::loop() const
{
    return d->loop;
}

void VTVideoComponent::setLoop(bool loop)
{
    if (d->loop == loop)
        return;
    d->loop = loop;
    d->controller->setLooping(loop);
    Q_EMIT loopChanged();
}

void VTVideoComponent::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (!painter)
        return;
    const bool wasSmooth = painter->testRenderHint(QPainter::SmoothPixmapTransform);
    // No clip is made for a screen that is scaled, so there it is smoothed in any case.
    const QPaintDevice *const device = painter->device();
    const bool isScaled = device && device->devicePixelRatioF() != 1;
    painter->setRenderHint(QPainter::SmoothPixmapTransform, smooth() || isScaled);
    painter->drawImage(QPoint(0, 0), d->frame);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, wasSmooth);
}

void VTVideoComponent::frameReady()
{
    if (d->showsNothing)
        return;
    const VTVideoFrame frame = d->controller->currentFrame();
    if (frame.isNull())
        return;
    d->frame = frame;
    update();
    if (d->status == Loading)
        setStatus(Ready);
    const double height = frame.height();
    if (height != d->lastHeight) {
        Q_EMIT heightChanged();
        d->lastHeight = height;
    }
    const double progress = d->controller->progress();
    if (progress != d->lastProgress) {
        d->lastProgress = progress;
        Q_EMIT progressChanged();
        Q_EMIT positionChanged();
    }
}

void VTVideoComponent::play()
{
    d->controller->play();
}

void VTVideoComponent::pause()
{
    d->controller->pause();
}

void VTVideoComponent::sourceChangedState()
{
    Q_EMIT stateChanged();
}

void VTVideoComponent::rewindToStart()
{
    d->controller->pause();
    d->controller->setProgress(0.0);
    Q_EMIT progressChanged();
    Q_EMIT positionChanged();
}

void VTVideoComponent::controllerPositionChanged()
{
    d->lastProgress = d->controller->progress();
    Q_EMIT positionChanged();
    Q_EMIT progressChanged();
}

} // namespace Vidtips
