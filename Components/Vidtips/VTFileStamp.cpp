#include "VTFileStamp_p.h"

#include <QtCore/QFile>

#ifdef Q_OS_LINUX
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <time.h>

#include <algorithm>
#include <iterator>
#endif

namespace Vidtips {

#ifdef Q_OS_LINUX

namespace {

// These set the time of change themselves, with each change and finely. Others may get it from another
// machine or program, and late.
constexpr quint32 exactFileSystems[] = {
    EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,     F2FS_SUPER_MAGIC,
    TMPFS_MAGIC,      RAMFS_MAGIC,     OVERLAYFS_SUPER_MAGIC,
};

bool isOnExactFileSystem(int descriptor)
{
    struct statfs system;
    const auto *const end = std::end(exactFileSystems);
    return fstatfs(descriptor, &system) == 0
        && std::find(std::begin(exactFileSystems), end, quint32(system.f_type)) != end;
}

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

VTFileStamp stampFrom(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return {};
    return {quint64(status.st_dev), quint64(status.st_ino), qint64(status.st_size),
            nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

} // namespace

VTFileStamp VTFileStamp::at(const char *path, int folder)
{
    struct stat status;
    return fstatat(folder, path, &status, 0) == 0 ? stampFrom(status) : VTFileStamp();
}

// The clock is read first: what changes from then on is later than what it says.
VTFileStamp VTFileStamp::settledOf(const QFile &file)
{
    timespec now;
    struct stat status;
    if (clock_gettime(CLOCK_REALTIME_COARSE, &now) != 0 || fstat(file.handle(), &status) != 0)
        return {};
    const VTFileStamp stamp = stampFrom(status);
    const bool isReliable = stamp.isSettled(nanoseconds(now)) && isOnExactFileSystem(file.handle());
    return isReliable ? stamp : VTFileStamp();
}

#else

VTFileStamp VTFileStamp::at(const char *, int)
{
    return {};
}

VTFileStamp VTFileStamp::settledOf(const QFile &)
{
    return {};
}

#endif

// A time of change is that of the clock's last tick, and is set before the bytes are, which may have to wait
// for memory or a disk. A time without a fraction comes from a file system that has no finer ones.
bool VTFileStamp::isSettled(qint64 now) const
{
    constexpr qint64 coarseStep = 1000000;
    return !isNull() && changed % coarseStep != 0 && changed <= now - settlingTime;
}

bool VTFileStamp::operator==(const VTFileStamp &other) const
{
    return changed == other.changed && inode == other.inode && size == other.size
        && modified == other.modified && device == other.device && !isNull();
}

} // namespace Vidtips
