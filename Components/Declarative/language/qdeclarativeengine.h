#pragma once

#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeerror.h>
#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtQml/QQmlEngine>
#include <QtQml/qqml.h>

#include <memory>

class QDeclarativeDownloads;
class QDeclarativeGuard;
class QDeclarativeImageProvider;
class QDeclarativeNetworkAccessManagerFactory;

/**
 * An engine that runs QML 1 documents.
 *
 * The first one registers the QML 1 types. GUI thread, after the application object exists.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeEngine : public QQmlEngine
{
    Q_OBJECT
    /**
     * Whether the engine is on the stack: a script, an object that it makes, a warning. It must not be
     * destroyed then, nor what it runs.
     */
    Q_PROPERTY(bool running READ isRunning)
    /** The most that a picture may have, in megapixels; what has more is not decoded. 0 or less: 64. */
    Q_PROPERTY(int pictureLimit READ pictureLimit WRITE setPictureLimit)

public:
    /** Makes an engine that @p parent owns, if there is one. */
    explicit QDeclarativeEngine(QObject *parent = nullptr);
    ~QDeclarativeEngine() override;

    /** Returns the context around all others, which the engine owns. */
    QDeclarativeContext *rootContext() const { return QDeclarativeContext::named(QQmlEngine::rootContext()); }

    /** Returns the provider of pictures under `image://` @p id, or null if none of this class is set. */
    QDeclarativeImageProvider *imageProvider(const QString &id) const;

    /** Returns what makes the engine's network access managers, or null if none of this class is set. */
    QDeclarativeNetworkAccessManagerFactory *networkAccessManagerFactory() const;

    /** Returns the most that a picture may have, in megapixels; 0 or less, as at first: the usual 64. */
    int pictureLimit() const;

    /** Sets the most that a picture may have, for those that are decoded from now on. */
    void setPictureLimit(int megapixels);

    /** Returns what decides about the reach of content; null at first, which lets it reach everything. */
    std::shared_ptr<QDeclarativeGuard> guard() const;

    /**
     * Sets what decides about the reach of content that is loaded from now on; null lets it reach
     * everything. What is already loaded stays in the engine's cache (clearComponentCache()), and may have
     * kept what it was given. An address interceptor that was set before is asked first.
     */
    void setGuard(const std::shared_ptr<QDeclarativeGuard> &guard);

    using QQmlEngine::importPlugin;

    /**
     * Loads the plugin @p filePath and registers its types under @p uri.
     *
     * Returns false when that fails, with the reason in @p error unless that is null.
     */
    bool importPlugin(const QString &filePath, const QString &uri, QString *error);

    /** Returns the context that @p object was made in, or null if QML did not make it. */
    static QDeclarativeContext *contextForObject(const QObject *object)
    {
        return QDeclarativeContext::named(QQmlEngine::contextForObject(object));
    }

    /** Returns @p engine, which may be null, under the name of this class. */
    static QDeclarativeEngine *named(QQmlEngine *engine) { return static_cast<QDeclarativeEngine *>(engine); }

Q_SIGNALS:
    /** Emitted with what went wrong while QML ran. */
    void warnings(const QList<QDeclarativeError> &warnings);

private:
    friend class QDeclarativeView;
    VIDTIPS_DECLARATIVE_NO_EXPORT bool isRunning() const;

    std::unique_ptr<QDeclarativeDownloads> m_downloads;
    int m_warningsInHand = 0;
};

inline QDeclarativeEngine *QDeclarativeContext::engine() const
{
    return QDeclarativeEngine::named(QQmlContext::engine());
}

/** Returns the engine that made @p object, or null if QML did not make it. */
template <typename T>
inline QDeclarativeEngine *qmlEngine(T *object)
{
    return QDeclarativeEngine::named(QtQml::qmlEngine(object));
}
