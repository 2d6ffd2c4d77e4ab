#pragma once

#include <QtCore/QStringList>

class Findings;

/**
 * Looks in QML files for what cannot be told to those who do not see a tip: areas that answer clicks, and
 * buttons, which have no name. As the library does, it takes a text on them or beside them for one; a type
 * that the file has from elsewhere may hold such a text, and is given the benefit of the doubt.
 */
class AccessCheck
{
public:
    /** Reads the QML in @p files. What does not parse is left to the check that compiles it. */
    void run(const QStringList &files, Findings &findings) const;
};
