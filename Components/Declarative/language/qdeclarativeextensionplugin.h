#pragma once

#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeextensioninterface.h>

#include <QtQml/QQmlExtensionPlugin>

/** The base of a plugin that a qmldir names: registers types with the engine that imports it. */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeExtensionPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT

public:
    /** Makes the plugin object; the plugin loader does. */
    explicit QDeclarativeExtensionPlugin(QObject *parent = nullptr);
    ~QDeclarativeExtensionPlugin() override;

    /** Called once for each @p engine that imports @p uri, after registerTypes(). Does nothing. */
    virtual void initializeEngine(QDeclarativeEngine *engine, const char *uri);

private:
    void initializeEngine(QQmlEngine *engine, const char *uri) final;
};
