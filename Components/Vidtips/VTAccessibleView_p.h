#pragma once

#include <QtCore/QObject>
#include <QtWidgets/qaccessiblewidget.h>

QT_BEGIN_NAMESPACE
class QGraphicsItem;
class QGraphicsObject;
QT_END_NAMESPACE

namespace Vidtips {

class VTView;

/** The view of a tip as assistive technology sees it: a panel with the items of the user interface. */
class VTAccessibleView : public QAccessibleWidget
{
public:
    /** From now on, tells when another item has the keyboard's focus. */
    explicit VTAccessibleView(VTView *view);

    QAccessible::State state() const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;

    /** Returns the item that has the focus, or null while it is none that is told of. */
    QAccessibleInterface *focusChild() const override;

private:
    VTView *view() const;
    QList<QGraphicsObject *> items() const;
    static void tellFocus(QGraphicsItem *item);

    QObject m_context; ///< ends the connections
};

} // namespace Vidtips
