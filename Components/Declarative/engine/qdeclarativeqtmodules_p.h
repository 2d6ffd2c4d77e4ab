#pragma once

/** Qt's own QML modules, some of whose types are QML 1's as well. */
namespace QDeclarativeQtModules {

/** Has Qt register the types of its modules QtQml 2 and QtQuick 2, also where their plugins are not
 * installed. */
void registerTypes();

} // namespace QDeclarativeQtModules
