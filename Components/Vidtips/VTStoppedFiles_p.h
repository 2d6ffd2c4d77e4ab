#pragma once

#include "VTFileStamp_p.h"

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QString>

namespace Vidtips {

/**
 * The user interfaces that were stopped, as their scripts held the application up. One that was stopped twice
 * for tips of a package is barred for these until its file changes: what is shown may be what keeps it busy,
 * and the tips of other packages use the same one. GUI thread only.
 */
class VTStoppedFiles
{
public:
    /** Returns those of the program. */
    static VTStoppedFiles &instance();

    /** Counts one more stop of the file at @p path, with a tip of the package @p package. */
    void add(const QString &path, const QString &package);

    /** Tells whether the file at @p path, as it is now, is not to be loaded for tips of @p package. */
    bool isBarred(const QString &path, const QString &package) const;

private:
    struct Stops
    {
        VTFileStamp stamp;
        int count;
    };

    QHash<QPair<QString, QString>, Stops> m_files; // by file and package
};

} // namespace Vidtips
