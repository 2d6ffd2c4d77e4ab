#pragma once

#include "PreviewSettings.h"

#include <QtCore/QObject>
#include <QtCore/QPoint>

#include <memory>

class Content;

namespace Vidtips {
class VTWidget;
}

/**
 * A host of its own for the packages that are previewed. Nothing is kept from one stage to the next, so a new
 * one shows files as they are now.
 */
class PreviewStage : public QObject
{
    Q_OBJECT

public:
    /** Loads the packages of @p content. */
    PreviewStage(const Content &content, const PreviewSettings &settings);
    ~PreviewStage() override;

    /** Shows the tip of @p key with its corner at @p position; tells whether it is on screen. */
    bool show(const QString &key, const QPoint &position);

    /** The tip's window; null before the first show(). */
    Vidtips::VTWidget *window() const;

    /**
     * What is wrong with the tip: what a check of its content finds, then what the QML complained about since
     * the last show(), each "file:line:column: text".
     */
    QStringList problems();

Q_SIGNALS:
    /** The tip asked for something that only a host can do, such as opening a topic. */
    void requested(const QString &what);

private:
    QStringList findingsOf(const QString &key);
    QString userInterfaceOf(const QString &key) const;

    class Host;
    struct Private;
    std::unique_ptr<Private> const d;
};
