#pragma once

#include "Position.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/** How the bytes of XML files stand for characters. */
namespace Encoding {

/** What is wrong, and where it is first seen. */
struct Problem
{
    QString message; ///< Empty where nothing is.
    Position position;
};

/** Tells whether @p bytes are UTF-16, with a mark of it or without. */
bool isUtf16(const QByteArray &bytes);

/** Returns where @p bytes are not in the encoding that they declare, or else in UTF-8. */
Problem problemWith(const QByteArray &bytes);

} // namespace Encoding
