#include "VTPreparation_p.h"

#include "VTContext.h"
#include "VTQmlTypes_p.h"
#include "VTUserInterfaces_p.h"

#include <QtCore/QDir>

#include <algorithm>
#include <utility>

namespace Vidtips {

VTPreparation::VTPreparation(const VTContext &settings)
    : m_settings(settings)
{
    m_idle.start(0, this);
}

VTPreparation::~VTPreparation() = default;

void VTPreparation::addPackage(const QString &package)
{
    m_packages.append(package);
    m_idle.start(0, this);
}

void VTPreparation::settingChanged(int key)
{
    const auto keys = {UseSimpleUserInterface, SimpleUserInterface, FullUserInterface, RestrictContent};
    if (std::find(keys.begin(), keys.end(), key) == keys.end())
        return;
    m_next = 0;
    m_idle.start(0, this);
}

bool VTPreparation::isDone() const
{
    return m_hasTypes && m_next == m_packages.size() && !m_compiling;
}

// A timer without an interval has its turn when no other events are left.
void VTPreparation::timerEvent(QTimerEvent *)
{
    if (!std::exchange(m_hasTypes, true))
        prepareDeclarativeModule();
    else if (m_next < m_packages.size() && !m_compiling)
        compileNext();
    else
        m_idle.stop();
}

QString VTPreparation::interfaceOf(const QString &package) const
{
    const bool isSimple = m_settings.get(UseSimpleUserInterface, false).toBool();
    const QVariant path = isSimple ? m_settings.get(SimpleUserInterface, defaultSimpleInterface())
                                   : m_settings.get(FullUserInterface, defaultFullInterface());
    return QDir(package).absoluteFilePath(path.toString());
}

void VTPreparation::compileNext()
{
    const QString file = interfaceOf(m_packages.at(m_next++));
    // What restricted content may reach only a view knows.
    if (!m_settings.get(RestrictContent, false).toBool())
        m_compiling = compileInterface(file, [this] { compiled(); });
}

// What tells of its end is still at work.
void VTPreparation::compiled()
{
    m_compiling.release()->deleteLater();
    m_idle.start(0, this);
}

} // namespace Vidtips
