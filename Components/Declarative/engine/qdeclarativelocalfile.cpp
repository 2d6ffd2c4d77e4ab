#include "qdeclarativelocalfile_p.h"

#include "guard/qdeclarativeguards_p.h"

#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtQml/QQmlAbstractUrlInterceptor>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>

namespace {

QString pathOf(const QUrl &url)
{
    // An address without a scheme is opened as a path.
    return url.scheme().isEmpty() ? url.path() : QQmlFile::urlToLocalFileOrQrc(url);
}

/** Has the engine look for code in vain where it would wait for somebody who writes it. */
class Interceptor : public QQmlAbstractUrlInterceptor
{
public:
    QUrl intercept(const QUrl &url, DataType type) override
    {
        return type == UrlString ? url : QDeclarativeLocalFile::codeAt(url);
    }
};

} // namespace

bool QDeclarativeLocalFile::isRefused(const QUrl &url)
{
    const QString path = pathOf(url);
    if (path.isEmpty())
        return false;
    const QFileInfo file(path);
    return file.exists() && !file.isFile();
}

QUrl QDeclarativeLocalFile::codeAt(const QUrl &url)
{
    const QFileInfo file(pathOf(url));
    // Nobody waits for a folder, and the engine has a message of its own.
    const bool isRead = !file.exists() || file.isFile() || file.isDir();
    return isRead ? url : QUrl(QStringLiteral("qrc:/refused/") + url.fileName());
}

QQmlAbstractUrlInterceptor *QDeclarativeLocalFile::interceptor()
{
    static Interceptor interceptor;
    return &interceptor;
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
