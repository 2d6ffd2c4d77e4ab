#include "AttachPlugin.h"

#include "Attachment.h"
#include "attach/AttachSettings.h"

QObject *AttachPlugin::create(const QString &, const QString &)
{
    return new Attachment(AttachSettings::takeFromEnvironment());
}
