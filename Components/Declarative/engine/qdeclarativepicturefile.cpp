#include "qdeclarativepicturefile_p.h"

#include "bounds/qdeclarativepictureclaim_p.h"
#include "qdeclarativelocalfile_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>

#include <private/qdataurl_p.h>
#include <private/qquickpixmapcache_p.h>

#include <algorithm>

namespace {

/** Returns the files that may be loaded for @p path: Qt tries suffixes where there is none. */
QStringList filesFor(const QString &path)
{
    const QFileInfo file(path);
    if (file.exists() || !file.suffix().isEmpty())
        return {path};
    QStringList all;
    const auto found = file.dir().entryInfoList({file.fileName() + QLatin1String(".*")}, QDir::Files);
    for (const QFileInfo &candidate : found)
        all.append(candidate.filePath());
    return all;
}

/** Tells whether @p element must not read the files @p candidates, one of which may be loaded for @p url. */
bool isAnyRefused(const QStringList &candidates, const QUrl &url, const QObject *element)
{
    return std::any_of(candidates.cbegin(), candidates.cend(), [&](const QString &path) {
        QUrl candidate(url);
        candidate.setPath(path.startsWith(QLatin1Char(':')) ? path.mid(1) : path);
        return QDeclarativeLocalFile::isPictureRefused(candidate, element);
    });
}

void addContent(QByteArray content, const QSize &requested, QDeclarativePictureClaim *claim)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    claim->add(&buffer, requested);
}

void addFiles(const QStringList &paths, const QSize &requested, QDeclarativePictureClaim *claim)
{
    for (const QString &path : paths) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            claim->add(&file, requested);
    }
}

int pictureLimit(const QObject *element)
{
    const QQmlEngine *const engine = qmlEngine(element);
    return engine ? engine->property("pictureLimit").toInt() : 0;
}

/** Pictures in a picture are read like those that content names itself. */
QDeclarativePictureClaim::Refusal refusalFor(const QObject *element)
{
    return [element](const QString &path) {
        return QDeclarativeLocalFile::isRefused(QUrl::fromLocalFile(path), element);
    };
}

} // namespace

QString QDeclarativePictureFile::refusal(const QUrl &url, const QSize &requested, const QObject *element)
{
    const QString path = QQmlFile::urlToLocalFileOrQrc(url);
    const QStringList files = path.isEmpty() ? QStringList() : filesFor(path);
    if (QDeclarativeLocalFile::isPictureRefused(url, element)
        || (files != QStringList(path) && isAnyRefused(files, url, element)))
        return QDeclarativeLocalFile::message(url);
    if (QQuickPixmap::isCached(url, QRect(), requested, 0, QQuickImageProviderOptions()))
        return {};
    QDeclarativePictureClaim claim(pictureLimit(element), refusalFor(element));
    QString type;
    QByteArray content;
    if (!path.isEmpty())
        addFiles(files, requested, &claim);
    else if (url.scheme() == QLatin1String("data") && qDecodeDataUrl(url, type, content))
        addContent(content, requested, &claim);
    else
        claim.add(requested);
    return claim.message(url);
}

QString QDeclarativePictureFile::refusal(QIODevice *device, const QUrl &url, const QObject *element)
{
    QDeclarativePictureClaim claim(pictureLimit(element), refusalFor(element));
    claim.add(device, QSize());
    return claim.message(url);
}

bool QDeclarativePictureFile::refuse(const QUrl &url, const QObject *element)
{
    const QString message = refusal(url, QSize(), element);
    if (!message.isEmpty())
        qmlWarning(element) << message;
    return !message.isEmpty();
}
