#pragma once

#include <QtCore/QString>
#include <QtGui/QIcon>

class QPainter;

/** The icons of the commands, drawn in the colours of the palette at any size. */
namespace Icons {

/** The icon of the command @p name; a null icon when it has none. */
QIcon icon(const QString &name);

/** Paints the icon of @p name into @p rect: its lines in @p ink, their important parts in @p accent. */
void paint(QPainter *painter, const QString &name, const QRectF &rect, const QColor &ink,
           const QColor &accent);

} // namespace Icons
