#pragma once

#include "qdeclarativeitem_p.h"

#include <QtCore/QObject>
#include <QtCore/QVarLengthArray>

#include <optional>

/**
 * An edge, or a line between two edges, of an item that others can be anchored to.
 *
 * No gadget: the engine would look up the type by its name each time a binding sets one.
 */
struct QDeclarativeAnchorLine
{
    enum AnchorLine {
        Invalid = 0x00,
        Left = 0x01,
        Right = 0x02,
        Top = 0x04,
        Bottom = 0x08,
        HCenter = 0x10,
        VCenter = 0x20,
        Baseline = 0x40,
        Horizontal = Left | Right | HCenter,
        Vertical = Top | Bottom | VCenter | Baseline,
    };

    QGraphicsObject *item = nullptr;
    AnchorLine line = Invalid;

    bool operator==(const QDeclarativeAnchorLine &other) const
    {
        return item == other.item && line == other.line;
    }
    bool operator!=(const QDeclarativeAnchorLine &other) const { return !(*this == other); }
};
Q_DECLARE_METATYPE(QDeclarativeAnchorLine)

/**
 * The `anchors` of an item: keeps position and size as its parent or siblings demand.
 *
 * Works from the moment that the item's component is complete, those of a graphics widget at once. Centres
 * lie on whole pixels: the middle of an odd length is the pixel after it. While the item's layout is
 * mirrored, left and right change places.
 */
class QDeclarativeAnchors : public QObject, private QDeclarativeItemChangeListener
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeAnchorLine left READ left WRITE setLeft RESET resetLeft NOTIFY leftChanged)
    Q_PROPERTY(QDeclarativeAnchorLine right READ right WRITE setRight RESET resetRight NOTIFY rightChanged)
    Q_PROPERTY(QDeclarativeAnchorLine horizontalCenter READ horizontalCenter WRITE setHorizontalCenter RESET
                   resetHorizontalCenter NOTIFY horizontalCenterChanged)
    Q_PROPERTY(QDeclarativeAnchorLine top READ top WRITE setTop RESET resetTop NOTIFY topChanged)
    Q_PROPERTY(
        QDeclarativeAnchorLine bottom READ bottom WRITE setBottom RESET resetBottom NOTIFY bottomChanged)
    Q_PROPERTY(QDeclarativeAnchorLine verticalCenter READ verticalCenter WRITE setVerticalCenter RESET
                   resetVerticalCenter NOTIFY verticalCenterChanged)
    Q_PROPERTY(QDeclarativeAnchorLine baseline READ baseline WRITE setBaseline RESET resetBaseline NOTIFY
                   baselineChanged)
    Q_PROPERTY(qreal margins READ margins WRITE setMargins NOTIFY marginsChanged)
    Q_PROPERTY(qreal leftMargin READ leftMargin WRITE setLeftMargin NOTIFY leftMarginChanged)
    Q_PROPERTY(qreal rightMargin READ rightMargin WRITE setRightMargin NOTIFY rightMarginChanged)
    Q_PROPERTY(qreal horizontalCenterOffset READ horizontalCenterOffset WRITE setHorizontalCenterOffset NOTIFY
                   horizontalCenterOffsetChanged)
    Q_PROPERTY(qreal topMargin READ topMargin WRITE setTopMargin NOTIFY topMarginChanged)
    Q_PROPERTY(qreal bottomMargin READ bottomMargin WRITE setBottomMargin NOTIFY bottomMarginChanged)
    Q_PROPERTY(qreal verticalCenterOffset READ verticalCenterOffset WRITE setVerticalCenterOffset NOTIFY
                   verticalCenterOffsetChanged)
    Q_PROPERTY(qreal baselineOffset READ baselineOffset WRITE setBaselineOffset NOTIFY baselineOffsetChanged)
    Q_PROPERTY(QGraphicsObject *fill READ fill WRITE setFill RESET resetFill NOTIFY fillChanged)
    Q_PROPERTY(
        QGraphicsObject *centerIn READ centerIn WRITE setCenterIn RESET resetCenterIn NOTIFY centerInChanged)

public:
    /** Makes the anchors of @p item, an item of this module or a graphics widget; it has to live longer. */
    explicit QDeclarativeAnchors(QGraphicsObject *item);
    ~QDeclarativeAnchors() override;

    /** Which lines are set, as QDeclarativeAnchorLine::AnchorLine. */
    int usedLines() const { return m_used; }

    QDeclarativeAnchorLine left() const { return m_lines[LeftLine]; }
    void setLeft(const QDeclarativeAnchorLine &line) { setLine(LeftLine, line); }
    void resetLeft() { resetLine(LeftLine); }
    QDeclarativeAnchorLine right() const { return m_lines[RightLine]; }
    void setRight(const QDeclarativeAnchorLine &line) { setLine(RightLine, line); }
    void resetRight() { resetLine(RightLine); }
    QDeclarativeAnchorLine horizontalCenter() const { return m_lines[HCenterLine]; }
    void setHorizontalCenter(const QDeclarativeAnchorLine &line) { setLine(HCenterLine, line); }
    void resetHorizontalCenter() { resetLine(HCenterLine); }
    QDeclarativeAnchorLine top() const { return m_lines[TopLine]; }
    void setTop(const QDeclarativeAnchorLine &line) { setLine(TopLine, line); }
    void resetTop() { resetLine(TopLine); }
    QDeclarativeAnchorLine bottom() const { return m_lines[BottomLine]; }
    void setBottom(const QDeclarativeAnchorLine &line) { setLine(BottomLine, line); }
    void resetBottom() { resetLine(BottomLine); }
    QDeclarativeAnchorLine verticalCenter() const { return m_lines[VCenterLine]; }
    void setVerticalCenter(const QDeclarativeAnchorLine &line) { setLine(VCenterLine, line); }
    void resetVerticalCenter() { resetLine(VCenterLine); }
    QDeclarativeAnchorLine baseline() const { return m_lines[BaselineLine]; }
    void setBaseline(const QDeclarativeAnchorLine &line) { setLine(BaselineLine, line); }
    void resetBaseline() { resetLine(BaselineLine); }

    qreal margins() const { return m_margins; }
    void setMargins(qreal);
    qreal leftMargin() const { return m_offsets[LeftLine]; }
    void setLeftMargin(qreal margin) { setOffset(LeftLine, margin); }
    qreal rightMargin() const { return m_offsets[RightLine]; }
    void setRightMargin(qreal margin) { setOffset(RightLine, margin); }
    qreal horizontalCenterOffset() const { return m_offsets[HCenterLine]; }
    void setHorizontalCenterOffset(qreal offset) { setOffset(HCenterLine, offset); }
    qreal topMargin() const { return m_offsets[TopLine]; }
    void setTopMargin(qreal margin) { setOffset(TopLine, margin); }
    qreal bottomMargin() const { return m_offsets[BottomLine]; }
    void setBottomMargin(qreal margin) { setOffset(BottomLine, margin); }
    qreal verticalCenterOffset() const { return m_offsets[VCenterLine]; }
    void setVerticalCenterOffset(qreal offset) { setOffset(VCenterLine, offset); }
    qreal baselineOffset() const { return m_offsets[BaselineLine]; }
    void setBaselineOffset(qreal offset) { setOffset(BaselineLine, offset); }

    QGraphicsObject *fill() const { return m_fill; }
    void setFill(QGraphicsObject *);
    void resetFill() { setFill(nullptr); }
    QGraphicsObject *centerIn() const { return m_centerIn; }
    void setCenterIn(QGraphicsObject *);
    void resetCenterIn() { setCenterIn(nullptr); }

    /** Called when the item's component is complete, and when its layout direction turned. */
    void updateAll();

    /** Called after the item's own geometry changed. */
    void ownGeometryChanged(const QRectF &now, const QRectF &before);

Q_SIGNALS:
    void leftChanged();
    void rightChanged();
    void topChanged();
    void bottomChanged();
    void verticalCenterChanged();
    void horizontalCenterChanged();
    void baselineChanged();
    void fillChanged();
    void centerInChanged();
    void leftMarginChanged();
    void rightMarginChanged();
    void topMarginChanged();
    void bottomMarginChanged();
    void marginsChanged();
    void verticalCenterOffsetChanged();
    void horizontalCenterOffsetChanged();
    void baselineOffsetChanged();

private:
    enum LineIndex {
        LeftLine,
        RightLine,
        TopLine,
        BottomLine,
        HCenterLine,
        VCenterLine,
        BaselineLine,
        Lines
    };
    static constexpr QDeclarativeAnchorLine::AnchorLine lineFlags[Lines] = {
        QDeclarativeAnchorLine::Left,     QDeclarativeAnchorLine::Right,   QDeclarativeAnchorLine::Top,
        QDeclarativeAnchorLine::Bottom,   QDeclarativeAnchorLine::HCenter, QDeclarativeAnchorLine::VCenter,
        QDeclarativeAnchorLine::Baseline,
    };

    void setLine(LineIndex, const QDeclarativeAnchorLine &);
    void resetLine(LineIndex);
    void setOffset(LineIndex, qreal);
    void emitLineChanged(LineIndex);
    void emitOffsetChanged(LineIndex);
    bool isTargetValid(LineIndex, const QDeclarativeAnchorLine &) const;
    bool areLinesValid(int used, bool horizontal) const;
    bool isNeighbour(const QGraphicsObject *) const;
    bool isMirrored() const;
    void updateLine(LineIndex);

    bool isReady() const;
    QSizeF ownSize() const;
    void setOwnSize(const QSizeF &);
    void setOwnWidth(std::optional<qreal> width, int times);
    void setOwnHeight(std::optional<qreal> height, int times);
    void ownChanged(bool horizontal, bool vertical);
    void addDependency(QGraphicsObject *);
    void removeDependency(QGraphicsObject *);
    bool dependsOn(const QGraphicsObject *) const;
    void forget(QGraphicsObject *);

    void updateFill();
    void updateCenterIn();
    void updateHorizontal();
    void updateVertical();
    void applyHorizontal();
    void applyVertical();
    bool isHeld(LineIndex) const;
    qreal linePosition(LineIndex) const;
    std::optional<qreal> stretch(LineIndex from, LineIndex to) const;
    void targetChanged(QGraphicsObject *, bool horizontal, bool vertical, bool resized);
    void follow(QGraphicsObject *, bool horizontal, bool vertical, bool resized);

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemBaselineOffsetChanged(QDeclarativeItem *) override;
    void itemDestroyed(QDeclarativeItem *) override;

    QGraphicsObject *const m_item;
    QGraphicsObject *m_fill = nullptr;
    QGraphicsObject *m_centerIn = nullptr;
    QDeclarativeAnchorLine m_lines[Lines];
    qreal m_offsets[Lines] = {};
    qreal m_margins = 0;
    int m_used = 0;
    int m_horizontalDepth = 0;
    int m_verticalDepth = 0;
    int m_fillDepth = 0;
    int m_centerDepth = 0;
};
