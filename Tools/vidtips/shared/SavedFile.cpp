#include "SavedFile.h"

#include <QtCore/QSaveFile>

QString SavedFile::write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return QString("cannot write %1: %2").arg(path, file.errorString());
    return {};
}
