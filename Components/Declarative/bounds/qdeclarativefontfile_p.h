#pragma once

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

/** What a font would take, as its header says. Any thread. */
namespace QDeclarativeFontFile {

/** How much of a font tells its size, in bytes. */
constexpr int headerSize = 20;

/** Returns why the font in @p font, which is at its begin, is not to be loaded, or nothing. */
QString problem(QIODevice *font);

} // namespace QDeclarativeFontFile
