#include "SoakHost.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTManager.h>

#include <QtWidgets/QWidget>

#include <utility>

using namespace Vidtips;

namespace {

VTContext &filled(VTContext &context)
{
    context.set(InstallEventFilter, true);
    context.set(ShowDuration, 20);
    context.set(HideDuration, 20);
    context.set(IdleInterval, 200);
    context.set(AllowDocumentation, true);
    context.set(MessageThreshold, int(VTMessageDebug));
    return context;
}

} // namespace

SoakHost::SoakHost(VTContext &context, const QStringList &dataPaths, const QWidget &window,
                   std::mt19937 &random)
    : VTInterface(filled(context), dataPaths, nullptr)
    , m_window(window)
    , m_random(random)
{
    // The walk over the packages reports what it does.
    m_messages.clear();
}

SoakHost::~SoakHost()
{
    delete manager()->index();
}

QString SoakHost::keyForObject(QObject *object)
{
    const auto *const widget = qobject_cast<QWidget *>(object);
    return m_window.isAncestorOf(widget) ? VTInterface::keyForObject(object) : QString();
}

QWidget *SoakHost::createWindow(VTWindowType)
{
    if (m_random() % 2)
        return nullptr;
    auto *const window = new QWidget(nullptr, Qt::Tool);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setObjectName(QStringLiteral("container"));
    return window;
}

bool SoakHost::openExternalResource(VTExternalResourceType, const QString &)
{
    return true;
}

void SoakHost::handleMessage(VTMessageType, const QString &message)
{
    m_messages.append(message);
}

void SoakHost::notification(VTNotification type, const QVariant &, const QString &)
{
    m_shown += type == VTNotificationShown;
    m_hidden += type == VTNotificationHidden;
}

QStringList SoakHost::takeMessages()
{
    return std::exchange(m_messages, {});
}
