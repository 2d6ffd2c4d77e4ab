#pragma once

#include <QtCore/QStringList>

class Content;
class Findings;

/**
 * Looks through the folders that were named for those that somebody took for packages: they have control
 * files, and are named or lie so that no host finds them.
 */
class FolderCheck
{
public:
    void run(const Content &content, Findings &findings);

private:
    void search(const Content &content, const QString &folder, int depth);
    void checkFound(const QString &folder, Findings &findings) const;

    QStringList m_found;
};
