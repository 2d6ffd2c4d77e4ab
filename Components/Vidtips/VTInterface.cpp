#include "VTInterface.h"

#include "VTManager.h"

#include <QtCore/QDebug>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>

namespace Vidtips {

namespace {

QString messageLabel(VTMessageType type)
{
    switch (type) {
    case VTMessageError:
        return QStringLiteral("ERROR");
    case VTMessageWarning:
        return QStringLiteral("Warning");
    case VTMessageInformation:
        return QStringLiteral("Information");
    case VTMessageDebug:
        return QStringLiteral("DEBUG");
    }
    return QString::number(type);
}

} // namespace

struct VIDTIPS_NO_EXPORT VTInterface::Private
{
    std::unique_ptr<VTManager> manager;
};

VTInterface::VTInterface(VTContext &context, const QStringList &dataPaths, VTIndex *index)
    : d(new Private)
{
    d->manager = std::make_unique<VTManager>(this, context, dataPaths, index);
}

VTInterface::~VTInterface() = default;

QWidget *VTInterface::createWindow(VTWindowType)
{
    return nullptr;
}

QString VTInterface::keyForObject(QObject *object)
{
    return object ? object->objectName() : QString();
}

bool VTInterface::openExternalResource(VTExternalResourceType type, const QString &resource)
{
    if (type != VTResourceUrl)
        return false;
    return QDesktopServices::openUrl(QUrl(resource, QUrl::TolerantMode));
}

void VTInterface::handleMessage(VTMessageType type, const QString &message)
{
    const QString text = QStringLiteral("%1:%2").arg(messageLabel(type), message);
    qDebug("%s", text.toUtf8().constData());
}

QString VTInterface::translateString(const QString &text, const QString &context)
{
    return d->manager ? d->manager->translateString(text, context) : text;
}

QString VTInterface::shortCutForObject(const QString &, QObject *, const QString &shortcut)
{
    return shortcut;
}

void VTInterface::notification(VTNotification, const QVariant &, const QString &) { }

QString VTInterface::keyAt(QObject *object, const QPoint &, QRect &)
{
    return keyForObject(object);
}

VTContext &VTInterface::context()
{
    return d->manager->context();
}

const VTContext &VTInterface::context() const
{
    return std::as_const(*d->manager).context();
}

VTManager *VTInterface::manager() const
{
    return d->manager.get();
}

QStringList VTInterface::keys()
{
    return d->manager->keys();
}

QString VTInterface::vidTipAttribute(const QString &key, const QString &attribute,
                                     const QString &defaultValue)
{
    return d->manager->vidTipAttribute(key, attribute, defaultValue);
}

void VTInterface::setGlobalProperty(const QString &name, const QVariant &value)
{
    d->manager->setGlobalProperty(name, value);
}

bool VTInterface::show(const QString &key, const QPoint &position, QObject *object)
{
    return show(key, position, object, QRect());
}

bool VTInterface::show(const QString &key, const QPoint &position, QObject *object, const QRect &rect)
{
    return d->manager->show(key, position, object, rect);
}

void VTInterface::hide()
{
    d->manager->hide();
}

bool VTInterface::isVisible() const
{
    return d->manager->isVisible();
}

bool VTInterface::mouseButtonEventFilter(QObject *watched, QMouseEvent *event)
{
    return d->manager->mouseButtonEventFilter(watched, event);
}

bool VTInterface::mouseMoveEventFilter(QObject *watched, QMouseEvent *event)
{
    return d->manager->mouseMoveEventFilter(watched, event);
}

} // namespace Vidtips
