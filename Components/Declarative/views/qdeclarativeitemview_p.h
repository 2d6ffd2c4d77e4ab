#pragma once

#include "flickable/qdeclarativeflickable_p.h"

#include <QtCore/QPointer>

class QDeclarativeItemView;
class QDeclarativeItemViewPrivate;

/** What the views attach to each of their delegates. */
class QDeclarativeItemViewAttached : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isCurrentItem READ isCurrentItem NOTIFY currentItemChanged)
    Q_PROPERTY(bool delayRemove READ delayRemove WRITE setDelayRemove NOTIFY delayRemoveChanged)

public:
    explicit QDeclarativeItemViewAttached(QObject *item);

    QDeclarativeItemView *itemView() const;
    void setItemView(QDeclarativeItemView *);
    bool isCurrentItem() const { return m_isCurrentItem; }
    void setIsCurrentItem(bool);

    /** While this is true a delegate whose row is gone stays in the view. */
    bool delayRemove() const { return m_delayRemove; }
    void setDelayRemove(bool);

Q_SIGNALS:
    void viewChanged();
    void currentItemChanged();
    void delayRemoveChanged();
    void add();
    void remove();

private:
    QPointer<QDeclarativeItemView> m_view;
    bool m_isCurrentItem = false;
    bool m_delayRemove = false;
};

/**
 * The base of the views that show the rows of a model as items in scrolling content.
 *
 * Positions along the scrolled direction are logical: they grow from the first row to the last, also where
 * the view runs from right to left and the content therefore lies at negative coordinates.
 */
class QDeclarativeItemView : public QDeclarativeFlickable
{
    Q_OBJECT
    Q_PROPERTY(QVariant model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QQmlComponent *delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)
    Q_PROPERTY(QDeclarativeItem *currentItem READ currentItem NOTIFY currentIndexChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(QQmlComponent *highlight READ highlight WRITE setHighlight NOTIFY highlightChanged)
    Q_PROPERTY(QDeclarativeItem *highlightItem READ highlightItem NOTIFY highlightItemChanged)
    Q_PROPERTY(bool highlightFollowsCurrentItem READ highlightFollowsCurrentItem WRITE
                   setHighlightFollowsCurrentItem NOTIFY highlightFollowsCurrentItemChanged)
    Q_PROPERTY(int highlightMoveDuration READ highlightMoveDuration WRITE setHighlightMoveDuration NOTIFY
                   highlightMoveDurationChanged)
    Q_PROPERTY(qreal preferredHighlightBegin READ preferredHighlightBegin WRITE setPreferredHighlightBegin
                   NOTIFY preferredHighlightBeginChanged RESET resetPreferredHighlightBegin)
    Q_PROPERTY(qreal preferredHighlightEnd READ preferredHighlightEnd WRITE setPreferredHighlightEnd NOTIFY
                   preferredHighlightEndChanged RESET resetPreferredHighlightEnd)
    Q_PROPERTY(HighlightRangeMode highlightRangeMode READ highlightRangeMode WRITE setHighlightRangeMode
                   NOTIFY highlightRangeModeChanged)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection NOTIFY
                   layoutDirectionChanged REVISION 1)
    Q_PROPERTY(
        bool keyNavigationWraps READ isWrapEnabled WRITE setWrapEnabled NOTIFY keyNavigationWrapsChanged)
    Q_PROPERTY(int cacheBuffer READ cacheBuffer WRITE setCacheBuffer NOTIFY cacheBufferChanged)
    Q_PROPERTY(QQmlComponent *header READ header WRITE setHeader NOTIFY headerChanged)
    Q_PROPERTY(QQmlComponent *footer READ footer WRITE setFooter NOTIFY footerChanged)
    Q_CLASSINFO("DefaultProperty", "data")

public:
    enum HighlightRangeMode { NoHighlightRange, ApplyRange, StrictlyEnforceRange };
    Q_ENUM(HighlightRangeMode)
    enum PositionMode { Beginning, Center, End, Visible, Contain };
    Q_ENUM(PositionMode)

    ~QDeclarativeItemView() override;

    QVariant model() const;
    void setModel(const QVariant &);
    QQmlComponent *delegate() const;
    void setDelegate(QQmlComponent *);

    /** The current row. An index beyond the count is kept; there is then no current item. */
    int currentIndex() const;
    void setCurrentIndex(int);
    QDeclarativeItem *currentItem() const;
    int count() const;
    QQmlComponent *highlight() const;
    void setHighlight(QQmlComponent *);
    QDeclarativeItem *highlightItem() const;
    bool highlightFollowsCurrentItem() const;
    void setHighlightFollowsCurrentItem(bool);

    /** Milliseconds, or -1 where the view's highlight speed decides. */
    int highlightMoveDuration() const;
    void setHighlightMoveDuration(int);
    qreal preferredHighlightBegin() const;
    void setPreferredHighlightBegin(qreal);
    void resetPreferredHighlightBegin();
    qreal preferredHighlightEnd() const;
    void setPreferredHighlightEnd(qreal);
    void resetPreferredHighlightEnd();
    HighlightRangeMode highlightRangeMode() const;
    void setHighlightRangeMode(HighlightRangeMode);
    Qt::LayoutDirection layoutDirection() const;
    void setLayoutDirection(Qt::LayoutDirection);
    bool isWrapEnabled() const;
    void setWrapEnabled(bool);

    /** How far beyond the visible part items are kept, in pixels. They are made at once. */
    int cacheBuffer() const;
    void setCacheBuffer(int);
    QQmlComponent *header() const;
    void setHeader(QQmlComponent *);
    QQmlComponent *footer() const;
    void setFooter(QQmlComponent *);

    void setContentX(qreal) override;
    void setContentY(qreal) override;

    /** Brings the row to the place that @p mode (PositionMode) names; nothing for an index out of range. */
    Q_INVOKABLE void positionViewAtIndex(int index, int mode);
    Q_INVOKABLE Q_REVISION(1) void positionViewAtBeginning();
    Q_INVOKABLE Q_REVISION(1) void positionViewAtEnd();

    /** The row whose visible item holds the point in content coordinates, or -1. */
    Q_INVOKABLE int indexAt(qreal x, qreal y) const;

Q_SIGNALS:
    void modelChanged();
    void delegateChanged();
    void currentIndexChanged();
    void countChanged();
    void highlightChanged();
    void highlightItemChanged();
    void highlightFollowsCurrentItemChanged();
    void highlightMoveDurationChanged();
    void preferredHighlightBeginChanged();
    void preferredHighlightEndChanged();
    void highlightRangeModeChanged();
    Q_REVISION(1) void layoutDirectionChanged();
    void keyNavigationWrapsChanged();
    void cacheBufferChanged();
    void headerChanged();
    void footerChanged();

protected:
    QDeclarativeItemView(QDeclarativeItemViewPrivate &dd, QDeclarativeItem *parent);

    void componentComplete() override;
    bool event(QEvent *) override;
    void geometryChanged(const QRectF &now, const QRectF &before) override;

private:
    Q_DISABLE_COPY(QDeclarativeItemView)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeItemView)
};
