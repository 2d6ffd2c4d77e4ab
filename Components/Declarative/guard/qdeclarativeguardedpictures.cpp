#include "qdeclarativeguardedpictures_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>
#include <QtGui/QImageReader>

namespace {

// Others come with plugins of the system, some of which start other programs.
constexpr const char *formats[] = {"png", "jpg", "jpeg", "gif", "bmp",  "ico", "cur", "pbm",
                                   "pgm", "ppm", "tiff", "tif", "webp", "xbm", "xpm", "svg"};

bool isUsual(const QByteArray &format)
{
    for (const char *usual : formats) {
        if (format == usual)
            return true;
    }
    return false;
}

// Drawings that hold drawings. Qt draws more, and nobody needs them.
constexpr int mostLevels = 8;

QString problemIn(QIODevice *picture, int level);

// As Qt finds the bytes that an address holds.
QByteArray bytesIn(const QString &address)
{
    const QString mark = QStringLiteral("base64,");
    const int begin = address.lastIndexOf(mark);
    return begin < 0 ? QByteArray() : QByteArray::fromBase64(address.mid(begin + mark.size()).toLatin1());
}

// What lies in the drawing itself, which for a picture would be the name of a file, or in the address: then
// it may be a drawing that names others.
bool isInside(const QString &reference, bool isPicture, int level)
{
    if (!reference.startsWith(QLatin1String("data:")))
        return reference.isEmpty() || (reference.startsWith(QLatin1Char('#')) && !isPicture);
    QByteArray bytes = bytesIn(reference);
    QBuffer picture(&bytes);
    return level < mostLevels && picture.open(QIODevice::ReadOnly)
        && problemIn(&picture, level + 1).isEmpty();
}

bool refersElsewhere(const QXmlStreamReader &reader, int level)
{
    if (reader.isProcessingInstruction())
        return reader.processingInstructionTarget() == QLatin1String("xml-stylesheet");
    // Links are not followed by who shows a drawing.
    if (!reader.isStartElement() || reader.qualifiedName() == QLatin1String("a"))
        return false;
    const bool isPicture = reader.qualifiedName().endsWith(QLatin1String("image"));
    const auto attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.qualifiedName().endsWith(QLatin1String("href"))
            && !isInside(attribute.value().toString(), isPicture, level))
            return true;
    }
    return false;
}

// Qt's own reader stops at the first error, too.
bool namesOthers(QIODevice *drawing, int level)
{
    QXmlStreamReader reader(drawing);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        reader.readNext();
        if (refersElsewhere(reader, level))
            return true;
    }
    return false;
}

QString problemIn(QIODevice *picture, int level)
{
    const QByteArray format = QImageReader::imageFormat(picture);
    if (format.isEmpty())
        return {};
    if (!isUsual(format))
        return QStringLiteral("pictures of the format %1").arg(QString::fromLatin1(format));
    picture->seek(0);
    return format == "svg" && namesOthers(picture, level) ? QStringLiteral("drawings that name other files")
                                                          : QString();
}

} // namespace

QString QDeclarativeGuardedPictures::problemOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? problemIn(&file, 0) : QString();
}
