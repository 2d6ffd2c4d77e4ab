#include "qdeclarativepictureclaim_p.h"

#include "qdeclarativebounds_p.h"
#include "qdeclarativedrawing_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtCore/QtEndian>
#include <QtGui/QImageReader>

namespace {

/** Vector pictures that show each other without an end do so deeper than any that mean it. */
constexpr int mostDepth = 8;

bool isDrawing(const QByteArray &format)
{
    return format.startsWith("svg");
}

bool isScalable(const QByteArray &format)
{
    return isDrawing(format) || format == "pdf";
}

/** The height of a bitmap that begins at its bottom is negative. */
qreal area(const QSizeF &size)
{
    return qAbs(size.width() * size.height());
}

QSizeF drawnSize(const QSizeF &own, const QSize &requested)
{
    if (requested.width() <= 0 && requested.height() <= 0)
        return own;
    const qreal byWidth = requested.width() / own.width();
    const qreal byHeight = requested.height() / own.height();
    return requested.isEmpty() ? own * qMax(byWidth, byHeight) : QSizeF(requested);
}

/** Returns how many pixels there are by the header of the picture that is one of those in an icon. */
qreal pixelsOfIcon(const QByteArray &header)
{
    constexpr int pngSize = 16; // where it stands
    constexpr int bitmapSize = 4;
    constexpr int headerSize = 24;
    if (header.size() < headerSize)
        return 0;
    const char *const data = header.constData();
    if (header.startsWith("\x89PNG"))
        return qreal(qFromBigEndian<quint32>(data + pngSize)) * qFromBigEndian<quint32>(data + pngSize + 4);
    // The picture and its mask, one above the other.
    return qAbs(qreal(qFromLittleEndian<qint32>(data + bitmapSize))
                * qFromLittleEndian<qint32>(data + bitmapSize + 4) / 2);
}

/** The list of an icon's pictures tells sizes as well, which may be others than what is decoded. */
qreal pixelsOfIcons(QIODevice *device)
{
    constexpr int listStart = 6;
    constexpr int entrySize = 16;
    constexpr int offset = 12; // in an entry
    constexpr int headerSize = 24;
    const QByteArray start = device->peek(listStart);
    if (start.size() < listStart)
        return 0;
    const int count = qFromLittleEndian<quint16>(start.constData() + 4);
    const QByteArray list = device->peek(listStart + qint64(count) * entrySize).mid(listStart);
    qreal most = 0;
    for (int at = 0; at + entrySize <= list.size(); at += entrySize) {
        device->seek(qFromLittleEndian<quint32>(list.constData() + at + offset));
        most = qMax(most, pixelsOfIcon(device->read(headerSize)));
    }
    device->seek(0);
    return most;
}

/** The pictures of an animation share one canvas; those of other files have sizes of their own. */
qreal mostPixels(QImageReader *reader)
{
    qreal most = area(reader->size());
    if (reader->supportsAnimation())
        return most;
    const int count = reader->imageCount();
    for (int i = 1; i < count && reader->jumpToImage(i); ++i)
        most = qMax(most, area(reader->size()));
    return most;
}

bool isNoFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

} // namespace

QDeclarativePictureClaim::QDeclarativePictureClaim(int megapixels, const Refusal &refuses)
    : m_mostPixels((megapixels > 0 ? megapixels : QDeclarativeBounds::picture)
                   * QDeclarativeBounds::megapixel)
    , m_refuses(refuses ? refuses : isNoFile)
{
}

QString QDeclarativePictureClaim::message(const QUrl &url) const
{
    if (m_problem.isEmpty())
        return {};
    // An address may be the picture itself.
    constexpr int readable = 1000;
    return QStringLiteral("Error decoding: %1: %2").arg(url.toString().left(readable), m_problem);
}

void QDeclarativePictureClaim::add(QIODevice *device, const QSize &requested)
{
    QImageReader reader(device);
    const QByteArray format = reader.format();
    if (isDrawing(format))
        addDrawing(device);
    else if (format == "ico" || format == "cur")
        addPixels(pixelsOfIcons(device));
    if (m_problem.isEmpty() && !format.isEmpty())
        addSize(&reader, requested);
    device->seek(0);
}

void QDeclarativePictureClaim::add(const QSize &requested)
{
    if (!requested.isEmpty())
        addPixels(area(requested));
}

void QDeclarativePictureClaim::addSize(QImageReader *reader, const QSize &requested)
{
    if (!reader->supportsOption(QImageIOHandler::Size)) {
        m_problem = QStringLiteral("Image does not tell its size");
        return;
    }
    if (!isScalable(reader->format()))
        addPixels(mostPixels(reader));
    else if (!reader->size().isEmpty())
        addPixels(area(drawnSize(reader->size(), requested)));
}

// Making objects of a drawing decodes the pictures in it, so that its own size is asked for afterwards.
void QDeclarativePictureClaim::addDrawing(QIODevice *device)
{
    const auto *const file = qobject_cast<QFile *>(device);
    const QString folder = file ? QFileInfo(file->fileName()).absolutePath() : QDir::currentPath();
    QByteArray text;
    if (!QDeclarativeDrawing::read(device, &text)) {
        m_problem = QDeclarativeBounds::message("Drawing", QDeclarativeBounds::drawing);
        return;
    }
    ++m_depth;
    const QStringList pictures = QDeclarativeDrawing::pictures(text);
    for (const QString &picture : pictures) {
        if (m_problem.isEmpty())
            addInside(picture, folder);
    }
    --m_depth;
}

void QDeclarativePictureClaim::addInside(const QString &picture, const QString &folder)
{
    const QLatin1String mark("base64,");
    if (++m_inside > QDeclarativeBounds::picturesInside || m_depth > mostDepth) {
        m_problem = QStringLiteral("Drawing of too many pictures");
    } else if (picture.startsWith(QLatin1String("data"))) {
        const int begin = picture.lastIndexOf(mark);
        QByteArray content = QByteArray::fromBase64(picture.mid(begin + mark.size()).toLatin1());
        QBuffer buffer(&content);
        buffer.open(QIODevice::ReadOnly);
        add(&buffer, {});
    } else if (!picture.isEmpty()) {
        const QUrl url(picture);
        addFile(QDir(folder).absoluteFilePath(url.isLocalFile() ? url.toLocalFile() : picture));
    }
}

void QDeclarativePictureClaim::addFile(const QString &path)
{
    QFile file(path);
    if (m_refuses(path))
        m_problem = QStringLiteral("Drawing shows what must not be read: %1").arg(path);
    else if (file.exists() && file.open(QIODevice::ReadOnly))
        add(&file, {});
}

void QDeclarativePictureClaim::addPixels(qreal pixels)
{
    m_pixels += pixels;
    if (m_pixels <= m_mostPixels || !m_problem.isEmpty())
        return;
    m_problem = QStringLiteral("Image too large: %1 megapixels, where %2 are the most")
                    .arg(QString::number(m_pixels / QDeclarativeBounds::megapixel, 'f', 1),
                         QString::number(m_mostPixels / QDeclarativeBounds::megapixel, 'f', 0));
}
