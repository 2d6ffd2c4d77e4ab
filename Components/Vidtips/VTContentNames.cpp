#include "VTContentNames_p.h"

#include "VTScriptWatch_p.h"
#include "VTTipContent_p.h"
#include "VTView.h"
#include "VTViewWork_p.h"
#include "VTXmlElement.h"

#include <QtDeclarative/QDeclarativeContext>

namespace Vidtips {

namespace {

/** How often content is named once more for bindings that have had other content shown. */
constexpr int mostRounds = 5;

} // namespace

VTContentNames::VTContentNames(VTView *view, VTScriptWatch *scripts)
    : m_view(view)
    , m_scripts(scripts)
{
}

// Bindings ask the host, which may show other content meanwhile. That is named at once, and once more
// afterwards: a binding that was being evaluated has not taken it.
bool VTContentNames::expose(const QString &dataLocation)
{
    const QPointer<VTView> view(m_view);
    m_dataLocation = dataLocation;
    ++m_exposures;
    if (m_isExposing) {
        nameAll();
        return false;
    }
    m_isExposing = true;
    int seen = 0;
    for (int round = 0; view && seen != m_exposures && round < mostRounds; ++round) {
        seen = m_exposures;
        nameAll();
    }
    if (view)
        m_isExposing = false;
    return view;
}

void VTContentNames::nameAll()
{
    const QPointer<VTView> view(m_view);
    QDeclarativeContext *const context = view->rootContext();
    // What is bound to them follows at once.
    m_scripts->restart();
    nameContent(view->content());
    if (view)
        context->setContextProperty(QStringLiteral("dataLocation"), m_dataLocation);
    if (!view)
        return;
    // Naming an object connects its end to the context, once more each time; this one lives for all tips.
    QObject::disconnect(view, &QObject::destroyed, context, nullptr);
    context->setContextProperty(QStringLiteral("vidTipView"), view);
}

void VTContentNames::nameContent(VTXmlElement *content)
{
    const VTViewWork::Scope scope(m_view->work());
    QObject::disconnect(m_exposedGone);
    m_exposed = content;
    // Not every engine notices when a context property dies, and anyone may delete the tree.
    if (content)
        m_exposedGone =
            QObject::connect(content, &QObject::destroyed, m_view, [this] { nameContent(nullptr); });
    m_view->rootContext()->setContextProperty(QStringLiteral("vidtip"), content);
}

void VTContentNames::leave(const QObject *tree)
{
    if (isInTree(m_exposed, tree))
        nameContent(m_view->content());
}

void VTContentNames::clear()
{
    nameContent(nullptr);
    m_view->rootContext()->setContextProperty(QStringLiteral("vidTipView"), static_cast<QObject *>(nullptr));
}

} // namespace Vidtips
