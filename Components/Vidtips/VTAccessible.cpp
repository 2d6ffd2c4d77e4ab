#include "VTAccessible_p.h"

#include <QtCore/QMetaMethod>

namespace Vidtips {

VTAccessible::VTAccessible(QObject *item)
    : QObject(item)
{
}

VTAccessible *VTAccessible::qmlAttachedProperties(QObject *object)
{
    return new VTAccessible(object);
}

VTAccessible *VTAccessible::of(const QObject *item)
{
    return qobject_cast<VTAccessible *>(qmlAttachedPropertiesObject<VTAccessible>(item, false));
}

bool VTAccessible::isWhole(QAccessible::Role role)
{
    return role != QAccessible::Grouping && role != QAccessible::List;
}

void VTAccessible::setRole(Role role)
{
    if (role == m_role)
        return;
    m_role = role;
    Q_EMIT roleChanged();
}

void VTAccessible::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    tell(QAccessible::NameChanged);
    Q_EMIT nameChanged();
}

void VTAccessible::setDescription(const QString &description)
{
    if (description == m_description)
        return;
    m_description = description;
    tell(QAccessible::DescriptionChanged);
    Q_EMIT descriptionChanged();
}

void VTAccessible::setIgnored(bool ignored)
{
    if (ignored == m_ignored)
        return;
    m_ignored = ignored;
    Q_EMIT ignoredChanged();
}

bool VTAccessible::canBePressed() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&VTAccessible::pressed));
}

void VTAccessible::tell(QAccessible::Event change) const
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(parent(), change);
    QAccessible::updateAccessibility(&event);
}

} // namespace Vidtips
