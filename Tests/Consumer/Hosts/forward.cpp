#include "forward.h"

#include <QtDeclarative/qdeclarativecomponent.h>
#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeexpression.h>
#include <QtDeclarative/qdeclarativeitem.h>
#include <QtDeclarative/qdeclarativepropertymap.h>
#include <QtDeclarative/qdeclarativeview.h>

namespace Host {

Stage::Stage(QDeclarativeView *view)
    : m_view(view)
    , m_settings(new QDeclarativePropertyMap(this))
{
    m_view->rootContext()->setContextProperty("settings", m_settings);
}

::QDeclarativeEngine *Stage::engine() const
{
    return m_view->engine();
}

QDeclarativeContext *Stage::context() const
{
    return m_view->rootContext();
}

QDeclarativeItem *Stage::make(const QByteArray &qml)
{
    QDeclarativeComponent component(engine());
    component.setData(qml, QUrl());
    QDeclarativeItem *const item = qobject_cast<QDeclarativeItem *>(component.create(context()));
    emit made(item);
    return item;
}

QVariant Stage::evaluate(const QString &script, QDeclarativeError *error)
{
    QDeclarativeExpression expression(context(), this, script);
    const QVariant value = expression.evaluate();
    *error = expression.error();
    return value;
}

} // namespace Host
