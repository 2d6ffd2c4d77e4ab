#include "VTViewReach_p.h"

#include "VTContentGuard_p.h"
#include "VTIndex.h"
#include "VTManager.h"
#include "VTView.h"
#include "VTXmlElement.h"

#include <QtCore/QPointer>
#include <QtCore/QUrl>

namespace Vidtips {

VTViewReach::VTViewReach(VTView *view)
    : m_view(view)
    , m_guard(std::make_shared<VTContentGuard>([view](const QUrl &url) { return view->openForContent(url); }))
{
    // Whoever asks holds locks of the engine's.
    QObject::connect(
        m_guard.get(), &VTContentGuard::added, view, [this] { tell(); }, Qt::QueuedConnection);
}

void VTViewReach::shut()
{
    tell();
    m_guard->shut();
}

void VTViewReach::beginContent(const VTXmlElement &content)
{
    m_guard->beginContent(content.attribute(QStringLiteral("VTPackagName")),
                          content.attribute(QStringLiteral("VTLocation")));
}

bool VTViewReach::isCurrent() const
{
    return m_loaded == now();
}

void VTViewReach::renew()
{
    const VTReach reach = now();
    if (reach == m_loaded)
        return;
    if (m_loaded.isRestricted) {
        // They may name what is shown from now on.
        m_view->setToolTip({});
        m_view->setWhatsThis({});
    }
    m_loaded = reach;
    VTContentGuard::apply(m_guard, reach, m_view->engine());
}

bool VTViewReach::admitsFile(const QString &path) const
{
    const VTReach reach = now();
    const bool isAdmitted = reach.admitsFile(path) && (VTContentGuard::isSupported() || !reach.isRestricted);
    if (!isAdmitted)
        refuse(QStringLiteral("reading %1").arg(path));
    return isAdmitted;
}

void VTViewReach::refuse(const QString &what) const
{
    m_guard->refused(what, QUrl(), 0);
}

// A view that its manager has left behind, or without content, has what it had.
VTReach VTViewReach::now() const
{
    const VTManager *const manager = m_view->manager();
    if (!manager)
        return m_loaded;
    if (!m_view->setting(RestrictContent, false).toBool())
        return {};
    const VTIndex *const index = manager->index();
    VTXmlElement *const content = m_view->content();
    return {true, index && content ? index->componentPathsForElement(content, QString()) : m_loaded.folders};
}

void VTViewReach::tell()
{
    const QPointer<VTView> view(m_view);
    const QStringList refusals = m_guard->take();
    for (const QString &refusal : refusals) {
        if (view)
            view->warn(refusal);
    }
}

} // namespace Vidtips
