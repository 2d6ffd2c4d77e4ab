#include "qdeclarativeanimatedimage_p.h"

#include "bounds/qdeclarativedownloads_p.h"
#include "engine/qdeclarativepicturefile_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QPointer>
#include <QtGui/QMovie>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>

#include <memory>
#include <utility>

/** A movie may be replaced by the handler of a signal that it is just emitting. */
struct MovieRelease
{
    void operator()(QMovie *movie) const
    {
        movie->stop();
        movie->deleteLater();
    }
};
using MoviePointer = std::unique_ptr<QMovie, MovieRelease>;

class QDeclarativeAnimatedImagePrivate : public QDeclarativeImagePrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeAnimatedImage)

public:
    void drop();
    void fetch();
    void receive();
    void open(MoviePointer candidate);
    bool seek(int frame);
    bool showFirstFrame();
    void follow();
    void showFrame();
    void finish(QDeclarativeImageBase::Status, qreal loaded);

    QPointer<QNetworkReply> reply;
    QBuffer data; ///< what was fetched, which the movie reads from
    MoviePointer movie;
    int firstFrame = 0;
    bool playing = true; ///< wanted when there is a movie
    bool paused = false;
};

void QDeclarativeAnimatedImagePrivate::drop()
{
    Q_Q(QDeclarativeAnimatedImage);
    if (reply) {
        reply->disconnect(q);
        reply->abort();
        reply->deleteLater();
        reply = nullptr;
    }
    if (movie)
        movie->disconnect(q);
    movie.reset();
    data.close();
    data.setData(QByteArray());
    clear();
}

void QDeclarativeAnimatedImagePrivate::finish(QDeclarativeImageBase::Status now, qreal loaded)
{
    const QDeclarativeImageBase::Status before = std::exchange(status, now);
    q_func()->pictureChanged();
    Q_EMIT q_func()->sourceSizeChanged();
    setProgress(loaded);
    if (now != before)
        Q_EMIT q_func()->statusChanged(now);
}

void QDeclarativeAnimatedImagePrivate::fetch()
{
    Q_Q(QDeclarativeAnimatedImage);
    QQmlEngine *engine = qmlEngine(q);
    if (!engine) {
        open(MoviePointer(new QMovie));
        return;
    }
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setOriginatingObject(q);
    reply = engine->networkAccessManager()->get(request);
    QObject::connect(reply, &QNetworkReply::finished, q, [this] { receive(); });
    QObject::connect(reply, &QNetworkReply::downloadProgress, q, [this](qint64 received, qint64 total) {
        if (total > 0)
            setProgress(qBound(0.0, qreal(received) / total, 1.0));
    });
    finish(QDeclarativeImageBase::Loading, 0);
}

void QDeclarativeAnimatedImagePrivate::receive()
{
    QNetworkReply *finished = std::exchange(reply, nullptr);
    finished->deleteLater();
    if (finished->error() == QNetworkReply::NoError)
        data.setData(finished->readAll());
    else if (QDeclarativeDownloads::isRefused(finished))
        refused = finished->errorString();
    data.open(QIODevice::ReadOnly);
    if (refused.isEmpty())
        refused = QDeclarativePictureFile::refusal(&data, url, q_func());
    open(MoviePointer(new QMovie(&data)));
}

void QDeclarativeAnimatedImagePrivate::open(MoviePointer candidate)
{
    Q_Q(QDeclarativeAnimatedImage);
    movie = std::move(candidate);
    if (!refused.isEmpty() || !showFirstFrame()) {
        qmlWarning(q) << (refused.isEmpty()
                              ? QLatin1String("Error Reading Animated Image File ") + url.toString()
                              : refused);
        movie.reset();
        finish(QDeclarativeImageBase::Error, data.isOpen() ? 1 : 0);
        return;
    }
    const QMovie *opened = movie.get();
    finish(QDeclarativeImageBase::Ready, 1);
    if (movie.get() != opened)
        return;
    follow();
    if (!playing)
        Q_EMIT q->frameChanged();
}

/** Goes to @p frame, if there is one, as most formats allow it: from the first frame onwards. */
bool QDeclarativeAnimatedImagePrivate::seek(int frame)
{
    if (frame < 0 || frame >= movie->frameCount())
        return false;
    const QSignalBlocker quiet(movie.get());
    if (frame < movie->currentFrameNumber())
        movie->jumpToFrame(0);
    while (movie->currentFrameNumber() < frame && movie->jumpToNextFrame()) { }
    return movie->currentFrameNumber() == frame;
}

/** Goes to the first frame to be shown, and on from it if wanted; returns whether there is a picture. */
bool QDeclarativeAnimatedImagePrivate::showFirstFrame()
{
    if (!movie->isValid())
        return false;
    const QSignalBlocker quiet(movie.get());
    if (!playing && !movie->jumpToFrame(0))
        return false;
    // A movie starts with the frame after the current one.
    const int frame = playing ? firstFrame - 1 : firstFrame;
    if (frame >= 0)
        seek(frame);
    if (playing) {
        movie->start();
        movie->setPaused(paused); // would start it as well
    }
    picture = movie->currentPixmap();
    return !picture.isNull();
}

void QDeclarativeAnimatedImagePrivate::follow()
{
    Q_Q(QDeclarativeAnimatedImage);
    QObject::connect(movie.get(), &QMovie::frameChanged, q, [this] { showFrame(); });
    QObject::connect(movie.get(), &QMovie::stateChanged, q, &QDeclarativeAnimatedImage::playingChanged);
}

void QDeclarativeAnimatedImagePrivate::showFrame()
{
    Q_Q(QDeclarativeAnimatedImage);
    const QSize before = picture.size();
    picture = movie->currentPixmap();
    if (picture.size() != before)
        q->pictureChanged();
    else
        q->update();
    Q_EMIT q->frameChanged();
}

QDeclarativeAnimatedImage::QDeclarativeAnimatedImage(QDeclarativeItem *parent)
    : QDeclarativeImage(*new QDeclarativeAnimatedImagePrivate, parent)
{
}

QDeclarativeAnimatedImage::~QDeclarativeAnimatedImage()
{
    d_func()->drop();
}

bool QDeclarativeAnimatedImage::isPlaying() const
{
    Q_D(const QDeclarativeAnimatedImage);
    return d->movie && d->movie->state() != QMovie::NotRunning;
}

void QDeclarativeAnimatedImage::setPlaying(bool playing)
{
    Q_D(QDeclarativeAnimatedImage);
    d->playing = playing;
    if (!d->movie || playing == isPlaying())
        return;
    if (playing)
        d->movie->start();
    else
        d->movie->stop();
}

bool QDeclarativeAnimatedImage::isPaused() const
{
    Q_D(const QDeclarativeAnimatedImage);
    return d->movie && d->movie->state() == QMovie::Paused;
}

void QDeclarativeAnimatedImage::setPaused(bool paused)
{
    Q_D(QDeclarativeAnimatedImage);
    if (paused == d->paused)
        return;
    d->paused = paused;
    if (d->movie)
        d->movie->setPaused(paused);
    Q_EMIT pausedChanged();
}

int QDeclarativeAnimatedImage::currentFrame() const
{
    Q_D(const QDeclarativeAnimatedImage);
    return d->movie ? d->movie->currentFrameNumber() : d->firstFrame;
}

void QDeclarativeAnimatedImage::setCurrentFrame(int frame)
{
    Q_D(QDeclarativeAnimatedImage);
    if (!d->movie)
        d->firstFrame = frame;
    else if (frame != currentFrame() && d->seek(frame))
        d->showFrame();
}

int QDeclarativeAnimatedImage::frameCount() const
{
    Q_D(const QDeclarativeAnimatedImage);
    return d->movie ? d->movie->frameCount() : 0;
}

void QDeclarativeAnimatedImage::componentComplete()
{
    Q_D(QDeclarativeAnimatedImage);
    QDeclarativeImage::componentComplete();
    // Only what the item shows at first begins with a given frame.
    if (!d->reply)
        d->firstFrame = 0;
}

void QDeclarativeAnimatedImage::load()
{
    Q_D(QDeclarativeAnimatedImage);
    const bool wasPlaying = isPlaying();
    d->drop();
    const QString file = QQmlFile::urlToLocalFileOrQrc(d->url);
    d->refused = QDeclarativePictureFile::refusal(d->url, QSize(), this);
    if (d->url.isEmpty())
        d->finish(Null, 0);
    else if (!d->refused.isEmpty())
        d->open(MoviePointer(new QMovie));
    else if (file.isEmpty())
        d->fetch();
    else
        d->open(MoviePointer(new QMovie(file)));
    if (isPlaying() != wasPlaying)
        Q_EMIT playingChanged();
}

#include "moc_qdeclarativeanimatedimage_p.cpp"
