#pragma once

#include "AccessibleTree.h"

#include <QtCore/QMap>
#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>

/** While it lives, accessibility is active and what the process tells of it is written down. */
class AccessibleEvents
{
public:
    AccessibleEvents()
    {
        lines().clear();
        setActive(true);
        QAccessible::installUpdateHandler(&AccessibleEvents::write);
    }

    ~AccessibleEvents()
    {
        QAccessible::installUpdateHandler(nullptr);
        setActive(false);
    }

    /** Returns the events of objects of @p role so far, a line for each: the event and the object's name. */
    static QStringList of(QAccessible::Role role) { return lines().value(role); }
    static void clear() { lines().clear(); }

    /** Has the platform believe that assistive technology is there, or is not. */
    static void setActive(bool active)
    {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
    }

private:
    Q_DISABLE_COPY(AccessibleEvents)

    static QMap<QAccessible::Role, QStringList> &lines()
    {
        static QMap<QAccessible::Role, QStringList> lines;
        return lines;
    }

    static void write(QAccessibleEvent *event)
    {
        QAccessibleInterface *const object = event->accessibleInterface();
        if (!object)
            return;
        const QMetaEnum types = QMetaEnum::fromType<QAccessible::Event>();
        lines()[object->role()] << QString::fromLatin1(types.valueToKey(event->type())) + ' '
                + object->text(QAccessible::Name);
    }
};
