#include "qdeclarativeextensionplugin.h"

QDeclarativeExtensionPlugin::QDeclarativeExtensionPlugin(QObject *parent)
    : QQmlExtensionPlugin(parent)
{
}

QDeclarativeExtensionPlugin::~QDeclarativeExtensionPlugin() = default;

void QDeclarativeExtensionPlugin::initializeEngine(QDeclarativeEngine *, const char *) { }

void QDeclarativeExtensionPlugin::initializeEngine(QQmlEngine *engine, const char *uri)
{
    initializeEngine(QDeclarativeEngine::named(engine), uri);
}
