#pragma once

#include <QtCore/QString>
#include <QtGui/QPalette>

struct CanvasColors;

/** The appearances of the application: "light" and "dark". */
namespace Theme {

QPalette palette(const QString &style);
CanvasColors canvas(const QString &style);

/** Gives the application the palette of @p style and the matching tool-tip colours. */
void apply(const QString &style);

} // namespace Theme
