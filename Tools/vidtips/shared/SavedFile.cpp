#include "SavedFile.h"

#include <QtCore/QSaveFile>

namespace {

// Bytes that wait in Qt's buffer have to find room before a commit, which does not ask whether they did.
bool isWritten(QSaveFile &file, const QByteArray &content)
{
    return file.write(content) == content.size() && file.flush();
}

} // namespace

QString SavedFile::write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    const QString problem = QString("cannot write %1: ").arg(path);
    if (!file.open(QIODevice::WriteOnly))
        return problem + file.errorString();
    // Qt seldom knows why.
    if (!isWritten(file, content))
        return problem + "there is no room for it";
    return file.commit() ? QString() : problem + file.errorString();
}
