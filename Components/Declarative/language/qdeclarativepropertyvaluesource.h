#pragma once

#include <QtDeclarative/qdeclarativeproperty.h>

#include <QtQml/QQmlPropertyValueSource>

/** The base of objects that QML can put on a property with `on`, to write it over time. */
class QDeclarativePropertyValueSource : public QQmlPropertyValueSource
{
public:
    /** Called once with the property that the object stands on. */
    virtual void setTarget(const QDeclarativeProperty &property) = 0;

private:
    void setTarget(const QQmlProperty &property) final { setTarget(QDeclarativeProperty(property)); }
};

/** What Qt's own class is known by, as the engine asks for that. */
#define QDeclarativePropertyValueSource_iid QQmlPropertyValueSource_iid
Q_DECLARE_INTERFACE(QDeclarativePropertyValueSource, QDeclarativePropertyValueSource_iid)
