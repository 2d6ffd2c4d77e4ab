#pragma once

#include "VTCommandPart_p.h"

#include <QtCore/QMetaObject>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

#include <utility>

QT_BEGIN_NAMESPACE
class QAbstractItemView;
class QAbstractScrollArea;
class QAction;
class QMenu;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * Watches the command that a tip is about: an object, or a rectangle in a widget, such as a row, a tab or a
 * menu's entry. It hears of the widget and of what that stands in by event filters on these alone, so that it
 * works with any host and costs nothing while nothing is watched.
 */
class VTCommandWatch : public QObject
{
    Q_OBJECT

public:
    explicit VTCommandWatch(QObject *parent = nullptr);

    /**
     * Watches @p object, which may be null, in place of what was watched before. @p rect is its rectangle in
     * global coordinates, or invalid when all of the object is meant; @p position is where a tip was asked
     * for: an object that is no widget is taken to be in the widget there.
     */
    void begin(QObject *object, const QRect &rect, const QPoint &position);

    /** Watches nothing any more. */
    void end();

    /** Returns the widget that is the command or has it inside; null without one. */
    QWidget *widget() const { return m_widget; }

    /** Returns where the command is, in global coordinates. */
    QRect rect() const;

    /** Tells whether any of the command can be seen in its window, if it could when the watch began. */
    bool isInSight() const;

    /**
     * Tells whether the pointer would reach the command if @p widget is the one under it: the command's, one
     * inside, or one that the command stands in.
     */
    bool isReachedThrough(const QWidget *widget) const;

    /** Tells whether the command is a menu's entry, and @p popup the submenu that it opens. */
    bool isOpening(const QWidget *popup) const;

Q_SIGNALS:
    /** Emitted when the command was destroyed or hidden, or a modal window has blocked it. */
    void gone();

    /** Emitted when something else may be where the command was: its view was scrolled, the menu went on. */
    void passedOn();

    /** Emitted when the command may be elsewhere, or the pointer came or left. */
    void stirred();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Q_DISABLE_COPY(VTCommandWatch)
    void watchChain();
    void watchScrolling(const QAbstractScrollArea *area);
    void watchCell(const QAbstractItemView *view);
    void watchPart(const QPoint &position);
    void checkPart();
    void watchMenu(QMenu *menu, const QPoint &position);
    void watchObject(QObject *object);
    void follow();
    bool isSeen() const;

    QPointer<QWidget> m_widget;
    QPointer<QAction> m_entry; ///< of the menu that the widget is; else null
    QVector<QPointer<QObject>> m_filtered;
    QVector<QMetaObject::Connection> m_connections;
    std::function<VTPartState()> m_stateOfPart;
    QTimer m_check; ///< of the part, when the painting that may tell of a change is done
    QPoint m_origin;
    QRect m_part;
    bool m_wasInSight = false;
};

} // namespace Vidtips
