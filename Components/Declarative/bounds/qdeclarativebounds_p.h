#pragma once

#include <QtCore/QString>

/** How much of the host's memory content may ask for: more than any tip needs, and far from all there is. */
namespace QDeclarativeBounds {

constexpr qint64 mebibyte = 1024 * 1024; ///< bytes

constexpr qreal megapixel = 1000 * 1000; ///< pixels

/** Of a picture, all that is in it, in megapixels; unless an engine's `pictureLimit` says otherwise. */
constexpr int picture = 64;

/** Of the pictures in a picture. */
constexpr int picturesInside = 1000;

/** Of a vector picture, once it is unpacked, in bytes; an object that is made of it may take 70 times that.
 */
constexpr qint64 drawing = 8 * mebibyte;

/** Of a font, also once it is unpacked, in bytes. */
constexpr qint64 font = 64 * mebibyte;

/** Of XML that is searched, and of files that scripts request, in bytes; a search takes 30 times that. */
constexpr qint64 document = 16 * mebibyte;

/** Of tables in a text, levels of them: each doubles the time of the layout. */
constexpr int tables = 10;

/** Of what describes how a picture is scaled, in bytes; the rest is not read. */
constexpr qint64 description = 64 * 1024;

/** Of whatever comes over the network, in bytes. */
constexpr qint64 download = 64 * mebibyte;

/** Returns what to say of @p what, which is larger than @p bound. */
inline QString message(const char *what, qint64 bound)
{
    return QStringLiteral("%1 too large: more than %2 MiB")
        .arg(QLatin1String(what), QString::number(bound / mebibyte));
}

} // namespace QDeclarativeBounds
