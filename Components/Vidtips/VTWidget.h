#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <memory>

namespace Vidtips {

class VTManager;
class VTView;
class VTXmlElement;

/**
 * The top-level window of a tip. It holds one VTView, fades in and out, hides after an idle time unless the
 * pointer is in the safe zone around it, and turns into a window of its own, or into part of a container of
 * the host, when the user wants to keep the tip.
 *
 * Settings are read when they are used. A window may outlive its manager (a reserved one does); the defaults
 * of the settings then hold and the host is told nothing more.
 */
class VIDTIPS_EXPORT VTWidget : public QWidget
{
    Q_OBJECT

public:
    /**
     * Makes a hidden window without a view. @p reference is the host's widget that the tip is about and
     * @p referenceRect its rectangle in global coordinates; either may be missing. Nothing is owned.
     */
    VTWidget(VTManager *manager, QWidget *parent, QWidget *reference, QRect referenceRect);

    /** Deletes the view, and with it the content. */
    ~VTWidget() override;

    /**
     * Tells the window where the pointer is: in the safe zone the idle timer stops, outside it starts, unless
     * it runs already.
     */
    void checkMousePosition(const QPoint &globalPos);

    /**
     * Tells whether the pointer at @p globalPos keeps the tip: over the reference, or not farther than
     * Vidtips::SafeZoneMargin from the window.
     */
    bool isSafe(const QPoint &globalPos) const;

    /** Takes over @p view, which may be null, and deletes the one before. */
    void setView(VTView *view);

    /** Returns the view, or null. */
    VTView *view() const;

    /** Returns the manager, or null when it is gone. */
    VTManager *manager() const;

    /**
     * Sees to it that the window is gone when the application object is destroyed, if it is not before. Call
     * it for a window that nothing else may delete any more: a deferred deletion waits for an event loop, and
     * after the last one a window would keep its threads running while the process ends.
     */
    void deleteWithApplication();

    /** Tells the host of a hide once that is done: the window may be deleted then. */
    void setVisible(bool visible) override;

public Q_SLOTS:
    /**
     * Shows @p content at the global position @p pos, with the package folder @p rootPath. The window owns
     * the content from then on, with its root container, and deletes it when other content replaces it. Does
     * nothing when @p content is null.
     */
    void showWithContent(QObject *reference, const QRect &referenceRect, const QPoint &pos,
                         VTXmlElement *content, const QString &rootPath);

    /** Leaves the window where it is: placing it is the manager's. */
    void reposition();

    /** Fades a visible window out in Vidtips::HideDuration, unless a fade is running. */
    void hideAnimated();

    /** Resets the user interface's state and hides the window. */
    void hideAnimationFinished();

    /** Shows a hidden window, fading in within Vidtips::ShowDuration. */
    void showAnimated();

    /**
     * Starts the idle timer with Vidtips::IdleInterval, or stops it when the tip is to stay open or has been
     * handed over to the host.
     */
    void setTimer();

    /** Hands the window over to the host when the view asks to be reserved. */
    void contentReservedChanged();

    /** Takes the size of the view, and one pixel more in both directions. */
    void contentResized();

    /** Returns @p geometry as it is: the window is not kept on the screen. @p move is left untouched. */
    QRect findVisibleGeometry(QRect geometry, bool *move = nullptr);

protected:
    /** Takes its size anew on another screen, whose pixels may be of another size. */
    bool event(QEvent *event) override;

    /** Starts the idle timer unless the pointer is where it keeps the tip. */
    void showEvent(QShowEvent *event) override;

    /** Has the host told of every hide, also when another window has brought it about. */
    void hideEvent(QHideEvent *event) override;

    /** Notes where the window is, and has it go back where a window manager only reports another place. */
    void moveEvent(QMoveEvent *event) override;

    /** Has the manager look content up anew when the application's language has changed. */
    void changeEvent(QEvent *event) override;

private:
    Q_DISABLE_COPY(VTWidget)
    VIDTIPS_NO_EXPORT void refill(VTXmlElement *content, const QString &rootPath);
    VIDTIPS_NO_EXPORT void retitle(const QString &oldTitle);
    // The manager stands above the operations that everybody may call, and acts before they do.
    friend class VTTipShowing;
    friend class VTTipWatch;
    // It makes the native window, and ends it.
    friend class VTTipOwner;
    VIDTIPS_NO_EXPORT bool fadesOut() const;
    VIDTIPS_NO_EXPORT void stopFadeOut();
    VIDTIPS_NO_EXPORT int idleInterval() const;
    VIDTIPS_NO_EXPORT bool fill(QObject *reference, const QRect &referenceRect, const QPoint &pos,
                                VTXmlElement *content, const QString &rootPath);
    VIDTIPS_NO_EXPORT bool putContent(VTXmlElement *content, const QString &rootPath);
    VIDTIPS_NO_EXPORT void reveal();
    VIDTIPS_NO_EXPORT void tellIfHidden();
    VIDTIPS_NO_EXPORT void askPopup(const QPoint &pos);
    VIDTIPS_NO_EXPORT bool isPlacedAnew() const;
    VIDTIPS_NO_EXPORT bool isOnReference(const QPoint &globalPos) const;
    VIDTIPS_NO_EXPORT void refer(QWidget *reference, const QRect &rect);
    VIDTIPS_NO_EXPORT void takeSize(const QSize &size);
    VIDTIPS_NO_EXPORT void renewSize();
    VIDTIPS_NO_EXPORT QRect frameOnScreen() const;

    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
