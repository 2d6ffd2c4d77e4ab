#include "VTVideoComponent.h"

#include "VTVideoController.h"
#include "VTVideoSourceFFMPEG.h"
#include "VTView.h"

#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsScene>

namespace Vidtips {

struct VIDTIPS_NO_EXPORT VTVideoComponent::Private
{
    VTVideoSourceFFMPEG *sourceObject = nullptr;
    VTVideoController *controller = nullptr;
    VTVideoFrame frame;
    double lastHeight = 0.0;
    double lastProgress = 0.0;
    QString searchPath;
    QString source;
    // Named while no view that could resolve it showed the item.
    QString unresolvedSource;
};

VTVideoComponent::VTVideoComponent(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , d(new Private)
{
    d->sourceObject = new VTVideoSourceFFMPEG(this);
    d->controller = new VTVideoController(d->sourceObject, this);
    connectController();
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
    if (name.isEmpty()) {
        d->controller->setSource(QUrl(name));
        d->source = name;
    }
    d->unresolvedSource = resolve(name) ? QString() : name;
}

// Tells whether there was a view to ask.
bool VTVideoComponent::resolve(const QString &name)
{
    bool isAsked = false;
    const QList<QGraphicsView *> views = scene() ? scene()->views() : QList<QGraphicsView *>();
    for (QGraphicsView *candidate : views) {
        auto *const view = qobject_cast<VTView *>(candidate);
        if (!view)
            continue;
        isAsked = true;
        const QString resolved = view->findResource(name);
        d->source = name;
        if (QFileInfo(resolved).isFile())
            d->controller->setSource(QUrl::fromLocalFile(resolved));
        d->frame = VTVideoFrame();
        update();
    }
    return isAsked;
}

QVariant VTVideoComponent::itemChange(GraphicsItemChange change, const QVariant &value)
{
    QVariant result = QDeclarativeItem::itemChange(change, value);
    if (change == ItemSceneHasChanged && !d->unresolvedSource.isEmpty())
        setSource(QString(d->unresolvedSource));
    return result;
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

void VTVideoComponent::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->drawImage(QPoint(0, 0), d->frame);
}

void VTVideoComponent::frameReady()
{
    const VTVideoFrame frame = d->controller->currentFrame();
    if (frame.isNull())
        return;
    d->frame = frame;
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
    update();
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
