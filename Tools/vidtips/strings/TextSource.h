#pragma once

#include "shared/Position.h"

#include <QtCore/QString>
#include <QtCore/QVector>

struct ControlFile;

/** A text as the library looks it up in a catalogue. */
struct TranslatableText
{
    QString context;
    QString source;
    QString file;
    Position position;
    QString comment; ///< Tells texts apart that are alike.
    bool isPlural = false;
};

/**
 * Finds the texts of control files that catalogues translate.
 *
 * These are the titles and texts of entries that name a translation context in a file that serves every
 * locale. White space in a text counts as one blank, which is how user interfaces ask for it.
 */
namespace TextSource {

QVector<TranslatableText> textsOf(const ControlFile &file);

} // namespace TextSource
