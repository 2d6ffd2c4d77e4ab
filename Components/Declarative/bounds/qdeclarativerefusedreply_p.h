#pragma once

#include <QtNetwork/QNetworkReply>

/** A reply to what is not asked at all. */
class QDeclarativeRefusedReply : public QNetworkReply
{
public:
    /** Makes one that ends with @p problem once the event loop is reached. */
    QDeclarativeRefusedReply(QNetworkAccessManager::Operation operation, const QNetworkRequest &request,
                             const QString &problem, QObject *parent);

    void abort() override { }

protected:
    qint64 readData(char *, qint64) override { return -1; }

private:
    void finish();
};
