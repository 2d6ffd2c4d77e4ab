#include "qdeclarativeguardednetwork_p.h"

#include "bounds/qdeclarativedownloads_p.h"
#include "bounds/qdeclarativerefusedreply_p.h"
#include "qdeclarativeguard.h"
#include "qdeclarativeguardedfiles_p.h"
#include "qdeclarativeguards_p.h"

#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>

namespace {

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
        const bool isAdmitted = !guard || (isReading && guard->admits(request.url()));
        const QString problem = isAdmitted
            ? QDeclarativeDownloads::problemOfFile(request.url())
            : QStringLiteral("Access denied: %1").arg(request.url().toString());
        if (problem.isEmpty())
            return QNetworkAccessManager::createRequest(operation, request, data);
        if (guard && !(isAdmitted && request.originatingObject()))
            guard->refused(QDeclarativeGuards::message(request.url()), QUrl(), 0);
        auto *const reply = new QDeclarativeRefusedReply(operation, request, problem, this);
        if (isAdmitted)
            QDeclarativeDownloads::setRefused(reply, problem);
        return reply;
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
