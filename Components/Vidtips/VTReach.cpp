#include "VTReach_p.h"

#include "VTContentGate_p.h"

namespace Vidtips {

bool VTReach::admitsFile(const QString &path) const
{
    return !isRestricted || VTContentGate(folders).admitsFile(path);
}

bool operator==(const VTReach &one, const VTReach &other)
{
    return one.isRestricted == other.isRestricted && one.folders == other.folders;
}

} // namespace Vidtips
