#include "VTLookUp_p.h"

#ifdef Q_OS_LINUX
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#endif

namespace Vidtips {

namespace {

int openLookUps = 0;
quint64 lastNumber = 0;

} // namespace

VTLookUp::VTLookUp()
    : m_number(openLookUps++ > 0 ? lastNumber : ++lastNumber)
{
}

VTLookUp::~VTLookUp()
{
    leaveFolder();
    --openLookUps;
}

#ifdef Q_OS_LINUX

// The system finds a name in an open folder faster than at the end of a path. A folder is only opened for its
// second file, so that folders with one file each are not.
VTFileStamp VTLookUp::stampOf(const QByteArray &path)
{
    const char *const name = path.constData() + m_folder.size();
    const bool isInFolder = !m_folder.isEmpty() && path.startsWith(m_folder) && !std::strchr(name, '/');
    if (!isInFolder) {
        leaveFolder();
        m_folder = path.left(path.lastIndexOf('/') + 1);
        return VTFileStamp::at(path.constData(), AT_FDCWD);
    }
    if (m_descriptor < 0)
        m_descriptor = ::open(m_folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return m_descriptor < 0 ? VTFileStamp::at(path.constData(), AT_FDCWD)
                            : VTFileStamp::at(name, m_descriptor);
}

void VTLookUp::leaveFolder()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

#else

VTFileStamp VTLookUp::stampOf(const QByteArray &)
{
    return {};
}

void VTLookUp::leaveFolder() { }

#endif

} // namespace Vidtips
