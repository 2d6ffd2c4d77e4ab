#pragma once

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QIODevice;
class QImageReader;
class QSize;
class QUrl;
QT_END_NAMESPACE

#include <functional>

/**
 * What a picture would take, as its header says: nothing is decoded to know it. Any thread.
 *
 * What does not look like a picture takes nothing: whoever tries to decode it says so.
 */
class QDeclarativePictureClaim
{
public:
    /** Tells whether the file at a path, which a picture shows, must not be read. */
    using Refusal = std::function<bool(const QString &path)>;

    /**
     * Makes one of nothing, of which up to @p megapixels are admitted; of the usual number, where 0 or less.
     * Without @p refuses, files that are no regular ones are refused.
     */
    explicit QDeclarativePictureClaim(int megapixels, const Refusal &refuses = {});

    /**
     * Adds the picture in @p device, which is at its begin before and afterwards, as it is when
     * it is asked for in @p requested size; vector pictures take any.
     */
    void add(QIODevice *device, const QSize &requested);

    /** Adds a picture that nobody has seen yet and that is made in @p requested size. */
    void add(const QSize &requested);

    /** Returns what to report of the picture at @p url that is not to be decoded; nothing if it may be. */
    QString message(const QUrl &url) const;

private:
    void addDrawing(QIODevice *device);
    void addInside(const QString &picture, const QString &folder);
    void addFile(const QString &path);
    void addSize(QImageReader *reader, const QSize &requested);
    void addPixels(qreal pixels);

    const qreal m_mostPixels;
    const Refusal m_refuses;
    qreal m_pixels = 0;
    int m_inside = 0;
    int m_depth = 0;
    QString m_problem;
};
