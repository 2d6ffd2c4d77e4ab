#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace Vidtips {

class VTTipContainer;
class VTWidget;

/** How a tip that the user keeps goes on: within a container of the host's, or as a window by itself. */
class VTTipKeeping
{
public:
    /** Keeps @p tip, which is about @p reference; that may be null. */
    VTTipKeeping(VTWidget *tip, const QWidget *reference)
        : m_tip(tip)
        , m_reference(reference)
    {
    }

    /** Tells whether @p container, which may be null, can take the tip in; the host is told why not. */
    bool canMoveInto(QWidget *container) const;

    /** Sees to it that the tip does not own @p container. */
    void prepare(QWidget *container) const;

    /** Moves the tip into @p container, which comes up at @p position if it is a window, with the keyboard.
     */
    void moveInto(VTTipContainer container, const QPoint &position) const;

    /** Makes the tip a window with a title and a button to close it, and gives it the keyboard. */
    void becomeWindow(const QPoint &position) const;

private:
    void takeFocus() const;

    VTWidget *m_tip;
    QPointer<const QWidget> m_reference;
};

} // namespace Vidtips
