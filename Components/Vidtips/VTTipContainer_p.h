#pragma once

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * What the host supplies to take a kept tip in: a window, a dock widget, an MDI sub-window, or a widget
 * inside one of these or on a tab. It may be deleted at any time; what is asked of it then has no effect.
 */
class VTTipContainer
{
public:
    /** Makes a container that takes nothing in. */
    VTTipContainer() = default;

    explicit VTTipContainer(QWidget *widget);

    /** Returns what the host supplied; null when it is gone. */
    QWidget *widget() const;

    /** Returns why no tip can be in there, as the end of a sentence about the host's widget; empty when one
     * can. */
    QString obstacle() const;

    /** Makes @p tip a child of it, beside what is there already. */
    void take(QWidget *tip) const;

    /** Makes room for a tip that has grown, where nothing else does. */
    void makeRoom() const;

    /** Sets its title, which a dock widget or sub-window shows, too. */
    void setTitle(const QString &title) const;

    /**
     * Brings it before the user's eyes, with the page or panel that it is in. A window that the host has not
     * shown is put at @p position.
     */
    void reveal(const QPoint &position) const;

private:
    QWidget *holder() const;

    QPointer<QWidget> m_widget;
};

} // namespace Vidtips
