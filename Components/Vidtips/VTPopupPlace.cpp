#include "VTPopupPlace_p.h"

#include <algorithm>

namespace Vidtips {

namespace {

/** Pixels between the two: less than the safe zone's margin, so that the pointer can go over to the tip. */
constexpr int gap = 6;

} // namespace

QPoint VTPopupPlace::beside(int top, const QSize &size) const
{
    const int roomRight = m_screen.right() - m_popup.right();
    const int roomLeft = m_popup.left() - m_screen.left();
    const bool isRight = roomRight >= size.width() + gap || roomRight >= roomLeft;
    const int x = isRight ? m_popup.right() + 1 + gap : m_popup.left() - gap - size.width();
    const int lowest = m_screen.bottom() + 1 - size.height();
    return {x, std::max(m_screen.top(), std::min(top, lowest))};
}

} // namespace Vidtips
