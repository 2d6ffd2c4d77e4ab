#include "qdeclarativeimagebase_p.h"

#include "engine/qdeclarativepicturefile_p.h"

#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>

#include <utility>

using Base = QDeclarativeImageBase;

static bool isVectorFormat(const QByteArray &format)
{
    return format.startsWith("svg") || format == "pdf";
}

/** The size of a bitmap of the size @p own: no larger, and with one side given in its proportion. */
static QSize boundedSize(const QSize &own, const QSize &wanted)
{
    if (wanted.width() <= 0)
        return wanted.height() < own.height()
            ? QSize(own.width() * wanted.height() / own.height(), wanted.height())
            : own;
    if (wanted.height() <= 0)
        return wanted.width() < own.width()
            ? QSize(wanted.width(), own.height() * wanted.width() / own.width())
            : own;
    return own.boundedTo(wanted);
}

bool QDeclarativeImageBasePrivate::scalesBitmap(const QUrl &url) const
{
    return (wantedSize.width() > 0 || wantedSize.height() > 0) && url.scheme() != QLatin1String("image")
        && !isVectorFormat(url.path().section(QLatin1Char('.'), -1).toLower().toLatin1());
}

bool QDeclarativeImageBasePrivate::request(const QUrl &url)
{
    Q_Q(QDeclarativeImageBase);
    loader.clear(q);
    refused.clear();
    QQuickPixmap::Options options;
    options.setFlag(QQuickPixmap::Asynchronous, asynchronous);
    options.setFlag(QQuickPixmap::Cache, cache);
    // Qt would keep the aspect ratio of a bitmap, or round it, so that one is loaded whole.
    const QSize size = scalesBitmap(url) ? QSize() : wantedSize;
    refused = QDeclarativePictureFile::refusal(url, size, q);
    if (!refused.isEmpty())
        return false;
    QQmlEngine *engine = qmlEngine(q);
    if (!engine && QQmlFile::urlToLocalFileOrQrc(url).isEmpty()) {
        refused = QStringLiteral("Cannot open: %1").arg(url.toString());
        return false;
    }
    loader.load(engine, url, QRect(), size, options);
    if (!loader.isLoading())
        return false;
    loader.connectFinished(q, SLOT(requestFinished()));
    loader.connectDownloadProgress(q, SLOT(requestProgress(qint64, qint64)));
    return true;
}

void QDeclarativeImageBasePrivate::take()
{
    Q_Q(QDeclarativeImageBase);
    picture = QPixmap();
    const QString error = refused.isEmpty() ? loader.error() : refused;
    if (!error.isEmpty()) {
        qmlWarning(q) << error;
        return;
    }
    QImage image = loader.image();
    if (scalesBitmap(loader.url()))
        image = image.scaled(boundedSize(image.size(), wantedSize), Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation);
    // The cache's picture is shared rather than copied, which looking for transparency in it would do.
    picture = QPixmap::fromImage(image, Qt::NoOpaqueDetection);
}

void QDeclarativeImageBasePrivate::clear()
{
    loader.clear(q_func());
    refused.clear();
    picture = QPixmap();
}

void QDeclarativeImageBasePrivate::setStatus(QDeclarativeImageBase::Status now)
{
    if (now == status)
        return;
    status = now;
    Q_EMIT q_func()->statusChanged(now);
}

void QDeclarativeImageBasePrivate::setProgress(qreal now)
{
    if (now == progress)
        return;
    progress = now;
    Q_EMIT q_func()->progressChanged(now);
}

Base::QDeclarativeImageBase(QDeclarativeImageBasePrivate &dd, QDeclarativeItem *parent)
    : QDeclarativeItem(dd, parent)
{
    setFlag(ItemHasNoContents, false);
}

Base::~QDeclarativeImageBase()
{
    d_func()->loader.clear(this);
}

Base::Status Base::status() const
{
    return d_func()->status;
}

QUrl Base::source() const
{
    return d_func()->url;
}

void Base::setSource(const QUrl &source)
{
    Q_D(QDeclarativeImageBase);
    if (source == d->url)
        return;
    d->url = source;
    Q_EMIT sourceChanged(source);
    if (isComponentComplete())
        load();
}

qreal Base::progress() const
{
    return d_func()->progress;
}

bool Base::asynchronous() const
{
    return d_func()->asynchronous;
}

void Base::setAsynchronous(bool asynchronous)
{
    Q_D(QDeclarativeImageBase);
    if (asynchronous == d->asynchronous)
        return;
    d->asynchronous = asynchronous;
    Q_EMIT asynchronousChanged();
}

bool Base::cache() const
{
    return d_func()->cache;
}

void Base::setCache(bool cache)
{
    Q_D(QDeclarativeImageBase);
    if (cache == d->cache)
        return;
    d->cache = cache;
    Q_EMIT cacheChanged();
    if (isComponentComplete())
        load();
}

QSize Base::sourceSize() const
{
    Q_D(const QDeclarativeImageBase);
    if (d->wantedSize.width() > 0 || d->wantedSize.height() > 0)
        return d->wantedSize.expandedTo(QSize(0, 0));
    return d->picture.size();
}

void Base::setSourceSize(const QSize &size)
{
    Q_D(QDeclarativeImageBase);
    if (size == d->wantedSize)
        return;
    d->wantedSize = size;
    Q_EMIT sourceSizeChanged();
    if (isComponentComplete())
        load();
}

void Base::resetSourceSize()
{
    setSourceSize(QSize());
}

bool Base::mirror() const
{
    return d_func()->mirror;
}

void Base::setMirror(bool mirror)
{
    Q_D(QDeclarativeImageBase);
    if (mirror == d->mirror)
        return;
    d->mirror = mirror;
    update();
    Q_EMIT mirrorChanged();
}

void Base::componentComplete()
{
    Q_D(QDeclarativeImageBase);
    QDeclarativeItem::componentComplete();
    if (d->url.isValid())
        load();
}

void Base::load()
{
    Q_D(QDeclarativeImageBase);
    if (d->url.isEmpty()) {
        d->clear();
        d->status = Null;
        d->progress = 0;
        pictureChanged();
        Q_EMIT progressChanged(0);
        Q_EMIT statusChanged(Null);
    } else if (d->request(d->url)) {
        d->picture = QPixmap();
        const bool statusWas = std::exchange(d->status, Loading) == Loading;
        pictureChanged();
        d->setProgress(0);
        if (!statusWas)
            Q_EMIT statusChanged(Loading);
    } else {
        requestFinished();
    }
}

void Base::requestFinished()
{
    Q_D(QDeclarativeImageBase);
    const QSize sourceSizeBefore = sourceSize();
    d->take();
    const Status statusBefore = std::exchange(d->status, d->picture.isNull() ? Error : Ready);
    const qreal progressBefore = std::exchange(d->progress, 1);
    pictureChanged();
    if (sourceSize() != sourceSizeBefore || (d->wantedSize.isValid() && d->wantedSize != d->picture.size()))
        Q_EMIT sourceSizeChanged();
    if (d->status != statusBefore)
        Q_EMIT statusChanged(d->status);
    if (d->progress != progressBefore)
        Q_EMIT progressChanged(d->progress);
}

void Base::requestProgress(qint64 received, qint64 total)
{
    Q_D(QDeclarativeImageBase);
    if (d->status == Loading && total > 0)
        d->setProgress(qBound(0.0, qreal(received) / total, 1.0));
}

void Base::pictureChanged()
{
    Q_D(QDeclarativeImageBase);
    setImplicitWidth(d->picture.width());
    setImplicitHeight(d->picture.height());
    update();
}

#include "moc_qdeclarativeimagebase_p.cpp"
