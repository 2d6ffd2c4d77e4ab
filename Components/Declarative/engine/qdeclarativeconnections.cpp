#include "qdeclarativeconnections_p.h"

#include "bounds/qdeclarativeqtcompat_p.h"

#include <QtQml/QQmlInfo>
#include <QtQml/QQmlProperty>

#include <private/qqmlboundsignal_p.h>
#include <private/qqmldata_p.h>
#include <private/qqmlproperty_p.h>

#include <utility>

namespace {

/** Ends a connection once the handler that runs for it is through. */
class LateEnd : public QObject
{
public:
    explicit LateEnd(QQmlBoundSignal *signal)
        : m_signal(signal)
    {
        signal->removeFromObject();
        deleteLater();
    }
    ~LateEnd() override { delete m_signal; }

private:
    QQmlBoundSignal *const m_signal;
};

bool isHandlerName(const QString &name)
{
    return name.startsWith(QLatin1String("on")) && name.size() > 2
        && (name.at(2).isUpper() || name.at(2) == QLatin1Char('_'));
}

} // namespace

void QDeclarativeConnections::setTarget(QObject *target)
{
    if (m_isTargetSet && target == m_target)
        return;
    m_isTargetSet = true;
    disconnectHandlers();
    m_target = target;
    connectHandlers();
    Q_EMIT targetChanged();
}

void QDeclarativeConnections::setHandlers(const Unit &unit, const QList<const Binding *> &handlers)
{
    m_unit = unit;
    m_handlers = handlers;
}

void QDeclarativeConnections::componentComplete()
{
    m_isComplete = true;
    connectHandlers();
}

void QDeclarativeConnections::connectHandlers()
{
    if (!m_isComplete || !target())
        return;
    for (const Binding *handler : qAsConst(m_handlers))
        connectHandler(handler);
}

void QDeclarativeConnections::connectHandler(const Binding *handler)
{
    QObject *const object = target();
    const QString name = m_unit->stringAt(int(handler->propertyNameIndex));
    const QQmlProperty property(object, name);
    if (!property.isValid() || !(property.type() & QQmlProperty::SignalProperty)) {
        if (!m_ignoresUnknown)
            qmlWarning(this) << tr("Cannot assign to non-existent property \"%1\"").arg(name);
        return;
    }
    QQmlContextData *const context = QQmlData::get(this)->outerContext;
    if (!context)
        return;
    const int index = QQmlPropertyPrivate::get(property)->signalIndex();
    auto *signal = new QQmlBoundSignal(object, index, this, qmlEngine(this));
    signal->takeExpression(new QQmlBoundSignalExpression(
        object, index, context, this, m_unit->runtimeFunctions.at(handler->value.compiledScriptIndex)));
    m_connected.push_back(signal);
}

void QDeclarativeConnections::disconnectHandlers()
{
    const auto connected = std::exchange(m_connected, {});
    for (QQmlBoundSignal *signal : connected) {
        // The target may be set by one of the handlers.
        if (signal->isNotifying())
            new LateEnd(signal);
        else
            delete signal;
    }
}

void QDeclarativeConnectionsParser::verifyBindings(const Unit &unit, const QList<const Binding *> &bindings)
{
    for (const Binding *binding : bindings) {
        const QString name = unit->stringAt(int(binding->propertyNameIndex));
        if (!isHandlerName(name)) {
            error(binding,
                  QDeclarativeConnections::tr("Cannot assign to non-existent property \"%1\"").arg(name));
            return;
        }
        const auto type = QtCompat::bindingType(*binding);
        if (type == Binding::Type_Script)
            continue;
        if (type < Binding::Type_Object)
            error(binding, QDeclarativeConnections::tr("Connections: script expected"));
        else if (isObject(unit, binding))
            error(binding, QDeclarativeConnections::tr("Connections: nested objects not allowed"));
        else
            error(binding, QDeclarativeConnections::tr("Connections: syntax error"));
        return;
    }
}

/** Tells whether the value of @p binding is an object of a type, not a group of properties. */
bool QDeclarativeConnectionsParser::isObject(const Unit &unit, const Binding *binding) const
{
    const auto *object = unit->objectAt(int(binding->value.objectIndex));
    return !unit->stringAt(int(object->inheritedTypeNameIndex)).isEmpty();
}

void QDeclarativeConnectionsParser::applyBindings(QObject *object, const Unit &unit,
                                                  const QList<const Binding *> &bindings)
{
    static_cast<QDeclarativeConnections *>(object)->setHandlers(unit, bindings);
}
