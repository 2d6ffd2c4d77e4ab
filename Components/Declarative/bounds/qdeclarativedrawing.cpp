#include "qdeclarativedrawing_p.h"

#include "qdeclarativebounds_p.h"

#include <QtCore/QIODevice>
#include <QtCore/QXmlStreamReader>

#include <zlib.h>

namespace {

constexpr int mostBytes = int(QDeclarativeBounds::drawing);

/** Unpacks as much of @p packed as tells whether it is too much. */
QByteArray unpacked(QByteArray packed)
{
    constexpr int gzip = 16;
    QByteArray text(mostBytes + 1, Qt::Uninitialized);
    z_stream stream = {};
    stream.next_in = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_in = uInt(packed.size());
    stream.next_out = reinterpret_cast<Bytef *>(text.data());
    stream.avail_out = uInt(text.size());
    if (inflateInit2(&stream, MAX_WBITS + gzip) != Z_OK)
        return {};
    inflate(&stream, Z_FINISH);
    text.truncate(int(stream.total_out));
    inflateEnd(&stream);
    return text;
}

/** Most pictures need not be parsed to know that there are none in them. */
bool mayHavePictures(const QByteArray &text)
{
    // Entities may spell elements out, and other encodings put something between the letters.
    return text.contains("image") || text.contains("<!ENTITY") || text.contains('\0');
}

/** Which of several addresses is shown is for whoever shows it to know. */
void appendAddresses(const QXmlStreamAttributes &attributes, QStringList *all)
{
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.name() == QLatin1String("href"))
            all->append(attribute.value().toString());
    }
}

} // namespace

bool QDeclarativeDrawing::read(QIODevice *device, QByteArray *text)
{
    device->seek(0);
    *text = device->read(mostBytes + 1);
    device->seek(0);
    if (text->startsWith("\x1f\x8b"))
        *text = unpacked(*text);
    return text->size() <= mostBytes;
}

QStringList QDeclarativeDrawing::pictures(const QByteArray &text)
{
    QStringList all;
    if (!mayHavePictures(text))
        return all;
    QXmlStreamReader xml(text);
    // Nobody declares the prefix in which they are named, and nobody misses it.
    xml.setNamespaceProcessing(false);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("image"))
            appendAddresses(xml.attributes(), &all);
    }
    return all;
}
