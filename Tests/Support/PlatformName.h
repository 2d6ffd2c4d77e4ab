#pragma once

#include <QtGui/private/qguiapplication_p.h>

/** While it lives, the application takes the window system for another one. */
class PlatformName
{
public:
    explicit PlatformName(const QString &name)
        : m_name(*QGuiApplicationPrivate::platform_name)
    {
        *QGuiApplicationPrivate::platform_name = name;
    }

    ~PlatformName() { *QGuiApplicationPrivate::platform_name = m_name; }

private:
    Q_DISABLE_COPY(PlatformName)

    const QString m_name;
};
