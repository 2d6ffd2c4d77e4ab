#include "VTBrokenFiles_p.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>

namespace Vidtips {

VTFileError::VTFileError(QFile &file, const QString &text)
    : text(text)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!text.isEmpty() && file.seek(0) && hash.addData(&file))
        checksum = hash.result();
}

void VTBrokenFiles::note(const QString &path, const VTFileError &error)
{
    if (error.text.isEmpty()) {
        m_entries.remove(path);
        return;
    }
    const auto known = m_entries.constFind(path);
    if (known == m_entries.cend() || known->error.checksum != error.checksum)
        m_entries.insert(path, {error, false});
}

QStringList VTBrokenFiles::takeMessages()
{
    QStringList messages;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it) {
        if (!it->isTold)
            messages << QStringLiteral("%1:%2; nothing from there on is read").arg(it.key(), it->error.text);
        it->isTold = true;
    }
    return messages;
}

} // namespace Vidtips
