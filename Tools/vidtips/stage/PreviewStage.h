#pragma once

#include "PreviewSettings.h"
#include "findings/Finding.h"

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QVector>

#include <memory>

QT_BEGIN_NAMESPACE
class QGraphicsObject;
QT_END_NAMESPACE

class Content;

namespace Vidtips {
class VTVideoComponent;
class VTWidget;
} // namespace Vidtips

/**
 * A host of its own for the packages that are previewed. Nothing is kept from one stage to the next, so a new
 * one shows files as they are now. The application takes the direction of the language that tips are shown
 * in.
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

    /** Keeps the tip that is shown, as a user does, until the next show(). */
    void keep();

    /** The tip's window; null before the first show() and when a kept one was closed. */
    Vidtips::VTWidget *window() const;

    /**
     * What the QML complained about since the last show(): errors that keep it from being shown, VT601, or
     * warnings, VT607; that the tip has no size, VT606; that the simple one stands in for it, VT900; what
     * restricted content was refused, VT614; that a clip does not open, VT501; or just that a script did not
     * end, VT608.
     */
    QVector<Finding> problems();

    /** Tells whether a tip is on screen. */
    bool isShown() const;

    /** Tells whether the simple user interface shows a tip because the full one does not. */
    bool isReplaced() const;

    /** What the library last warned the host of since the last show(); empty for nothing. */
    QString warning() const;

    /** Tells whether the user interface has errors and is not shown. */
    bool isBroken() const;

    /** The items of the tip that are not hidden, each before those in it. */
    QVector<QGraphicsObject *> items() const;

    /** Tells whether @p item has a status that its class calls @p name, as pictures, clips and loaders have.
     */
    static bool hasStatus(const QGraphicsObject *item, const char *name);

    /** Tells whether a picture, a clip or a part of the user interface is not there yet. */
    bool isLoading() const;

    /** Tells whether there is a clip of which no picture but the first was seen. */
    bool isClipAtStart() const;

    /** The names of clips that the tip asked for and that are not there. */
    QStringList missingClips() const;

Q_SIGNALS:
    /** The tip asked for something that only a host can do, such as opening a topic. */
    void requested(const QString &what);

private:
    QString shownFile() const;
    QVector<Finding> replacement() const;
    QVector<Finding> brokenClips() const;
    QVector<const Vidtips::VTVideoComponent *> failedClips() const;
    QVector<Finding> sizeProblems() const;

    class Host;
    struct Private;
    std::unique_ptr<Private> const d;
};
