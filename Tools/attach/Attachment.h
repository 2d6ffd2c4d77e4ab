#pragma once

#include "attach/AttachSettings.h"

#include <QtCore/QObject>

#include <memory>

class Harvest;

QT_BEGIN_NAMESPACE
class QJsonObject;
QT_END_NAMESPACE

/**
 * What the tool has added to a program: it waits for the application to run, makes tips in it, and takes them
 * away before the application ends. Where the program has tips of its own, it does nothing.
 */
class Attachment : public QObject
{
    Q_OBJECT

public:
    /** Is called while the application is being made, so nothing is done before its events are. */
    explicit Attachment(const AttachSettings &settings);
    ~Attachment() override;

private:
    void begin();
    void makeTips();
    void stepBack(const char *reason);
    void report(const QJsonObject &what) const;

    const AttachSettings m_settings;
    std::unique_ptr<Harvest> m_harvest;
};
