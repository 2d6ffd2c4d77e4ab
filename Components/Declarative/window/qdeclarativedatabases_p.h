#pragma once

#include <QtCore/QObject>

class QQmlEngine;
class QQmlV4Function;

/**
 * The function openDatabaseSync(), which QML 1 has without an import.
 *
 * Databases are those of the module QtQuick.LocalStorage, under the engine's offline storage path. The module
 * is looked for when the function is called first; where it is not installed the call throws an error that
 * says so.
 */
class QDeclarativeDatabases : public QObject
{
    Q_OBJECT

public:
    /** Makes the function known to everything that @p engine runs; the engine owns the object. */
    static void install(QQmlEngine *engine);

    /** openDatabaseSync(identifier, version, description, estimatedSize, callback). */
    Q_INVOKABLE void openDatabaseSync(QQmlV4Function *arguments);

private:
    explicit QDeclarativeDatabases(QQmlEngine *);
    QObject *storage(QString *error);

    QQmlEngine *const m_engine;
    QObject *m_module = nullptr; ///< made at the first call
};
