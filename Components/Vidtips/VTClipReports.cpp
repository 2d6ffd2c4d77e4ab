#include "VTClipReports_p.h"

#include <utility>

namespace Vidtips {

void VTClipReports::add(const QUrl &clip, const QString &problem)
{
    {
        const QMutexLocker locker(&m_lock);
        m_reports.append({clip, problem});
    }
    Q_EMIT added();
}

QList<VTClipReport> VTClipReports::take()
{
    const QMutexLocker locker(&m_lock);
    return std::exchange(m_reports, {});
}

} // namespace Vidtips
