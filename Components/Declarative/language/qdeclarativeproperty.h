#pragma once

#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeengine.h>

#include <QtQml/QQmlProperty>

/** A property of an object as QML names it, to be read, written and watched. GUI thread. */
class QDeclarativeProperty : public QQmlProperty
{
public:
    QDeclarativeProperty() = default;
    using QQmlProperty::QQmlProperty;

    /** Makes another name for the property that @p other names. */
    QDeclarativeProperty(const QQmlProperty &other)
        : QQmlProperty(other)
    {
    }
};

/** Properties by the order in which they were found. */
using QDeclarativeProperties = QList<QDeclarativeProperty>;

Q_DECLARE_TYPEINFO(QDeclarativeProperty, Q_MOVABLE_TYPE);
