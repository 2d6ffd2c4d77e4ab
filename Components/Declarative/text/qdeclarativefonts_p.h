#pragma once

#include <QtGui/QFont>

/** Has items that ask for the same font share one, so that its engine is looked up once. GUI thread only. */
namespace QDeclarativeFonts {

/** Returns the font that was used lately and equals @p font in every respect, else @p font. */
QFont shared(const QFont &font);

} // namespace QDeclarativeFonts
