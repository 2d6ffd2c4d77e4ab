#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <cmath>
#include <optional>

class QDeclarativeBasePositionerPrivate;
class QQuickTransition;

/**
 * The base of the items that place their children one after the other.
 *
 * Children that are hidden, fully transparent or of no size are skipped and stay where they are. Placing
 * happens at once, whenever something that it depends on changes, but not before the item is complete. The
 * place that the children take up is the positioner's implicit size; with no children to place, a side that
 * they are not lined up along is -1 and the other one is the negative spacing.
 */
class QDeclarativeBasePositioner : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(qreal implicitWidth READ implicitWidth NOTIFY implicitWidthChanged REVISION 1)
    Q_PROPERTY(qreal implicitHeight READ implicitHeight NOTIFY implicitHeightChanged REVISION 1)
    Q_PROPERTY(int spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)
    Q_PROPERTY(QQuickTransition *move READ move WRITE setMove NOTIFY moveChanged)
    Q_PROPERTY(QQuickTransition *add READ add WRITE setAdd NOTIFY addChanged)

public:
    ~QDeclarativeBasePositioner() override;

    /** The pixels between neighbours; may be negative. */
    int spacing() const;
    void setSpacing(int);

    /** What moves children that have a place already; it runs at every placing. */
    QQuickTransition *move() const;
    void setMove(QQuickTransition *);

    /** What moves children that had no place before; it runs at every placing. */
    QQuickTransition *add() const;
    void setAdd(QQuickTransition *);

Q_SIGNALS:
    void spacingChanged();
    void moveChanged();
    void addChanged();
    Q_REVISION(1) void layoutDirectionChanged();

protected:
    /** A child with its size and, once arranged, its place. Both are in the positioner's coordinates. */
    struct Cell
    {
        QGraphicsObject *item;
        QSizeF size;
        QPointF pos;
        QSizeF content; ///< what the children take up as far as this one; only where goesOn()
        bool isNew;
    };
    using Cells = QVector<Cell>;

    explicit QDeclarativeBasePositioner(QDeclarativeItem *parent);

    /**
     * Gives each of @p cells its place and returns the size that all take up.
     *
     * Where goesOn(), children that take up @p before come before them.
     */
    virtual QSizeF arrange(Cells &cells, const std::optional<QSizeF> &before) const = 0;

    /** Whether the places of children depend on those before them alone, so that these need no look. */
    virtual bool goesOn() const { return false; }

    /** The anchor lines of children, as QDeclarativeAnchorLine::AnchorLine, that would fight the placing. */
    virtual int placedLines() const = 0;

    /** What is warned of when a child has such an anchor. */
    virtual QString conflictMessage() const = 0;

    /** Tells whether the places depend on the positioner's own size. */
    virtual bool dependsOnSize() const { return false; }

    /** Places the children, or remembers to when that is being done already. */
    void relayout();

    /** Cuts @p length: children stand at whole pixels at every step of adding up, not only at the end. */
    static qreal whole(qreal length) { return std::trunc(length); }

    /** Whether what lies left is to lie right, by layoutDirection and LayoutMirroring. */
    bool isRightToLeft() const;

    /** Moves @p cells to the other side of an area of the positioner's width, else @p contentWidth. */
    void mirror(Cells &cells, qreal contentWidth) const;

    Qt::LayoutDirection layoutDirection() const;
    void setLayoutDirection(Qt::LayoutDirection);

    QVariant itemChange(GraphicsItemChange, const QVariant &) override;
    void componentComplete() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    Q_DISABLE_COPY(QDeclarativeBasePositioner)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeBasePositioner)
};
