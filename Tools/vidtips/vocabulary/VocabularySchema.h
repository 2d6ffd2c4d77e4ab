#pragma once

#include <QtCore/QByteArray>

class Vocabulary;

/** A vocabulary as an XML schema, for editors and validators. */
namespace VocabularySchema {

/**
 * Returns the schema of control files whose tips are of @p vocabulary.
 *
 * Its language cannot say how many of an element there may be in any order, so editors allow more than a
 * check does.
 */
QByteArray of(const Vocabulary &vocabulary);

/** Returns the schema of control files of any vocabulary. */
QByteArray ofAny();

} // namespace VocabularySchema
