#pragma once

#include <QtCore/QStringList>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

/** What the text of a vector picture says, before Qt makes objects of it. Any thread. */
namespace QDeclarativeDrawing {

/**
 * Reads the picture in @p device, from its begin, into @p text, and unpacks it where it is compressed.
 * Returns false, with a part of it, where it is larger than QDeclarativeBounds::drawing.
 */
bool read(QIODevice *device, QByteArray *text);

/** Returns what the pictures in the picture @p text are: the content of data addresses, or names of files. */
QStringList pictures(const QByteArray &text);

} // namespace QDeclarativeDrawing
