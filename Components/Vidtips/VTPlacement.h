#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>

#include <memory>

namespace Vidtips {

class VTManager;

/**
 * Keeps the tip on the screen, and off the command and the menu that it explains.
 *
 * The manager puts a tip beside the pointer and lets it grow downwards, wherever that leads; a host that
 * wants tips to be seen whole makes one of these. It moves the manager's current tip whenever that is shown,
 * gets other content or another size:
 * - into what panels leave of the screen that the tip was asked for on;
 * - to the other side of the command where it would cover it, or of the pointer where the command is too
 * large for that;
 * - beside open menus and other popups that the command is in, to their right or, where the command's layout
 *   is from right to left, to their left, and to the other side where the screen ends before;
 * - where the layout is from right to left, to the left of the pointer.
 *
 * A tip that grows with the pointer in it grows where it is, as far as the screen allows, also over the
 * command. Kept tips are left where the user puts them. GUI thread only.
 */
class VIDTIPS_EXPORT VTPlacement : public QObject
{
    Q_OBJECT

public:
    /** What lies around a tip; all in global coordinates. */
    struct Surroundings
    {
        QPoint pointer; ///< where the tip was asked for.
        QSize offset; ///< how far from the pointer the tip begins, in pixels.
        QRect command; ///< the command's room; null where it is not known.
        QRect popups; ///< the open menus or lists that the command is in; null without.
        QRect screen; ///< what the tip has to stay in.
        Qt::LayoutDirection direction = Qt::LeftToRight; ///< on which side of the pointer the tip goes first.
    };

    /** Places the tips of @p manager from now on, until it or the manager, which owns it, is deleted. */
    explicit VTPlacement(VTManager *manager);
    ~VTPlacement() override;

    /**
     * Returns where a tip of @p size goes within @p surroundings. What is larger than the screen begins on
     * it.
     */
    static QRect placed(const QSize &size, const Surroundings &surroundings);

protected:
    /** Watches the application for the tip's window, which is not always the same. */
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Q_DISABLE_COPY(VTPlacement)
    VIDTIPS_NO_EXPORT Surroundings surroundings() const;
    VIDTIPS_NO_EXPORT void place(QWidget *tip, const QRect &readRoom);

    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
