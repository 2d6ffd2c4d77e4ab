#pragma once

#include "shared/Position.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/** What a file of a package asks for, as far as it is written out there. */
struct Mention
{
    enum Kind {
        Module, ///< an import; the text is its name
        Address, ///< something to read; relative to the file
        Beginning, ///< the same, of which the rest is not known
        Plugin,
        Door, ///< something that is refused in any case; the text is what to call it
        Opening ///< an address for the host to open
    };

    Kind kind = Address;
    QString text;
    Position position;
    int major = -1;
    int minor = -1;
};

using Mentions = QVector<Mention>;
