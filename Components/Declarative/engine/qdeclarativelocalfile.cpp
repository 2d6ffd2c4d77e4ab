#include "qdeclarativelocalfile_p.h"

#include "guard/qdeclarativeguards_p.h"

#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>

bool QDeclarativeLocalFile::isRefused(const QUrl &url)
{
    // An address without a scheme is opened as a path.
    const QString path = url.scheme().isEmpty() ? url.path() : QQmlFile::urlToLocalFileOrQrc(url);
    if (path.isEmpty())
        return false;
    const QFileInfo file(path);
    return file.exists() && !file.isFile();
}

bool QDeclarativeLocalFile::isRefused(const QUrl &url, const QObject *element)
{
    return isRefused(url) || QDeclarativeGuards::refuses(url, element);
}

bool QDeclarativeLocalFile::isPictureRefused(const QUrl &url, const QObject *element)
{
    return isRefused(url) || QDeclarativeGuards::refusesPicture(url, element);
}

QString QDeclarativeLocalFile::message(const QUrl &url)
{
    return QStringLiteral("Cannot open: %1").arg(url.toString());
}

bool QDeclarativeLocalFile::refuse(const QUrl &url, const QObject *element)
{
    const bool refused = isRefused(url, element);
    if (refused)
        qmlWarning(element) << message(url);
    return refused;
}
