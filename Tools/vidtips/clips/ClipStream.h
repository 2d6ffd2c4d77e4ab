#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/** What the file of a clip says of its pictures, without decoding them. */
struct ClipStreamFacts
{
    bool isRead = false; ///< Whether the rest says anything.
    double promised = 0.0; ///< How long the file says it is, in seconds; 0 where it does not.
    double found = 0.0; ///< Where the last of its pictures or sounds ends, in seconds.
    double shortest = 0.0; ///< How long pictures are shown, in seconds.
    double longest = 0.0;
    bool isVariable = false; ///< Whether that differs so much that it is seen.
    int rotation = 0; ///< How far the pictures are to be turned, in degrees.
    QString pixelAspect; ///< Width to height of a pixel, "4:3"; empty where it is square.
    bool hasUntaggedColours =
        false; ///< The pictures have colours of video that the file does not say the kind of.
    bool hasTransparency = false;

    /** Reads the clip at @p path to its end. */
    static ClipStreamFacts read(const QString &path);
};
