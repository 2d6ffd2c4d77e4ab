#include "qdeclarativefontfile_p.h"

#include "qdeclarativebounds_p.h"

#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

namespace {

/** Returns the size of @p font, which a packed one tells of itself. */
qint64 claimedSize(QIODevice *font)
{
    constexpr int sizeOffset = 16;
    const QByteArray header = font->peek(QDeclarativeFontFile::headerSize);
    const bool isPacked = header.startsWith("wOFF") || header.startsWith("wOF2");
    if (!isPacked || header.size() < QDeclarativeFontFile::headerSize)
        return font->size();
    return qMax<qint64>(font->size(), qFromBigEndian<quint32>(header.constData() + sizeOffset));
}

} // namespace

QString QDeclarativeFontFile::problem(QIODevice *font)
{
    constexpr qint64 bound = QDeclarativeBounds::font;
    return claimedSize(font) > bound ? QDeclarativeBounds::message("Font", bound) : QString();
}
