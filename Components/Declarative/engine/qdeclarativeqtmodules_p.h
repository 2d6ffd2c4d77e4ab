#pragma once

class QQmlEngine;

/** Qt's own QML modules, some of whose types are QML 1's as well. */
namespace QDeclarativeQtModules {

/**
 * Has Qt register the types of its modules QtQml 2 and QtQuick 2, also where their plugins are not installed.
 * Only an engine can import a plugin: @p engine does, or where there is none, one that is made for it.
 */
void registerTypes(QQmlEngine *engine);

} // namespace QDeclarativeQtModules
