#pragma once

#include "VTFileStamp_p.h"

#include <QtCore/QHash>
#include <QtCore/QString>

namespace Vidtips {

/**
 * The user interfaces that were stopped, as their scripts held the application up. One that was stopped twice
 * is barred until its file changes. GUI thread only.
 */
class VTStoppedFiles
{
public:
    /** Returns those of the program. */
    static VTStoppedFiles &instance();

    /** Counts one more stop of the file at @p path. */
    void add(const QString &path);

    /** Tells whether the file at @p path, as it is now, is not to be loaded. */
    bool isBarred(const QString &path) const;

private:
    struct Stops
    {
        VTFileStamp stamp;
        int count;
    };

    QHash<QString, Stops> m_files;
};

} // namespace Vidtips
