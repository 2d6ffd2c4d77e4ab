#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace Vidtips {

class VTWidget;

/** Which window of the host a tip belongs to, and how it comes to. Made where it is needed, and not kept. */
class VTTipOwner
{
public:
    /** Asks for @p tip, which is about @p reference; that may be null. Owns neither. */
    VTTipOwner(VTWidget *tip, const QWidget *reference)
        : m_tip(tip)
        , m_reference(reference)
    {
    }

    /** Returns the window that @p widget is in; menus and other popups come and go, so not those. */
    static QWidget *lastingWindow(const QWidget *widget);

    /** Returns the lasting window of the reference, and null where there is none or it is the tip's own. */
    QWidget *window() const;

    /** Returns the window that the tip comes up with; without a reference the modal one. May be null. */
    QWidget *footing() const;

    /**
     * Has the tip's native window belong to footing(), makes it if there is none, and lets a hidden one that
     * is minimised leave that state. A tip that is part of a container, or kept, stays whose it is.
     */
    void join() const;

    /** Tells whether the tip's native window belongs to that of the reference, or need not. */
    bool isJoined() const;

private:
    void leaveMinimised() const;

    VTWidget *m_tip;
    QPointer<const QWidget> m_reference;
};

} // namespace Vidtips
