#include "qdeclarativeborderimage_p.h"

#include "engine/qdeclarativelocalfile_p.h"
#include "engine/qdeclarativerounding_p.h"

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>
#include <QtWidgets/qdrawutil.h>

#include <utility>

/** With more tiles than this they are too small to be told from a stretched picture. */
static constexpr qint64 tileLimit = 1 << 20;

class QDeclarativeBorderImagePrivate : public QDeclarativeImageBasePrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeBorderImage)

public:
    bool isDescribed() const { return url.path().endsWith(QLatin1String(".sci"), Qt::CaseInsensitive); }
    void loadDescription();
    void fetchDescription();
    void useDescription(const QDeclarativeGridScaledImage &);
    void loadPicture(const QUrl &);
    void finishPicture();
    void setTo(QDeclarativeImageBase::Status, qreal progress, const QSize &size);
    void dropReply();
    void draw(QPainter *) const;

    QDeclarativeScaleGrid *border = nullptr;
    QPointer<QNetworkReply> reply;
    QSize announcedSourceSize = QSize(0, 0);
    QDeclarativeBorderImage::TileMode horizontalTileMode = QDeclarativeBorderImage::Stretch;
    QDeclarativeBorderImage::TileMode verticalTileMode = QDeclarativeBorderImage::Stretch;
};

/** Sets what is known of the picture and announces the status, changed or not. */
void QDeclarativeBorderImagePrivate::setTo(QDeclarativeImageBase::Status now, qreal loaded, const QSize &size)
{
    Q_Q(QDeclarativeBorderImage);
    status = now;
    const QSize sourceSize = q->sourceSize();
    if (std::exchange(announcedSourceSize, sourceSize) != sourceSize)
        Q_EMIT q->sourceSizeChanged();
    q->setImplicitWidth(size.width());
    q->setImplicitHeight(size.height());
    q->update();
    setProgress(loaded);
    Q_EMIT q->statusChanged(now);
}

void QDeclarativeBorderImagePrivate::dropReply()
{
    if (!reply)
        return;
    reply->disconnect(q_func());
    reply->abort();
    reply->deleteLater();
    reply = nullptr;
}

void QDeclarativeBorderImagePrivate::loadDescription()
{
    if (QDeclarativeLocalFile::refuse(url, q_func())) {
        setTo(QDeclarativeImageBase::Error, 0, QSize(0, 0));
        return;
    }
    const QString path = QQmlFile::urlToLocalFileOrQrc(url);
    if (path.isEmpty()) {
        fetchDescription();
        return;
    }
    QFile file(path);
    // A file that does not open is read as well: that is what reports it.
    file.open(QIODevice::ReadOnly);
    useDescription(QDeclarativeGridScaledImage(&file));
}

void QDeclarativeBorderImagePrivate::fetchDescription()
{
    Q_Q(QDeclarativeBorderImage);
    QQmlEngine *engine = qmlEngine(q);
    if (!engine) {
        setTo(QDeclarativeImageBase::Error, 0, QSize(0, 0));
        return;
    }
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setOriginatingObject(q);
    reply = engine->networkAccessManager()->get(request);
    status = QDeclarativeImageBase::Loading;
    setProgress(0);
    QObject::connect(reply, &QNetworkReply::finished, q, [this, q] {
        QNetworkReply *finished = reply;
        reply = nullptr;
        finished->deleteLater();
        if (finished->error() == QNetworkReply::NoError) {
            useDescription(QDeclarativeGridScaledImage(finished));
        } else {
            qmlWarning(q) << finished->errorString();
            setTo(QDeclarativeImageBase::Error, 0, QSize(0, 0));
        }
    });
}

void QDeclarativeBorderImagePrivate::useDescription(const QDeclarativeGridScaledImage &description)
{
    Q_Q(QDeclarativeBorderImage);
    if (!description.isValid()) {
        setTo(QDeclarativeImageBase::Error, 0, QSize(0, 0));
        return;
    }
    q->border()->setMargins(description.border());
    q->setHorizontalTileMode(QDeclarativeBorderImage::TileMode(description.horizontalTileRule()));
    q->setVerticalTileMode(QDeclarativeBorderImage::TileMode(description.verticalTileRule()));
    if (request(url.resolved(QUrl(description.source()))))
        setTo(QDeclarativeImageBase::Loading, 0, QSize(0, 0));
    else
        finishPicture();
}

void QDeclarativeBorderImagePrivate::loadPicture(const QUrl &address)
{
    if (request(address)) {
        setTo(QDeclarativeImageBase::Loading, 0, QSize(0, 0));
        return;
    }
    // QML 1 announces, and complains of, a picture named directly once more than a described one.
    finishPicture();
    finishPicture();
}

void QDeclarativeBorderImagePrivate::finishPicture()
{
    take();
    if (picture.isNull())
        setTo(QDeclarativeImageBase::Error, 1, QSize(-1, -1));
    else
        setTo(QDeclarativeImageBase::Ready, 1, picture.size());
}

void QDeclarativeBorderImagePrivate::draw(QPainter *painter) const
{
    const QRect target(0, 0, QDeclarativeRounding::truncated(itemWidth),
                       QDeclarativeRounding::truncated(itemHeight));
    const QMargins given = border ? border->margins() : QMargins();
    // Borders may overlap, but not reach out of the picture.
    const QMargins margins(qBound(0, given.left(), picture.width()), qBound(0, given.top(), picture.height()),
                           qBound(0, given.right(), picture.width()),
                           qBound(0, given.bottom(), picture.height()));
    const auto times = [](int length, int tile) { return qint64(length) / qMax(1, tile) + 1; };
    const QSize tile = picture.rect().marginsRemoved(margins).size();
    QTileRules rules{Qt::TileRule(horizontalTileMode), Qt::TileRule(verticalTileMode)};
    if (times(target.width(), tile.width()) * times(target.height(), tile.height()) > tileLimit)
        rules = Qt::StretchTile;
    qDrawBorderPixmap(painter, target, margins, picture, picture.rect(), margins, rules);
}

QDeclarativeBorderImage::QDeclarativeBorderImage(QDeclarativeItem *parent)
    : QDeclarativeImageBase(*new QDeclarativeBorderImagePrivate, parent)
{
}

QDeclarativeBorderImage::~QDeclarativeBorderImage()
{
    d_func()->dropReply();
}

QDeclarativeScaleGrid *QDeclarativeBorderImage::border()
{
    Q_D(QDeclarativeBorderImage);
    if (!d->border) {
        d->border = new QDeclarativeScaleGrid(this);
        connect(d->border, &QDeclarativeScaleGrid::borderChanged, this, [this] { update(); });
    }
    return d->border;
}

QDeclarativeBorderImage::TileMode QDeclarativeBorderImage::horizontalTileMode() const
{
    return d_func()->horizontalTileMode;
}

void QDeclarativeBorderImage::setHorizontalTileMode(TileMode mode)
{
    Q_D(QDeclarativeBorderImage);
    if (mode == d->horizontalTileMode)
        return;
    d->horizontalTileMode = mode;
    update();
    Q_EMIT horizontalTileModeChanged();
}

QDeclarativeBorderImage::TileMode QDeclarativeBorderImage::verticalTileMode() const
{
    return d_func()->verticalTileMode;
}

void QDeclarativeBorderImage::setVerticalTileMode(TileMode mode)
{
    Q_D(QDeclarativeBorderImage);
    if (mode == d->verticalTileMode)
        return;
    d->verticalTileMode = mode;
    update();
    Q_EMIT verticalTileModeChanged();
}

void QDeclarativeBorderImage::load()
{
    Q_D(QDeclarativeBorderImage);
    d->dropReply();
    d->clear();
    if (d->url.isEmpty())
        d->setTo(Null, 0, QSize(0, 0));
    else if (d->isDescribed())
        d->loadDescription();
    else
        d->loadPicture(d->url);
    Q_EMIT statusChanged(d->status);
}

void QDeclarativeBorderImage::requestFinished()
{
    d_func()->finishPicture();
}

void QDeclarativeBorderImage::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    Q_D(QDeclarativeBorderImage);
    if (d->picture.isNull() || d->itemWidth < 1 || d->itemHeight < 1)
        return;
    painter->save();
    if (d->isSmooth)
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (d->mirror) {
        painter->translate(d->itemWidth, 0);
        painter->scale(-1, 1);
    }
    d->draw(painter);
    painter->restore();
}

#include "moc_qdeclarativeborderimage_p.cpp"
