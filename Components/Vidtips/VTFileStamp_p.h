#pragma once

#include <QtCore/QtGlobal>

QT_BEGIN_NAMESPACE
class QFile;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * What the file system says of a regular file: while it says the same, the file has the same bytes.
 *
 * That holds for the stamps that settledOf() gives. Where the system has no such stamps, all are null.
 */
struct VTFileStamp
{
    /** How long a file must have been left alone before its stamp is believed, in nanoseconds. */
    static constexpr qint64 settlingTime = 1000000000;

    /**
     * Returns the stamp of the file with the name @p path in the folder that is open as @p folder, or of that
     * at @p path where it is absolute. Null unless a regular file is there; links are followed.
     */
    static VTFileStamp at(const char *path, int folder);

    /** Returns the stamp of the open @p file, or a null one when a later change might give the same. */
    static VTFileStamp settledOf(const QFile &file);

    /** Tells whether every change after @p now, in nanoseconds since the epoch, gives another stamp. */
    bool isSettled(qint64 now) const;

    bool isNull() const { return inode == 0; }

    /** Null stamps equal none. */
    bool operator==(const VTFileStamp &other) const;

    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< when the bytes were changed, in nanoseconds since the epoch; anyone may set it
    qint64 changed = 0; ///< when anything of the file was changed, likewise; only the system sets it
};

} // namespace Vidtips
