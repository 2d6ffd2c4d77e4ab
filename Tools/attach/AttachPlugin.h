#pragma once

#include <QtGui/QGenericPlugin>

/** What Qt loads into a program before its windows are made, if the environment says so. */
class AttachPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "attach.json")

public:
    /** Returns the Attachment, which belongs to Qt. */
    QObject *create(const QString &key, const QString &parameters) override;
};
