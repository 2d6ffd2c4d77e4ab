#pragma once

#include "item/qdeclarativeitem_p.h"

#include <QtCore/QPointer>

#include <private/qquickstate_p.h>

/** Moves an item to another parent while a state is active, in such a way that it looks the same. */
class QDeclarativeParentChange : public QQuickStateOperation, public QQuickStateActionEvent
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeItem *target READ target WRITE setTarget)
    Q_PROPERTY(QDeclarativeItem *parent READ parent WRITE setParent)
    Q_PROPERTY(QQmlScriptString x READ x WRITE setX)
    Q_PROPERTY(QQmlScriptString y READ y WRITE setY)
    Q_PROPERTY(QQmlScriptString width READ width WRITE setWidth)
    Q_PROPERTY(QQmlScriptString height READ height WRITE setHeight)
    Q_PROPERTY(QQmlScriptString scale READ scale WRITE setScale)
    Q_PROPERTY(QQmlScriptString rotation READ rotation WRITE setRotation)

public:
    explicit QDeclarativeParentChange(QObject *parent = nullptr);

    QDeclarativeItem *target() const { return m_target; }
    void setTarget(QDeclarativeItem *target) { m_target = target; }
    QDeclarativeItem *parent() const { return m_parent; }
    void setParent(QDeclarativeItem *parent) { m_parent = parent; }
    QQmlScriptString x() const { return m_x; }
    void setX(const QQmlScriptString &x) { m_x = x; }
    QQmlScriptString y() const { return m_y; }
    void setY(const QQmlScriptString &y) { m_y = y; }
    QQmlScriptString width() const { return m_width; }
    void setWidth(const QQmlScriptString &width) { m_width = width; }
    QQmlScriptString height() const { return m_height; }
    void setHeight(const QQmlScriptString &height) { m_height = height; }
    QQmlScriptString scale() const { return m_scale; }
    void setScale(const QQmlScriptString &scale) { m_scale = scale; }
    QQmlScriptString rotation() const { return m_rotation; }
    void setRotation(const QQmlScriptString &rotation) { m_rotation = rotation; }

    /** The parent that the item had before the state. */
    QDeclarativeItem *originalParent() const { return m_originalParent; }

    /** Gives @p item the parent @p parent; warnings about what cannot look the same name @p reporter. */
    static void reparent(QDeclarativeItem *item, QDeclarativeItem *parent, const QObject *reporter);

    ActionList actions() override;
    EventType type() const override { return ParentChange; }
    void execute() override;
    bool isReversable() override { return true; }
    void reverse() override;
    void saveOriginals() override;
    void rewind() override;
    void saveCurrentValues() override;
    bool mayOverride(QQuickStateActionEvent *) override;

private:
    void addAction(ActionList *, const char *property, const QQmlScriptString &script) const;
    static QGraphicsItem *siblingAbove(const QDeclarativeItem *);
    bool followsAnchorChanges() const;
    void keepPosition(const QPointF &);
    void moveBack(QDeclarativeItem *parent, QGraphicsItem *above);

    QPointer<QDeclarativeItem> m_target;
    QPointer<QDeclarativeItem> m_parent;
    QPointer<QDeclarativeItem> m_originalParent;
    QPointer<QDeclarativeItem> m_currentParent;
    QPointer<QGraphicsObject> m_originalAbove; ///< the sibling that is stacked right above
    QPointer<QGraphicsObject> m_currentAbove;
    bool m_wasTakenBack = false; ///< since the state began to be applied
    QQmlScriptString m_x, m_y, m_width, m_height, m_scale, m_rotation;
};
