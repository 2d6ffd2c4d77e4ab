#include "qdeclarativeview.h"

#include "engine/qdeclarativelocalfile_p.h"
#include "engine/qdeclarativepicturefile_p.h"
#include "engine/qdeclarativerounding_p.h"
#include "guard/qdeclarativeguardedfunctions_p.h"
#include "guard/qdeclarativeitemcount_p.h"
#include "guard/qdeclarativeworkers_p.h"
#include "item/qdeclarativeitem_p.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtCore/QTimerEvent>
#include <QtGui/QResizeEvent>
#include <QtGui/QTextDocument>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsWidget>
#include <QtWidgets/QLayout>

#include <private/qqmldata_p.h>
#include <private/qqmlengine_p.h>

namespace {

/** Milliseconds between two looks at whether scripts, which may run event loops, have returned. */
constexpr int returnInterval = 10;

// Rests every binding of what is about to be destroyed. What a view has made is below the item as an item,
// but not as an object.
void rest(const QGraphicsItem *item)
{
    const QGraphicsObject *const object = item->toGraphicsObject();
    if (object && !QQmlData::wasDeleted(object))
        QQmlData::markAsDeleted(const_cast<QGraphicsObject *>(object));
    const QList<QGraphicsItem *> children = item->childItems();
    for (const QGraphicsItem *child : children)
        rest(child);
}

} // namespace

class VIDTIPS_DECLARATIVE_NO_EXPORT QDeclarativeView::Private final : public QDeclarativeItemChangeListener
{
public:
    explicit Private(QDeclarativeView *view)
        : q(view)
    {
    }

    void configureView();
    void execute();
    void executeOnceReturned();
    void outliveView();
    void finishLoading();
    void ignoreRoot();
    void releaseRoot();
    void adoptRoot(QGraphicsObject *);
    void fitToRoot();
    void fitRootToView();
    bool isRunning() const { return engine.isRunning(); }
    void report(const QList<QDeclarativeError> &) const;
    bool refusesPictures(const QString &styleSheet);
    QSize rootSize() const;
    QDeclarativeItem *rootItem() const { return qobject_cast<QDeclarativeItem *>(root.data()); }
    QGraphicsWidget *rootWidget() const { return qobject_cast<QGraphicsWidget *>(root.data()); }

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;

    QDeclarativeView *const q;
    // The engine goes first: no binding may run while the scene's items are destroyed.
    QGraphicsScene scene;
    QDeclarativeEngine engine;
    QScopedPointer<QQmlComponent> component;
    QPointer<QGraphicsObject> root;
    QList<QDeclarativeError> loadErrors;
    QUrl source;
    QSize initialSize;
    QBasicTimer resizeTimer;
    QBasicTimer loadTimer; ///< until the scripts have returned
    ResizeMode resizeMode = SizeViewToRootObject;
    bool isScaled = false;
};

void QDeclarativeView::Private::configureView()
{
    scene.setItemIndexMethod(QGraphicsScene::NoIndex);
    scene.setStickyFocus(true);
    q->setScene(&scene);
    q->setOptimizationFlags(QGraphicsView::DontSavePainterState);
    q->setViewportUpdateMode(QGraphicsView::BoundingRectViewportUpdate);
    q->setFrameStyle(QFrame::NoFrame);
    q->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    q->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    q->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    q->viewport()->setFocusPolicy(Qt::NoFocus);
    q->viewport()->setMouseTracking(true);
    q->setFocusPolicy(Qt::StrongFocus);
}

void QDeclarativeView::Private::execute()
{
    releaseRoot();
    loadErrors.clear();
    component.reset();
    if (source.isEmpty())
        return;
    if (QDeclarativeLocalFile::isRefused(source)) {
        QDeclarativeError error;
        error.setUrl(source);
        error.setDescription(QDeclarativeLocalFile::message(source));
        loadErrors.append(error);
        report(loadErrors);
        Q_EMIT q->statusChanged(q->status());
        return;
    }
    component.reset(new QQmlComponent(&engine, source));
    if (component->isLoading()) {
        QObject::connect(component.data(), &QQmlComponent::statusChanged, q, [this] { finishLoading(); });
        Q_EMIT q->statusChanged(q->status());
    } else {
        finishLoading();
    }
}

// A handler of the root object may have asked for another, or be in an event loop of its own.
void QDeclarativeView::Private::executeOnceReturned()
{
    if (isRunning()) {
        loadTimer.start(returnInterval, q);
        return;
    }
    loadTimer.stop();
    execute();
}

// Its scripts go on, and find the view gone.
void QDeclarativeView::Private::outliveView()
{
    // These are the view's, which nobody else would stop.
    loadTimer.stop();
    resizeTimer.stop();
    auto *const timer = new QTimer(QCoreApplication::instance());
    const auto deleteOnceReturned = [this, timer] {
        if (isRunning())
            return;
        timer->deleteLater();
        releaseRoot();
        delete this;
    };
    QObject::connect(timer, &QTimer::timeout, timer, deleteOnceReturned);
    timer->start(returnInterval);
}

void QDeclarativeView::Private::finishLoading()
{
    const QPointer<QDeclarativeView> view(q);
    QObject::disconnect(component.data(), &QQmlComponent::statusChanged, q, nullptr);
    const bool isMade = !component->isError() && QDeclarativeItemCount::admits(component.data());
    QObject *object = isMade ? component->create() : nullptr;
    if (!view) {
        root = qobject_cast<QGraphicsObject *>(object);
        return;
    }
    if (component->isError()) {
        delete object;
        report(q->errors());
    } else {
        q->setRootObject(object);
    }
    Q_EMIT q->statusChanged(q->status());
}

void QDeclarativeView::Private::report(const QList<QDeclarativeError> &errors) const
{
    for (const QDeclarativeError &error : errors) {
        QMessageLogger(error.url().toString().toUtf8().constData(), error.line(), nullptr).warning() << error;
    }
}

void QDeclarativeView::Private::ignoreRoot()
{
    if (QDeclarativeItem *item = rootItem())
        QDeclarativeItemPrivate::get(item)->removeChangeListener(this, GeometryChange);
}

void QDeclarativeView::Private::releaseRoot()
{
    ignoreRoot();
    if (root) {
        // Handlers of Component.onDestruction see a whole tree; no binding runs while it goes to pieces.
        rest(root);
        delete root;
        // Nobody hears of what they come to, and those of the next root would wait for them.
        QDeclarativeWorkers::interrupt(&engine);
    }
}

void QDeclarativeView::Private::adoptRoot(QGraphicsObject *object)
{
    root = object;
    if (q->scene())
        q->scene()->addItem(object);
    if (QDeclarativeItem *item = rootItem())
        QDeclarativeItemPrivate::get(item)->addChangeListener(this, GeometryChange);
    else if (QGraphicsWidget *widget = rootWidget())
        QObject::connect(widget, &QGraphicsWidget::geometryChanged, q, [this] { resizeTimer.start(0, q); });
    initialSize = rootSize();
    // Whichever follows the other later, both begin with the root's size, unless a layout says otherwise.
    const QWidget *const parent = q->parentWidget();
    if (resizeMode == SizeViewToRootObject || !parent || !parent->layout())
        fitToRoot();
    if (resizeMode == SizeRootObjectToView)
        fitRootToView();
}

/** A style sheet of content's may name pictures, which Qt decodes as it likes. */
bool QDeclarativeView::Private::refusesPictures(const QString &styleSheet)
{
    static const QRegularExpression picture(QStringLiteral("url\\(\\s*[\"']?([^\"')]*)"),
                                            QRegularExpression::CaseInsensitiveOption);
    QRegularExpressionMatchIterator pictures = picture.globalMatch(styleSheet);
    while (pictures.hasNext()) {
        const QUrl url = QUrl::fromUserInput(pictures.next().captured(1).trimmed(), QDir::currentPath());
        QQmlError error;
        error.setDescription(QDeclarativePictureFile::refusal(url, QSize(), q));
        error.setUrl(source);
        if (error.description().isEmpty())
            continue;
        QQmlEnginePrivate::warning(&engine, error);
        return true;
    }
    return false;
}

QSize QDeclarativeView::Private::rootSize() const
{
    if (QDeclarativeItem *item = rootItem())
        return QDeclarativeRounding::bounded(QSizeF(item->width(), item->height()));
    if (QGraphicsWidget *widget = rootWidget())
        return QDeclarativeRounding::bounded(widget->size());
    if (root)
        return QDeclarativeRounding::bounded(root->boundingRect().size());
    return {};
}

void QDeclarativeView::Private::fitToRoot()
{
    const QSize size = rootSize();
    if (!size.isValid() || size == q->size())
        return;
    q->resize(size);
    q->updateGeometry();
}

void QDeclarativeView::Private::fitRootToView()
{
    // The viewport follows the view only when that is shown.
    const QSizeF size = q->size();
    if (QDeclarativeItem *item = rootItem())
        item->setSize(size);
    else if (QGraphicsWidget *widget = rootWidget())
        widget->resize(size);
}

void QDeclarativeView::Private::itemGeometryChanged(QDeclarativeItem *, const QRectF &now,
                                                    const QRectF &before)
{
    // One resize for all changes of a pass through the event loop.
    if (resizeMode == SizeViewToRootObject && now.size() != before.size())
        resizeTimer.start(0, q);
}

QDeclarativeView::QDeclarativeView(QWidget *parent)
    : QGraphicsView(parent)
    , d(new Private(this))
{
    qRegisterMetaType<QDeclarativeView::Status>();
    d->configureView();
}

QDeclarativeView::QDeclarativeView(const QUrl &source, QWidget *parent)
    : QDeclarativeView(parent)
{
    setSource(source);
}

QDeclarativeView::~QDeclarativeView()
{
    if (!d->isRunning()) {
        d->releaseRoot();
        return;
    }
    d->ignoreRoot();
    d.release()->outliveView();
}

QUrl QDeclarativeView::source() const
{
    return d->source;
}

void QDeclarativeView::setSource(const QUrl &source)
{
    d->source = source;
    d->executeOnceReturned();
}

QDeclarativeEngine *QDeclarativeView::engine() const
{
    return &d->engine;
}

QDeclarativeContext *QDeclarativeView::rootContext() const
{
    return d->engine.rootContext();
}

QGraphicsObject *QDeclarativeView::rootObject() const
{
    return d->root;
}

QDeclarativeView::ResizeMode QDeclarativeView::resizeMode() const
{
    return d->resizeMode;
}

void QDeclarativeView::setResizeMode(ResizeMode mode)
{
    if (mode == d->resizeMode)
        return;
    d->resizeMode = mode;
    if (!d->root)
        return;
    if (mode == SizeViewToRootObject)
        d->fitToRoot();
    else
        d->fitRootToView();
}

QDeclarativeView::Status QDeclarativeView::status() const
{
    if (d->loadTimer.isActive())
        return Loading;
    if (!d->loadErrors.isEmpty())
        return Error;
    return d->component ? Status(d->component->status()) : Null;
}

QList<QDeclarativeError> QDeclarativeView::errors() const
{
    QList<QDeclarativeError> all = d->loadErrors;
    if (d->component)
        all = QDeclarativeError::named(d->component->errors()) + all;
    for (QDeclarativeError &error : all) {
        // The compiler leaves out the file where it refuses a type.
        if (error.url().isEmpty())
            error.setUrl(d->source);
    }
    return all;
}

void QDeclarativeView::setStyleSheet(const QString &styleSheet)
{
    if (QDeclarativeGuardedFunctions::refuses(&d->engine, QStringLiteral("setting a style sheet")))
        return;
    if (!d->isRunning() || !d->refusesPictures(styleSheet))
        QGraphicsView::setStyleSheet(styleSheet);
}

QSize QDeclarativeView::sizeHint() const
{
    const QSize size = d->rootSize();
    return size.isEmpty() ? QGraphicsView::sizeHint() : size;
}

QSize QDeclarativeView::initialSize() const
{
    return d->initialSize;
}

void QDeclarativeView::setRootObject(QObject *object)
{
    if (auto *item = qobject_cast<QGraphicsObject *>(object)) {
        d->adoptRoot(item);
        return;
    }
    if (!object)
        return;
    qWarning("QDeclarativeView only supports loading of root objects that derive from QGraphicsObject.");
    delete object;
}

void QDeclarativeView::resizeEvent(QResizeEvent *event)
{
    if (d->resizeMode == SizeRootObjectToView)
        d->fitRootToView();
    setSceneRect(d->root ? QRectF(QPointF(), d->rootSize()) : QRectF(rect()));
    Q_EMIT sceneResized(event->size());
    QGraphicsView::resizeEvent(event);
}

// Qt reads the files that a rich text names, and waits for them.
bool QDeclarativeView::event(QEvent *event)
{
    const bool isTip = event->type() == QEvent::ToolTip && Qt::mightBeRichText(toolTip());
    const bool isHelp = event->type() == QEvent::WhatsThis && Qt::mightBeRichText(whatsThis());
    if ((!isTip && !isHelp)
        || !QDeclarativeGuardedFunctions::refuses(&d->engine,
                                                  QStringLiteral("a rich text as tool tip or help")))
        return QGraphicsView::event(event);
    event->ignore();
    return true;
}

// Pictures are made for a screen of scale 1, and look torn on others when their pixels are repeated.
void QDeclarativeView::paintEvent(QPaintEvent *event)
{
    const bool isScaled = devicePixelRatioF() != 1;
    if (isScaled != d->isScaled)
        setRenderHint(QPainter::SmoothPixmapTransform, isScaled);
    d->isScaled = isScaled;
    QGraphicsView::paintEvent(event);
}

void QDeclarativeView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == d->loadTimer.timerId()) {
        d->executeOnceReturned();
        return;
    }
    if (event->timerId() != d->resizeTimer.timerId()) {
        QGraphicsView::timerEvent(event);
        return;
    }
    d->resizeTimer.stop();
    if (d->resizeMode == SizeViewToRootObject)
        d->fitToRoot();
}
