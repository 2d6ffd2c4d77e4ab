#include "VTViewWork_p.h"

#include "VTTipContent_p.h"

#include <utility>

namespace Vidtips {

VTViewWork::Scope::Scope(std::shared_ptr<VTViewWork> work)
    : m_work(std::move(work))
{
    ++m_work->m_depth;
}

VTViewWork::Scope::~Scope()
{
    if (--m_work->m_depth == 0)
        m_work->deleteReleased();
}

void VTViewWork::release(VTXmlElement *content)
{
    if (!content)
        return;
    m_released.append(treeOf(content));
    if (!isInHand())
        deleteReleased();
}

// Who hears of the end of one may give up another.
void VTViewWork::deleteReleased()
{
    while (!m_released.isEmpty() && !isInHand())
        delete m_released.takeFirst().data();
}

} // namespace Vidtips
