#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMetaObject>

class QMetaObjectBuilder;

/**
 * The name by which a ScriptAction and a StateChangeScript find each other.
 *
 * In QML 1 those without a name have the same name, so that such an action runs such a script in place of its
 * own; in Qt's they have none. This property of a dynamic meta-object reads and writes as Qt's does, and has
 * Qt see a name where there is none.
 */
class QDeclarativeScriptName
{
public:
    /** Adds the property @p name of @p qtClass to what @p builder makes, as its only property. */
    void addTo(QMetaObjectBuilder *builder, const QMetaObject *qtClass, const char *name);

    /** What @p object, made just now, needs. */
    void init(QObject *object) const;

    /** Answers a call for the property, if @p id is it; whether it did. */
    bool metaCall(QObject *object, QMetaObject::Call call, int id, void **arguments) const;

private:
    int m_original = -1; ///< Qt's property
    int m_property = -1; ///< ours
};

/** Registers StateChangeScript. */
void registerDeclarativeStateChangeScript();
