#include "qdeclarativedownloads_p.h"

#include "qdeclarativebounds_p.h"
#include "qdeclarativefontfile_p.h"
#include "qdeclarativepictureclaim_p.h"
#include "qdeclarativerefusedreply_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtNetwork/QNetworkReply>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlFile>

#include <private/qqmlengine_p.h>
#include <private/qv4engine_p.h>
#include <private/qv4stackframe_p.h>

namespace {

constexpr const char *refusedProperty = "_vidtips_refused";

/** Makes what a reply tells of its error accessible; those of Qt cannot be derived from. */
struct Reply : public QNetworkReply
{
    using QNetworkReply::setError;
};

bool isForPicture()
{
    return QThread::currentThread()->inherits("QQuickPixmapReader");
}

QString tooLarge(const char *what, qint64 bound, const QUrl &url)
{
    return QDeclarativeBounds::message(what, bound) + QLatin1String(": ") + url.toString();
}

QString problemOfFont(QNetworkReply *reply)
{
    QByteArray header = reply->peek(QDeclarativeFontFile::headerSize);
    QBuffer buffer(&header);
    buffer.open(QIODevice::ReadOnly);
    const QString problem = QDeclarativeFontFile::problem(&buffer);
    return problem.isEmpty() ? problem : problem + QLatin1String(": ") + reply->url().toString();
}

QString problemOfPicture(QNetworkReply *reply, int pictureLimit)
{
    QByteArray content = reply->peek(reply->bytesAvailable());
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QDeclarativePictureClaim claim(pictureLimit);
    claim.add(&buffer, {});
    return claim.message(reply->url());
}

QString problemOfContent(QNetworkReply *reply, int pictureLimit)
{
    if (reply->error() != QNetworkReply::NoError)
        return {};
    return isForPicture() ? problemOfPicture(reply, pictureLimit) : problemOfFont(reply);
}

void setProblem(QNetworkReply *reply)
{
    const QString problem = reply->property(refusedProperty).toString();
    (reply->*&Reply::setError)(QNetworkReply::ContentAccessDenied, problem);
}

QQmlError errorAt(const QV4::CppStackFrame *frame, const QString &problem)
{
    QQmlError error;
    error.setMessageType(QtWarningMsg);
    error.setDescription(problem);
    if (frame) {
        error.setUrl(QUrl(frame->source()));
        error.setLine(frame->lineNumber());
    }
    return error;
}

} // namespace

/** Does what Qt's does, and bounds it. */
class QDeclarativeDownloads::Manager : public QNetworkAccessManager
{
public:
    Manager(QDeclarativeDownloads *downloads, QObject *parent)
        : QNetworkAccessManager(parent)
        , downloads(downloads)
    {
    }

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *data) override;

private:
    void watch(QNetworkReply *reply);
    void bound(QNetworkReply *reply, qint64 size);
    void judge(QNetworkReply *reply);

    QDeclarativeDownloads *const downloads;
};

QNetworkReply *QDeclarativeDownloads::Manager::createRequest(Operation operation,
                                                             const QNetworkRequest &request, QIODevice *data)
{
    const QString problem = problemOfFile(request.url());
    if (problem.isEmpty()) {
        QNetworkReply *const reply = QNetworkAccessManager::createRequest(operation, request, data);
        watch(reply);
        return reply;
    }
    auto *const reply = new QDeclarativeRefusedReply(operation, request, problem, this);
    downloads->refuse(reply, problem, request.originatingObject());
    return reply;
}

// Connected before whoever has asked, who hears of the end when it is decided what that was.
void QDeclarativeDownloads::Manager::watch(QNetworkReply *reply)
{
    connect(reply, &QNetworkReply::readyRead, this, [=] { bound(reply, reply->bytesAvailable()); });
    connect(reply, &QNetworkReply::downloadProgress, this,
            [=](qint64 received, qint64 total) { bound(reply, qMax(received, total)); });
    connect(reply, &QNetworkReply::finished, this, [=] { judge(reply); });
}

void QDeclarativeDownloads::Manager::bound(QNetworkReply *reply, qint64 size)
{
    if (size <= QDeclarativeBounds::download || isRefused(reply))
        return;
    downloads->refuse(reply, tooLarge("Download", QDeclarativeBounds::download, reply->url()),
                      reply->request().originatingObject());
    reply->abort();
}

void QDeclarativeDownloads::Manager::judge(QNetworkReply *reply)
{
    const QString problem = problemOfContent(reply, downloads->m_pictureLimit);
    if (!problem.isEmpty())
        downloads->refuse(reply, problem, reply->request().originatingObject());
    // Of one that was stopped Qt says just that.
    if (isRefused(reply))
        setProblem(reply);
}

QDeclarativeDownloads::QDeclarativeDownloads(QQmlEngine *engine)
    : m_engine(engine)
{
    engine->setNetworkAccessManagerFactory(this);
}

QNetworkAccessManager *QDeclarativeDownloads::create(QObject *parent)
{
    return new Manager(this, parent);
}

QString QDeclarativeDownloads::problemOfFile(const QUrl &url)
{
    const QString path = QQmlFile::urlToLocalFileOrQrc(url);
    if (path.isEmpty())
        return {};
    const QFileInfo file(path);
    if (file.exists() && !file.isFile())
        return QStringLiteral("Cannot open: %1").arg(url.toString());
    return file.size() > QDeclarativeBounds::document
        ? tooLarge("Document", QDeclarativeBounds::document, url)
        : QString();
}

void QDeclarativeDownloads::setRefused(QNetworkReply *reply, const QString &problem)
{
    reply->setProperty(refusedProperty, problem);
}

bool QDeclarativeDownloads::isRefused(const QNetworkReply *reply)
{
    return reply->property(refusedProperty).isValid();
}

void QDeclarativeDownloads::refuse(QNetworkReply *reply, const QString &problem, const QObject *asker)
{
    setRefused(reply, problem);
    if (!asker && !isForPicture())
        warn(problem);
}

void QDeclarativeDownloads::warn(const QString &problem)
{
    const bool isOnThread = QThread::currentThread() == m_engine->thread();
    const QQmlError error = errorAt(isOnThread ? m_engine->handle()->currentStackFrame : nullptr, problem);
    if (isOnThread) {
        QQmlEnginePrivate::warning(m_engine, error);
        return;
    }
    QMetaObject::invokeMethod(
        m_engine, [engine = m_engine, error] { QQmlEnginePrivate::warning(engine, error); },
        Qt::QueuedConnection);
}
