#pragma once

#include "item/qdeclarativeitem_p.h"

#include <QtCore/QUrl>
#include <QtGui/QPixmap>

#include <private/qquickpixmapcache_p.h>

class QDeclarativeImageBasePrivate;

/**
 * The base of the items that show a picture: it loads the picture and tells how far that is.
 *
 * Local files load at once unless `asynchronous`, all others in the background. Loading starts when the item
 * is complete. A picture that cannot be had gives the status Error and a warning.
 */
class QDeclarativeImageBase : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(qreal implicitWidth READ implicitWidth NOTIFY implicitWidthChanged REVISION 1)
    Q_PROPERTY(qreal implicitHeight READ implicitHeight NOTIFY implicitHeightChanged REVISION 1)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(qreal progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(bool asynchronous READ asynchronous WRITE setAsynchronous NOTIFY asynchronousChanged)
    Q_PROPERTY(bool cache READ cache WRITE setCache NOTIFY cacheChanged REVISION 1)
    Q_PROPERTY(
        QSize sourceSize READ sourceSize WRITE setSourceSize RESET resetSourceSize NOTIFY sourceSizeChanged)
    Q_PROPERTY(bool mirror READ mirror WRITE setMirror NOTIFY mirrorChanged REVISION 1)

public:
    enum Status { Null, Ready, Loading, Error };
    Q_ENUM(Status)

    ~QDeclarativeImageBase() override;

    Status status() const;
    QUrl source() const;
    virtual void setSource(const QUrl &);
    /** How much is loaded, from 0 to 1; 1 also when loading failed. */
    qreal progress() const;
    bool asynchronous() const;
    void setAsynchronous(bool);
    bool cache() const;
    void setCache(bool);
    /**
     * The size, in pixels, that the picture is loaded in.
     *
     * What was set, with 0 for a side that follows the aspect ratio; the picture's own size if nothing was
     * set. Bitmaps are not enlarged. With both sides set the aspect ratio is not kept.
     */
    QSize sourceSize() const;
    void setSourceSize(const QSize &);
    void resetSourceSize();
    bool mirror() const;
    void setMirror(bool);

Q_SIGNALS:
    void statusChanged(QDeclarativeImageBase::Status status);
    void sourceChanged(const QUrl &source);
    void progressChanged(qreal progress);
    void asynchronousChanged();
    Q_REVISION(1) void cacheChanged();
    void sourceSizeChanged();
    Q_REVISION(1) void mirrorChanged();

protected:
    explicit QDeclarativeImageBase(QDeclarativeImageBasePrivate &dd, QDeclarativeItem *parent);

    void componentComplete() override;

    /** Loads the source anew. */
    virtual void load();

    /** Called when there is another picture, or none; call the base, which sets the implicit size. */
    virtual void pictureChanged();

protected Q_SLOTS:
    /** Called when the request has ended; the picture or the error is there to be taken. */
    virtual void requestFinished();

private Q_SLOTS:
    void requestProgress(qint64 received, qint64 total);

private:
    Q_DISABLE_COPY(QDeclarativeImageBase)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeImageBase)
};

class QDeclarativeImageBasePrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeImageBase)

public:
    /** Starts loading @p url; returns whether it is being loaded in the background. */
    bool request(const QUrl &url);

    /** Takes the picture that was loaded, or none, and warns of what failed. */
    void take();

    void clear();
    void setStatus(QDeclarativeImageBase::Status);
    void setProgress(qreal);
    bool scalesBitmap(const QUrl &url) const;

    QQuickPixmap loader;
    QPixmap picture;
    QUrl url;
    QSize wantedSize;
    QString refused; ///< why the picture was not even tried
    qreal progress = 0;
    QDeclarativeImageBase::Status status = QDeclarativeImageBase::Null;
    bool asynchronous = false;
    bool cache = true;
    bool mirror = false;
};
