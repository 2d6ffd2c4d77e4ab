#pragma once

#include <QtNetwork/QNetworkAccessManager>
#include <QtQml/QQmlNetworkAccessManagerFactory>

#include <atomic>

QT_BEGIN_NAMESPACE
class QQmlEngine;
QT_END_NAMESPACE

/**
 * Has what an engine's content requests be no larger than QDeclarativeBounds says.
 *
 * A reply that would be larger ends with an error. Whoever has asked reports that, if the request names it as
 * its originating object, or if the picture of an element is asked for; else the engine warns of it. Any
 * thread, but where it says otherwise.
 */
class QDeclarativeDownloads : public QObject, public QQmlNetworkAccessManagerFactory
{
public:
    /** Makes that of @p engine. It must be there until all that the engine owns is gone. GUI thread. */
    explicit QDeclarativeDownloads(QQmlEngine *engine);

    QNetworkAccessManager *create(QObject *parent) override;

    /** The most that a picture may have, in megapixels; 0 or less: the usual number. */
    int pictureLimit() const { return m_pictureLimit; }
    void setPictureLimit(int megapixels) { m_pictureLimit = megapixels; }

    /** Returns why what is at @p url, if it is a file, is not to be requested, or nothing. */
    static QString problemOfFile(const QUrl &url);

    /** Notes that @p reply ends with @p problem, as it would be too large. */
    static void setRefused(QNetworkReply *reply, const QString &problem);

    /** Tells whether @p reply ended as it would have been too large. */
    static bool isRefused(const QNetworkReply *reply);

private:
    class Manager;

    /** Ends @p reply with @p problem, which @p asker, if there is one, reports. */
    void refuse(QNetworkReply *reply, const QString &problem, const QObject *asker);
    void warn(const QString &problem);

    QQmlEngine *const m_engine;
    std::atomic_int m_pictureLimit{0};
};
