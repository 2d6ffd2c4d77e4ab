#include "qdeclarativescriptname_p.h"

#include "engine/qdeclarativeqttype_p.h"

#include <private/qmetaobjectbuilder_p.h>
#include <private/qobject_p.h>

namespace {

/** What Qt knows those by that have no name: nothing that content can spell. */
QString unnamed()
{
    return QString(QChar(QChar::Null));
}

class StateChangeScriptMetaObject : public QAbstractDynamicMetaObject
{
public:
    explicit StateChangeScriptMetaObject(const QMetaObject *qtClass)
    {
        QMetaObjectBuilder builder;
        builder.setClassName("QDeclarativeStateChangeScript");
        builder.setSuperClass(qtClass);
        m_name.addTo(&builder, qtClass, "name");
        *static_cast<QMetaObject *>(this) = *builder.toMetaObject();
    }

    void addTo(QObject *script)
    {
        QObjectPrivate::get(script)->metaObject = this;
        m_name.init(script);
    }

    // One object serves all scripts, and lives for ever.
    void objectDestroyed(QObject *) override { }

    int metaCall(QObject *script, Call call, int id, void **arguments) override
    {
        return m_name.metaCall(script, call, id, arguments) ? -1 : script->qt_metacall(call, id, arguments);
    }

private:
    QDeclarativeScriptName m_name;
};

QDeclarativeQtType::CreateFunction createQtScript = nullptr;
StateChangeScriptMetaObject *scriptMetaObject = nullptr;

void createScript(void *memory)
{
    createQtScript(memory);
    // Its first base is QObject.
    scriptMetaObject->addTo(static_cast<QObject *>(memory));
}

} // namespace

void QDeclarativeScriptName::addTo(QMetaObjectBuilder *builder, const QMetaObject *qtClass, const char *name)
{
    m_original = qtClass->indexOfProperty(name);
    m_property = qtClass->propertyCount();
    // Otherwise the engine would go past the meta-object, straight to the object.
    builder->setFlags(QMetaObjectBuilder::DynamicMetaObject);
    QMetaPropertyBuilder property = builder->addProperty(name, "QString");
    property.setWritable(true);
}

void QDeclarativeScriptName::init(QObject *object) const
{
    QString name = unnamed();
    void *arguments[] = {&name};
    object->qt_metacall(QMetaObject::WriteProperty, m_original, arguments);
}

bool QDeclarativeScriptName::metaCall(QObject *object, QMetaObject::Call call, int id, void **arguments) const
{
    const bool isAccess = call == QMetaObject::ReadProperty || call == QMetaObject::WriteProperty;
    if (!isAccess || id != m_property || m_property < 0)
        return false;
    QString name = call == QMetaObject::WriteProperty ? *static_cast<QString *>(arguments[0]) : QString();
    if (name.isEmpty())
        name = unnamed();
    void *passed[] = {&name};
    object->qt_metacall(call, m_original, passed);
    if (call == QMetaObject::ReadProperty)
        *static_cast<QString *>(arguments[0]) = name == unnamed() ? QString() : name;
    return true;
}

void registerDeclarativeStateChangeScript()
{
    const QQmlType type = QDeclarativeQtType::find("QtQuick", "StateChangeScript");
    createQtScript = QDeclarativeQtType::createFunction(type);
    scriptMetaObject = new StateChangeScriptMetaObject(type.baseMetaObject());
    QDeclarativeQtType::registerCopy(type, "StateChangeScript", {createScript, scriptMetaObject});
    // Lists of changes must go on to take what is derived from Qt's class.
    QDeclarativeQtType::registerAgain(type);
}
