#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

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
        bool isNew;
    };
    using Cells = QVector<Cell>;

    explicit QDeclarativeBasePositioner(QDeclarativeItem *parent);

    /** Gives each of @p cells its place and returns the size they take up, invalid if there are none. */
    virtual QSizeF arrange(Cells &cells) const = 0;

    /** The anchor lines of children, as QDeclarativeAnchorLine::AnchorLine, that would fight the placing. */
    virtual int placedLines() const = 0;

    /** What is warned of when a child has such an anchor. */
    virtual QString conflictMessage() const = 0;

    /** Tells whether the places depend on the positioner's own size. */
    virtual bool dependsOnSize() const { return false; }

    /** Places the children, or remembers to when that is being done already. */
    void relayout();

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

/** Places its children below each other. */
class QDeclarativeColumn : public QDeclarativeBasePositioner
{
    Q_OBJECT

public:
    explicit QDeclarativeColumn(QDeclarativeItem *parent = nullptr);

protected:
    QSizeF arrange(Cells &) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
};

/** Places its children side by side. */
class QDeclarativeRow : public QDeclarativeBasePositioner
{
    Q_OBJECT
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)

public:
    explicit QDeclarativeRow(QDeclarativeItem *parent = nullptr);

    using QDeclarativeBasePositioner::layoutDirection;
    using QDeclarativeBasePositioner::setLayoutDirection;

protected:
    QSizeF arrange(Cells &) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
    bool dependsOnSize() const override { return isRightToLeft(); }
};

/**
 * Places its children in the cells of a table, each as wide as its column and as high as its row need.
 *
 * With neither `rows` nor `columns` set (-1) there are four columns. Children beyond the last cell stay where
 * they are.
 */
class QDeclarativeGrid : public QDeclarativeBasePositioner
{
    Q_OBJECT
    Q_PROPERTY(int rows READ rows WRITE setRows NOTIFY rowsChanged)
    Q_PROPERTY(int columns READ columns WRITE setColumns NOTIFY columnsChanged)
    Q_PROPERTY(Flow flow READ flow WRITE setFlow NOTIFY flowChanged)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)

public:
    enum Flow { LeftToRight, TopToBottom };
    Q_ENUM(Flow)

    explicit QDeclarativeGrid(QDeclarativeItem *parent = nullptr);

    using QDeclarativeBasePositioner::layoutDirection;
    using QDeclarativeBasePositioner::setLayoutDirection;

    int rows() const { return m_rows; }
    void setRows(int);
    int columns() const { return m_columns; }
    void setColumns(int);
    Flow flow() const { return m_flow; }
    void setFlow(Flow);

Q_SIGNALS:
    void rowsChanged();
    void columnsChanged();
    void flowChanged();

protected:
    QSizeF arrange(Cells &) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
    bool dependsOnSize() const override { return isRightToLeft(); }

private:
    QSize tableSize(int count) const;

    int m_rows = -1;
    int m_columns = -1;
    Flow m_flow = LeftToRight;
};

/** Places its children like words: side by side, or below each other, and wraps at its width or height. */
class QDeclarativeFlow : public QDeclarativeBasePositioner
{
    Q_OBJECT
    Q_PROPERTY(Flow flow READ flow WRITE setFlow NOTIFY flowChanged)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)

public:
    enum Flow { LeftToRight, TopToBottom };
    Q_ENUM(Flow)

    explicit QDeclarativeFlow(QDeclarativeItem *parent = nullptr);

    using QDeclarativeBasePositioner::layoutDirection;
    using QDeclarativeBasePositioner::setLayoutDirection;

    Flow flow() const { return m_flow; }
    void setFlow(Flow);

Q_SIGNALS:
    void flowChanged();

protected:
    QSizeF arrange(Cells &) const override;
    int placedLines() const override;
    QString conflictMessage() const override;
    bool dependsOnSize() const override { return true; }

private:
    Flow m_flow = LeftToRight;
};
