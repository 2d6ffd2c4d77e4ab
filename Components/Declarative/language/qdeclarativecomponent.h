#pragma once

#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeerror.h>
#include <QtDeclarative/qdeclarativenamed.h>
#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtQml/QQmlComponent>

class QDeclarativeComponent;

/** A component whose signals can be connected by the signatures that they have in QML 1; its subclass is for
 * use. */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeComponentSignals : public QQmlComponent
{
    Q_OBJECT

Q_SIGNALS:
    /** Emitted when loading came to @p status. */
#ifdef Q_MOC_RUN
    void statusChanged(QDeclarativeComponent::Status status);
#else
    void statusChanged(QQmlComponent::Status status);
#endif

protected:
    explicit QDeclarativeComponentSignals(QObject *parent = nullptr);
    explicit QDeclarativeComponentSignals(QQmlEngine *engine, QObject *parent = nullptr);
    QDeclarativeComponentSignals(QQmlEngine *engine, const QString &file, QObject *parent = nullptr);
    QDeclarativeComponentSignals(QQmlEngine *engine, const QUrl &url, QObject *parent = nullptr);
    ~QDeclarativeComponentSignals() override;

private:
    void pass();
};

/** A document, or a part of one, that objects are made from. GUI thread. */
class QDeclarativeComponent : public QDeclarativeComponentSignals
{
    QDECLARATIVE_NAMED(QDeclarativeComponentSignals)

public:
    /** The engine's own, so that what QML calls a Component can be assigned to properties of this class. */
    static constexpr const QMetaObject &staticMetaObject = QQmlComponent::staticMetaObject;

    /** Makes an empty component that @p parent owns, if there is one. */
    explicit QDeclarativeComponent(QObject *parent = nullptr)
        : QDeclarativeComponentSignals(parent)
    {
    }

    /** Makes an empty component for @p engine; fill it with loadUrl() or setData(). */
    explicit QDeclarativeComponent(QDeclarativeEngine *engine, QObject *parent = nullptr)
        : QDeclarativeComponentSignals(engine, parent)
    {
    }

    /** Makes a component from the local file @p file. */
    QDeclarativeComponent(QDeclarativeEngine *engine, const QString &file, QObject *parent = nullptr)
        : QDeclarativeComponentSignals(engine, file, parent)
    {
    }

    /** Makes a component from @p url; one over the network is ready later. */
    QDeclarativeComponent(QDeclarativeEngine *engine, const QUrl &url, QObject *parent = nullptr)
        : QDeclarativeComponentSignals(engine, url, parent)
    {
    }

    using QQmlComponent::statusChanged;

    /** Returns what went wrong when status() is Error, in file order. */
    QList<QDeclarativeError> errors() const { return QDeclarativeError::named(QQmlComponent::errors()); }

    /** Returns the context that the component was made in, or null for one that C++ made. */
    QDeclarativeContext *creationContext() const
    {
        return QDeclarativeContext::named(QQmlComponent::creationContext());
    }

    /** Returns the engine that objects are made with. */
    QDeclarativeEngine *engine() const { return QDeclarativeEngine::named(QQmlComponent::engine()); }
};
