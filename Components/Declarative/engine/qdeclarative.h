#pragma once

/**
 * The QML engine under the names it has in QML 1.
 *
 * The language itself is run by Qt's QML engine; these aliases let code that is written for QML 1 (its view,
 * its items and its type registration) compile unchanged against it.
 */

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtCore/QObject>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlError>
#include <QtQml/QQmlExpression>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQml/QQmlListProperty>
#include <QtQml/QQmlListReference>
#include <QtQml/QQmlNetworkAccessManagerFactory>
#include <QtQml/QQmlParserStatus>
#include <QtQml/QQmlProperty>
#include <QtQml/QQmlPropertyMap>
#include <QtQml/QQmlPropertyValueSource>
#include <QtQml/QQmlScriptString>
#include <QtQml/qqml.h>
#include <QtQuick/QQuickImageProvider>

using QDeclarativeComponent = QQmlComponent;
using QDeclarativeContext = QQmlContext;
using QDeclarativeEngine = QQmlEngine;
using QDeclarativeError = QQmlError;
using QDeclarativeExpression = QQmlExpression;
using QDeclarativeExtensionPlugin = QQmlExtensionPlugin;
using QDeclarativeImageProvider = QQuickImageProvider;
using QDeclarativeListReference = QQmlListReference;
using QDeclarativeNetworkAccessManagerFactory = QQmlNetworkAccessManagerFactory;
using QDeclarativeParserStatus = QQmlParserStatus;
using QDeclarativeProperty = QQmlProperty;
using QDeclarativePropertyMap = QQmlPropertyMap;
using QDeclarativePropertyValueSource = QQmlPropertyValueSource;
using QDeclarativeScriptString = QQmlScriptString;
template <typename T>
using QDeclarativeListProperty = QQmlListProperty<T>;

/**
 * Registers the QML 1 types under the modules QtQuick 1.0, QtQuick 1.1 and Qt 4.7.
 *
 * Qt.labs.folderlistmodel 1.0 and Qt.labs.particles 1.0 are registered too. The global functions are the
 * engine's; openDatabaseSync() is not among them, as Qt has it in a plugin, so that content which keeps
 * databases has to import QtQuick.LocalStorage 2.0, and that plugin has to be installed.
 *
 * Called by the first view; only code that runs an engine without a view needs to call it. GUI thread, after
 * the application object exists. Calls after the first do nothing.
 */
VIDTIPS_DECLARATIVE_EXPORT void qmlRegisterDeclarativeTypes();
