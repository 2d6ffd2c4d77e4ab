#include "qdeclarativeguardednetwork_p.h"

#include "qdeclarativeguard.h"
#include "qdeclarativeguardedfiles_p.h"
#include "qdeclarativeguards_p.h"

#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>

namespace {

/** A reply to what is not asked. */
class Refusal : public QNetworkReply
{
public:
    Refusal(QNetworkAccessManager::Operation operation, const QNetworkRequest &request, QObject *parent)
        : QNetworkReply(parent)
    {
        setOperation(operation);
        setRequest(request);
        setUrl(request.url());
        open(ReadOnly | Unbuffered);
        setError(ContentAccessDenied, QStringLiteral("Access denied: %1").arg(request.url().toString()));
        QMetaObject::invokeMethod(this, &Refusal::finish, Qt::QueuedConnection);
    }

    void abort() override { }

protected:
    qint64 readData(char *, qint64) override { return -1; }

private:
    void finish()
    {
        setFinished(true);
        Q_EMIT errorOccurred(error());
        Q_EMIT finished();
    }
};

class Manager : public QNetworkAccessManager
{
public:
    Manager(const QQmlEngine *engine, QObject *parent)
        : QNetworkAccessManager(parent)
        , engine(engine)
    {
    }

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *data) override
    {
        const auto guard = QDeclarativeGuards::of(engine);
        const bool isReading = operation == GetOperation || operation == HeadOperation;
        if (!guard || (isReading && guard->admits(request.url())))
            return QNetworkAccessManager::createRequest(operation, request, data);
        guard->refused(QDeclarativeGuards::message(request.url()), QUrl(), 0);
        return new Refusal(operation, request, this);
    }

private:
    const QQmlEngine *const engine;
};

} // namespace

QNetworkAccessManager *QDeclarativeGuardedNetworkFactory::create(QObject *parent)
{
    const QDeclarativeGuardedFiles::Pause pause;
    return new Manager(engine, parent);
}
