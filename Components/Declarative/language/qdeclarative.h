#pragma once

/**
 * The QML engine under the names it has in QML 1, and the registration of types for it.
 *
 * The language itself is run by Qt's QML engine. Each name is a class of its own that derives from Qt's, so
 * that code which is written for QML 1 compiles unchanged, with forward declarations and the signatures of
 * its signals. An object that the engine makes is one of Qt's classes; it is handed out under the QML 1 name,
 * which adds no data to it.
 */

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtDeclarative/qdeclarativecomponent.h>
#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeerror.h>
#include <QtDeclarative/qdeclarativeexpression.h>
#include <QtDeclarative/qdeclarativeextensionplugin.h>
#include <QtDeclarative/qdeclarativeimageprovider.h>
#include <QtDeclarative/qdeclarativeinfo.h>
#include <QtDeclarative/qdeclarativelist.h>
#include <QtDeclarative/qdeclarativenetworkaccessmanagerfactory.h>
#include <QtDeclarative/qdeclarativeparserstatus.h>
#include <QtDeclarative/qdeclarativeproperty.h>
#include <QtDeclarative/qdeclarativepropertymap.h>
#include <QtDeclarative/qdeclarativepropertyvaluesource.h>
#include <QtDeclarative/qdeclarativescriptstring.h>

#include <QtQml/qqml.h>

/**
 * Registers the QML 1 types under the modules QtQuick 1.0, QtQuick 1.1 and Qt 4.7.
 *
 * Qt.labs.folderlistmodel 1.0 and Qt.labs.particles 1.0 are registered too. The global functions are the
 * engine's; openDatabaseSync() comes with a QDeclarativeEngine.
 *
 * Called by the first QDeclarativeEngine; only code that runs an engine of Qt's own class needs to call it.
 * GUI thread, after the application object exists. Calls after the first do nothing.
 */
VIDTIPS_DECLARATIVE_EXPORT void qmlRegisterDeclarativeTypes();
