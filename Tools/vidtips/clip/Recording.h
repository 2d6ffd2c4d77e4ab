#pragma once

#include "clips/ClipProbe.h"
#include "clips/ClipStream.h"

#include <QtCore/QSize>
#include <QtCore/QString>

/** A file that a clip is made of, or a clip that was made: what it is, and how that is told. */
struct Recording
{
    QString path;
    ClipFacts facts;
    ClipStreamFacts stream;
    qint64 bytes = 0; ///< The size of the file.

    /** Reads the file at @p path; returns what keeps a clip from being made of it, or nothing. */
    QString read(const QString &path);

    /** How long it is, in seconds. */
    double seconds() const { return stream.found > 0.0 ? stream.found : facts.seconds; }

    /** The bytes of all its frames when they are decoded. */
    qint64 memory() const;

    /** The size that it is meant to be seen in, which turned or oblong pixels make another than that of its
     * pictures. */
    QSize shownSize() const;

    /** One line: size, rate, length, memory, bytes of the file, and what players that care would do to it. */
    QString description() const;
};
