#pragma once

#include "VTItemWatch_p.h"

#include <QtGui/QAccessibleObject>
#include <QtWidgets/QGraphicsObject>

namespace Vidtips {

class VTView;

/**
 * An item of a tip as assistive technology sees it: a text, a picture, a clip, something that can be pressed.
 * See VTItemTree for which items there are.
 */
class VTAccessibleItem : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    /** @p item is in the scene of a VTView. */
    explicit VTAccessibleItem(QGraphicsObject *item);

    /** Returns the view whose scene @p item is in, or null. */
    static VTView *viewOf(const QGraphicsItem *item);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QWindow *window() const override;

    QAccessibleInterface *parent() const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    /** Names pressing and focusing, where the item can be pressed and have the focus. */
    QStringList actionNames() const override;

    /** Presses or focuses the item as soon as the event loop runs: what that does may take its time. */
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QGraphicsObject *item() const;
    QString name() const;
    QRectF visibleRect() const;
    bool isEnabled() const;
    bool isPressable() const;
    bool isFocusable() const;

    const VTItemWatch m_watch;
};

} // namespace Vidtips
