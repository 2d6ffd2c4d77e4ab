#include "VTTipPlace_p.h"

namespace Vidtips {

void VTTipPlace::put(const QPoint &position)
{
    m_position = position;
    m_requests = 0;
}

bool VTTipPlace::mustAskAgain(const QPoint &position)
{
    if (position == m_position)
        return false;
    if (m_requests < mostRequests) {
        ++m_requests;
        return true;
    }
    m_position = position;
    return false;
}

} // namespace Vidtips
