#include "qdeclarativeguardedpictures_p.h"

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

// What lies in the drawing itself, or in the address.
bool isInside(const QString &reference)
{
    return reference.startsWith(QLatin1Char('#')) || reference.startsWith(QLatin1String("data:"))
        || reference.isEmpty();
}

bool refersElsewhere(const QXmlStreamReader &reader)
{
    if (reader.isProcessingInstruction())
        return reader.processingInstructionTarget() == QLatin1String("xml-stylesheet");
    // Links are not followed by who shows a drawing.
    if (!reader.isStartElement() || reader.qualifiedName() == QLatin1String("a"))
        return false;
    const auto attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.qualifiedName().endsWith(QLatin1String("href"))
            && !isInside(attribute.value().toString()))
            return true;
    }
    return false;
}

// Qt's own reader stops at the first error, too.
bool namesOthers(QIODevice *drawing)
{
    QXmlStreamReader reader(drawing);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        reader.readNext();
        if (refersElsewhere(reader))
            return true;
    }
    return false;
}

} // namespace

QString QDeclarativeGuardedPictures::problemOf(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray format = QImageReader::imageFormat(&file);
    if (format.isEmpty())
        return {};
    if (!isUsual(format))
        return QStringLiteral("pictures of the format %1").arg(QString::fromLatin1(format));
    file.seek(0);
    return format == "svg" && namesOthers(&file) ? QStringLiteral("drawings that name other files")
                                                 : QString();
}
