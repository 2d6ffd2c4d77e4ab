#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

namespace Vidtips {

class VTScriptWatch;
class VTView;
class VTViewReach;

/**
 * Loads the user interfaces of a view, one after the other, and unloads those that are stopped or reach
 * further than content may. The QML runs in most of it, and may destroy the view with this object.
 * A member of the view; GUI thread only.
 */
class VTViewLoader
{
public:
    /** Loads into @p view, whose members all three are. */
    VTViewLoader(VTView *view, VTViewReach *reach, VTScriptWatch *scripts);

    /** See VTView::loadQML(). */
    void load(const QString &path);

    /** Loads what was asked for while something was on the stack. Returns false when nothing was. */
    bool loadPending();

    /** Unloads the user interface. */
    void unload();

    /** Unloads the user interface when it was made for content that reached further or less far. */
    void unloadForeign();

    /** Unloads the user interface whose scripts were stopped, counts that, and closes its window. */
    void stop();

    /** Has the next user interface read from its files, also when it is the one that is loaded. */
    void forget() { m_isForgotten = true; }

    /** Tells whether the user interface that was asked for last is still to come. */
    bool isWaiting() const;

private:
    Q_DISABLE_COPY(VTViewLoader)
    bool isLoaded(const QUrl &url) const;
    bool isBarred(const QString &path) const;
    bool loadsWithoutEnd();
    void loadOnceReturned();
    void loadNow();
    void replaceSource(const QUrl &url);
    void countStop(const QString &path, const QString &package);

    VTView *const m_view;
    VTViewReach *const m_reach;
    VTScriptWatch *const m_scripts;
    QUrl m_pending;
    QString m_package; ///< of the tip for which the user interface was asked for last
    bool m_isForgotten = false; ///< what the engine has of the user interface is to be read anew
    int m_loadsInARow = 0; ///< each asked for by the one before, while that was being made
};

} // namespace Vidtips
