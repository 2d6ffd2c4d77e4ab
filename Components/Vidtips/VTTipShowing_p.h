#pragma once

#include "VTShowRequest_p.h"

#include <memory>
#include <optional>

namespace Vidtips {

class VTManager;
class VTTipWatch;
class VTView;
class VTWidget;
class VTXmlElement;
struct VTFoundContent;

/**
 * How a tip comes onto the screen: its content is looked up, the manager's window is filled with it, and
 * revealed once there is something to see.
 *
 * The host, its index and the QML are called on the way, and may destroy the manager with this object.
 */
class VTTipShowing
{
public:
    /** Shows tips in the window of @p manager, whose member it is, and has @p watch watch over them. */
    VTTipShowing(VTManager *manager, const std::shared_ptr<VTTipWatch> &watch);

    /**
     * Shows the tip that @p request asks for, or keeps it where it is on screen already. Returns what
     * VTManager::show() does.
     */
    bool show(const VTShowRequest &request);

    /**
     * Looks the content of @p window, which may be null, up anew and shows it there. @p object, which may be
     * null, is what the tip is about. Returns false when the window has no content, or there is none.
     */
    bool refill(VTWidget *window, QObject *object);

    /** Reveals the tip that waits for its user interface, as soon as that is loaded or has failed. */
    void revealAwaited();

    /** Moves the tip on screen off the popups that are open now, where its command is in one. */
    void placeAnew();

    /** Tells whether the host and the QML have been called for a tip that is to be shown. */
    bool isAtWork() const { return m_depth > 0; }

    /** Tells whether a tip waits for its user interface. */
    bool isAwaiting() const { return m_awaited.has_value(); }

    /** Returns what the tip on screen was shown for, or the last one. */
    const VTShowRequest &shown() const { return m_shown; }

private:
    bool showNow(const VTShowRequest &request);
    void refuseWithoutEnd(const VTShowRequest &request);
    void remember(const VTShowRequest &request);
    void follow(const VTShowRequest &request);
    bool keeps(const QString &key, const VTShowRequest &request);
    void find(const QString &key, VTFoundContent &found);
    void findFallback(const QString &key, VTFoundContent &found);
    bool announce(const VTShowRequest &request, VTFoundContent &found);
    void hideFromOtherOwner(const VTShowRequest &request);
    bool present(const VTShowRequest &request, VTFoundContent &found);
    bool reveal(const VTShowRequest &request);
    static void fallBack(const QPointer<VTView> &view);
    /** Tells whether the view has a user interface, or waits for one. */
    static bool isFilled(const QPointer<VTView> &view);
    void moveOffPopups(const VTShowRequest &request);
    void withdraw();
    void rewriteShortcut(const VTShowRequest &request, VTXmlElement *content);
    bool keepOrHide(const VTShowRequest &request);

    VTManager *const m_manager;
    const std::shared_ptr<VTTipWatch> m_watch;
    VTShowRequest m_shown;
    int m_depth = 0; ///< of shows, each from within the one before
    bool m_isRefusing = false;
    QRect m_place; ///< where the command was when the tip was placed
    std::optional<VTShowRequest> m_awaited; ///< until its user interface is loaded
};

} // namespace Vidtips
