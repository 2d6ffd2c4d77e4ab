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

private:
    void checkFolders(const Content &content, Findings &findings);
    void checkFile(const ControlFile &file, Findings &findings);
    void checkRefused(const ControlFile &file, Findings &findings);
    void checkStrayFiles(const Package &package, Findings &findings);
    void checkSuffixes(const Package &package, Findings &findings);
};
