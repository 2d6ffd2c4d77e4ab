#include "VTContext.h"

#include <QtCore/QPointer>

VTContext::VTContext(QObject *parent)
    : QObject(parent)
{
}

VTContext::VTContext(const VTContext &other)
    : QObject(nullptr)
    , m_settings(other.m_settings)
{
}

VTContext::~VTContext() = default;

VTContext &VTContext::operator=(const VTContext &other)
{
    m_settings = other.m_settings;
    return *this;
}

void VTContext::set(const int &key, const QVariant &value)
{
    const QPointer<VTContext> self(this);
    Q_EMIT settingWillChange(key);
    if (!self)
        return;
    m_settings[key] = value;
    Q_EMIT settingDidChange(key);
}

QVariant VTContext::get(const int &key, const QVariant &defaultValue) const
{
    return m_settings.value(key, defaultValue);
}

bool VTContext::contains(const int &key)
{
    return m_settings.contains(key);
}

QList<int> VTContext::keys()
{
    return m_settings.keys();
}
