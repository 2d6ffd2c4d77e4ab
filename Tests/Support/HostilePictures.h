#pragma once

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtGui/QImage>

/** Pictures of a few bytes that claim to be of any size. */
namespace HostilePictures {

/** Returns @p number as a file has it, least byte first. */
template <typename T>
QByteArray little(T number)
{
    QByteArray bytes(int(sizeof(T)), 0);
    qToLittleEndian<T>(number, bytes.data());
    return bytes;
}

/** Returns @p number as a file has it, least byte last. */
template <typename T>
QByteArray big(T number)
{
    QByteArray bytes(int(sizeof(T)), 0);
    qToBigEndian<T>(number, bytes.data());
    return bytes;
}

/** Returns @p image as a file of @p format. */
inline QByteArray saved(const QImage &image, const char *format)
{
    QByteArray data;
    QBuffer buffer(&data);
    if (!image.save(&buffer, format))
        qFatal("cannot write %s", format);
    return data;
}

inline QImage small()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

/** The checksum that parts of a PNG end with. */
inline quint32 checksum(const QByteArray &part)
{
    quint32 sum = ~0u;
    for (const char byte : part) {
        sum ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320u : 0);
    }
    return ~sum;
}

inline QByteArray png(int width, int height)
{
    constexpr int header = 12; // where the first part begins, after its length
    constexpr int headerSize = 17;
    QByteArray data = saved(small(), "png");
    data.replace(header + 4, 8, big<quint32>(quint32(width)) + big<quint32>(quint32(height)));
    return data.replace(header + headerSize, 4, big<quint32>(checksum(data.mid(header, headerSize))));
}

inline QByteArray jpeg(int width, int height)
{
    QByteArray data = saved(small(), "jpeg");
    const int frame = data.indexOf("\xFF\xC0");
    return data.replace(frame + 5, 4, big<quint16>(quint16(height)) + big<quint16>(quint16(width)));
}

inline QByteArray bmp(int width, int height)
{
    constexpr int size = 18;
    return saved(small(), "bmp").replace(size, 8, little<qint32>(width) + little<qint32>(height));
}

inline QByteArray ppm(int width, int height)
{
    return "P6 " + QByteArray::number(width) + ' ' + QByteArray::number(height) + " 255\n"
        + QByteArray(99, 0);
}

inline QByteArray xpm(int width, int height)
{
    return "/* XPM */\nstatic char *x[] = {\n\"" + QByteArray::number(width) + ' '
        + QByteArray::number(height) + " 1 1\",\n\"a c #fff\",\n\"aaa\"};\n";
}

/** A picture of one frame, on a canvas of one size. */
inline QByteArray gif(int width, int height)
{
    const QByteArray size = little<quint16>(quint16(width)) + little<quint16>(quint16(height));
    return "GIF89a" + size + QByteArray::fromHex("800000000000ffffff2c00000000") + size
        + QByteArray::fromHex("0002024c01003b");
}

/** Pictures in a file that says that each is of 16 x 16 pixels. */
inline QByteArray ico(const QList<QByteArray> &pictures)
{
    QByteArray list = little<quint16>(0) + little<quint16>(1) + little<quint16>(quint16(pictures.count()));
    QByteArray content;
    const int start = list.size() + pictures.count() * 16;
    for (const QByteArray &picture : pictures) {
        list += QByteArray::fromHex("1010000001002000") + little<quint32>(quint32(picture.size()))
            + little<quint32>(quint32(start + content.size()));
        content += picture;
    }
    return list + content;
}

/** One without the begin of its file, as it is in an icon. */
inline QByteArray icoBitmap(int width, int height)
{
    return little<quint32>(40) + little<qint32>(width) + little<qint32>(2 * height)
        + QByteArray::fromHex("01002000") + QByteArray(1000, 0);
}

inline QByteArray svg(const QByteArray &attributes, const QByteArray &content = {},
                      const QByteArray &prolog = {})
{
    return prolog + "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        + attributes + '>' + content + "</svg>";
}

inline QByteArray address(const QByteArray &type, const QByteArray &content)
{
    return "data:image/" + type + ";base64," + content.toBase64();
}

/** A part of an SVG that shows what is at @p address. */
inline QByteArray shown(const QByteArray &address)
{
    return "<image width='4' height='4' xlink:href='" + address + "'/>";
}

} // namespace HostilePictures
