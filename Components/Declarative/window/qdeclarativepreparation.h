#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtCore/QObject>
#include <QtCore/QScopedPointer>

QT_BEGIN_NAMESPACE
class QUrl;
QT_END_NAMESPACE

/**
 * Has a QML file in Qt's cache of compiled QML before it is shown for the first time.
 *
 * An engine loads the file with what it needs, on its thread, and makes no object of it. It reads local files
 * only. GUI thread; may be destroyed at any time.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativePreparation : public QObject
{
    Q_OBJECT

public:
    /** Begins to load the local file @p url. */
    explicit QDeclarativePreparation(const QUrl &url);
    ~QDeclarativePreparation() override;

    /**
     * Registers those of the QML 1 types that need no engine for it, so that the first engine has the less to
     * do. Does nothing when called again.
     */
    static void registerTypes();

    /**
     * Tells whether there is something to prepare: the cache is in use and has nothing for @p url as the file
     * is now.
     */
    static bool isDue(const QUrl &url);

Q_SIGNALS:
    /** The file has been loaded, or cannot be. Never emitted by the constructor. */
    void finished();

private:
    class Private;
    const QScopedPointer<Private> d;
};
