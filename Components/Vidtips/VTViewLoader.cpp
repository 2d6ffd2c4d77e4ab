#include "VTViewLoader_p.h"

#include "VTScriptWatch_p.h"
#include "VTStoppedFiles_p.h"
#include "VTView.h"
#include "VTViewReach_p.h"
#include "VTViewWork_p.h"
#include "VTWidget.h"
#include "VTXmlElement.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtDeclarative/QDeclarativeEngine>

namespace Vidtips {

namespace {

/** How many user interfaces may load the next as soon as they are made. */
constexpr int mostLoadsInARow = 10;

QString packageOf(const VTXmlElement *content)
{
    return content ? content->attribute(QStringLiteral("VTPackagName")) : QString();
}

} // namespace

VTViewLoader::VTViewLoader(VTView *view, VTViewReach *reach, VTScriptWatch *scripts)
    : m_view(view)
    , m_reach(reach)
    , m_scripts(scripts)
{
}

void VTViewLoader::load(const QString &path)
{
    const QPointer<VTView> view(m_view);
    const bool isFile = QFileInfo(path).isFile();
    if (!isFile)
        m_view->report(QStringLiteral("Can't find :%1").arg(path));
    if (!view || (!isFile && m_reach->isCurrent()))
        return;
    const bool mayLoad = isFile && m_reach->admitsFile(path) && !isBarred(path);
    const QUrl url = mayLoad ? QUrl::fromLocalFile(path) : QUrl();
    if (!view || (!isLoaded(url) && loadsWithoutEnd()))
        return;
    m_pending = url;
    if (isLoaded(url))
        m_package = packageOf(m_view->content());
    else
        loadOnceReturned();
}

// The QML must not be destroyed while its handler runs, or the host that it has called.
void VTViewLoader::loadOnceReturned()
{
    if (m_view->isAtWork())
        m_view->settleSoon();
    else
        loadNow();
}

bool VTViewLoader::loadPending()
{
    if (isLoaded(m_pending))
        return false;
    loadNow();
    return true;
}

void VTViewLoader::loadNow()
{
    const VTViewWork::Scope scope(m_view->work());
    replaceSource(m_pending);
}

void VTViewLoader::unload()
{
    replaceSource(QUrl());
}

// What other packages have loaded is not to be judged as if it were this content's.
void VTViewLoader::unloadForeign()
{
    if (m_view->rootObject() && !m_reach->isCurrent() && !m_view->isAtWork())
        unload();
}

bool VTViewLoader::loadsWithoutEnd()
{
    const bool isInARow = m_view->isAtWork() && !m_view->rootObject();
    m_loadsInARow = isInARow ? m_loadsInARow + 1 : 0;
    // Who hears of it may ask for the next one, or end the view.
    const int loads = m_loadsInARow;
    if (loads == mostLoadsInARow + 1)
        m_view->warn(
            QStringLiteral("%1 has another user interface loaded before it is made, as did those before it; "
                           "it stays")
                .arg(m_view->source().toLocalFile()));
    return loads > mostLoadsInARow;
}

// The next user interface begins with all of its time, and answers for its own scripts alone.
void VTViewLoader::replaceSource(const QUrl &url)
{
    const QPointer<VTView> view(m_view);
    const QString before = m_view->source().toLocalFile();
    m_scripts->restart();
    m_view->setSource(QUrl());
    if (view && m_scripts->resume())
        countStop(before, m_package);
    if (!view)
        return;
    // Nothing is left by now that was made of what the engine forgets.
    if (m_isForgotten)
        m_view->engine()->clearComponentCache();
    m_isForgotten = false;
    if (url.isEmpty())
        return;
    m_package = packageOf(m_view->content());
    m_reach->renew();
    m_scripts->restart();
    m_view->setSource(url);
}

bool VTViewLoader::isBarred(const QString &path) const
{
    const QString package = packageOf(m_view->content());
    if (!VTStoppedFiles::instance().isBarred(path, package))
        return false;
    m_view->warn(
        QStringLiteral("%1 was stopped twice for tips of the package \"%2\" and is not loaded for them "
                       "until it changes")
            .arg(path, package));
    return true;
}

void VTViewLoader::countStop(const QString &path, const QString &package)
{
    VTStoppedFiles::instance().add(path, package);
    // What has changed since is to be read when it is loaded again.
    m_view->engine()->clearComponentCache();
    m_view->warn(QStringLiteral("%1 was stopped, as %2").arg(path, m_scripts->reason()));
}

// One that holds the application up does so again at the next occasion, so that all of it goes. The script
// that was stopped may have been called by another, in whose event loop this is.
void VTViewLoader::stop()
{
    const QPointer<VTView> view(m_view);
    const QString path = m_view->source().toLocalFile();
    m_pending.clear();
    loadOnceReturned();
    if (view && !path.isEmpty())
        countStop(path, packageOf(m_view->content()));
    auto *const window = view ? qobject_cast<VTWidget *>(view->parentWidget()) : nullptr;
    if (window)
        window->close();
}

bool VTViewLoader::isLoaded(const QUrl &url) const
{
    // A root that someone has destroyed is made anew, and so is one of another reach.
    const bool isSource = !m_isForgotten && url == m_view->source()
        && (m_view->rootObject() || m_view->status() != QDeclarativeView::Ready);
    return isSource && (url.isEmpty() || m_reach->isCurrent());
}

// Parts of a user interface may come from the network, and a handler of the present one may have to return
// before another can replace it.
bool VTViewLoader::isWaiting() const
{
    return m_view->status() == QDeclarativeView::Loading || (m_view->isSettling() && !isLoaded(m_pending));
}

} // namespace Vidtips
