#include "SavedFile.h"

#include <QtCore/QSaveFile>

namespace {

// Of bytes that found no room Qt says how many they are, and no more.
QString problemWith(const QSaveFile &file)
{
    return file.error() == QFileDevice::NoError ? "the disk is full" : file.errorString();
}

} // namespace

QString SavedFile::write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return QString("cannot write %1: %2").arg(path, problemWith(file));
    return {};
}
