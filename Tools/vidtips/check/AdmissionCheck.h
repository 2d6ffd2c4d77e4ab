#pragma once

#include <QtCore/QString>

class Content;
class Findings;
struct ControlFile;
struct Package;

/** Finds what the library never looks at or never admits, and says why. */
class AdmissionCheck
{
public:
    void run(const Content &content, Findings &findings);

    /** Tells whether the first tag of the file at @p path is that of a control file, whatever its place. */
    static bool looksLikeControlFile(const QString &path);

private:
    void checkFolders(const Content &content, Findings &findings);
    void checkFile(const ControlFile &file, Findings &findings);
    void checkRefused(const ControlFile &file, Findings &findings);
    void checkStrayFiles(const Package &package, Findings &findings);
    void checkSuffixes(const Package &package, Findings &findings);
};
