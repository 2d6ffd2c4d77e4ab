#include "qdeclarativerefusedreply_p.h"

QDeclarativeRefusedReply::QDeclarativeRefusedReply(QNetworkAccessManager::Operation operation,
                                                   const QNetworkRequest &request, const QString &problem,
                                                   QObject *parent)
    : QNetworkReply(parent)
{
    setOperation(operation);
    setRequest(request);
    setUrl(request.url());
    open(ReadOnly | Unbuffered);
    setError(ContentAccessDenied, problem);
    QMetaObject::invokeMethod(this, &QDeclarativeRefusedReply::finish, Qt::QueuedConnection);
}

void QDeclarativeRefusedReply::finish()
{
    setFinished(true);
    Q_EMIT errorOccurred(error());
    Q_EMIT finished();
}
