#include "VTStoppedFiles_p.h"

#include <QtCore/QFile>

namespace Vidtips {

namespace {

constexpr int mostStops = 2;

VTFileStamp stampOf(const QString &path)
{
    constexpr int noFolder = -1;
    return VTFileStamp::at(QFile::encodeName(path).constData(), noFolder);
}

} // namespace

VTStoppedFiles &VTStoppedFiles::instance()
{
    static VTStoppedFiles files;
    return files;
}

void VTStoppedFiles::add(const QString &path, const QString &package)
{
    const VTFileStamp now = stampOf(path);
    const auto found = m_files.find({path, package});
    if (found != m_files.end() && found->stamp == now)
        ++found->count;
    else
        m_files.insert({path, package}, {now, 1});
}

bool VTStoppedFiles::isBarred(const QString &path, const QString &package) const
{
    const auto found = m_files.constFind({path, package});
    return found != m_files.constEnd() && found->count >= mostStops && found->stamp == stampOf(path);
}

} // namespace Vidtips
