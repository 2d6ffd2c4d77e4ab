#pragma once

#include <QtCore/QRect>

namespace Vidtips {

/** Finds room for a tip beside an open menu or another popup, so that its entries can be seen. */
class VTPopupPlace
{
public:
    /** Makes a place beside the popup at @p popup, on the screen at @p screen. */
    VTPopupPlace(const QRect &popup, const QRect &screen)
        : m_popup(popup)
        , m_screen(screen)
    {
    }

    /**
     * Returns where a tip of @p size goes for the entry that begins at the height @p top: to the right, or to
     * the left where the screen ends before; to where there is more room if there is not enough.
     */
    QPoint beside(int top, const QSize &size) const;

private:
    QRect m_popup;
    QRect m_screen;
};

} // namespace Vidtips
