#pragma once

#include <QtQml/QQmlExtensionInterface>

/** What Q_PLUGIN_METADATA names the interface by. */
#define QDeclarativeExtensionInterface_iid QQmlExtensionInterface_iid
