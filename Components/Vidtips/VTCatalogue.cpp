#include "VTCatalogue_p.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace Vidtips {

namespace {

VTFileStamp stampOf(const QString &path)
{
    constexpr int noFolder = -1; // paths are absolute
    return VTFileStamp::at(QFile::encodeName(path).constData(), noFolder);
}

} // namespace

// A catalogue is a head and blocks, each of a tag, a length and as many bytes.
bool VTCatalogue::namesOthers(const QString &path)
{
    constexpr int headSize = 16;
    constexpr quint8 names = 0x96;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.read(headSize).size() != headSize)
        return false;
    QDataStream stream(&file);
    quint8 tag = 0;
    quint32 length = 0;
    do {
        stream >> tag >> length;
        if (tag == names)
            return true;
    } while (tag && length && length <= file.bytesAvailable() && file.seek(file.pos() + length));
    return false;
}

void VTCatalogue::load(const QString &path, bool mayNameOthers)
{
    // Before it is read: what changes it meanwhile is seen the next time.
    m_stamp = stampOf(path);
    const bool isFile = QFileInfo(path).isFile();
    m_isRefused = isFile && !mayNameOthers && namesOthers(path);
    m_isLoaded = isFile && !m_isRefused && m_translator.load(path);
    m_path = path;
    m_mayNameOthers = mayNameOthers;
}

bool VTCatalogue::isCurrent(const QString &path, bool mayNameOthers) const
{
    return isOf(path, mayNameOthers)
        || (path == m_path && mayNameOthers == m_mayNameOthers && stampOf(path) == m_stamp);
}

QString VTCatalogue::translate(const QString &text, const QString &context) const
{
    return m_translator.translate(context.toUtf8().constData(), text.toUtf8().constData());
}

} // namespace Vidtips
